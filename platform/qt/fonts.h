#pragma once

#include "platform/core/DeviceBackend.h"
#include "platform/qt/glyph_pictures.h"

#include <memory>
#include <QFont>
#include <QRawFont>
#include <QString>
#include <unordered_map>
#include <vector>

namespace pavane
{

/// Parts of an em, from the tables of a font file.
struct CellShape {
    double ascent = 1854.0 / 2048;
    double descent = 434.0 / 2048;
    double height() const { return ascent + descent; }
};

/// The shapes asked for so far; reading one loads its font at a size that nobody draws.
class FontShapes
{
public:
    const CellShape& of(const QFont& font);

private:
    struct Entry {
        QString family;
        bool bold, italic;
        CellShape shape;
    };
    std::vector<Entry> entries_;
};

/// The file of a font as the toolkit opened it.
class QtFontProgram : public FontProgram
{
public:
    explicit QtFontProgram(const QRawFont& font) : font_(font) {}
    std::string table(const char* tag) const override { return font_.fontTable(tag).toStdString(); }
    CString name() const override;
    bool isOf(const QRawFont& font) const;

private:
    QRawFont font_;
};

/// Those that pages were drawn with so far.
class FontPrograms
{
public:
    const QtFontProgram& of(const QRawFont& font);

private:
    std::vector<std::unique_ptr<QtFontProgram>> programs_;
};

/// One font at one size, with what Qt needs to draw it.
class QtFace : public TextFace
{
public:
    /// `onPage`: without hinting, so that widths are those of the outlines.
    QtFace(const LOGFONT& font, bool onPage, FontShapes& shapes, FontPrograms& programs);
    const TEXTMETRIC& metrics() const override { return metrics_; }
    int width(std::string_view text) const override;
    const GlyphPicture* glyph(char32_t character, int ratio) const override;
    double emHeight() const override { return font_.pixelSize() * grow_; }
    void pageGlyphs(std::string_view text, std::vector<PageGlyph>& out) const override;
    TextRules rules() const override;
    CString family() const override;
    const QFont& font() const { return font_; }
    /// How much larger than `font` the letters of a page are: fonts of the toolkit have whole
    /// pixels, which on a coarse page are another part of a letter than on a fine one.
    double grow() const { return grow_; }
    /// From the top of the cell to the line that the letters stand on.
    int ascent() const { return metrics_.tmAscent; }

private:
    double asciiWidth(unsigned char c) const;
    double characterWidth(char32_t c) const;
    unsigned pageIndex(char32_t c) const;
    void shapedGlyphs(std::string_view text, std::vector<PageGlyph>& out) const;

    QFont font_;
    FontPrograms& programs_;
    mutable QRawFont raw_;  ///< of pages, once asked for
    mutable const QtFontProgram* program_ = nullptr;
    mutable std::unordered_map<char32_t, unsigned> pageIndices_;
    TEXTMETRIC metrics_;
    double grow_ = 1;
    /// Below 0 until asked for: a control character alone makes the toolkit look through all fonts.
    mutable double ascii_[128];
    mutable std::unordered_map<char32_t, double> others_;
    bool hasPictures_ = false;
    mutable std::vector<std::unique_ptr<GlyphPictures>> pictures_;  ///< by ratio
};

/// The faces asked for so far. Made with the application object, gone before it.
class FontTable
{
public:
    const QtFace& face(const LOGFONT& font, bool onPage);

private:
    struct Entry {
        LOGFONT font;
        bool onPage;
        std::unique_ptr<QtFace> face;
    };
    FontShapes shapes_;
    FontPrograms programs_;
    std::vector<Entry> entries_;
    std::size_t last_ = 0;
};

/// Text as Qt has it; bytes that are no UTF-8 become replacement characters.
QString textOf(std::string_view text);

}  // namespace pavane
