// The history of views of an axis window, and the gestures that are one step of it.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/windows/APlotWnd.h"

#include <utility>

namespace pavane
{

namespace
{

/// Turns of the wheel closer together than this, in milliseconds, are one gesture.
constexpr unsigned gesturePause = 500;

constexpr auto rangePart = static_cast<std::size_t>(ViewPart::range);

/// A range is put back last, when what it is a range of is there; a plane may bring its own.
constexpr ViewPart orderOfParts[] = {ViewPart::plane, ViewPart::turn, ViewPart::colours,
                                     ViewPart::scales, ViewPart::range};

}  // namespace

void APlotWnd::SetViewPart(ViewPart part, std::function<ViewValues()> get,
                           std::function<void(const ViewValues&)> put)
{
    if (part != ViewPart::range)
        parts_[static_cast<std::size_t>(part)] = {std::move(get), std::move(put)};
}

View APlotWnd::shownView() const
{
    View view;
    if (axis_ && view_.isKnown()) {
        const TMinMax range = shownRange();
        view[rangePart] = {range.xMin, range.xMax, range.yMin, range.yMax};
    }
    for (std::size_t i = 0; i < viewParts; ++i)
        if (parts_[i].get && parts_[i].put)
            view[i] = parts_[i].get();
    return view;
}

void APlotWnd::showView(const View& view, const View& shown)
{
    const LifeWatch self(life());
    for (const ViewPart part : orderOfParts) {
        const auto i = static_cast<std::size_t>(part);
        if (sameValues(view[i], shown[i]))
            continue;
        if (i == rangePart)
            SetNewMinMax({view[i][0], view[i][1], view[i][2], view[i][3]});
        else if (const auto put = parts_[i].put)  // it may take itself away
            put(view[i]);
        if (!self.alive())
            return;
    }
}

void APlotWnd::BeginView()
{
    if (walkingViews_)
        return;
    if (viewGesture_ && !pan_.going && !tellingRange_)
        endGesture();
    if (!views_.isOpen())
        views_.setZooms(zoomSteps());
    views_.begin(views_.isOpen() ? View() : shownView());
}

void APlotWnd::EndView()
{
    if (walkingViews_ || !views_.isOpen())
        return;
    // one gesture is one step of the zoom history, too
    const int known = views_.zooms();
    const View shown = views_.isOutermost() ? shownView() : View();
    if (views_.isOutermost())
        while (zoomSteps() > known + 1)
            dropZoomStep();
    views_.end(shown, zoomSteps() > known);
    if (views_.isOpen())
        return;
    views_.setZooms(zoomSteps());
    view_.endGesture();  // the next change of the range is another step, whoever ended this one
}

void APlotWnd::BeginViewGesture()
{
    if (!viewGesture_ && !views_.isOpen()) {
        BeginView();
        viewGesture_ = views_.isOpen();
    }
    if (!pan_.going)
        SetTimer(gestureTimer, gesturePause);
}

void APlotWnd::endGesture()
{
    if ((viewGesture_ || view_.isInGesture()) && GetSafeHwnd())
        KillTimer(gestureTimer);
    view_.endGesture();
    if (std::exchange(viewGesture_, 0))
        EndView();
}

void APlotWnd::leaveViews()
{
    parts_ = {};
    views_.clear();
}

void APlotWnd::wholeIsNew(ViewPart part, std::size_t pair, const TMnMx& from, const TMnMx& to)
{
    views_.replacePair(part, pair, {from.min, from.max}, {to.min, to.max});
}

void APlotWnd::wholeIsNew(const TMinMax& whole)
{
    const TMinMax before = view_.whole();
    wholeIsNew(ViewPart::range, 0, {before.xMin, before.xMax}, {whole.xMin, whole.xMax});
    wholeIsNew(ViewPart::range, 1, {before.yMin, before.yMax}, {whole.yMin, whole.yMax});
    view_.replaceWhole(whole);
}

/// An axis knows its whole range once it is laid out.
void APlotWnd::DataGrew()
{
    if (!axis_ || !view_.isKnown())
        return DataChanged();
    endDrags();
    endGesture();
    const TMinMax before = view_.whole();
    const TMinMax shown = shownRange();
    const int isZoomed = IsRangeZoomed();
    const LifeWatch self(life());
    resetRanges();
    view_.setWhole(TMinMax());
    ContentChanged();
    UpdateWindow();
    if (!self.alive() || !axis_)
        return;
    if (!view_.isKnown())
        return DataChanged();  // nobody sees it
    const TMinMax now = view_.whole();
    view_.setWhole(before);
    wholeIsNew(now);
    if (isZoomed)
        SetNewMinMax(shown);
}

int APlotWnd::CanViewBack() const
{
    if (!views_.isOpen())
        return views_.canGoBack();
    if (!viewGesture_)
        return 0;
    const View shown = shownView();
    for (std::size_t i = 0; i < viewParts; ++i)
        if (!sameValues(shown[i], views_.opened()[i]))
            return 1;
    return views_.canGoBack();
}

/// A step that is one of the zoom history leaves that, or comes back to it.
void APlotWnd::walkViews(int forward)
{
    endPan();
    endGesture();
    if (presses_ > 0 || walkingViews_ || views_.isOpen())
        return;
    views_.setZooms(zoomSteps());
    const View shown = shownView();
    View view = shown;
    const int zooms = views_.zooms();
    if (!(forward ? views_.forward(view) : views_.back(view)))
        return;
    for (int i = views_.zooms(); i < zooms; ++i)
        dropZoomStep();
    for (int i = zooms; i < views_.zooms(); ++i)
        saveRange(axis_->getMinMax());
    const LifeWatch self(life());
    walkingViews_ = 1;
    showView(view, shown);
    if (!self.alive())
        return;
    walkingViews_ = 0;
    showStatusAtPointer();
}

void APlotWnd::ViewBack() { walkViews(0); }
void APlotWnd::ViewForward() { walkViews(1); }

}  // namespace pavane
