#include "apps/clean/RunStrip.h"

#include "platform/dialog_ground.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned idBar = 1, idNumbers = 2, lookTimer = 1, lookTime = 100;
constexpr int gap = 6;
constexpr int barShare = 3;  ///< it takes a third, the numbers the rest

}  // namespace

int RunStrip::Create(CWnd* parent, unsigned id)
{
    return CWnd::Create("PavaneRunStrip", "", WS_CHILD | WS_VISIBLE, CRect(), parent, id);
}

int RunStrip::OnCreate(CREATESTRUCT& cs)
{
    constexpr unsigned child = WS_CHILD | WS_VISIBLE;
    if (CWnd::OnCreate(cs) < 0 || !bar_.Create(child, CRect(), this, idBar, "Progress") ||
        !numbers_.Create("", child, CRect(), this, idNumbers))
        return -1;
    (void)bar_.ShowWindow(SW_HIDE);
    numbers_.SetDialogGround(1);
    numbers_.SetName("What the engine tells");
    return 0;
}

void RunStrip::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    dc.FillSolidRect(client, GetDialogGround());
}

void RunStrip::OnSize(unsigned type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    layOut();
}

/// The numbers have all of the strip while no bar is there.
void RunStrip::layOut()
{
    CRect client;
    GetClientRect(client);
    const int middle = std::max(gap, client.right / barShare);
    const int left = isFollowing_ ? middle + gap : gap;
    bar_.MoveWindow({gap, 3, middle, client.bottom - 3});
    numbers_.MoveWindow({left, 3, std::max(left, client.right - gap), client.bottom - 3});
}

void RunStrip::Follow(const AProgress& progress, const CString& name)
{
    progress_ = progress;
    name_ = name;
    isFollowing_ = 1;
    layOut();
    bar_.Restart();
    (void)bar_.ShowWindow(SW_SHOW);
    numbers_.SetText("");
    show();
    SetTimer(lookTimer, lookTime);
}

void RunStrip::End(const CString& text)
{
    isFollowing_ = 0;
    KillTimer(lookTimer);
    (void)bar_.ShowWindow(SW_HIDE);
    ended_ = text;
    layOut();
    numbers_.SetText(ended_.empty() || idle_.empty() ? ended_ + idle_ : ended_ + ".   " + idle_);
}

void RunStrip::SetIdle(const CString& text)
{
    if (text == idle_)
        return;
    idle_ = text;
    ended_.clear();
    if (!isFollowing_)
        numbers_.SetText(idle_);
}

void RunStrip::show()
{
    const ProgressReport report = progress_.GetReport();
    bar_.SetFraction(report.fraction);
    bar_.SetText(report.text.empty() ? name_ : report.text);
}

void RunStrip::OnTimer(unsigned id)
{
    if (id != lookTimer)
        return CWnd::OnTimer(id);
    if (isFollowing_)
        show();
}

}  // namespace pavane
