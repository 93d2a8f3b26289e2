#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/maps/beam_mark.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/cells/pixel_cells.h"
#include "pavane/axes/ranges/TMinMax.h"

#include <vector>

namespace pavane
{

class StopFlag;

/// A graph of a map: the base of colour maps and contours. Knows the matrix, where its cells lie,
/// its titles, its header lines and its beam, and draws the beam, or the words "no data" over a map
/// without any finite cell.
///
/// The centres of the first and last column and row (RP) place the cells; the first may exceed the
/// last, as in a map whose right ascension falls with the column. The range of the graph is the
/// centres and half a cell more on each side.
class PAVANE_API ABMapGraph : public AGraph
{
public:
    /// `cells` is not owned and has to outlive the graph. Of `centres` xMin and yMin belong to the
    /// first column and row, xMax and yMax to the last; its z pair, when set, is the range of
    /// values to draw instead of that of the cells.
    ABMapGraph(ABAxis* axis, const AMatrixAccess& cells, const TMinMax& centres, int asItem);

    const AMatrixAccess& cells() const { return *cells_; }
    const TMinMax& centres() const { return centres_; }
    void setCentres(const TMinMax& centres) { centres_ = centres; }
    /// Forgets what is known of the cells; call it after changing them.
    virtual void cellsChanged();

    /// Titles with the markers of AB2DAxis, for example "[%sJy/beam]" for z.
    void setNames(const CString& x, const CString& y, const CString& z);
    void setHeaderText(int index, const CString& text);
    /// The first header line as long as no other is given, and again when that is dropped.
    void setUsualHeader(const CString& text) { usualHeader_ = text; }
    void dropHeaderText() { hasOwnHeader_ = 0; }
    int hasOwnHeader() const { return hasOwnHeader_; }
    /// The beam in units of RP; drawn in a corner as its look says, at first hatched in the lower
    /// left one. Without one, none is drawn.
    void setBeam(const MapBeam& beam) { beam_ = beam; }
    const MapBeam& beam() const { return beam_; }
    void setBeamLook(const BeamLook& look) { beamLook_ = look; }
    const BeamLook& beamLook() const { return beamLook_; }

    /// Looked at while cells are read for what is kept of them: once it is up nothing is found out
    /// and nothing kept. Not owned; null, as at first, for none. Drawing into a context with a flag
    /// (CDC::setStop) looks at that.
    void setStop(const StopFlag* stop) const { stop_ = stop; }
    const StopFlag* stop() const { return stop_; }

    // What is found out about the cells at the first question and kept until cellsChanged.
    const MapRange& cellRange() const;
    const MapNoise& noise() const;
    /// What a host has found out about the cells already, for the same cells.
    void setStatistics(const MapRange& range, const MapNoise& noise);
    /// The values to draw: the z pair of the centres when it is set, else the range of the cells;
    /// unset for a map without finite cells.
    virtual TMnMx zRange() const;

    /// Columns and rows (MP) of data values (RP), with fractions; cell k reaches half a cell to
    /// both sides of k. And back.
    double RPXtoMPX(double x) const { return (x - centres_.xMin) / stepX(); }
    double RPYtoMPY(double y) const { return (y - centres_.yMin) / stepY(); }
    double MPXtoRPX(double column) const { return centres_.xMin + column * stepX(); }
    double MPYtoRPY(double row) const { return centres_.yMin + row * stepY(); }
    /// Which cells `pixels` device pixels from `first` on show, across or down the graph rectangle,
    /// each cut into `ratio` finer ones.
    PixelCells columnsOfPixels(int first, int pixels, int ratio = 1) const;
    PixelCells rowsOfPixels(int first, int pixels, int ratio = 1) const;

    CString GetOXName() const override { return nameX_; }
    CString GetOYName() const override { return nameY_; }
    CString GetOZName() const override { return nameZ_; }
    CString& getOY(CString& name) const override;
    int hasHeaderText(int index) const override;
    CString getHeaderText(int index) const override;
    void getMinMax(TMinMax& range) const override;
    /// Says that the map will be drawn again and again with other ranges, as in a window: the first
    /// drawing may then take memory and time that make the later ones fast.
    void setShownOften(int on) { shownOften_ = on; }
    int isShownOften() const { return shownOften_; }
    /// Draws the beam or the words; derived graphs draw their cells first and then call this.
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

protected:
    /// RP between neighbouring columns and rows; a map one cell wide takes the other direction's.
    double stepX() const;
    double stepY() const;

private:
    void drawNoData(CDC& dc) const;

    const AMatrixAccess* cells_;
    TMinMax centres_;
    CString nameX_, nameY_, nameZ_;
    std::vector<CString> headerTexts_;
    CString usualHeader_;
    int hasOwnHeader_ = 0;
    MapBeam beam_;
    BeamLook beamLook_;
    mutable MapRange cellRange_;
    mutable MapNoise noise_;
    mutable int hasRange_ = 0;
    mutable int hasNoise_ = 0;
    mutable const StopFlag* stop_ = nullptr;
    int shownOften_ = 0;
};

/// Lets a graph look at the flag of a context, if that has one, while this lives.
class PAVANE_API MapStop
{
public:
    MapStop(const ABMapGraph& graph, const CDC& dc);
    MapStop(const MapStop&) = delete;
    MapStop& operator=(const MapStop&) = delete;
    ~MapStop() { graph_.setStop(before_); }

private:
    const ABMapGraph& graph_;
    const StopFlag* before_;
};

/// The words over a map without data.
inline constexpr const char* noDataText = "no data";

}  // namespace pavane
