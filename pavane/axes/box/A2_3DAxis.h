#pragma once

#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/box/BoxView.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace pavane
{

class ASurfaceGraph;
class BoxLabels;
class SurfaceGrid;
class SurfaceRaster;
struct BoxCurtain;
struct BoxDrawing;
struct BoxLayout;
struct BoxSurface;
struct PicturePieces;
struct TickSet;

/// A Z axis of a box: how it is labelled, and between which heights s of the box it runs.
struct BoxZ {
    CString name;   ///< title, with the markers of AB2DAxis
    TMnMx range;    ///< RP
    int nPlus = 1;  ///< digits of a label before the point
    int nMinus = 2;
    int intervals = 5;
    double floor = -0.5;
    double top = 0.5;
    double ground = -0.5;  ///< of what lies on the floor
};

/// A range that is partly asked for: an end that is not, or is not finite, comes from the graphs,
/// at each drawing anew. What was found stands where it can be read, and is no wish.
struct RangeWish {
    TMnMx asked, found;
    void ask(const TMnMx& range)
    {
        asked = range;
        found = {range.min, NAN};  // equal to none
    }
    /// The wish behind a range that can be read and changed.
    const TMnMx& of(const TMnMx& shown, int isReset)
    {
        if (isReset || !(shown == found))
            asked = isReset ? TMnMx() : shown;
        return asked;
    }
};

/// A cell of a map that is seen at a place of a box.
struct BoxCell {
    const ASurfaceGraph* graph = nullptr;
    int row = 0, column = 0;     ///< MP
    double x = 0, y = 0, z = 0;  ///< of the place on the surface, RP
    int fromBelow = 0;           ///< its underside is seen
};

/// A box seen in parallel projection, with graphs in it: surfaces over the plane of x and y, curves
/// one behind another, points. Three walls at the back carry the grid; x and y are labelled along
/// the lower front edges and z at the leftmost upright edge, whichever these are from where the box
/// is seen. What is hidden is not drawn, on paper it is not in the file.
///
/// A graph draws itself by `draw3D`; one that does not is not seen and does not count in the range.
/// The range of Z follows the graphs, as a colour bar does, until one is set with setMinMax; an end
/// that is not finite follows on. A direction that a surface runs along is linear. The conversions
/// of the plane are those of the rectangle about the box.
class PAVANE_API A2_3DAxis : public AB2DAxis
{
public:
    A2_3DAxis(int xDirect, int yDirect, TMinMax* range, int options);
    /// As those of ABAxis: the graphs of `other` are shared.
    A2_3DAxis(const A2_3DAxis& other);
    A2_3DAxis& operator=(const A2_3DAxis& other);
    ~A2_3DAxis() override;

    int GetAxisType() const override;
    void draw(CDC& dc, CRect& rect) override;
    int drawChilds(CDC& dc, CRect& rect, TMinMax& range) override;
    int layOut(CDC& dc, const CRect& rect) override;
    int isWithoutData() const override;
    int countsInRange(const AGraph& graph) const override;

    // The view. Values that are not finite change nothing; see BoxView for limits.
    /// Degrees; azimuth modulo 360, elevation 0 to 90. 30 and 35 at first. Ends an oblique view.
    void SetView(double azimuth, double elevation);
    double GetAzimuth() const { return view_.azimuth(); }
    double GetElevation() const { return view_.elevation(); }
    /// The front face undistorted, the depth at `angle` degrees and `ratio` of its length; a ratio
    /// of 0 goes back to azimuth and elevation.
    void SetOblique(double angle, double ratio);
    double GetObliqueAngle() const { return view_.obliqueAngle(); }
    double GetObliqueRatio() const { return view_.obliqueRatio(); }
    /// Height of the box as a share of the longer edge of its base, 0.5 at first.
    void SetBoxHeight(double share);
    double GetBoxHeight() const { return view_.height(); }
    /// 1 at first: the whole box.
    void SetZoom(double factor);
    double GetZoom() const { return view_.zoom(); }
    /// Moves the box by shares of the width and height of its room.
    void SetPan(double right, double down);
    CPointF GetPan() const { return view_.pan(); }
    /// Room between the low end of Z and the floor, as a share of the height (0, as at first, to
    /// 0.9): colours and contours on the floor are then seen below the surface.
    void SetFloorGap(double share);
    double GetFloorGap() const { return floorGap_; }
    /// Edges of the base, along x and along y; only their ratio counts, 1 at first.
    void SetBase(double width, double depth);
    /// The view as it was laid out last.
    const BoxView& view() const { return view_; }
    /// Azimuth, elevation, oblique angle and ratio, height, zoom and pan, all of them. The base is
    /// that of the axis.
    void setView(const BoxView& view);
    /// Non-zero while the view moves: large surfaces are then drawn from the greatest value of each
    /// block of cells.
    void SetDraft(int on) { draft_ = on; }
    int GetDraft() const { return draft_; }

    void setNameOZ(const CString& name) { z_.name = name; }
    /// The title of Z; that of the first graph that proposes one while none is set.
    CString getNameOZ() const;
    /// The title of x (0) or y (1) as it is drawn: the axis's own, or that of the first graph that
    /// proposes one.
    CString shownName(int direction) const;
    int nzpDigit() const { return z_.nPlus; }
    int nzmDigit() const { return z_.nMinus; }
    int zIntervals() const { return z_.intervals; }
    void setNzpDigit(int digits) { z_.nPlus = digits; }
    void setNzmDigit(int digits) { z_.nMinus = digits; }
    void setZIntervals(int n) { z_.intervals = n; }

    // Conversions, of the box as it was laid out last.
    using ABAxis::RPtoGPF;
    CPoint RPtoGP(double x, double y, double z) const;
    CPointF RPtoGPF(double x, double y, double z) const;
    /// The point of the surface that is seen at a device point; 0 where none is.
    int GPtoRP(CPoint point, double& x, double& y, double& z) const;
    /// How far from the eye, in units of the longer edge of the base; larger is farther.
    double GetDepth(double x, double y, double z) const;
    /// The cell that is seen at a device point; 0 where none is.
    int GPtoCell(CPoint point, BoxCell& cell) const;

    // For graphs that draw. `graph` tells which Z counts.
    BoxPoint boxPoint(const AGraph& graph, double x, double y, double z) const;
    /// What is seen of a line through points of the box, in the colour, width and style of the
    /// axis. A point that is not finite is a gap.
    void line3D(CDC& dc, std::span<const BoxPoint> points);
    /// The same in two steps: appends what is seen of a line, and strokes what was collected,
    /// `dashed` or not.
    void addSeen(std::span<const BoxPoint> points, PicturePieces& pieces) const;
    void strokePieces(CDC& dc, const PicturePieces& pieces, int dashed);
    /// A line cut off where it leaves the box of a graph's Z; gaps (NaN) between what remains.
    std::vector<BoxPoint> insideBox(const AGraph& graph, std::span<const BoxPoint> points) const;
    /// Whether a point of the box is seen, and not hidden by a surface.
    int isSeen(const BoxPoint& at) const;
    /// A surface as it is drawn, as a grid of heights; null when it is not drawn.
    const SurfaceGrid* gridOf(const ASurfaceGraph& graph) const;
    /// s of the floor of a graph's Z.
    double floorOf(const AGraph& graph) const;
    /// Whether a point lies in the part of the box that the graph's Z has.
    int isInside(const AGraph& graph, const BoxPoint& at) const;
    /// Another number whenever something else hides, or is seen from elsewhere, than at the last
    /// drawing: what a graph has found to be seen of its lines holds as long as it stays.
    std::uint64_t scene() const;
    /// Deletes one of the axis's own graphs. Non-zero on success; 0 for one of another axis.
    virtual int DeleteGraph(const AGraph* graph);
    /// Forgets the picture of bitmap mode: call it when other data than maps have changed.
    void dropCache();

protected:
    void setUpParameters() override;
    /// Z axes: one here. And the index of the one that a graph counts on.
    virtual int zCount() const { return 1; }
    virtual BoxZ zAxis(int index) const;
    virtual int zIndexOf(const AGraph& graph) const;
    /// Non-zero when the second of two surfaces stands above the first.
    virtual int isStacked() const { return 0; }
    /// The part of a Z between two heights s, with the room above its floor.
    void placeZ(BoxZ& z, double ground, double top) const;
    /// The range of a Z: what was asked for, or what the graphs of that Z give, fit to be drawn.
    TMnMx rangeOfZ(int index, const TMnMx& asked) const;
    /// `name`, or what a graph of that Z proposes.
    CString nameOfZ(int index, const CString& name) const;
    /// The cell that is seen at a device point, and on which Z.
    int hitAt(CPoint point, int& second, BoxCell& cell) const;

    BoxView view_;
    BoxZ z_;
    RangeWish zWish_;
    double floorGap_ = 0;
    int draft_ = 0;

private:
    int composeLayout(CDC& dc, const CRect& rect, BoxLayout& layout);
    int composeOnPage(CDC& dc, const CRect& rect, BoxLayout& layout);
    int compose(CDC& dc, const CRect& rect, BoxLayout& layout);
    void placeLabels(BoxLayout& layout, BoxLabels& labels) const;
    TickSet ticksOf(int direction, int intervals) const;
    double placeOf(int direction, double value) const;
    double valueAt(int direction, double place) const;
    double heightPlace(int zIndex, double z) const;
    double zOfPlace(int zIndex, double place) const;
    BoxPoint pointOn(int zIndex, double x, double y, double z) const;
    const BoxZ& shownZ(int index) const;
    void findSurfaces();
    void makeGrid(BoxSurface& surface);
    void prepareScene(CDC& dc);
    void tellScene(CDC& dc, const std::vector<BoxCurtain>& before);
    void beforeCurtains(std::span<const BoxPoint> points, double pixel,
                        const std::function<void(std::span<const BoxPoint>)>& take) const;
    int needsImage() const;
    static int imageUnits(const CDC& dc);
    static int imagePixels(const CDC& dc);
    void drawImage(CDC& dc);
    void drawInRaster(CDC& dc, CRect& rect, const BoxLayout& layout);
    void paintIndices();
    std::vector<double> rasterContent(const BoxLayout& layout) const;
    const SurfaceRaster& seenSurfaces(const CRect& area, int units, int pixels, int light);
    void findWalls(const BoxLayout& layout);
    void drawWalls(CDC& dc, const BoxLayout& layout);
    void drawAround(CDC& dc, const BoxLayout& layout);
    void drawNoData(CDC& dc) const;

    std::unique_ptr<BoxDrawing> drawing_;
};

}  // namespace pavane
