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
    panels_ = wanted;
    if (GetAxis())
        showRead();
}

void AChartWnd::beginReading()
{
    reading_ = 1;
    error_.clear();
    shown_ = now();
    if (GetSafeHwnd())
        (void)SetTimer(readTimer, readPause);
}

void AChartWnd::endReading()
{
    reading_ = 0;
    if (GetSafeHwnd())
        (void)KillTimer(readTimer);
    SetAxis(nullptr, 0);
}

void AChartWnd::StopReading()
{
    if (!reading_)
        return;
    reading_ = 0;
    (void)KillTimer(readTimer);
    showRead();
    OnReading();
}

void AChartWnd::ReadAll()
{
    while (reading_ && readMore(error_)) {
    }
    StopReading();
}

void AChartWnd::showRead()
{
    const int page = GetAxis() ? GetAxis()->getPage() : 0;
    SetAxis(newChartAxis(makeChart(), panels_), 1);
    if (page > 0)
        ShowPage(page);
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
    if (!readSlice())
        return StopReading();
    // a drag is about what was shown when it began
    if (now() - shown_ > drawPause && CWnd::GetCapture() != this)
        showRead();
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
