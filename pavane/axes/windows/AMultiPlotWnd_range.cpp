// The ranges that a window of several scales shows, and of which views of them are a history.
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

/// Ranges that the host gave its scales are those of the whole; the others come from the graphs.
void AMultiPlotWnd::resetRanges()
{
    if (!multi_)
        return APlotWnd::resetRanges();
    endDrag(1);
    multi_->resetRanges();
    for (int i = 0; i < multi_->getScaleCount(); ++i) {
        const TMnMx asked = multi_->getAskedRange(i);
        if (!(asked.min > asked.max))
            (void)multi_->showRange(i, asked);
    }
}

/// The y pair is that of scale 0, whichever is the current one of the host.
TMinMax AMultiPlotWnd::shownRange() const
{
    TMinMax range = APlotWnd::shownRange();
    if (multi_) {
        range.yMin = multi_->getScale(0).range.min;
        range.yMax = multi_->getScale(0).range.max;
    }
    return range;
}

void AMultiPlotWnd::putRange(const TMinMax& range)
{
    if (!multi_)
        return APlotWnd::putRange(range);
    const int current = multi_->getCurrentScale();
    (void)multi_->setCurrentScale(0);
    multi_->setMinMax(range);
    (void)multi_->setCurrentScale(current);
}

MultiRanges AMultiPlotWnd::GetRanges() const { return multi_ ? rangesOf(*multi_) : MultiRanges(); }

void AMultiPlotWnd::ShowRanges(const MultiRanges& ranges)
{
    if (!multi_)
        return;
    const MultiRanges shown = GetRanges();
    const auto isSpan = [](const TMnMx& span) {
        return span.min < span.max && std::isfinite(span.max - span.min);
    };
    for (std::size_t i = 1; i < std::min(shown.y.size(), ranges.y.size()); ++i) {
        if (!isSpan(ranges.y[i]) || ranges.y[i] == shown.y[i])
            continue;
        (void)multi_->showRange(static_cast<int>(i), ranges.y[i]);
    }
    TMinMax range = shownRange();
    if (isSpan(ranges.x)) {
        range.xMin = ranges.x.min;
        range.xMax = ranges.x.max;
    }
    if (!ranges.y.empty() && isSpan(ranges.y[0])) {
        range.yMin = ranges.y[0].min;
        range.yMax = ranges.y[0].max;
    }
    SetNewMinMax(range);
}

/// A scale that the host deleted gave its number to another, and one that got another range has
/// another whole.
void AMultiPlotWnd::followScales()
{
    std::vector<KnownScale> now;
    now.reserve(static_cast<std::size_t>(multi_->getScaleCount()));
    for (int i = 0; i < multi_->getScaleCount(); ++i)
        now.push_back({multi_->getScaleId(i), multi_->getAskedRange(i)});
    if (now == known_)
        return;
    const MultiRanges before = whole_.whole();
    MultiRanges whole{before.x, {}};
    int isMoved = now.size() < known_.size();
    for (std::size_t i = 0; i < now.size(); ++i) {
        const auto was = std::find(known_.begin(), known_.end(), now[i]);
        const auto k = static_cast<std::size_t>(was - known_.begin());
        whole.y.push_back(k < before.y.size() ? before.y[k] : TMnMx());
        isMoved = isMoved || (i < known_.size() && known_[i].id != now[i].id);
    }
    if (isMoved)
        steps_.clear();  // of scales by their numbers
    whole_.setWhole(whole);
    known_ = std::move(now);
}

void AMultiPlotWnd::plotLaidOut()
{
    if (!multi_)
        return;
    followScales();
    whole_.learn(GetRanges());
    fitFocus(*multi_, focus_);
}

/// What was all of the data in a step is all of it.
void AMultiPlotWnd::growSteps(const MultiRanges& before, const MultiRanges& now)
{
    if (before.y.size() != now.y.size() || now.y.empty() || GetWholeRange() == TMinMax())
        return;
    const auto grow = [](TMnMx& span, const TMnMx& from, const TMnMx& to) {
        if (span == from)
            span = to;
    };
    for (MultiRanges& step : steps_) {
        grow(step.x, before.x, now.x);
        for (std::size_t i = 0; i < std::min(step.y.size(), now.y.size()); ++i)
            grow(step.y[i], before.y[i], now.y[i]);
    }
    wholeIsNew(ViewPart::range, 0, before.x, now.x);
    wholeIsNew(ViewPart::range, 1, before.y[0], now.y[0]);
    for (std::size_t i = 1; i < now.y.size(); ++i)
        wholeIsNew(ViewPart::scales, i - 1, before.y[i], now.y[i]);
    TMinMax whole = GetWholeRange();
    whole.xMin = now.x.min;
    whole.xMax = now.x.max;
    whole.yMin = now.y[0].min;
    whole.yMax = now.y[0].max;
    wholeIsNew(whole);
}

void AMultiPlotWnd::FillAxis(const std::function<void()>& fill)
{
    const MultiRanges before = GetRanges();
    const MultiView known = whole_;
    const LifeWatch self(life());
    fill();
    if (!self.alive() || !multi_)
        return;
    multi_->findRanges();
    MultiRanges shown = GetRanges();
    whole_.forget();
    followScales();
    whole_.learn(shown);
    growSteps(known.whole(), whole_.whole());
    int isKept = 0;
    for (int i = directionX; i < static_cast<int>(std::min(shown.y.size(), before.y.size())); ++i) {
        if (!known.isZoomed(before, i, isLog(i)))
            continue;
        (i == directionX ? shown.x : shown.y[static_cast<std::size_t>(i)]) =
            i == directionX ? before.x : before.y[static_cast<std::size_t>(i)];
        isKept = 1;
    }
    if (isKept)
        return ShowRanges(shown);
    ContentChanged();
    pictureMoved();
}

void AMultiPlotWnd::saveRange(const TMinMax& shown)
{
    if (!multi_)
        return APlotWnd::saveRange(shown);
    steps_.push_back(GetRanges());
}

void AMultiPlotWnd::goBack()
{
    if (!multi_)
        return APlotWnd::goBack();
    if (steps_.empty())
        return;
    const MultiRanges ranges = steps_.back();
    steps_.pop_back();
    ShowRanges(ranges);
}

int AMultiPlotWnd::zoomSteps() const
{
    return multi_ ? static_cast<int>(steps_.size()) : APlotWnd::zoomSteps();
}

int AMultiPlotWnd::canGoBack() const { return zoomSteps() > 0; }

void AMultiPlotWnd::dropZoomStep()
{
    if (!multi_)
        APlotWnd::dropZoomStep();
    else if (!steps_.empty())
        steps_.pop_back();
}

}  // namespace pavane
