#pragma once

#include "platform/core/CRgn_data.h"
#include "platform/core/PixelPainter.h"

#include <memory>
#include <string>
#include <string_view>

namespace pavane
{

class StopFlag;

/// A pen or brush for a vector device, colours resolved to 0x00RRGGBB.
struct StrokeStyle {
    int style = PS_NULL;
    double width = 1;  ///< device units
    std::uint32_t color = 0;
    double distance = 0;  ///< from the beginning of the dashes, device units
};
/// How areas are filled.
struct FillStyle {
    CBrush::Kind kind = CBrush::Kind::hollow;
    int hatch = 0;
    std::uint32_t color = 0;
    bool fillsGaps = false;  ///< between the lines of a hatch
    std::uint32_t gapColor = 0;
};

/// Pixels of a picture for a vector device, 0x00RRGGBB, top row first.
struct ImageView {
    const std::uint32_t* bits = nullptr;
    int width = 0;
    int height = 0;
};

/// What can draw shapes between the pixels: a page, or a picture whose strokes have soft edges.
/// Coordinates are device units; a whole number is the centre of a pixel for strokes, and the edge
/// between two for `fillRect` and `image`.
class PAVANE_API VectorDevice
{
public:
    virtual ~VectorDevice();
    /// Long curves are left in the middle once `stop`, which may be null, is up.
    void setStop(const StopFlag* stop) { flag_ = stop; }
    /// Limits what follows to `clip`, or to the whole device when it is null.
    virtual void setClip(const CRgn::Data* clip) = 0;
    virtual void polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen) = 0;
    virtual void polygon(const CPointF* points, std::size_t count, bool winding,
                         const StrokeStyle& pen, const FillStyle& brush) = 0;
    /// The ellipse around `centre`; radii to the middle of its line.
    virtual void ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                         const FillStyle& brush) = 0;
    virtual void fillRect(const CRect& rect, const FillStyle& brush) = 0;
    virtual void image(const CRect& target, const ImageView& image) = 0;
    /// Top left corner of the first cell at `at`, turned around it by the font's escapement.
    virtual void text(CPoint at, std::string_view text, const LOGFONT& font,
                      std::uint32_t color) = 0;

protected:
    const StopFlag* flag() const { return flag_; }

private:
    const StopFlag* flag_ = nullptr;
};

/// How much of each pixel a character covers (0 to 255), at some number of pixels to a unit. Each
/// cover stands in all four bytes of its pixel, and rows end in pixels that are not covered, so
/// that four pixels at a time can be mixed.
struct GlyphPicture {
    static constexpr int together = 4;
    int left = 0;  ///< pixels from the top left corner of its cell
    int top = 0;
    int width = 0;
    int height = 0;
    int advance = 0;  ///< units to the next cell
    const std::uint32_t* cover = nullptr;
    /// Pixels from row to row.
    int stride() const { return (width + together - 1) / together * together; }
};

/// The file of a font, for pages that carry their fonts.
class PAVANE_API FontProgram
{
public:
    virtual ~FontProgram();
    /// One of its tables ("head", "glyf"); empty when it has none of that name.
    virtual std::string table(const char* tag) const = 0;
    virtual CString name() const = 0;
};

/// A character as it goes to a page: its outline and the place of its origin, units to the right
/// of the beginning of the text and below its line.
struct PageGlyph {
    const FontProgram* program = nullptr;
    unsigned index = 0;
    double x = 0;
    double y = 0;
    char32_t character = 0;  ///< 0: the outline stands for several, or for a part of one
};

/// Middle and thickness of the lines below and through a text; the base line is 0, up negative.
struct TextRules {
    double under = 0;
    double through = 0;
    double thickness = 0;
};

/// A font at a size in device units.
class PAVANE_API TextFace
{
public:
    virtual ~TextFace();
    virtual const TEXTMETRIC& metrics() const = 0;
    /// Width of a line in whole device units; the sum of its characters' widths.
    virtual int width(std::string_view text) const = 0;
    /// The picture of a character, which lives as long as the face; null when it has to be drawn
    /// with its text: turned, underlined or huge letters, letters that join others, no letters.
    virtual const GlyphPicture* glyph(char32_t character, int ratio) const
    {
        return (void)character, (void)ratio, nullptr;
    }
    /// Height of an em, and the names of this and of like families, for a page that keeps its text.
    virtual double emHeight() const = 0;
    /// Adds the outlines of a line of text; their programs live as long as the hook.
    virtual void pageGlyphs(std::string_view text, std::vector<PageGlyph>& out) const
    {
        (void)text, (void)out;
    }
    virtual TextRules rules() const { return {}; }
    virtual CString family() const = 0;
};

/// What the backend with fonts adds to the core; one for the process.
class PAVANE_API GraphicsHook
{
public:
    virtual ~GraphicsHook();
    /// The face for a font in device units; it lives as long as the hook. `onPage`: not fitted to a
    /// pixel grid.
    virtual const TextFace& face(const LOGFONT& font, bool onPage) = 0;
    /// A device that draws on `surface`, which has to outlive it.
    virtual std::unique_ptr<VectorDevice> softDevice(const PixelSurface& surface) = 0;
    /// A device whose `size` units are shown in `target` of `surface`, as a page is: nothing is
    /// drawn outside. `scale` units to a pixel of 96 per inch.
    virtual std::unique_ptr<VectorDevice> pageView(const PixelSurface& surface, const CRect& target,
                                                   CSize size, double scale) = 0;
};

/// Installs the hook (null removes it) and returns the one before. Without one glyphs are left out
/// and widths are estimated.
PAVANE_API GraphicsHook* setGraphicsHook(GraphicsHook* hook);
/// Null as well in a process that was forked while another thread drew.
GraphicsHook* graphicsHook();
/// What whoever draws text without a hook is told.
const char* noPlatformText();
inline constexpr char forkedText[] = "This process was forked while another thread drew, so it has "
                                     "no fonts: fork before drawing, or "
                                     "start processes by spawn";

/// What a device context draws on: pixels, or vectors.
class PAVANE_API DeviceBackend
{
public:
    virtual ~DeviceBackend();
    /// Width and height in device units.
    virtual CSize size() const = 0;
    /// Device units to a pixel of 96 per inch.
    virtual double scale() const { return 1; }
    /// Width of the lines that frames are made of, device units.
    virtual double hairline() const { return scale() < 4 ? 1 : static_cast<int>(scale() / 2); }
    /// A stroke or curve goes to the page in pieces of so many points, so that it can be left
    /// in the middle.
    virtual std::size_t pointsAtOnce() const { return static_cast<std::size_t>(-1); }
    /// True when nothing that is still to come will be drawn.
    virtual bool isStopped() const { return false; }
    /// What tells that; null when nobody does.
    virtual const StopFlag* stopFlag() const { return nullptr; }
    /// Whether nothing lies behind what is drawn.
    virtual bool isTransparent() const { return surface().isTransparent; }
    /// The pixels; without bits on a page.
    virtual PixelSurface surface() const { return {}; }
    /// The page; null on a pixel device.
    virtual VectorDevice* page() { return nullptr; }
    /// What may be painted at all, under every clip; null: the whole device. Asked for once.
    virtual std::shared_ptr<const CRgn::Data> limit() const { return nullptr; }
    /// The pixels in `rect` were shifted within it. True when the device shifts what it shows by
    /// itself, else all of them count as painted.
    virtual bool shifted(const CRect& rect, int dx, int dy)
    {
        return (void)rect, (void)dx, (void)dy, false;
    }
};

/// Draws on pixels that someone else owns.
class SurfaceBackend : public DeviceBackend
{
public:
    explicit SurfaceBackend(const PixelSurface& surface) : surface_(surface) {}
    CSize size() const override { return {surface_.width, surface_.height}; }
    PixelSurface surface() const override { return surface_; }

private:
    PixelSurface surface_;
};

}  // namespace pavane
