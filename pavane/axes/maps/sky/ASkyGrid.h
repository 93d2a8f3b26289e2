#pragma once

#include "pavane/axes/ABSkyGrid.h"
#include "pavane/axes/maps/MapFrame.h"
#include "tessel/sky_grid.h"

#include <array>
#include <cstdint>
#include <vector>

namespace pavane
{

/// How much of a grid is shown.
enum class SkyGridShown : std::uint8_t { none, ticks, lines };

/// Lines of longitude and latitude over a map, in the frame of the map or in another, with the
/// ticks, labels and titles that belong to them: make it in the axis of the map, then give it to
/// A2DAxis::setSkyGrid. Lines that meet no labelled edge, round a pole or on a map of all the sky,
/// have their label inside the plot. Where the map has no place on the sky it shows nothing.
class PAVANE_API ASkyGrid : public ABSkyGrid
{
public:
    /// `sky` has to outlive the grid; `frame` says where its cells lie on the axes.
    ASkyGrid(ABAxis* axis, const SkyCoordinates& sky, const MapFrame& frame);

    /// Lines at first.
    void setShown(SkyGridShown shown);
    SkyGridShown shown() const { return shown_; }
    /// That of the map at first; one that is not known shows nothing.
    void setFrame(const SkyFrame& frame);
    const SkyFrame& frame() const { return skyFrame_; }
    void setLabels(SkyLabels labels);
    SkyLabels labels() const { return labels_; }
    void setColor(COLORREF color) { color_ = color; }

    /// Where labels stood inside the plot when it was drawn last, in units of the context.
    const std::vector<CRect>& labelBoxes() const { return boxes_; }
    /// The lines that are drawn, after a layout.
    const std::vector<SkyGridLine>& lines(int isLatitude);

    int prepare(const ABAxis& axis) override;
    TickSet edgeTicks(int isY, int intervals) override;
    void shortenLabels(int isY, TickSet& set) override;
    TickSet oppositeTicks(int isY) override;
    std::vector<double> minorTicks(int isY, int isOpposite) override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    struct Crossed {
        int isLatitude = 0;
        CellEdge edge = CellEdge::bottom;
        double step = 0;
        std::vector<SkyCrossing> crossings;
    };

    void chooseKinds();
    void forget();
    double rpOf(const CellPoint& cell, int isY) const;
    SkySteps insideSteps(int isLatitude) const;
    const std::vector<SkyCrossing>& crossings(int isLatitude, CellEdge edge);
    CString titleOf(int isLatitude) const;
    void drawLines(CDC& dc, int isLatitude);
    void drawPieces(CDC& dc, const std::vector<std::vector<CellPoint>>& pieces) const;
    void drawInsideLabels(CDC& dc);
    int placeLabel(CDC& dc, const SkyGridLine& line, int height, CRect& box) const;
    double costOf(const SkyGridLine& line, const CellPoint& cell, const CPointF& at) const;
    int isLabelled(int isLatitude, double k) const;

    const SkyCoordinates& sky_;
    MapFrame mapFrame_;
    SkyFrame skyFrame_;
    SkyGridShown shown_ = SkyGridShown::lines;
    SkyLabels labels_ = SkyLabels::usual;
    COLORREF color_;

    // for the range that was prepared last
    TMinMax range_;
    int isReady_ = 0;
    int xGrowsLeft_ = 0;
    SkyGrid grid_;
    int kinds_[2] = {0, 1};  ///< of the lower and the left edge: 0 longitudes, 1 latitudes
    std::array<SkySteps, 2> steps_;
    std::vector<Crossed> crossed_;
    std::vector<SkyGridLine> lines_[2];
    double lineSteps_[2] = {};         ///< of the lines that were traced, 0 for none
    std::vector<double> labelled_[2];  ///< lines with a label at the lower and the left edge
    std::vector<std::vector<CellPoint>> limb_;
    int hasLimb_ = 0;  ///< it was traced
    std::vector<CRect> boxes_;
};

}  // namespace pavane
