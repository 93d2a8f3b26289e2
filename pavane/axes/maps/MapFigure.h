#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

class AAxisScaleBar;
class ABAxis;
class ABMapGraph;
class CDC;
class FigureLayer;

/// Where the parts of a figure lie, in units of the context that it was laid out for.
struct FigureLayout {
    CRect all;
    CRect axis;  ///< the room of the plot with its labels and titles
    CRect plot;  ///< the graph rectangle, both ends included
    CRect bar;   ///< empty without one and where there is no room for it
    CRect otherBar;
    /// Of a plot without a bar and with cells of any shape, in pixels of 96 per inch.
    CRect margins;
    CRect border{-1, -1, -1, -1};  ///< bounds with which the axis gets this plot
    int barRoom = 0;               ///< that the bars take from the axis, in pixels of 96 per inch
    int fontHeight = 0;
    int isEmpty() const { return plot.IsRectEmpty(); }
};

/// The whole picture of a plot: an axis with its graphs, the bar that explains the values of a map,
/// and layers over it. It is laid out for any context by the same rules, whatever the units of
/// that, so that windows, pictures and pages agree. Owns nothing; what it is given has to outlive
/// its use.
class PAVANE_API MapFigure
{
public:
    /// Forgets the map and the bars. Null: a white figure.
    void setAxis(ABAxis* axis);
    /// The graph whose cells are kept square; null for none.
    void setMap(const ABMapGraph* map) { map_ = map; }
    /// Right of the plot, or below it when it is a horizontal one; null for none.
    void setBar(AAxisScaleBar* bar) { bar_ = bar; }
    /// A second one, right of the first or below it; null for none.
    void setOtherBar(AAxisScaleBar* bar) { otherBar_ = bar; }
    /// Non-zero, as at first, keeps the cells of the map square.
    void setSquareCells(int on) { square_ = on; }
    /// Non-zero: a unit is as long in x as in y, where there is no map.
    void setEqualUnits(int on) { equalUnits_ = on; }
    /// Non-zero leaves no room around plot, labels and bar: the figure is a panel of a larger one.
    void setPanel(int on) { panel_ = on; }
    /// Bars take at least so many pixels of 96 per inch, the room before them included; 0 at first.
    void setLeastBarRoom(int pixels) { leastBarRoom_ = pixels; }
    /// Layers are drawn in the order in which they were added, inside the plot.
    void addLayer(FigureLayer* layer) { layers_.push_back(layer); }
    void clearLayers() { layers_.clear(); }

    /// For windows: axis, graphs and bars take over what the module's functions have set since they
    /// were made (ABAxis::followModule).
    void followModule() const;
    /// Places the parts inside `rect` of the context and leaves the axis with this plot. A page is
    /// laid out as a picture of its size would be. The plot keeps within the bounds that a host
    /// gave its axis, in pixels of 96 per inch from the edges of `rect`, and within `least`, the
    /// margins of another layout for this size; null for none.
    FigureLayout layOut(CDC& dc, const CRect& rect, const CRect* least = nullptr) const;
    /// Draws a figure that was laid out for this context: white ground (none in a transparent one),
    /// axis with graphs, bar and layers, with soft edges where the context can.
    void draw(CDC& dc, const FigureLayout& layout) const;

private:
    FigureLayout layOutInPixels(CDC& dc, const CRect& rect, const CRect* least) const;
    int breadthOf(CDC& dc, AAxisScaleBar& bar) const;
    void placeBar(CDC& dc, const CRect& inner, FigureLayout& layout) const;
    void makeSquare(CDC& dc, const FigureLayout& layout) const;

    ABAxis* axis_ = nullptr;
    const ABMapGraph* map_ = nullptr;
    AAxisScaleBar* bar_ = nullptr;
    AAxisScaleBar* otherBar_ = nullptr;
    int square_ = 1;
    int equalUnits_ = 0;
    int panel_ = 0;
    int leastBarRoom_ = 0;
    std::vector<FigureLayer*> layers_;
};

}  // namespace pavane
