#include "pavane/trackers/tracker_drawing.h"

#include "pavane/trackers/shapes/area_look.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

using Line = std::vector<CPointF>;

constexpr COLORREF dark = areaEdgeColor;
constexpr COLORREF light = RGB(255, 255, 255);  // of handles, so that they stand out of the line

/// A pen, and nothing in the gaps of its dashes.
class PenChange
{
public:
    PenChange(CDC& dc, CPen& pen)
        : dc_(dc), old_(dc.SelectObject(&pen)), oldMode_(dc.SetBkMode(TRANSPARENT))
    {
    }
    ~PenChange()
    {
        dc_.SelectObject(old_);
        dc_.SetBkMode(oldMode_);
    }
    PenChange(const PenChange&) = delete;
    PenChange& operator=(const PenChange&) = delete;

private:
    CDC& dc_;
    CPen* old_;
    int oldMode_;
};

class SmoothChange
{
public:
    explicit SmoothChange(CDC& dc) : dc_(dc), old_(dc.SetSmooth(1)) {}
    ~SmoothChange() { dc_.SetSmooth(old_); }
    SmoothChange(const SmoothChange&) = delete;
    SmoothChange& operator=(const SmoothChange&) = delete;

private:
    CDC& dc_;
    int old_;
};

/// truncated() keeps it far from where steps of a unit would overflow.
int nearest(double v) { return truncated(std::floor(v + 0.5)); }

CPoint nearest(CPointF p) { return {nearest(p.x), nearest(p.y)}; }

int lightStyle(const OutlineLook& look)
{
    return look.dashed ? PS_DOT : look.neverClean ? PS_DASH : PS_SOLID;
}
COLORREF lineColor(const OutlineLook& look) { return areaLineColor(look.colour, look.neverClean); }
COLORREF edgeColor(const OutlineLook& look) { return areaLineEdge(look.colour, look.neverClean); }

void strokeSmooth(CDC& dc, const Line& line, const OutlineLook& look)
{
    const int unit = std::max(1, dc.GetDeviceCaps(LOGPIXELSX) / 96);
    CPen under(PS_SOLID, areaEdgeWidth * unit, edgeColor(look));
    CPen over(lightStyle(look), areaLineWidth * unit, lineColor(look));
    const SmoothChange smooth(dc);
    for (CPen* const pen : {&under, &over}) {
        const PenChange change(dc, *pen);
        dc.PolylineF(line.data(), static_cast<int>(line.size()));
    }
}

/// Thousands of outlines at a tenth of the time: the edge is on two sides only.
void strokeCrowded(CDC& dc, const CPointF* points, int n, bool closed, const OutlineLook& look)
{
    std::vector<CPoint> line;
    line.reserve(static_cast<std::size_t>(n) + 1);
    for (int i = 0; i < n; ++i)
        line.push_back(nearest(points[i]) + CPoint(1, 1));
    if (closed)
        line.push_back(line[0]);
    CPen under(PS_SOLID, 1, edgeColor(look));
    CPen over(lightStyle(look), areaLineWidth, lineColor(look));
    const PenChange change(dc, under);
    dc.Polyline(line.data(), static_cast<int>(line.size()));
    for (CPoint& p : line)
        p = p - CPoint(1, 1);
    const PenChange next(dc, over);
    dc.Polyline(line.data(), static_cast<int>(line.size()));
}

void fill(CDC& dc, const Line& corners, COLORREF color)
{
    const SmoothChange smooth(dc);
    CPen none;
    none.CreatePen(PS_NULL, 0, 0);
    const PenChange change(dc, none);
    CBrush brush(color);
    CBrush* const old = dc.SelectObject(&brush);
    dc.PolygonF(corners.data(), static_cast<int>(corners.size()));
    dc.SelectObject(old);
}

/// The corners of a square about a point, and the first of them again.
Line square(CPointF middle, double half)
{
    const double left = middle.x - half;
    const double right = middle.x + half;
    const double top = middle.y - half;
    const double bottom = middle.y + half;
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
}

CRect unitsAbout(CPointF middle, int reach)
{
    const CPoint p = nearest(middle);
    return {saturatedSum(p.x, -reach), saturatedSum(p.y, -reach), saturatedSum(p.x, reach + 1),
            saturatedSum(p.y, reach + 1)};
}

/// A ring of one unit whose middle line has `reach` units to each side, also between whole units.
void ring(CDC& dc, CPointF middle, int reach, COLORREF color)
{
    if (reach < 0)
        return;
    if (dc.GetPixelRatio() == 1) {
        const CBrush brush(color);
        (void)dc.FrameRect(unitsAbout(middle, reach), &brush);
        return;
    }
    Line corners = square(middle, reach + 0.5);
    const Line hole = square(middle, reach - 0.5);
    if (reach > 0)
        corners.insert(corners.end(), hole.rbegin(), hole.rend());
    fill(dc, corners, color);
}

void circle(CDC& dc, CPointF middle, double radius, COLORREF color)
{
    constexpr int corners = 32;
    constexpr double turn = 6.283185307179586;
    Line line;
    for (int i = 0; i <= corners; ++i)
        line.push_back({middle.x + radius * std::cos(i * turn / corners),
                        middle.y + radius * std::sin(i * turn / corners)});
    CPen pen(PS_SOLID, 1, color);
    const SmoothChange smooth(dc);
    const PenChange change(dc, pen);
    dc.PolylineF(line.data(), static_cast<int>(line.size()));
}

/// Handles have a unit in their middle, so that they sit on the line as exactly as pixels allow.
struct Handles {
    Handles(const CDC& dc, int size) : ratio(dc.GetPixelRatio()), reach(size / 2) {}
    void add(CPointF p)
    {
        middles.push_back(
            {std::floor(p.x * ratio + 0.5) / ratio, std::floor(p.y * ratio + 0.5) / ratio});
    }
    /// The whole units of a handle.
    CRect hole(CPointF m) const
    {
        return {truncated(std::ceil(m.x - reach)), truncated(std::ceil(m.y - reach)),
                saturatedSum(truncated(std::floor(m.x + reach)), 1),
                saturatedSum(truncated(std::floor(m.y + reach)), 1)};
    }

    int ratio;
    int reach;
    Line middles;
};

void hollowHandle(CDC& dc, CPointF middle, int reach)
{
    ring(dc, middle, reach, dark);
    ring(dc, middle, reach - 1, light);
}

void filledHandle(CDC& dc, CPointF middle, int reach)
{
    for (int r = 0; r <= reach; ++r)
        ring(dc, middle, r, r < reach ? light : dark);
}

/// Draws the outline around the handles, so that these show the ground in their middle.
void outlineWithHandles(CDC& dc, const CPointF* points, int n, bool closed, const Handles& handles,
                        const OutlineLook& look)
{
    constexpr std::size_t mostHoles = 24;  // beyond it a clip region costs more than it shows
    const Line& middles = handles.middles;
    const int saved = middles.empty() || middles.size() > mostHoles ? 0 : dc.SaveDC();
    if (saved)
        for (const CPointF& middle : middles)
            dc.ExcludeClipRect(handles.hole(middle));
    drawTrackerOutline(dc, points, n, closed, look);
    if (saved)
        dc.RestoreDC(saved);
    for (const CPointF& middle : middles)
        hollowHandle(dc, middle, handles.reach);
}

}  // namespace

int showsIn(const CDC& dc, const CRect& rect)
{
    CRect box;
    CRect both;
    return dc.GetClipBox(box) != NULLREGION && both.IntersectRect(box, rect);
}

std::vector<CPointF> fractionsOf(const CPoint* points, int n)
{
    Line line;
    for (int i = 0; i < n; ++i)
        line.push_back({static_cast<double>(points[i].x), static_cast<double>(points[i].y)});
    return line;
}

ARect<double> fractionsOf(const CRect& rect)
{
    return {static_cast<double>(rect.left), static_cast<double>(rect.top),
            static_cast<double>(rect.right), static_cast<double>(rect.bottom)};
}

void drawTrackerOutline(CDC& dc, const CPointF* points, int n, bool closed, const OutlineLook& look)
{
    if (n < 2)
        return;
    if (look.crowded)
        return strokeCrowded(dc, points, n, closed, look);
    Line line;
    line.reserve(static_cast<std::size_t>(n) + 1);
    line.assign(points, points + n);
    if (closed)
        line.push_back(points[0]);
    strokeSmooth(dc, line, look);
}

void drawTrackerOutline(CDC& dc, const CPoint* points, int n, bool closed, const OutlineLook& look)
{
    drawTrackerOutline(dc, fractionsOf(points, n).data(), n, closed, look);
}

void drawRectShape(CDC& dc, const ARect<double>& rect, const CRect& units, int handle, int size,
                   bool active, const OutlineLook& look)
{
    const auto [left, right] = std::minmax({rect.left, rect.right});
    const auto [top, bottom] = std::minmax({rect.top, rect.bottom});
    const double x = (left + right) / 2;
    const double y = (top + bottom) / 2;
    // in the order of the codes of handles
    const CPointF places[] = {{left, top}, {right, top}, {right, bottom}, {left, bottom},
                              {x, top},    {right, y},   {x, bottom},     {left, y}};
    Handles handles(dc, handle);
    const int mask = active ? handleMask(units, size) : 0;
    for (int code = 0; code < hitMiddle; ++code)
        if (mask >> code & 1)
            handles.add(places[code]);
    outlineWithHandles(dc, places, 4, true, handles, look);
}

void drawTurnedShape(CDC& dc, const CPointF* points, int n,
                     const CPointF (&handles)[turnedHandleCount], int firstHandle, int size,
                     const OutlineLook& look)
{
    Handles squares(dc, size);
    for (int i = firstHandle; i < turningHandle; ++i)
        squares.add(handles[i]);
    outlineWithHandles(dc, points, n, true, squares, look);
    const CPointF centre{(handles[5].x + handles[7].x) / 2, (handles[5].y + handles[7].y) / 2};
    Handles knob(dc, size + 2);
    knob.add(handles[turningHandle]);
    const CPointF stem[] = {centre, knob.middles[0]};
    const int saved = dc.SaveDC();
    dc.ExcludeClipRect(knob.hole(knob.middles[0]));
    drawTrackerOutline(dc, stem, 2, false, look);
    dc.RestoreDC(saved);
    circle(dc, knob.middles[0], knob.reach, dark);
    circle(dc, knob.middles[0], knob.reach - 1, light);
}

void drawAreaShape(CDC& dc, const CPointF* points, int n, int size, bool active, bool ready,
                   const OutlineLook& look)
{
    Handles handles(dc, size);
    if (active || !ready)
        for (int i = 0; i < n; ++i)
            handles.add(points[i]);
    outlineWithHandles(dc, points, n, ready, handles, look);
    if (!ready && n > 0)
        filledHandle(dc, handles.middles.back(), handles.reach);
}

}  // namespace pavane
