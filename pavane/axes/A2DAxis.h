#pragma once

#include "pavane/axes/AB2DAxis.h"

#include <functional>

namespace pavane
{

class ABSkyGrid;
struct PlotLayout;
struct TickSet;

/// The ordinary plot: frame, ticks, labels, titles and header line around the graphs.
///
/// In bitmap mode the graphs go into a raster of the graph rectangle, which is painted at the end
/// and, with axisBitmapCache, kept in a file of the user's cache folder until the axis dies. Pages
/// get vectors in either mode.
class PAVANE_API A2DAxis : public AB2DAxis
{
public:
    using AB2DAxis::AB2DAxis;
    int GetAxisType() const override;

    /// Draws everything into `rect`, frame and labels first, so that graphs lie over them.
    void draw(CDC& dc, CRect& rect) override;
    /// Draws the graphs in order, each clipped to the graph rectangle and its overhang. Over one
    /// that fills the plot with colours the frame is drawn again.
    int drawChilds(CDC& dc, CRect& rect, TMinMax& range) override;

    /// Heeds the bounds of the graph rectangle.
    int layOut(CDC& dc, const CRect& rect) override;
    /// The plot then says so.
    int isWithoutData() const override;
    /// A grid that supplies ticks, labels and titles in place of those of the axis, as long as it
    /// has something to show, and whose lines are drawn after all other graphs; null, as at first,
    /// for none. The axis owns it only when it was made in it; another one has to outlive it or to
    /// be taken back by null.
    void setSkyGrid(ABSkyGrid* grid);
    ABSkyGrid* skyGrid() const { return skyGrid_; }
    /// Forgets the cached raster and deletes its file: call it when the data change.
    void dropCache();

protected:
    // For heirs with more than one plot
    /// The cached raster, null when there is none or when it does not cover `rect`.
    ADIBase* loadRaster(const CRect& rect);
    /// Keeps the raster in a file that nobody else has made; a failure leaves no file.
    void storeRaster();
    void drawNoData(CDC& dc);

private:
    int composeLayout(CDC& dc, const CRect& rect, PlotLayout& layout);
    int composeOnPage(const CDC& dc, const CRect& rect, PlotLayout& layout);
    int compose(CDC& dc, const CRect& rect, PlotLayout& layout);
    TickSet xTicks(int intervals) const;
    TickSet yTicks(int intervals) const;
    void chooseXTicks(CDC& dc, PlotLayout& layout);
    void chooseYTicks(CDC& dc, PlotLayout& layout);
    void boundGraphRect(PlotLayout& layout) const;
    void drawFrame(CDC& dc);
    void drawTicks(CDC& dc, const PlotLayout& layout);
    void strokeTicks(const PlotLayout& layout, const std::function<void(CPoint, CPoint)>& stroke);
    void frameRaster(const PlotLayout& layout);
    void drawLabels(CDC& dc, const PlotLayout& layout);
    void drawTitles(CDC& dc, const PlotLayout& layout);
    void drawGrid(const PlotLayout& layout);
    void drawInContext(CDC& dc, CRect& rect);
    void drawInRaster(CDC& dc, CRect& rect, const PlotLayout& layout);

    void finishSkyTicks(CDC& dc, PlotLayout& layout);

    ABSkyGrid* skyGrid_ = nullptr;
    int hasSkyTicks_ = 0;                      ///< the grid has something to show in this range
    const PlotLayout* drawnLayout_ = nullptr;  ///< while draw runs
};

}  // namespace pavane
