#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/ranges/range_steps.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr unsigned gestureTimer = 1;
/// Turns of the wheel closer together than this, in milliseconds, are one gesture.
constexpr unsigned gesturePause = 400;
/// Magnification of one notch of the wheel, and pixels that it pans by.
constexpr double zoomOfNotch = 1.25;
constexpr double panOfNotch = 60;
/// The closest look: so many cells of a map across the plot, or this part of a whole range.
constexpr double fewestCells = 2;
constexpr double smallestPart = 1e-9;

TMnMx xOf(const TMinMax& range) { return {range.xMin, range.xMax}; }
TMnMx yOf(const TMinMax& range) { return {range.yMin, range.yMax}; }

void put(TMinMax& range, const TMnMx& x, const TMnMx& y)
{
    range.xMin = x.min;
    range.xMax = x.max;
    range.yMin = y.min;
    range.yMax = y.max;
}

int isSpan(double min, double max) { return min < max && std::isfinite(max - min); }

int sameSpans(const TMinMax& a, const TMinMax& b) { return xOf(a) == xOf(b) && yOf(a) == yOf(b); }

}  // namespace

void AAxisWnd::SetNewMinMax(const TMinMax& range)
{
    if (!axis_ || !isSpan(range.xMin, range.xMax) || !isSpan(range.yMin, range.yMax))
        return;
    TMinMax shown = axis_->getMinMax();
    put(shown, xOf(range), yOf(range));
    axis_->setMinMax(shown);
    trackers_->ForgetBoxes();
    moving_ = 1;
    ContentChanged();
    enableCommands();
    OnRangeChanged();
}

int AAxisWnd::IsRangeZoomed() const
{
    if (!axis_ || whole_ == TMinMax())
        return 0;
    constexpr double all = 1 - 1e-9;
    const TMinMax& range = axis_->getMinMax();
    return spanPart(xOf(range), xOf(whole_), axis_->getXDirect() == 0) < all ||
           spanPart(yOf(range), yOf(whole_), axis_->getYDirect() == 0) < all;
}

/// The range after a zoom; 0 when it stays or would show less than can be told apart.
int AAxisWnd::rangeOfZoom(CPoint pixel, double factor, TMinMax& range) const
{
    const CRect& plot = axis_->getGraphRect();
    if (whole_ == TMinMax() || plot.IsRectEmpty())
        return 0;
    const int logX = axis_->getXDirect() == 0;
    const int logY = axis_->getYDirect() == 0;
    const TMinMax& shown = axis_->getMinMax();
    const double atX = axis_->GPXtoRPX(std::clamp(pixel.x, plot.left, plot.right));
    const double atY = axis_->GPYtoRPY(std::clamp(pixel.y, plot.top, plot.bottom));
    const TMnMx x = spanInside(zoomedSpan(xOf(shown), atX, factor, logX), xOf(whole_), logX);
    const TMnMx y = spanInside(zoomedSpan(yOf(shown), atY, factor, logY), yOf(whole_), logY);
    range = shown;
    put(range, x, y);
    if (sameSpans(range, shown))
        return 0;
    if (factor <= 1)
        return 1;
    if (map_ && !logX && !logY)
        return x.max - x.min >= fewestCells * std::fabs(map_->MPXtoRPX(1) - map_->MPXtoRPX(0)) &&
               y.max - y.min >= fewestCells * std::fabs(map_->MPYtoRPY(1) - map_->MPYtoRPY(0));
    return spanPart(x, xOf(whole_), logX) >= smallestPart &&
           spanPart(y, yOf(whole_), logY) >= smallestPart;
}

TMinMax AAxisWnd::shiftedRange(const TMinMax& from, int dx, int dy) const
{
    TMinMax range = from;
    const CRect& plot = axis_->getGraphRect();
    if (plot.IsRectEmpty())
        return range;
    const int logX = axis_->getXDirect() == 0;
    const int logY = axis_->getYDirect() == 0;
    const double x = static_cast<double>(dx) / plot.Width() * (axis_->getXDirect() < 0 ? -1 : 1);
    const double y = static_cast<double>(-dy) / plot.Height() * (axis_->getYDirect() < 0 ? -1 : 1);
    put(range, spanInside(shiftedSpan(xOf(from), x, logX), xOf(whole_), logX),
        spanInside(shiftedSpan(yOf(from), y, logY), yOf(whole_), logY));
    return range;
}

/// The first change of a gesture puts the range into the history, what follows belongs to it.
void AAxisWnd::beginGesture()
{
    if (!gesture_)
        trackers_->SaveRange(this, axis_->getMinMax());
    gesture_ = 1;
    if (!panning_)
        SetTimer(gestureTimer, gesturePause);
}

void AAxisWnd::OnGestureTimer(unsigned id)
{
    if (id != gestureTimer)
        return ABWindow::OnTimer(id);
    endGesture();
}

void AAxisWnd::endGesture()
{
    if (gesture_ && GetSafeHwnd())
        KillTimer(gestureTimer);
    gesture_ = 0;
    wheelX_ = wheelY_ = 0;
}

/// Before the first paint nothing is known of the plot; later turns of a wheel need no paint each.
void AAxisWnd::settleFirst()
{
    if (whole_ == TMinMax())
        settle();
}

void AAxisWnd::ZoomAbout(CPoint pixel, double factor)
{
    settleFirst();
    TMinMax range;
    if (!axis_ || !rangeOfZoom(pixel, factor, range))
        return;
    beginGesture();
    const HWND self = GetSafeHwnd();
    SetNewMinMax(range);
    if (!self || CWnd::FromHandle(self) == this)
        showStatusAtPointer();
}

void AAxisWnd::Pan(int dx, int dy)
{
    settleFirst();
    if (!axis_ || whole_ == TMinMax())
        return;
    const TMinMax range = shiftedRange(axis_->getMinMax(), dx, dy);
    if (sameSpans(range, axis_->getMinMax()))
        return;
    beginGesture();
    SetNewMinMax(range);
    showStatusAtPointer();
}

void AAxisWnd::ZoomBack()
{
    endGesture();
    trackers_->ZoomBack(this);
}

void AAxisWnd::ShowWholeMap()
{
    endGesture();
    if (!IsRangeZoomed())
        return;
    trackers_->SaveRange(this, axis_->getMinMax());
    SetNewMinMax(whole_);
}

int AAxisWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    if (!axis_ || presses_ > 0)
        return ABWindow::OnMouseWheel(flags, delta, screen);
    const double notches = static_cast<double>(delta) / WHEEL_DELTA;
    if (flags & MK_CONTROL) {
        ScreenToClient(screen);
        ZoomAbout(screen, std::pow(zoomOfNotch, notches));
        return 1;
    }
    const int used = flags & MK_SHIFT ? wheelPan(-notches, 0) : wheelPan(0, -notches);
    return used ? used : ABWindow::OnMouseWheel(flags, delta, screen);
}

int AAxisWnd::OnMouseHWheel(unsigned flags, int delta, CPoint screen)
{
    if (axis_ && presses_ == 0 && wheelPan(static_cast<double>(delta) / WHEEL_DELTA, 0))
        return 1;
    return ABWindow::OnMouseHWheel(flags, delta, screen);
}

/// Fine wheels send parts of notches; what is no whole pixel waits for the next.
int AAxisWnd::wheelPan(double dx, double dy)
{
    if (!IsRangeZoomed())
        return 0;
    wheelX_ += dx * panOfNotch;
    wheelY_ += dy * panOfNotch;
    const int x = truncated(wheelX_);
    const int y = truncated(wheelY_);
    const double restX = wheelX_ - x;
    const double restY = wheelY_ - y;
    if (x || y)
        Pan(x, y);
    wheelX_ = restX;
    wheelY_ = restY;
    return 1;
}

void AAxisWnd::beginPan(CPoint point)
{
    endGesture();
    SetFocus();
    SetCapture();
    panning_ = 1;
    panStart_ = point;
    panRange_ = axis_->getMinMax();
    SetCursor(IDC_HAND);
}

/// Always from where the pan began, so that map and pointer stay together at the edges too.
void AAxisWnd::panTo(CPoint point)
{
    const TMinMax range = shiftedRange(panRange_, panStart_.x - point.x, panStart_.y - point.y);
    if (sameSpans(range, axis_->getMinMax()))
        return;
    beginGesture();
    SetNewMinMax(range);
}

void AAxisWnd::endPan()
{
    if (!panning_)
        return;
    panning_ = 0;
    endGesture();
    if (GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
}

}  // namespace pavane
