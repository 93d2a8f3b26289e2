#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvClasses.h"
#include "tessel/uvfits/UvGroupScan.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvPlotRows.h"
#include "tessel/uvfits/UvSlices.h"
#include "tessel/uvfits/UvView.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class UvChoice;
class UvTimeMeans;

/// A visibility in a plot, or a mean of some, as its UvView has it.
struct UvPlotPoint {
    float x = 0, y = 0;
    std::uint32_t group = 0;   ///< from 0, of a mean the first
    std::uint16_t colour = 0;  ///< its class (UvClasses)
};

/// Points of many at once, an array for each of their numbers.
struct UvPointBlock {
    std::vector<float> x, y;
    std::vector<std::uint32_t> group;
    std::vector<std::uint16_t> colour;  ///< empty without colours
};

/// Reads all groups of a file once, in slices, and keeps what a plot of single visibilities shows:
/// those that are marked, not flagged and finite; of the coverage a channel is one point, whatever
/// its hands. Where the view has means, these are the points. May be dropped at any time. The file
/// outlives it.
///
/// Memory has a limit: when there are more points than that, half of them go, chosen evenly, again
/// and again; ranges and counts are always those of all. Of a most of 0 points
/// nothing but those.
class PAVANE_API UvPlotPoints
{
public:
    static constexpr std::size_t usualMost = std::size_t{1} << 24;

    UvPlotPoints(AUVXFile& file, UvMarks marks, std::size_t mostPoints = usualMost,
                 const UvView& view = {});
    UvPlotPoints(const UvPlotPoints&) = delete;
    UvPlotPoints& operator=(const UvPlotPoints&) = delete;
    ~UvPlotPoints();

    /// Goes on with some `bytes` of the file, one block at the least. Non-zero while more remains;
    /// 0 when all is done, or cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    /// 0 to 1.
    double done() const { return slices_.done(); }
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }

    /// Of the groups so far. Counts are of all visibilities, the ranges of what is plotted.
    const UvTotals& totals() const { return totals_; }
    const UvRange& range() const { return range_; }
    const UvView& view() const { return placing_.view(); }
    /// Visibilities, or means, so far that are plotted, kept or not.
    std::int64_t plotted() const { return plotted_; }
    /// About one in so many of them is kept; 1: all are.
    std::int64_t thinning() const { return thinning_; }
    const std::vector<UvPointBlock>& blocks() const { return blocks_; }
    const UvMarks& marks() const { return marks_; }
    /// What colours tell apart so far; of a view without colours nothing.
    std::vector<UvClass> classes() const { return classes_.classes(); }

    /// A point of the plane of u and v, in wavelengths.
    struct Place {
        double u, v;
    };
    /// Some thousands of the places of what is plotted, evenly chosen; all while they are few.
    const std::vector<Place>& places() const { return places_; }

    /// The point nearest to a place of the plot where a pixel is so much of x and y. Non-zero when
    /// one, or in the coverage its mirror image, lies within `reach` pixels.
    int nearest(double x, double y, double xOfPixel, double yOfPixel, double reach,
                UvPlotPoint& point) const;
    /// Reads the group of a point again. Non-zero when the visibility was found there; 0 when the
    /// file has changed.
    int originOf(const UvPlotPoint& point, UvPointOrigin& origin);

private:
    void takeGroup(const UvGroups& groups, int i);
    void averageGroup(const UvGroups& groups, int i);
    void takeMean(const UvPointOrigin& mean);
    int hasColours() const { return classes_.by() != UvColour::none; }
    void keep(double x, double y, std::int64_t group, std::uint16_t colour);
    void append(const UvPlotPoint& point);
    void keepPlace(double u, double v);
    void thinOut();
    int findOrigin(const UvPlotPoint& point, UvPointOrigin& origin);
    int findMean(const UvPlotPoint& point, UvPointOrigin& origin);

    AUVXFile& file_;
    UvSlices slices_;
    UvMarks marks_;
    std::size_t mostPoints_;
    UvPlacing placing_;
    UvTotals totals_;
    UvRange range_;
    std::int64_t plotted_ = 0;
    std::int64_t thinning_ = 1;
    std::size_t kept_ = 0;
    std::vector<UvPointBlock> blocks_;
    std::int64_t placeStep_ = 1;
    std::vector<Place> places_;
    std::unique_ptr<UvChoice> choice_;
    UvClasses classes_;
    std::unique_ptr<UvTimeMeans> means_;  ///< null: each visibility by itself
    UvPointOrigin lastMean_;
};

}  // namespace pavane
