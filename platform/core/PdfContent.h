#pragma once

#include "platform/core/clip_geometry.h"
#include "platform/core/PdfFonts.h"

#include <functional>

namespace pavane
{

/// What is drawn on the pages of a document, as operators of PDF. Long contents go to the file in
/// pieces, so that neither memory nor the time to give up grows with them.
class PdfContent : public VectorDevice
{
public:
    /// `goesOn` is asked while pictures are packed.
    PdfContent(PdfFile& file, PdfFonts& fonts, std::function<bool()> goesOn);

    /// A new page of `size` units; the origin is its upper left corner, `unit` is in points.
    void startPage(CSize size, double unit, double height);
    /// Ends it: its contents and the dictionary of what it uses, for its object.
    std::string endPage(int fontNames);

    void setClip(const CRgn::Data* clip) override;
    void polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen) override;
    void polygon(const CPointF* points, std::size_t count, bool winding, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void fillRect(const CRect& rect, const FillStyle& brush) override;
    void image(const CRect& target, const ImageView& image) override;
    void text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color) override;

private:
    /// What the reader of the page knows by now; nothing at the beginning of a page or clip.
    struct Known {
        std::uint32_t fill = unknown, stroke = unknown;
        double width = -1;
        int style = -1;
        double dashes = -1;  ///< length of a unit of the pattern
        bool moves = false;  ///< dashes do not begin with the path
        int font = 0;
        double fontSize = 0;
        static constexpr std::uint32_t unknown = 0xFF000000;
    };

    void begin();  ///< of everything that is drawn: clip, and the end of text before
    void endText();
    void flush();
    void fillColor(std::uint32_t color);
    void strokeWith(const StrokeStyle& pen, double distance);
    void strokeCurve(const CPointF* points, std::size_t count, const StrokeStyle& pen);
    void paint(const FillStyle& brush, const StrokeStyle& pen, bool winding, const BoxF& box,
               const std::string& outline);
    void hatch(const FillStyle& brush, bool winding, const BoxF& box, const std::string& outline);
    void rules(CPoint at, double width, const LOGFONT& font, const TextFace& face);
    BoxF reach(double penWidth) const;

    PdfFile& file_;
    PdfFonts& fonts_;
    std::function<bool()> goesOn_;
    CSize size_;
    double scale_ = 1;  ///< units to a pixel of 96 per inch
    std::string out_;
    std::vector<int> pieces_;
    std::vector<int> images_;
    std::string clip_;      ///< operators of the clip in force; empty for none
    std::string openClip_;  ///< of the one that what is drawn now is in
    bool inText_ = false;
    Known known_;
    std::vector<PageGlyph> glyphs_;  ///< reused from text to text
};

}  // namespace pavane
