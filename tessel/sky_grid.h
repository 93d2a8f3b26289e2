#pragma once

#include "tessel/api.h"
#include "tessel/sky_steps.h"
#include "tessel/sky_turn.h"
#include "tessel/SkyCoordinates.h"

#include <array>
#include <cstdint>
#include <vector>

namespace pavane
{

/// A part of the plane of a map in cells (MP, from 0, whole numbers at cell centres); the ends may
/// lie anywhere.
struct CellRectangle {
    double left = 0, right = 0;  ///< columns
    double bottom = 0, top = 0;  ///< rows
};

struct CellPoint {
    double column = 0, row = 0;
};

enum class CellEdge : std::uint8_t { bottom, top, left, right };

/// Where a line leaves the rectangle.
struct SkyCrossing {
    CellEdge edge = CellEdge::bottom;
    CellPoint at;
    double k = 0;  ///< which line: see SkySteps
};

/// A line of one longitude or latitude inside the rectangle.
struct SkyGridLine {
    int isLatitude = 0;
    double k = 0;                                ///< which line of its steps
    double value = 0;                            ///< degrees in the frame of the grid
    std::vector<std::vector<CellPoint>> pieces;  ///< open polylines, at least two points each
};

/// The lines of longitude and latitude that cross a rectangle of a map, in any frame, as values:
/// for every projection of SkyCoordinates, with poles, cuts and limbs. Lines are traced forwards
/// (sky to cells) until they bend by less than the tolerance; where they leave the rectangle is
/// found backwards, along its edges, and does not depend on them.
class PAVANE_API SkyGrid
{
public:
    /// `sky` has to outlive the grid; `tolerance` is in cells. 0, and the grid is without lines,
    /// when nothing is set, a number is not finite, the rectangle is empty, a frame is not known or
    /// no point of the rectangle lies on the sky.
    int init(const SkyCoordinates& sky, const SkyFrame& frame, const CellRectangle& rectangle,
             double tolerance);

    const SkyFrame& frame() const { return frame_; }
    const CellRectangle& rectangle() const { return rectangle_; }

    /// Degrees that the coordinate goes through along an edge, back and forth counted.
    double spanOf(int isLatitude, CellEdge edge) const;
    /// Degrees between its ends in the rectangle, 360 for all longitudes.
    double spanOf(int isLatitude) const;
    /// Non-zero when all longitudes meet in the rectangle or just beside it.
    int hasPole() const { return allLongitudes_; }
    /// Non-zero when a part of the rectangle lies beyond the projected sky.
    int hasLimb() const { return hasLimb_; }

    /// Steps for at most `most` lines on `span` degrees of a coordinate; see SkyLabels.
    SkySteps steps(int isLatitude, SkyLabels labels, double span, int most) const;

    /// Where the lines leave through an edge, along it.
    std::vector<SkyCrossing> crossings(int isLatitude, const SkySteps& steps, CellEdge edge) const;
    /// All lines of a coordinate that cross the rectangle, in order; a line on which the projection
    /// is cut is drawn on both sides of the cut. Too many lines give none.
    std::vector<SkyGridLine> lines(int isLatitude, const SkySteps& steps) const;
    /// The border of the projected sky inside the rectangle.
    std::vector<std::vector<CellPoint>> limb() const;

    int toSky(const CellPoint& cell, double& longitude, double& latitude) const;
    int toCell(double longitude, double latitude, CellPoint& cell) const;

private:
    struct Sample {
        double at = 0;  ///< fraction of the edge
        int isOnSky = 0;
        double sky[2] = {};  ///< longitude, latitude
    };
    using EdgeSamples = std::vector<Sample>;

    CellPoint onEdge(CellEdge edge, double at) const;
    Sample sampleOf(CellEdge edge, double at) const;
    void refine(EdgeSamples& samples, CellEdge edge, const Sample& a, const Sample& b,
                int depth) const;
    void survey();
    void findRanges(std::vector<double>& longitudes, double least, double greatest);
    void cross(const Sample& a, const Sample& b, int isLatitude, const SkySteps& steps,
               CellEdge edge, std::vector<SkyCrossing>& found) const;
    int holds(const CellPoint& cell, double beyond) const;
    int isOnCut(int isLatitude, double value, double side) const;
    int shift(int turns, CellPoint& cell) const;

    const SkyCoordinates* sky_ = nullptr;
    SkyFrame frame_;
    SkyTurn turn_;
    CellRectangle rectangle_;
    double tolerance_ = 1;
    std::array<EdgeSamples, 4> edges_;
    double longitudes_[2] = {};  ///< the second above the first, by 360 for all
    double latitudes_[2] = {};
    int allLongitudes_ = 0;
    int hasLimb_ = 0;
};

}  // namespace pavane
