// What an axis window shows of its whole range, and how the user gets about in it.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "pavane/axes/windows/plot_directions.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Pixels that one notch of the wheel pans by.
constexpr double panOfNotch = 60;

/// Of axes without values in y, x alone can be shown.
int isShowableIn(const TMinMax& shown, TMinMax& range)
{
    if (!isShowable(range) && shown.yMin > shown.yMax) {
        TMinMax across = range;
        across.yMin = across.xMin;
        across.yMax = across.xMax;
        range.yMin = shown.yMin;
        range.yMax = shown.yMax;
        return isShowable(across);
    }
    return isShowable(range);
}

}  // namespace

void APlotWnd::saveRange(const TMinMax& shown) { view_.save(shown); }
int APlotWnd::canGoBack() const { return view_.canGoBack(); }
int APlotWnd::zoomSteps() const { return view_.steps(); }

void APlotWnd::dropZoomStep()
{
    TMinMax range;
    (void)view_.goBack(range);
}

void APlotWnd::goBack()
{
    TMinMax range;
    if (axis_ && view_.goBack(range))
        SetNewMinMax(range);
}

void APlotWnd::SetNewMinMax(const TMinMax& wanted)
{
    TMinMax range = wanted;
    if (!axis_ || !isShowableIn(shownRange(), range))
        return;
    // whoever keeps the zoom history may have begun a step of it
    const int isStep = !walkingViews_ && !views_.isOpen() && zoomSteps() > views_.zooms();
    if (isStep)
        views_.begin(shownView());
    dropBand();  // it was drawn about what was shown
    putRange(withPairs(shownRange(), range));
    contentMoved();
    const LifeWatch self(life());
    ++tellingRange_;
    rangeIsNew();
    if (self.alive())
        OnRangeChanged();
    if (!self.alive())
        return;
    --tellingRange_;
    if (isStep)
        EndView();
}

TMinMax APlotWnd::shownRange() const { return axis_->getMinMax(); }
void APlotWnd::putRange(const TMinMax& range) { axis_->setMinMax(range); }

/// The first change of a gesture puts the range into the history, what follows belongs to it.
void APlotWnd::beginZoomStep()
{
    BeginViewGesture();
    if (view_.beginStep())
        saveRange(axis_->getMinMax());
}

void APlotWnd::ZoomAbout(CPoint pixel, double factor)
{
    // later turns of a wheel need no paint each
    if (!view_.isKnown())
        settle();
    if (axis_ && view_.isKnown())
        zoomView(pixel, factor);
}

void APlotWnd::zoomView(CPoint pixel, double factor)
{
    if (axis_->getGraphRect().IsRectEmpty())
        return;
    const CRect& plot = axis_->getGraphRect();
    const APoint<double> at{axis_->GPXtoRPX(std::clamp(pixel.x, plot.left, plot.right)),
                            axis_->GPYtoRPY(std::clamp(pixel.y, plot.top, plot.bottom))};
    TMinMax range;
    if (!view_.zoomed(axis_->getMinMax(), at, factor, cellStep(), directionsOf(*axis_), range))
        return;
    beginZoomStep();
    const HWND self = GetSafeHwnd();
    SetNewMinMax(range);
    if (!self || CWnd::FromHandle(self) == this)
        showStatusAtPointer();
}

void APlotWnd::Pan(int dx, int dy)
{
    if (!view_.isKnown())
        settle();
    if (axis_ && view_.isKnown())
        panView(dx, dy);
}

void APlotWnd::panView(int dx, int dy)
{
    if (axis_->getGraphRect().IsRectEmpty())
        return;
    const CRect& plot = axis_->getGraphRect();
    const TMinMax& shown = axis_->getMinMax();
    const TMinMax range =
        view_.shifted(shown, static_cast<double>(dx) / plot.Width(),
                      static_cast<double>(dy) / plot.Height(), directionsOf(*axis_));
    if (samePairs(range, shown))
        return;
    beginZoomStep();
    const HWND self = GetSafeHwnd();
    SetNewMinMax(range);
    if (!self || CWnd::FromHandle(self) == this)
        showStatusAtPointer();
}

void APlotWnd::ZoomBack()
{
    endGesture();
    if (!views_.isOpen())
        views_.setZooms(zoomSteps());
    const View shown = shownView();
    const LifeWatch self(life());
    goBack();
    if (self.alive() && !views_.isOpen() && zoomSteps() < views_.zooms())
        views_.zoomTakenBack(shown);
}

void APlotWnd::ShowWholeRange()
{
    endGesture();
    if (IsRangeZoomed())
        showWholeView();
}

void APlotWnd::resetRanges() { axis_->setMinMax(withPairs(axis_->getMinMax(), TMinMax())); }

int APlotWnd::isViewZoomed() const
{
    return view_.isZoomed(axis_->getMinMax(), directionsOf(*axis_));
}

void APlotWnd::showWholeView()
{
    const LifeWatch self(life());
    BeginView();
    saveRange(axis_->getMinMax());
    SetNewMinMax(view_.whole());
    if (self.alive())
        EndView();
}

/// Fine wheels send parts of notches; what is no whole pixel waits for the next.
int APlotWnd::wheelPan(double dx, double dy)
{
    if (!IsRangeZoomed())
        return 0;
    const CPoint way = view_.wheelPixels(dx * panOfNotch, dy * panOfNotch);
    if (way.x || way.y)
        Pan(way.x, way.y);
    return 1;
}

void APlotWnd::beginPan(CPoint point)
{
    endGesture();
    SetFocus();
    SetCapture();
    pan_ = {1, point, axis_->getMinMax()};
    SetCursor(IDC_HAND);
}

/// Always from where the pan began, so that plot and pointer stay together at the edges too.
void APlotWnd::panTo(CPoint point)
{
    const CRect& plot = axis_->getGraphRect();
    if (plot.IsRectEmpty())
        return;
    const TMinMax range = view_.shifted(
        pan_.range, static_cast<double>(pan_.start.x - point.x) / plot.Width(),
        static_cast<double>(pan_.start.y - point.y) / plot.Height(), directionsOf(*axis_));
    if (samePairs(range, axis_->getMinMax()))
        return;
    beginZoomStep();
    SetNewMinMax(range);
}

/// Shows what lies in a band that was released.
void APlotWnd::showBand(const RubberBand& band)
{
    settle();
    if (!axis_ || axis_->getGraphRect().IsRectEmpty())
        return;
    TMinMax range;
    if (!view_.between(axis_->getMinMax(),
                       {axis_->GPXtoRPX(band.from().x), axis_->GPYtoRPY(band.from().y)},
                       {axis_->GPXtoRPX(band.to().x), axis_->GPYtoRPY(band.to().y)}, cellStep(),
                       directionsOf(*axis_), range))
        return;
    endGesture();
    const HWND handle = GetSafeHwnd();
    const LifeWatch self(life());
    BeginView();
    saveRange(axis_->getMinMax());
    SetNewMinMax(range);
    if (self.alive())
        EndView();
    if (CWnd::FromHandle(handle) == this)
        showStatusAtPointer();
}

}  // namespace pavane
