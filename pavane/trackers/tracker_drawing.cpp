#include "pavane/trackers/tracker_drawing.h"

#include "pavane/trackers/shapes/rect_handles.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <vector>

namespace pavane
{

namespace
{

constexpr COLORREF dark = RGB(0, 0, 0);
constexpr COLORREF light = RGB(255, 255, 255);

class PenChange
{
public:
    PenChange(CDC& dc, CPen& pen) : dc_(dc), old_(dc.SelectObject(&pen)) {}
    ~PenChange() { dc_.SelectObject(old_); }
    PenChange(const PenChange&) = delete;
    PenChange& operator=(const PenChange&) = delete;

private:
    CDC& dc_;
    CPen* old_;
};

void stroke(CDC& dc, CPen& pen, const std::vector<CPoint>& line)
{
    const PenChange change(dc, pen);
    dc.Polyline(line.data(), static_cast<int>(line.size()));
}

void shift(std::vector<CPoint>& line, CPoint step)
{
    for (CPoint& p : line)
        p = {saturatedSum(p.x, step.x), saturatedSum(p.y, step.y)};
}

/// Outlines up to this size are too small for dashes.
constexpr int smallExtent = 20;

bool isSmall(const std::vector<CPoint>& line)
{
    CPoint least = line[0];
    CPoint most = line[0];
    for (const CPoint& p : line) {
        least = {std::min(least.x, p.x), std::min(least.y, p.y)};
        most = {std::max(most.x, p.x), std::max(most.y, p.y)};
    }
    const CSize extent = extentOf({least.x, least.y, most.x, most.y});
    return std::max(extent.cx, extent.cy) <= smallExtent;
}

/// A light line with a dark seam of a pixel. Four shifted thin lines make a more even seam along
/// slanted lines than a wide pen, and a faster one than a smooth pen.
void strokeActive(CDC& dc, std::vector<CPoint>& line)
{
    constexpr CPoint steps[] = {{-1, 0}, {1, 1}, {1, -1}, {-1, -1}};  // left, below, right, above
    CPen under(PS_SOLID, 1, dark);
    CPen over(PS_SOLID, 1, light);
    for (const CPoint& step : steps) {
        shift(line, step);
        stroke(dc, under, line);
    }
    shift(line, {0, 1});
    stroke(dc, over, line);
}

void strokeInactive(CDC& dc, std::vector<CPoint>& line)
{
    const bool small = isSmall(line);
    CPen under(PS_SOLID, 1, dark);
    CPen over(small ? PS_SOLID : PS_DOT, 1, light);
    stroke(dc, under, line);
    if (small) {
        shift(line, {1, 1});  // beside each other
        stroke(dc, over, line);
        return;
    }
    const int mode = dc.SetBkMode(TRANSPARENT);
    stroke(dc, over, line);
    dc.SetBkMode(mode);
}

void frame(CDC& dc, const CRect& square, COLORREF color)
{
    if (square.IsRectEmpty())
        return;
    const CBrush brush(color);
    dc.FrameRect(square, &brush);
}

void hollowHandle(CDC& dc, const CRect& square)
{
    frame(dc, square, dark);
    frame(dc, grown(square, -1), light);
}

void filledHandle(CDC& dc, const CRect& square)
{
    dc.FillSolidRect(square, dark);
    dc.FillSolidRect(grown(square, -1), light);
}

void circle(CDC& dc, const CRect& box, COLORREF color)
{
    CPen pen(PS_SOLID, 1, color);
    const PenChange change(dc, pen);
    CBrush hollow;
    hollow.CreateNullBrush();
    CBrush* const old = dc.SelectObject(&hollow);
    dc.Ellipse(box.left, box.top, box.right, box.bottom);
    dc.SelectObject(old);
}

/// Draws the outline around the handles, so that these show the ground in their middle.
void outlineWithHandles(CDC& dc, const CPoint* points, int n, bool closed, bool active,
                        const std::vector<CRect>& squares)
{
    constexpr std::size_t mostHoles = 24;  // beyond it a clip region costs more than it shows
    const int saved = squares.empty() || squares.size() > mostHoles ? 0 : dc.SaveDC();
    if (saved)
        for (const CRect& square : squares)
            dc.ExcludeClipRect(square);
    drawTrackerOutline(dc, points, n, closed, active);
    if (saved)
        dc.RestoreDC(saved);
    for (const CRect& square : squares)
        hollowHandle(dc, square);
}

}  // namespace

int showsIn(const CDC& dc, const CRect& rect)
{
    CRect box;
    CRect both;
    return dc.GetClipBox(box) != NULLREGION && both.IntersectRect(box, rect);
}

void drawTrackerOutline(CDC& dc, const CPoint* points, int n, bool closed, bool active)
{
    if (n < 2)
        return;
    std::vector<CPoint> line;
    line.reserve(static_cast<std::size_t>(n) + 1);
    line.assign(points, points + n);
    if (closed)
        line.push_back(points[0]);
    if (active)
        strokeActive(dc, line);
    else
        strokeInactive(dc, line);
}

void drawRectShape(CDC& dc, const CRect& rect, int handle, int size, bool active)
{
    const CPoint corners[] = {{rect.left, rect.top},
                              {rect.right, rect.top},
                              {rect.right, rect.bottom},
                              {rect.left, rect.bottom}};
    std::vector<CRect> squares;
    const int mask = active ? handleMask(rect, size) : 0;
    for (int code = 0; code < hitMiddle; ++code)
        if (mask >> code & 1)
            squares.push_back(handleRect(rect, code, handle, size));
    outlineWithHandles(dc, corners, 4, true, active, squares);
}

void drawTurnedShape(CDC& dc, const CPoint* points, int n,
                     const CPoint (&handles)[turnedHandleCount], int firstHandle, int size)
{
    std::vector<CRect> squares;
    for (int i = firstHandle; i < turningHandle; ++i)
        squares.push_back(squareAbout(handles[i], size));
    outlineWithHandles(dc, points, n, true, true, squares);
    const CPoint centre(middleOf(handles[5].x, handles[7].x), middleOf(handles[5].y, handles[7].y));
    const CRect knob = squareAbout(handles[turningHandle], size + 2);
    const CPoint stem[] = {centre, handles[turningHandle]};
    const int saved = dc.SaveDC();
    dc.ExcludeClipRect(knob);
    drawTrackerOutline(dc, stem, 2, false, true);
    dc.RestoreDC(saved);
    circle(dc, knob, dark);
    circle(dc, grown(knob, -1), light);
}

void drawAreaShape(CDC& dc, const CPoint* points, int n, int size, bool active, bool ready)
{
    std::vector<CRect> squares;
    if (active || !ready)
        for (int i = 0; i < n; ++i)
            squares.push_back(squareAbout(points[i], size));
    outlineWithHandles(dc, points, n, ready, active || !ready, squares);
    if (!ready && n > 0)
        filledHandle(dc, squares.back());
}

}  // namespace pavane
