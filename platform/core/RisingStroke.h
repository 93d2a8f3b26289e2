#pragma once

#include "platform/core/PixelPainter.h"
#include "platform/geometry.h"
#include "platform/smooth_curve.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Strokes a curve whose x never falls, with a round pen and soft edges, as one figure: a pixel is
/// covered by the part of it that any of the curve's lines covers, however many of them cross it.
///
/// At each x such a stroke is one interval from the lower to the upper end of what the pen covers,
/// so both ends are followed in steps of a small part of a pixel, and the area between them is
/// summed up exactly. The time is that of reading the points, plus one that only the size of the
/// picture sets. Points may be as far away as a double goes.
class RisingStroke
{
public:
    /// On `surface`, within the box of `clip`; `width` in units of the surface. A pixel is
    /// cut into parts along x, finer ones for curves of many points; of the points within a part
    /// only the extremes decide.
    RisingStroke(const PixelSurface& surface, const Region& clip, double width,
                 const CurveData& curve);
    /// Adds the points; 0 when their x turns back or gaps part them too often, and then nothing may
    /// follow.
    int add(const CurveData& curve);
    /// Paints all that was added. Nothing may follow.
    void paint(std::uint32_t pixel);

private:
    /// A part of the curve between gaps: what it spans in each part of a pixel.
    struct Piece {
        std::int64_t first;  ///< part of a pixel
        std::size_t at;      ///< of its parts in high_ and low_
        std::size_t count;
    };
    /// What a piece covers in a part of a pixel that others may cover as well.
    struct Shared {
        std::int32_t part;
        float low;
        float high;
    };

    template <class X, class Y>
    int addPoints(std::int64_t n, X xAt, Y yAt);
    void begin(std::int64_t part, float y);
    void span(std::int64_t part, float y);
    void line(CPointF from, CPointF to);
    void coverBetween(CPointF from, double slope, std::int64_t first, std::int64_t last);
    float row(double y) const;
    void coverStrip(std::int64_t firstPart);
    void coverPiece(std::size_t index, std::int64_t firstPart);
    void follow(const float* ends, int from, int to, int sign);
    void corner(int column, float y, double weight);
    void step(int column, float y, double weight);
    void coverShared();
    void blendStrip(int left, int columns, std::uint32_t pixel);

    PixelSurface surface_;
    CRect box_;  ///< pixels
    double radius_;
    int parts_;       ///< of a pixel
    int stripParts_;  ///< of a strip
    int reach_;       ///< radius in parts
    std::int64_t partsEnd_;
    std::vector<Piece> pieces_;
    std::vector<float> high_;  ///< greatest and negated least row of each part
    std::vector<float> low_;
    std::vector<float> shape_;
    std::vector<float> source_;
    std::vector<float> highEnds_;
    std::vector<float> lowEnds_;
    std::vector<std::uint32_t> differences_;
    std::vector<Shared> shared_;
    std::size_t firstPiece_ = 0;
    int firstRow_ = 0;  ///< of the differences that were changed
    int lastRow_ = 0;
};

}  // namespace pavane
