#pragma once

#include "platform/geometry.h"
#include "platform/smooth_curve.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace pavane
{

/// What a curve whose x never falls spans along y within each of many parts of equal width, all of
/// width 1. Parts 0 up to the number given are in view, those up to `margin` beside them matter.
/// Stretches that are straight but for a small part of a pixel are led as one line; of the other
/// points within a part only the extremes count.
class CurveSpans
{
public:
    /// A part of the curve between gaps.
    struct Piece {
        std::int64_t first;  ///< part
        std::size_t at;      ///< of its first part in high() and low()
        std::size_t count;   ///< of parts
        CPointF start;       ///< its first point in view
        CPointF stop;        ///< its last point in view
    };
    /// Rows are kept within `top` and `bottom`. Curves that rise or fall by more than `steepest`
    /// rows a part, or turn sharply, are refused.
    CurveSpans(std::int64_t parts, int margin, double top, double bottom, double steepest);
    /// Reads points given in parts and rows, once. Returns 0 when their x turns back, when gaps
    /// part them too often, or when they are too steep, and is of no use then.
    int read(const CurveData& curve);
    bool isTooSteep() const { return tooSteep_; }
    const std::vector<Piece>& pieces() const { return pieces_; }
    /// Greatest row of each part, and negated least one.
    const std::vector<float>& high() const { return high_; }
    const std::vector<float>& low() const { return low_; }

private:
    int readRising(const CurveData& curve);
    std::int64_t straightFrom(const CurveData& curve, std::int64_t i, CPointF last);
    std::int64_t readSparse(const CurveData& curve, std::int64_t i, CPointF last);
    std::int64_t readRough(const CurveData& curve, std::int64_t i, CPointF last);
    std::int64_t readPart(const CurveData& curve, std::int64_t i, CPointF from);
    bool isInView(double x) const { return x >= least_ && x <= most_; }
    float row(double y) const;
    void begin(CPointF p);
    void close();
    void widen(double low, double high);
    void lead(CPointF from, CPointF to);
    void mirror();

    std::int64_t parts_;
    double least_;  ///< x in view
    double most_;
    double top_;
    double bottom_;
    double steepest_;
    bool tooSteep_ = false;
    std::int64_t stretch_;      ///< points that may be straight
    std::int64_t nextTry_ = 0;  ///< point from which on they may
    std::vector<Piece> pieces_;
    std::vector<float> high_;
    std::vector<float> low_;
    std::int64_t part_ = 0;  ///< that the piece under way has reached
    std::size_t at_ = 0;     ///< of that part
    bool open_ = false;      ///< a piece is under way
    double slope_ = std::numeric_limits<double>::quiet_NaN();  ///< of its last line
};

}  // namespace pavane
