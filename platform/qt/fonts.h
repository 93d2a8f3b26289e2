#pragma once

#include "platform/core/DeviceBackend.h"
#include "platform/qt/glyph_pictures.h"

#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <QFont>
#include <QRawFont>
#include <QString>
#include <shared_mutex>
#include <string>
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
    CellShape of(const QFont& font);

private:
    struct Entry {
        QString family;
        bool bold, italic;
        CellShape shape;
    };
    std::mutex lock_;
    std::vector<Entry> entries_;
};

/// What pages need of the file of a font. It is read when the program is made: a font that the
/// toolkit has opened belongs to the thread that opened it.
class QtFontProgram : public FontProgram
{
public:
    explicit QtFontProgram(const QRawFont& font);
    std::string table(const char* tag) const override;
    CString name() const override;
    bool isOf(const QRawFont& font) const;

private:
    QString family_;
    QString style_;
    int weight_;
    QFont::Style slant_;
    std::map<std::string, std::string, std::less<>> tables_;
};

/// Those that pages were drawn with so far.
class FontPrograms
{
public:
    const QtFontProgram& of(const QRawFont& font);

private:
    std::mutex lock_;
    std::vector<std::unique_ptr<QtFontProgram>> programs_;
};

/// One font at one size, with what Qt needs to draw it. Any thread may ask it: what it keeps is
/// looked up under a shared lock and filled under an exclusive one, and no font of the toolkit is
/// used by two threads, since even reading one changes it.
class QtFace : public TextFace
{
public:
    /// `onPage`: without hinting, so that widths are those of the outlines.
    QtFace(const LOGFONT& font, bool onPage, FontShapes& shapes, FontPrograms& programs);
    ~QtFace() override;
    QtFace(const QtFace&) = delete;
    QtFace& operator=(const QtFace&) = delete;
    const TEXTMETRIC& metrics() const override { return metrics_; }
    int width(std::string_view text) const override;
    const GlyphPicture* glyph(char32_t character, int ratio) const override;
    double emHeight() const override { return look_.pixels * grow_; }
    void pageGlyphs(std::string_view text, std::vector<PageGlyph>& out) const override;
    TextRules rules() const override;
    CString family() const override;
    /// A font of the toolkit for the caller alone.
    QFont font() const;
    /// How much larger than `font` the letters of a page are: fonts of the toolkit have whole
    /// pixels, which on a coarse page are another part of a letter than on a fine one.
    double grow() const { return grow_; }
    /// From the top of the cell to the line that the letters stand on.
    int ascent() const { return metrics_.tmAscent; }

private:
    /// What `font` is made of.
    struct Look {
        QString family;
        bool isBold, isItalic, isUnderlined, isStruckOut, onPage;
        int pixels;
    };
    /// Screens are drawn at so many pixels to a unit at most from pictures of letters.
    static constexpr int greatestRatio = 8;

    double asciiWidth(unsigned char c) const;
    double characterWidth(char32_t c) const;
    unsigned pageIndex(char32_t c) const;
    void shapedGlyphs(std::string_view text, std::vector<PageGlyph>& out) const;

    Look look_;
    FontPrograms& programs_;
    TEXTMETRIC metrics_;
    double grow_ = 1;
    bool hasPictures_ = false;
    mutable std::atomic<const QtFontProgram*> program_ = nullptr;
    /// Below 0 until asked for: a control character alone makes the toolkit look through all fonts.
    mutable std::array<std::atomic<double>, 128> ascii_;
    mutable std::array<std::atomic<GlyphPictures*>, greatestRatio + 1> pictures_ = {};  ///< owned
    mutable std::shared_mutex lock_;  ///< of what follows
    mutable std::unordered_map<char32_t, unsigned> pageIndices_;
    mutable std::unordered_map<char32_t, double> others_;
};

/// The faces asked for so far, by any thread. Made with the application object, gone before it.
class FontTable
{
public:
    const QtFace& face(const LOGFONT& font, bool onPage);

private:
    struct Entry {
        LOGFONT font;
        bool onPage;
        std::unique_ptr<const QtFace> face;
    };
    FontShapes shapes_;
    FontPrograms programs_;
    std::shared_mutex lock_;  ///< of `entries_`
    std::vector<std::unique_ptr<const Entry>> entries_;
    std::atomic<const Entry*> last_ = nullptr;
};

/// Text as Qt has it; bytes that are no UTF-8 become replacement characters.
QString textOf(std::string_view text);

}  // namespace pavane
