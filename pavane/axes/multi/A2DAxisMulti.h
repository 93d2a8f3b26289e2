#pragma once

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/multi/AYScale.h"
#include "pavane/axes/multi/MultiLayout.h"

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace pavane
{

class AGraphXYErrors;

/// Where a legend stands.
enum LegendCorner : int {
    legendNone = -1,     ///< as at first
    legendEmptiest = 0,  ///< where it hides the fewest points
    legendTopLeft = 1,
    legendTopRight = 2,
    legendBottomLeft = 3,
    legendBottomRight = 4,
    legendAbove = 5  ///< one for all panels, in lines over them
};

/// A plot of one x direction and any number of y scales, side by side in one plot or in panels one
/// below another, on as many pages as they need.
///
/// Scale 0 is the one that every axis has: its title, digits and intervals are those of ABAxis, and
/// trackers live in it. A graph registered with asItem 0 belongs to it; one with asItem non-zero to
/// the scale with the name that it proposes (getOY), which is made when there is none, and to one
/// of its own when it proposes none. Graphs are sorted so at the next layout, as they register
/// before they are whole.
///
/// While a graph is drawn, its scale is the current one: y range, code, logarithms and graph
/// rectangle of the axis are those of the scale. As long as nothing but scale 0 is used, the
/// picture is that of A2DAxis.
class PAVANE_API A2DAxisMulti : public A2DAxis
{
public:
    using A2DAxis::A2DAxis;
    int GetAxisType() const override;

    // Scales, from 0
    /// Its index.
    int addScale(const AYScale& scale);
    /// Those that were added, and scale 0; after a layout also those that graphs brought.
    int getScaleCount() const { return 1 + static_cast<int>(scales_.size()); }
    /// As it is now, its range repaired; a new one for an index that is none.
    AYScale getScale(int index) const;
    /// Non-zero when there is that scale. No other scale changes.
    int setScale(int index, const AYScale& scale);
    /// Later scales move down. 0 for scale 0, and while a graph uses it.
    int deleteScale(int index);
    /// -1 for a graph of another axis, and for one that waits for the next layout.
    int getScaleOf(const AGraph* graph) const;
    /// Non-zero when there are that graph and that scale.
    int setScaleOf(const AGraph* graph, int index);
    /// The current scale, 0 outside of drawing unless a host sets another. Non-zero when there is
    /// that scale.
    int setCurrentScale(int index);
    int getCurrentScale() const { return reserved_; }
    /// Makes x and all scales take their ranges from the graphs at the next layout.
    void resetRanges();
    // For windows that zoom
    /// Another range in view: what the host asked for with addScale or setScale is kept beside it.
    int showRange(int index, const TMnMx& range);
    /// The range that the host gave to the scale; unset for none.
    TMnMx getAskedRange(int index) const;
    /// A number that the scale keeps while others are deleted before it; -1 for no scale.
    int getScaleId(int index) const;
    /// Finds the ranges that are not set from the graphs, as a layout does.
    void findRanges();

    // Panels, numbered from 0 from the top of the first column on
    /// Panels stand in columns, so many rows of them on a page; with 0 rows all on one. A page has
    /// `panelsOfPage` of them at most, with 0 as many as its columns and rows.
    void setPanels(int columns, int rowsOfPage, int panelsOfPage = 0);
    int getPanelCount() const;
    /// What lies between panels, in heights of the font; 0.5 at first. More where captions stand.
    void setPanelGap(double fontHeights);
    /// A line of text over a panel; with a gap of 0, and where panels are very flat, inside it, in
    /// the corner where it hides the fewest points.
    void setPanelCaption(int panel, const CString& caption);
    CString getPanelCaption(int panel) const;
    /// The page that is drawn, from 0; pages that are not there become the nearest one.
    int getPages() const;
    void setPage(int page);
    int getPage() const;
    /// Names of graphs (setGraphName) with their lines and markers: a LegendCorner. Each stands in
    /// the first panel of a page that has such a graph.
    void setLegend(int corner);
    int getLegend() const { return legend_; }
    /// Non-zero when x counts something: ticks stand at whole numbers alone.
    void setWholeX(int on);

    // After layOut or draw
    /// The plot of a panel, its edges included; empty when it is not on the page.
    CRect getPanelRect(int panel) const;
    /// Where the y axis of a scale stands, title included; empty when it is not drawn.
    CRect getScaleRect(int scale) const;
    MultiHit hitTest(CPoint point) const { return layout_.hitTest(point); }
    /// All of it.
    const MultiLayout& getLayout() const { return layout_; }
    using A2DAxis::GPYtoRPY;
    using A2DAxis::RPYtoGPY;
    int RPYtoGPY(int scale, double y) const;
    double GPYtoRPY(int scale, int gy) const;

    // Drawing
    void draw(CDC& dc, CRect& rect) override;
    int drawChilds(CDC& dc, CRect& rect, TMinMax& range) override;
    int layOut(CDC& dc, const CRect& rect) override;
    int addChild(AGraph* graph) override;
    int addChildItem(AGraph* graph) override;
    /// Deletes a graph of this axis; non-zero when it was there.
    int deleteGraph(AGraph* graph);
    /// The data of a graph have changed; ranges stay as they are.
    void setChanged(AGraph* graph);
    /// Draws the panels of changed graphs anew over the picture that draw made in `rect` of such a
    /// context, and nothing else. 0, with nothing drawn, when all has to be: something else
    /// changed, or the picture was another one.
    int drawChanged(CDC& dc, CRect& rect);

protected:
    void setUpLogMnMx(TMinMax& range) override;
    TMinMax& createMinMax() override;

private:
    /// What of a scale is swapped into the axis while it is the current one.
    struct Scale {
        AYScale spec;
        TMnMx logs;
        CRect plot;
        TMnMx asked;  ///< by the host
        int id = 0;
    };
    /// Puts the scale back that was current.
    class CurrentScale
    {
    public:
        explicit CurrentScale(A2DAxisMulti& axis) : axis_(axis), before_(axis.reserved_) {}
        CurrentScale(const CurrentScale&) = delete;
        CurrentScale& operator=(const CurrentScale&) = delete;
        ~CurrentScale() { axis_.setCurrentScale(before_); }

    private:
        A2DAxisMulti& axis_;
        int before_;
    };

    Scale& stored(int index);
    void park();
    void unpark(int index);
    int indexOfGraph(const AGraph* graph) const;
    int knownScaleOf(const AGraph* graph) const;
    int isOrdinary() const;
    void sortGraphs();
    std::vector<int> scalesOfGraphs() const;
    std::vector<COLORREF> colorsOfScales(const std::vector<int>& scalesOf) const;
    MultiWish wish(CDC& dc, const CRect& rect) const;
    void findPlots();
    int composeAll(CDC& dc, const CRect& rect);
    void placeLegends(CDC& dc);
    void placeLegendAbove(CDC& dc);
    std::vector<int> namedGraphs() const;
    void placeLegend(CDC& dc, const MultiLayout::Panel& panel, std::set<CString>& seen);
    CRect legendBox(const MultiLayout::Panel& panel, CSize size) const;
    int hiddenPoints(const MultiLayout::Panel& panel, const CRect& box, std::int64_t most) const;
    void placeCaption(MultiLayout::Text& text) const;
    void placeCaptions();
    void placeAnew(CDC& dc, const std::vector<const MultiLayout::Panel*>& panels);
    void keepOrdinaryLayout(CDC& dc, const CRect& rect);
    const MultiLayout::Panel* panelOfScale(int scale) const;
    int roomBelow(const MultiLayout::Panel& panel) const;
    COLORREF colorOf(int isColored, COLORREF color) const;

    void drawAll(CDC& dc, CRect& rect);
    void drawFurniture(CDC& dc, const CRect* part);
    void drawPanelGrid(const MultiLayout::Panel& panel);
    void drawPanelFrame(CDC& dc, const MultiLayout::Panel& panel);
    void drawTexts(CDC& dc, const CRect& part, MultiPart where);
    void drawLegends(CDC& dc, const CRect& part);
    void drawGraphs(CDC& dc, CRect& rect, const MultiLayout::Panel* only);
    void drawGraph(CDC& dc, CRect& rect, AGraph& graph, const MultiLayout::Panel& panel);
    void drawRun(CDC& dc, CRect& rect, int first, int last, const MultiLayout::Panel* only);
    int hasPoints(int index) const;
    CPointF placeOf(const CRect& plot, const DirectionMap& map, double rx, double ry) const;
    int hiddenBars(const AGraphXYErrors& graph, int i, const CRect& plot, const DirectionMap& map,
                   const CRect& box) const;
    void drawMultiRaster(CDC& dc, CRect& rect);
    void rasterPanel(CDC& dc, CRect& rect, const MultiLayout::Panel& panel, ADIBase& whole);
    CRect reachOf(const MultiLayout::Panel& panel) const;
    std::vector<double> stateNow(CDC& dc, const CRect& rect) const;
    void drawPanelAnew(CDC& dc, CRect& rect, const MultiLayout::Panel& panel);

    std::vector<Scale> scales_;  ///< from scale 1 on
    Scale zero_;  ///< what of scale 0 ABAxis has no place for, or while another is current
    std::map<const AGraph*, int>
        scaleOf_;  ///< of the graphs that are not in scale 0; -1: to be sorted
    std::map<int, CString> captions_;
    int columns_ = 1;
    int rows_ = 0;
    int page_ = 0;
    int ofPage_ = 0;
    int isXWhole_ = 0;
    int lastId_ = 0;
    double gap_ = 0.5;
    int legend_ = legendNone;
    int isUsed_ = 0;  ///< something of several scales was asked for
    MultiLayout layout_;
    std::vector<int> panelOf_;   ///< by scale: its panel in the layout, -1 for none
    int layoutStands_ = 0;       ///< drawn, and nothing of it changed since
    std::vector<double> drawn_;  ///< the state that was
    std::vector<AGraph*> changed_;
};

}  // namespace pavane
