#include "pavane/axes/dialogs/AHistogramWnd.h"

#include "pavane/resources/play_messages.h"
#include "platform/message.h"
#include "platform/messages.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

using Part = HistogramPlot::Part;

/// Below the plot: the colours of the values, and room for the grips of the handles.
constexpr int stripHeight = 10;
constexpr int gripHeight = 10;
constexpr int gripHalf = 5;
constexpr int edge = 6;
constexpr int valueDigits = 4;
constexpr Part partsInOrder[] = {Part::low, Part::high, Part::curve};

AccessId idOf(Part part) { return static_cast<AccessId>(part); }

Part partOf(AccessId id)
{
    return id >= 1 && id <= 3 ? static_cast<Part>(static_cast<int>(id)) : Part::none;
}

}  // namespace

void AHistogramWnd::SetCounts(const std::vector<std::int64_t>& counts, TMnMx shown)
{
    plot_.setCounts(counts, shown);
    if (GetSafeHwnd())
        Invalidate();
}

void AHistogramWnd::SetLook(const MapScale& scale, const AColorPlay& play,
                            const AArray<COLORREF>& colours)
{
    plot_.setLook(scale, play);
    colours_ = colours;
    if (!GetSafeHwnd())
        return;
    Invalidate();
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), idOf(focus_));
}

void AHistogramWnd::place()
{
    CRect client;
    GetClientRect(client);
    client.DeflateRect(edge, edge);
    client.bottom -= stripHeight + gripHeight;
    plot_.setRect(client.right > client.left && client.bottom > client.top ? client : CRect());
}

void AHistogramWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    place();
    Invalidate();
}

// Drawing

void AHistogramWnd::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    place();
    dc.FillSolidRect(client, GetSysColor(COLOR_WINDOW));
    const CRect& plot = plot_.rect();
    if (plot.IsRectEmpty())
        return;
    const COLORREF ink = GetSysColor(COLOR_WINDOWTEXT);
    for (int x = plot.left; x < plot.right; ++x)
        if (const int height = plot_.heightAt(x))
            dc.FillSolidRect(CRect(x, plot.bottom - height, x + 1, plot.bottom),
                             GetSysColor(COLOR_BTNSHADOW));
    CPen frame(PS_SOLID, 1, ink);
    CPen* const before = dc.SelectObject(&frame);
    const CPoint corners[] = {{plot.left - 1, plot.top - 1},
                              {plot.right, plot.top - 1},
                              {plot.right, plot.bottom},
                              {plot.left - 1, plot.bottom},
                              {plot.left - 1, plot.top - 1}};
    dc.Polyline(corners, 5);
    dc.SelectObject(before);
    if (plot_.isEmpty()) {
        CRect text = plot;
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(GetSysColor(COLOR_GRAYTEXT));
        dc.DrawText(noCellsText, text, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        return;
    }
    drawColours(dc);
    // the curve, light beside dark, is seen on bars and on the ground
    std::vector<CPointF> curve;
    for (int x = plot.left; x < plot.right; ++x)
        curve.push_back(
            {static_cast<double>(x), plot.bottom - 1 - plot_.placeAt(x) * (plot.Height() - 1)});
    const int isFocused = focus_ == Part::curve && GetFocus() == this;
    const int smooth = dc.SetSmooth(1);
    for (const auto& [width, color] :
         {std::pair(isFocused ? 5 : 3, GetSysColor(COLOR_WINDOW)),
          std::pair(isFocused ? 3 : 1, GetSysColor(COLOR_HIGHLIGHT))}) {
        CPen pen(PS_SOLID, width, color);
        dc.SelectObject(&pen);
        dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
        dc.SelectObject(before);
    }
    dc.SetSmooth(smooth);
    drawHandle(dc, Part::low);
    drawHandle(dc, Part::high);
}

/// Under each column the colour that its value gets.
void AHistogramWnd::drawColours(CDC& dc) const
{
    const CRect& plot = plot_.rect();
    const int last = colours_.count() - 1;
    for (int x = plot.left; last >= 0 && x < plot.right; ++x) {
        // these colours are not played with: the curve leads to them
        const auto place = static_cast<int>(std::lround(plot_.placeAt(x) * last));
        dc.FillSolidRect(CRect(x, plot.bottom + 1, x + 1, plot.bottom + 1 + stripHeight),
                         colours_(std::clamp(place, 0, last)));
    }
}

CRect AHistogramWnd::handleRect(Part part) const
{
    const CRect& plot = plot_.rect();
    const double x = plot_.xOf(part == Part::low ? plot_.low() : plot_.high());
    const int at = static_cast<int>(std::lround(
        std::clamp(x, static_cast<double>(plot.left), static_cast<double>(plot.right - 1))));
    const int top = plot.bottom + 1 + stripHeight;
    return {at - gripHalf, top, at + gripHalf + 1, top + gripHeight};
}

void AHistogramWnd::drawHandle(CDC& dc, Part part) const
{
    const CRect grip = handleRect(part);
    const int at = grip.CenterPoint().x;
    const int focused = focus_ == part && GetFocus() == this;
    const COLORREF ink = focused ? GetSysColor(COLOR_HIGHLIGHT) : GetSysColor(COLOR_WINDOWTEXT);
    dc.FillSolidRect(CRect(at - 1, plot_.rect().top, at + 2, plot_.rect().bottom),
                     GetSysColor(COLOR_WINDOW));
    dc.FillSolidRect(CRect(at - focused, plot_.rect().top, at + 1 + focused, grip.top), ink);
    CBrush brush(ink);
    CPen pen(PS_SOLID, 1, GetSysColor(COLOR_WINDOWTEXT));
    CBrush* const oldBrush = dc.SelectObject(&brush);
    CPen* const oldPen = dc.SelectObject(&pen);
    const CPoint triangle[] = {
        {at, grip.top}, {grip.right - 1, grip.bottom - 1}, {grip.left, grip.bottom - 1}};
    dc.Polygon(triangle, 3);
    dc.SelectObject(oldPen);
    dc.SelectObject(oldBrush);
}

void AHistogramWnd::ServiceDraw(CDC& dc, CRect& client, CRect&)
{
    if (GetFocus() != this)
        return;
    CRect mark = client;
    mark.DeflateRect(1, 1);
    dc.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    dc.DrawFocusRect(mark);
}

// Pointer and keys

void AHistogramWnd::focusOn(Part part)
{
    focus_ = part;
    Invalidate();
    NotifyWinEvent(EVENT_OBJECT_FOCUS, GetSafeHwnd(), idOf(part));
}

void AHistogramWnd::OnLButtonDown(unsigned, CPoint point)
{
    SetFocus();
    const Part part = plot_.isEmpty() ? Part::none : plot_.hit(point);
    if (part == Part::none || dragged_)
        return;
    focusOn(part);
    plot_.hold(part, point);
    SetCapture();
    dragged_ = 1;
    if (listener_.begun)
        listener_.begun();
}

void AHistogramWnd::OnMouseMove(unsigned flags, CPoint point)
{
    if (dragged_) {
        plot_.dragTo(point, (flags & MK_SHIFT) != 0);
        if (listener_.moved)
            listener_.moved();
        return;
    }
    const Part part = plot_.isEmpty() ? Part::none : plot_.hit(point);
    SetCursor(part == Part::none ? IDC_ARROW : part == Part::curve ? IDC_SIZEALL : IDC_SIZEWE);
    ABWindow::OnMouseMove(flags, point);
}

void AHistogramWnd::endDrag(int keep)
{
    if (!dragged_)
        return;
    dragged_ = 0;
    if (GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
    if (listener_.ended)
        listener_.ended(keep);
}

void AHistogramWnd::OnLButtonUp(unsigned, CPoint) { endDrag(1); }
void AHistogramWnd::OnRButtonDown(unsigned, CPoint) { endDrag(0); }

void AHistogramWnd::OnCaptureChanged(CWnd* next)
{
    const LifeWatch self(life());
    if (next != this)
        endDrag(0);
    if (self.alive())
        ABWindow::OnCaptureChanged(next);
}

void AHistogramWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int shift = GetKeyState(VK_SHIFT) < 0;
    const int right = (key == VK_RIGHT) - (key == VK_LEFT);
    const int up = (key == VK_UP) - (key == VK_DOWN);
    if (key == VK_ESCAPE && dragged_)
        return endDrag(0);
    CWnd* const above = GetParent();
    if ((key == VK_ESCAPE || key == VK_RETURN) && above && above->IsDialog()) {
        above->PostMessage(WM_COMMAND, key == VK_ESCAPE ? IDCANCEL : IDOK);
        return;
    }
    if (key == VK_TAB && GetKeyState(VK_CONTROL) >= 0) {
        const int to = static_cast<int>(idOf(focus_)) - 1 + (shift ? -1 : 1);
        if (to >= 0 && to < 3)
            return focusOn(partsInOrder[to]);
    }
    if ((right || up) && !dragged_ && !plot_.isEmpty()) {
        plot_.step(focus_, right, up, shift);
        if (listener_.stepped)
            listener_.stepped();
        return;
    }
    ABWindow::OnKeyDown(key, repeat, flags);
}

void AHistogramWnd::OnSetFocus(CWnd* old)
{
    ABWindow::OnSetFocus(old);
    // who comes backwards meets the last part first
    if (old && GetKeyState(VK_TAB) < 0)
        focus_ = GetKeyState(VK_SHIFT) < 0 ? Part::curve : Part::low;
    Invalidate();
}

void AHistogramWnd::OnKillFocus(CWnd* next)
{
    ABWindow::OnKillFocus(next);
    Invalidate();
}

void AHistogramWnd::OnDestroy()
{
    endDrag(0);
    ABWindow::OnDestroy();
}

// Screen readers

CString AHistogramWnd::valueOf(Part part) const
{
    if (part == Part::curve)
        return contrastText + valToStr(plot_.play().contrast, valueDigits) + biasText +
               valToStr(plot_.play().bias, valueDigits);
    const CString value = valToStr(part == Part::low ? plot_.low() : plot_.high(), valueDigits);
    return unit_.empty() ? value : value + ' ' + unit_;
}

int AHistogramWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    part = {};
    part.state = STATE_SYSTEM_FOCUSABLE;
    if (id == 0) {
        part.role = ROLE_SYSTEM_CLIENT;
        part.name = histogramName;
        GetClientRect(part.rect);
        return 1;
    }
    const Part which = partOf(id);
    if (which == Part::none)
        return 0;
    part.role = ROLE_SYSTEM_GRAPHIC;
    part.name = which == Part::low ? lowEndName : which == Part::high ? highEndName : curveName;
    part.value = valueOf(which);
    part.description = which == Part::curve ? curveKeys : handleKeys;
    part.rect = which == Part::curve ? plot_.rect() : handleRect(which);
    if (which == focus_ && GetFocus() == this)
        part.state |= STATE_SYSTEM_FOCUSED;
    return 1;
}

std::vector<AccessId> AHistogramWnd::GetAccessChildren() const { return {1, 2, 3}; }

AccessId AHistogramWnd::AccessHitTest(CPoint point) const
{
    return plot_.isEmpty() ? 0 : idOf(plot_.hit(point));
}

AccessId AHistogramWnd::GetAccessFocus() const { return idOf(focus_); }

int AHistogramWnd::AccessSetFocus(AccessId id)
{
    SetFocus();
    if (partOf(id) != Part::none)
        focusOn(partOf(id));
    return 1;
}

}  // namespace pavane
