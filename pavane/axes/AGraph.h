#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/images/curve_raster.h"
#include "pavane/images/palettes.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"

#include <cstdint>

namespace pavane
{

class A2_3DAxis;
class ABAxis;
class CDC;

/// One data set drawn inside an axis: a curve, points, a histogram, a colour map, contours.
///
/// A graph belongs to one axis, which asks it for its range, calls it to draw and deletes it; make
/// graphs with new. It draws through the conversions and primitives of its axis.
class PAVANE_API AGraph
{
public:
    /// Registers with `axis` (when not null): by addChild, or with a non-zero `asItem` by
    /// addChildItem. From then on the axis owns the graph.
    AGraph(ABAxis* axis, int asItem);
    /// A copy knows the same axis but is not registered with it: who copies owns the copy.
    AGraph(const AGraph&) = default;
    AGraph& operator=(const AGraph&) = default;
    virtual ~AGraph();

    /// Non-zero when the graph draws contour levels; and how many.
    virtual int isLevels() const;
    virtual int getNLevels() const;
    /// Non-zero when the graph colours by palette; how many colours, the first palette index of
    /// them and the step from one to the next.
    virtual int isColors() const;
    virtual int getNColors() const;
    virtual int getFirstColor() const;
    virtual int getPlusColor() const;
    /// The y title that the graph proposes, put into `name`, which is returned; unchanged when the
    /// graph has none.
    virtual CString& getOY(CString& name) const;
    /// Titles that the graph proposes for x, y and z, empty for none. They may hold the markers of
    /// AB2DAxis.
    virtual CString GetOXName() const;
    virtual CString GetOYName() const;
    virtual CString GetOZName() const;
    /// Non-zero when the graph has a header line of this index; and the line.
    virtual int hasHeaderText(int index) const;
    virtual CString getHeaderText(int index) const;
    /// The range of the data (RP); a direction without finite values stays unset.
    virtual void getMinMax(TMinMax& range) const;
    /// Draws into `dc`, or into the raster of the axis when that is in bitmap mode. `rect` is the
    /// rectangle of the whole picture, `range` that of the axis.
    virtual void draw(CDC& dc, CRect& rect, TMinMax& range);
    /// How far, in device units, what is drawn at the ends of the range reaches beyond the graph
    /// rectangle of `axis`: half a marker or half a line. A plot lets that much be seen. 0 here.
    virtual int overhang(const ABAxis& axis) const;
    /// Draws into a box seen in projection, through the conversions and primitives of `axis`;
    /// nothing in this class.
    virtual void draw3D(CDC& dc, A2_3DAxis& axis);
    /// Non-zero when the graph has something to draw there: the range of a box comes from such
    /// graphs alone.
    virtual int isIn3D() const;
    /// The points (RP) that the graph goes through, the host's; none here.
    virtual CurvePoints getPoints() const;
    /// Non-zero when the graph has one colour; and the colour.
    virtual int getGraphColor(COLORREF& color) const;
    /// Draws a piece of its line or a marker into the middle of `box`, for a legend; nothing here.
    virtual void drawSample(CDC& dc, const CRect& box);

    /// Takes over what the module's functions have set since the graph was made, in what a host
    /// gave it nothing of its own for. Its axis calls this for windows.
    virtual void followModule();
    /// A palette of its own; null gives it that of the module again. For graphs that colour by
    /// palette; nothing here.
    virtual void setPaletteColors(const SharedPalette& palette);

    /// The axis that owns the graph, null for none; while the graph is drawn, the one that draws
    /// it.
    ABAxis* axis() const { return axis_; }

    /// Draws for `axis`, which need not be the owner: a copy of an axis shares the graphs.
    void drawIn(ABAxis& axis, CDC& dc, CRect& rect, TMinMax& range);
    void drawSampleIn(ABAxis& axis, CDC& dc, const CRect& box);

    /// What a legend calls the graph; empty at first, which keeps it out of legends.
    void setGraphName(const CString& name) { graphName_ = name; }
    const CString& getGraphName() const { return graphName_; }
    /// Index of the finite point whose x is nearest to `x`, -1 for none: found in log n where x
    /// rises. Whether it does is looked at once, so the host calls forgetPoints when it has put
    /// other values into its arrays.
    int nearestPoint(double x) const;
    void forgetPoints() { order_ = PointOrder::unknown; }

private:
    enum class PointOrder : std::uint8_t { unknown, rising, any };

    CString graphName_;
    mutable PointOrder order_ = PointOrder::unknown;
    ABAxis* axis_ = nullptr;
};

}  // namespace pavane
