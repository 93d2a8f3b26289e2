#include "apps/clean/CleanMap.h"

#include "apps/clean/clean_menu.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDC.h"
#include "platform/gdi_objects.h"

namespace pavane
{

namespace
{

/// Half of the cross, in pixels of 96 per inch, and what is left free at its middle.
constexpr int crossArm = 9, crossGap = 3;
constexpr COLORREF crossColor = RGB(255, 255, 255), crossShade = RGB(0, 0, 0);

void drawArms(CDC& dc, CPoint at, COLORREF color, int width)
{
    CPen pen(PS_SOLID, width, color);
    CPen* const before = dc.SelectObject(&pen);
    for (const int sign : {-1, 1}) {
        dc.MoveTo(at.x + sign * crossGap, at.y);
        dc.LineTo(at.x + sign * crossArm, at.y);
        dc.MoveTo(at.x, at.y + sign * crossGap);
        dc.LineTo(at.x, at.y + sign * crossArm);
    }
    dc.SelectObject(before);
}

}  // namespace

CRect CleanMap::crossRect()
{
    CRect cell;
    if (crossRow_ < 0 || !GetMap() || !cellMark(crossRow_, crossColumn_, cell))
        return {};
    const CPoint at = cell.CenterPoint();
    constexpr int reach = crossArm + 2;
    return {at.x - reach, at.y - reach, at.x + reach, at.y + reach};
}

void CleanMap::SetCross(int row, int column)
{
    if (row == crossRow_ && column == crossColumn_)
        return;
    const CRect before = crossRect();
    crossRow_ = row;
    crossColumn_ = column;
    if (!GetSafeHwnd())
        return;
    for (const CRect& rect : {before, crossRect()})
        if (!rect.IsRectEmpty())
            InvalidateRect(rect);
}

void CleanMap::FollowAreas()
{
    Invalidate();
    areasChanged();
}

void CleanMap::ServiceDraw(CDC& dc, CRect& client, CRect& update)
{
    AAxisWnd::ServiceDraw(dc, client, update);
    if (drawMarks && GetPlot())
        drawMarks(dc, *GetPlot(), &update);
    const CRect cross = crossRect();
    if (cross.IsRectEmpty())
        return;
    const CPoint at = cross.CenterPoint();
    const CRect plot = plotRect();
    if (!plot.PtInRect(at))
        return;
    drawArms(dc, at, crossShade, 3);
    drawArms(dc, at, crossColor, 1);
}

void CleanMap::drawIntoPicture(CDC& dc)
{
    AAxisWnd::drawIntoPicture(dc);
    if (drawMarks && GetPlot())
        drawMarks(dc, *GetPlot(), nullptr);
}

int CleanMap::takePress(unsigned flags, CPoint point)
{
    if (pressMarks && GetPlot() && GetTrackers()->mode() == toolArrow)
        pressMarks(*GetPlot(), point);
    return AAxisWnd::takePress(flags, point);
}

void CleanMap::OnStatus(const AxisStatus& at)
{
    AAxisWnd::OnStatus(at);
    if (status)
        status(at);
}

void CleanMap::OnAreasChanged()
{
    AAxisWnd::OnAreasChanged();
    if (areasOther)
        areasOther();
}

void CleanMap::OnNotice(const CString& text)
{
    if (notice)
        notice(text);
}

void CleanMap::OnColorsChanged()
{
    if (coloursOther)
        coloursOther();
}

void CleanMap::OnSetFocus(CWnd* old)
{
    AAxisWnd::OnSetFocus(old);
    if (focused)
        focused();
}

int CleanMap::takeKey(int key, bool shift, bool control)
{
    if (!shift && !control && command && (key == 'B' || key == 'P' || key == 'R')) {
        command(key == 'B' ? idBlink : key == 'P' ? idColoursOfMap : idOwnRange);
        return 1;
    }
    return AAxisWnd::takeKey(key, shift, control);
}

}  // namespace pavane
