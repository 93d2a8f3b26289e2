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
    const int middle = std::max(gap, cx / barShare);
    bar_.MoveWindow({gap, 3, middle, cy - 3});
    numbers_.MoveWindow({middle + gap, 3, std::max(middle + gap, cx - gap), cy - 3});
}

void RunStrip::Follow(const AProgress& progress, const CString& name)
{
    progress_ = progress;
    name_ = name;
    isFollowing_ = 1;
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
    numbers_.SetText(text);
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
