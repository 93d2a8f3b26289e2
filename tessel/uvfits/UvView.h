#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/UvGroups.h"

#include <cmath>
#include <cstdint>

namespace pavane
{

/// What visibilities of a plot have in common that are drawn in one colour.
enum class UvColour : std::uint8_t { none, baseline, telescope, ifs, source };

/// What a plot of single visibilities shows of each: its x, its y and its colour.
struct UvView {
    enum class Kind : std::uint8_t {
        distance,   ///< amplitude (Jy) against the distance in the plane of u and v (wavelengths)
        projected,  ///< amplitude against the length of its projection on a direction
        coverage    ///< v against u (wavelengths); a point stands for its mirror image too
    };
    Kind kind = Kind::distance;
    double angle = 0;  ///< of the direction, degrees from v, north, through u, east; of projected
    UvColour colour = UvColour::none;
    double seconds = 0;  ///< above 0: means over so long are plotted (UvTimeMeans)

    friend bool operator==(const UvView&, const UvView&) = default;
    /// Whether points of both have the same x and y, means or not.
    int hasAxesOf(const UvView& other) const { return kind == other.kind && angle == other.angle; }
};

/// Jy, say; squares of single precision do not overflow.
inline double amplitudeOf(const UvVisibility& v)
{
    return std::sqrt(double{v.real} * v.real + double{v.imaginary} * v.imaginary);
}

inline int isFinite(const UvVisibility& v)
{
    return std::isfinite(v.real) && std::isfinite(v.imaginary) && std::isfinite(v.weight);
}

/// Places of visibilities in a view.
class PAVANE_API UvPlacing
{
public:
    explicit UvPlacing(const UvView& view);
    const UvView& view() const { return view_; }
    int isCoverage() const { return view_.kind == UvView::Kind::coverage; }
    /// x of (u, v), in the unit that these are in.
    double x(double u, double v) const;
    /// y of a visibility at v.
    double y(double v, double amplitude) const { return isCoverage() ? v : amplitude; }

private:
    UvView view_;
    double east_ = 0, north_ = 1;
};

}  // namespace pavane
