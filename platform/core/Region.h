#pragma once

#include "platform/geometry.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Pixels a .. b-1 of a row.
struct Run {
    int a;
    int b;
    friend bool operator==(const Run&, const Run&) = default;
};

/// A set of pixels as bands of rows with the same runs: bands from top to bottom, runs from left to
/// right, neither empty, touching runs and equal touching bands joined.
class Region
{
public:
    struct Band {
        int top;
        int bottom;
        std::size_t first;  ///< of runs()
        std::size_t count;
    };

    Region() = default;
    explicit Region(const CRect& rect);

    bool empty() const { return bands_.empty(); }
    /// Smallest rectangle around the pixels; all zero when there are none.
    CRect box() const;
    /// NULLREGION, SIMPLEREGION (one rectangle) or COMPLEXREGION.
    int kind() const;
    bool contains(int x, int y) const;
    bool overlaps(const CRect& rect) const;
    void offset(int dx, int dy);
    /// a and b combined by RGN_AND, RGN_OR, RGN_XOR or RGN_DIFF; RGN_COPY gives a.
    static Region combined(const Region& a, const Region& b, int mode);

    /// Adds the rows top .. bottom-1 below all others; `runs` as the class says.
    void append(int top, int bottom, const std::vector<Run>& runs);

    const std::vector<Band>& bands() const { return bands_; }
    const Run* runs(const Band& band) const { return runs_.data() + band.first; }
    /// First band that ends below row y; bands().size() when there is none.
    std::size_t bandFrom(int y) const;

private:
    std::vector<Band> bands_;
    std::vector<Run> runs_;
};

}  // namespace pavane
