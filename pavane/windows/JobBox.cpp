#include "pavane/windows/JobBox.h"

#include "platform/CDialog.h"
#include "platform/cursors.h"
#include "tessel/rounding.h"

#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned idHeading = 101;
constexpr DlgItem items[] = {
    {ControlKind::staticText, idHeading, "", 8, 10, 224, 10},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 92, 28, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate dialog = {0, "Please wait", 240, 50, items, std::size(items)};

// jobs that end within a moment show nothing; the others look at the user so often
constexpr auto moment = std::chrono::milliseconds(400);
constexpr auto pause = std::chrono::milliseconds(30);

}  // namespace

class JobBox::Box : public CDialog
{
public:
    explicit Box(CWnd* parent) : CDialog(dialog, parent) {}
    int cancelled = 0;

protected:
    void OnCancel() override { cancelled = 1; }
    void OnOK() override {}
};

JobBox::JobBox(CWnd* window, CString what)
    : window_(window), handle_(window ? window->GetSafeHwnd() : HWND()), what_(std::move(what)),
      next_(std::chrono::steady_clock::now() + moment)
{
    BeginWaitCursor();
}

JobBox::~JobBox()
{
    EndWaitCursor();
    if (!box_)
        return;
    const CWnd* const focus = CWnd::GetFocus();
    const bool isHere = !focus || focus->GetTopLevelParent() == box_.get();
    if (CWnd::FromHandle(frameHandle_) == frame_)
        frame_->EnableWindow(1);
    box_->DestroyWindow();
    if (CWnd* const before = CWnd::FromHandle(focus_); before && isHere)
        before->SetFocus();
}

int JobBox::open()
{
    if (failed_ || CWnd::FromHandle(handle_) != window_)
        return 0;
    frame_ = window_->GetTopLevelParent();
    // a frame that takes no input waits for another box
    failed_ = !frame_ || !frame_->IsWindowEnabled();
    if (failed_)
        return 0;
    frameHandle_ = frame_->GetSafeHwnd();
    auto box = std::make_unique<Box>(frame_);
    failed_ = !box->CreateModeless();
    if (failed_)
        return 0;
    box_ = std::move(box);
    const CWnd* const focus = CWnd::GetFocus();
    focus_ = focus ? focus->GetSafeHwnd() : HWND();
    frame_->EnableWindow(0);
    box_->ShowWindow(SW_SHOW);
    return 1;
}

int JobBox::show(double fraction)
{
    if (box_ && box_->cancelled)
        return 0;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_ || (!box_ && !open()))
        return 1;
    const int percent = fraction >= 0 && fraction <= 1 ? truncated(fraction * 100) : 0;
    if (percent != shownPercent_ && box_->GetSafeHwnd())
        box_->SetDlgItemText(idHeading, what_ + "   " + std::to_string(percent) + " %");
    shownPercent_ = percent;
    for (MSG message; PeekMessage(message);)
        DispatchMessage(message);
    next_ = std::chrono::steady_clock::now() + pause;
    return !box_->cancelled;
}

}  // namespace pavane
