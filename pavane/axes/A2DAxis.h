#pragma once

#include "pavane/axes/AB2DAxis.h"

namespace pavane
{

struct PlotLayout;

/// The ordinary plot: frame, ticks, labels, titles and header line around the graphs.
///
/// In bitmap mode the graphs go into a raster of the graph rectangle, which is painted at the end
/// and, with axisBitmapCache, kept in a file of the user's cache folder until the axis dies.
class PAVANE_API A2DAxis : public AB2DAxis
{
public:
    using AB2DAxis::AB2DAxis;
    int GetAxisType() const override;

    /// Draws everything into `rect`.
    void draw(CDC& dc, CRect& rect) override;

    /// Fixes the range, the font height and the graph rectangle for a picture of `rect` without
    /// drawing, as draw does itself; so a host can make square cells: lay out, compare
    /// getGraphRect with its map, set bounds by setBorderRect, draw. Non-zero when a graph
    /// rectangle with pixels in it is left.
    int layOut(CDC& dc, const CRect& rect);

private:
    void composeLayout(CDC& dc, const CRect& rect, PlotLayout& layout);
    void drawFrame(CDC& dc, const PlotLayout& layout);
    void drawTexts(CDC& dc, const PlotLayout& layout);
    void drawRaster(CDC& dc, CRect& rect, const PlotLayout& layout);
    void drawGrid(CDC& dc, const PlotLayout& layout);
};

}  // namespace pavane
