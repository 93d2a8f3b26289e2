#pragma once

#include "platform/CDC.h"
#include "platform/core/CRgn_data.h"
#include "platform/core/DeviceBackend.h"
#include "platform/core/mapping.h"
#include "platform/core/PixelPainter.h"
#include "platform/core/polygon_scan.h"
#include "posix/StopFlag.h"

#include <memory>
#include <optional>
#include <vector>

namespace pavane
{

/// What SaveDC keeps. Objects are copies; the pointers are only handed back to the caller.
struct Settings {
    CPen pen;
    CBrush brush;
    LOGFONT font;
    CPen* penObject = nullptr;
    CBrush* brushObject = nullptr;
    CFont* fontObject = nullptr;
    HPALETTE palette = nullptr;
    int rop2 = R2_COPYPEN;
    int bkMode = OPAQUE;
    COLORREF bkColor = 0xFFFFFF;
    COLORREF textColor = 0;
    int polyFillMode = ALTERNATE;
    int smooth = 0;
    Mapping mapping;
    CPoint position;
    /// Device units; none: the whole device.
    std::shared_ptr<const CRgn::Data> clip;
};

/// The picture of a character and where it goes, in pixels.
struct PlacedGlyph {
    const GlyphPicture* picture;
    int x;
    int y;
};

/// The stock object of an index, null when the index is none of that kind.
CPen* stockPen(int index);
CBrush* stockBrush(int index);
CFont* stockFont(int index);

/// Everything behind a device context, and the steps that its primitives share.
struct CDC::State {
    std::unique_ptr<DeviceBackend> backend;
    Settings now;
    std::vector<Settings> saved;
    const StopFlag* stop = nullptr;
    std::unique_ptr<VectorDevice> soft;
    GraphicsHook* softMaker = nullptr;        ///< soft is of no use without it
    PixelSurface softSurface;                 ///< and on pixels that moved
    std::shared_ptr<const CRgn::Data> limit;  ///< of the device; null: all of it
    mutable std::shared_ptr<const CRgn::Data> limitedFrom;
    mutable std::shared_ptr<const CRgn::Data> limitedClip;  ///< limitedFrom within limit
    bool clipChanged = true;                                ///< the vector device has not been told
    bool isTold = false;                                    ///< it has been told some clip
    std::shared_ptr<const CRgn::Data> toldClip;             ///< the last one
    std::vector<Span> spans;                                ///< reused from call to call
    std::vector<Span> outline;
    PolygonScanner scanner;
    std::optional<WideLine> wideLine;
    int wideLineWidth = 0;

    /// The flag of the context or of its device.
    const StopFlag* flag() const { return stop || !backend ? stop : backend->stopFlag(); }
    /// Whether a primitive has anything to do.
    bool canDraw() const { return backend && !pavane::isStopped(stop); }
    PixelSurface surface() const { return backend ? backend->surface() : PixelSurface{}; }
    CRect deviceRect() const;
    /// The clip within the limit of the device; null: everything.
    const CRgn::Data* clip() const;
    const Region* clipRegion() const { return clip() ? &clip()->region : nullptr; }
    /// Clip and device as one region.
    Region visibleRegion() const;
    void setClip(Region region);
    PixelPainter painter() const { return {surface(), clipRegion()}; }

    std::uint32_t pixel(COLORREF color) const;
    CRect deviceBox(const CRect& logical) const;  ///< edges in order
    /// Device rectangle of an area fill. Deliberate: edges that come out reversed cover the
    /// pixels from one past the smaller edge to the greater one; mirrored mappings show it.
    CRect filledBox(const CRect& logical) const;
    int penWidth() const;  ///< device units, at least 1
    bool hasPen() const { return now.pen.style() != PS_NULL; }
    bool hasBrush() const { return now.brush.kind() != CBrush::Kind::hollow; }
    Ink inkOf(const CBrush& brush, int rop2) const;
    WideLine& wideLineOf(int width);

    /// The page, or the device for soft edges; null when the pixel rules hold. Knows the clip.
    VectorDevice* vector();
    VectorDevice* page() { return backend && backend->page() ? vector() : nullptr; }
    /// The page for something that stays within `painted`. It is not told of a clip that cuts
    /// nothing of that: the cells of a table would each leave theirs in a file.
    VectorDevice* pageFor(const CRect& painted);
    /// Whether shapes go to vector(): on pages always, else when smooth, possible and COPYPEN.
    bool drawsVectors();
    StrokeStyle strokeStyle() const;
    FillStyle fillStyle(const CBrush& brush) const;

    void stroke(const std::vector<CPoint>& points, bool closed);
    bool strokePiece(std::vector<CPointF>& piece, StrokeStyle& pen);
    void strokeVectors(const CPoint* points, std::size_t count);
    void shape(const std::vector<CPoint>& outlinePoints);
    void fillArea(const CRect& device, const CBrush& brush, int rop2);
    void fillFrame(const CRect& device, double line, const CBrush& brush);
    void paintDashed(const LineRun& run, const PixelPainter& painter, const DashPattern& pattern,
                     std::int64_t phase, const PixelOperation& on, const PixelOperation& off) const;

    // text
    LOGFONT deviceFont() const;
    const TextFace* face() const;
    TEXTMETRIC deviceMetrics() const;
    int deviceWidth(std::string_view text) const;
    void drawLine(CPoint device, std::string_view text);
    /// Draws a line from the pictures of its characters; false when that cannot be done.
    bool drawGlyphs(CPoint device, std::string_view text, const TextFace& known);
    std::vector<PlacedGlyph> glyphs;  ///< reused from text to text
    void fillTextBackground(CPoint device, int width, int height, int escapement);
};

}  // namespace pavane
