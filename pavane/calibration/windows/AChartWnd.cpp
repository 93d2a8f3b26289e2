#include "pavane/calibration/windows/AChartWnd.h"

#include "pavane/axes/multi/A2DAxisMulti.h"
#include "platform/messages.h"

#include <algorithm>
#include <chrono>

namespace pavane
{

namespace
{

constexpr unsigned readTimer = 40;
constexpr unsigned readPause = 5;
/// Milliseconds of reading before the user has a turn, and between two drawings meanwhile.
constexpr std::int64_t slice = 20, drawPause = 700;

std::int64_t now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

AChartWnd::~AChartWnd() = default;

void AChartWnd::OnReading() {}

void AChartWnd::SetPanelsOfPage(int panels)
{
    const int wanted = std::clamp(panels, 1, mostPanels);
    if (wanted == panels_)
        return;
    const int first = GetAxis() ? GetAxis()->getPage() * panels_ : 0;
    panels_ = wanted;
    if (!GetAxis())
        return;
    showRead();
    ShowPage(first / panels_);
}

void AChartWnd::beginReading()
{
    reading_ = 1;
    stopped_ = atEnd_ = 0;
    error_.clear();
    shown_ = now();
    pause_ = drawPause;
    if (GetSafeHwnd())
        (void)SetTimer(readTimer, readPause);
}

void AChartWnd::endReading()
{
    reading_ = stopped_ = 0;
    if (GetSafeHwnd())
        (void)KillTimer(readTimer);
    SetAxis(nullptr, 0);
}

void AChartWnd::endRead(int stopped)
{
    if (!reading_)
        return;
    reading_ = 0;
    stopped_ = stopped;
    (void)KillTimer(readTimer);
    showRead();
    OnReading();
}

void AChartWnd::StopReading() { endRead(!atEnd_); }

void AChartWnd::ResumeReading()
{
    if (!stopped_)
        return;
    beginReading();
    OnReading();
}

void AChartWnd::ReadAll()
{
    while (reading_ && readMore(error_)) {
    }
    endRead(0);
}

void AChartWnd::showRead()
{
    const std::int64_t start = now();
    PanelChart chart = makeChart();
    int isFilled = 0;
    if (GetAxis())
        FillAxis([&] { isFilled = fillChartAxis(*GetAxis(), std::move(chart), panels_); });
    if (!isFilled)
        SetAxis(newChartAxis(std::move(chart), panels_), 1);
    shown_ = now();
    constexpr std::int64_t parts = 10;  // of the time goes to drawing at most one
    pause_ = std::max(drawPause, parts * (shown_ - start));
}

void AChartWnd::showOthers()
{
    SetAxis(newChartAxis(makeChart(), panels_), 1);
    shown_ = now();
}

/// Non-zero while more remains.
int AChartWnd::readSlice()
{
    const std::int64_t end = now() + slice;
    while (readMore(error_))
        if (now() >= end)
            return 1;
    return 0;
}

void AChartWnd::OnTimer(unsigned id)
{
    if (id != readTimer)
        return AMultiPlotWnd::OnTimer(id);
    if (!reading_)
        return;
    atEnd_ = atEnd_ || !readSlice();
    // a drag is about what was shown when it began
    if (CWnd::GetCapture() != this) {
        if (atEnd_)
            return endRead(0);
        if (now() - shown_ > pause_)
            showRead();
    }
    OnReading();
}

void AChartWnd::ShowNext(int step)
{
    if (!GetAxis() || GetAxis()->getPages() < 1)
        return;
    const int pages = GetAxis()->getPages();
    ShowPage((GetAxis()->getPage() + step + pages) % pages);
}

int AChartWnd::takeKey(int key, bool shift, bool control)
{
    if (key == 'N' && !control)
        return ShowNext(shift ? -1 : 1), 1;
    if (key == VK_ESCAPE && reading_ && CWnd::GetCapture() != this)
        return StopReading(), 1;
    return AMultiPlotWnd::takeKey(key, shift, control);
}

}  // namespace pavane
