#pragma once

#include "platform/core/CurveSpans.h"
#include "platform/core/PixelPainter.h"
#include "platform/geometry.h"
#include "platform/smooth_curve.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace pavane
{

/// Strokes a curve whose x never falls, with a round pen and soft edges, as one figure: a pixel is
/// covered by the part of it that any of the curve's lines covers, however many of them cross it.
///
/// At each x such a stroke is one interval from the lower to the upper end of what the pen covers.
/// It is looked at in the middle of many parts of each pixel, and what the intervals of a column
/// cover of each row is summed up. The time is that of reading the points, plus one that only the
/// size of the picture sets. Points may be as far away as a double goes.
class RisingStroke
{
public:
    /// On `surface`, within the box of `clip`; `width` in units of the surface.
    RisingStroke(const PixelSurface& surface, const Region& clip, double width);
    /// Adds the points, once; 0 when their x turns back, gaps part them too often, or they are few
    /// and steep, and then nothing may be painted.
    int add(const CurveData& curve);
    /// Paints what was added. Nothing may follow.
    void paint(std::uint32_t pixel);

private:
    /// What a piece covers in the middle of a part that another piece covers elsewhere.
    struct Shared {
        int part;  ///< of the strip
        float low;
        float high;
    };

    int read(const CurveData& curve, int parts, double steepest);
    void shapePen();
    void coverStrip(std::int64_t firstPart);
    void coverPiece(const CurveSpans::Piece& piece, std::int64_t firstPart);
    void coverDot(CPointF p, int from, int to, std::vector<float>& low, std::vector<float>& high);
    void fillStrip(int from, int to);
    void joinPiece(int from, int to);
    void coverShared();
    void cover(int column, float from, float to);
    void blendStrip(int left, int columns, std::uint32_t pixel);

    PixelSurface surface_;
    CRect box_;  ///< pixels
    double radius_;
    int parts_ = 1;       ///< of a pixel
    int stripParts_ = 1;  ///< of a strip
    int reach_ = 1;       ///< radius in parts
    std::optional<CurveSpans> spans_;
    std::vector<float> shape_;
    std::vector<float> source_;
    std::vector<float> high_;  ///< ends of the parts of a strip, the low ones negated
    std::vector<float> low_;
    std::vector<float> pieceHigh_;
    std::vector<float> pieceLow_;
    std::vector<std::int32_t> ends_;
    std::vector<std::uint32_t> differences_;
    std::vector<Shared> shared_;
    std::size_t firstPiece_ = 0;
    bool blank_ = true;  ///< nothing is in the strip so far
    int firstRow_ = 0;   ///< of the differences that were changed
    int lastRow_ = 0;
};

}  // namespace pavane
