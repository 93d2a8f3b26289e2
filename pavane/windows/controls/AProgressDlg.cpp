#include "pavane/windows/controls/AProgressDlg.h"

#include "pavane/progress/slices.h"
#include "pavane/windows/controls/progress_dialog.h"
#include "pavane/windows/controls/ProgressJob.h"
#include "platform/cursors.h"
#include "platform/message_scope.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace pavane
{

namespace
{

constexpr auto firstDelay = std::chrono::milliseconds(300);
constexpr auto lookPause = std::chrono::milliseconds(30);
constexpr auto waitPause = std::chrono::milliseconds(2);
constexpr auto sliceTime = std::chrono::milliseconds(20);
constexpr int heardTime = 20;  // ms, for what the user does between
constexpr unsigned showTimer = 1, sliceTimer = 2;
constexpr unsigned showTime = 100;  // ms

}  // namespace

AProgressDlg::AProgressDlg(CWnd* owner, const CString& title)
    : AResizeDialog(progressTemplate, owner), owner_(owner),
      ownerHandle_(owner ? owner->GetSafeHwnd() : HWND()), title_(title), delay_(firstDelay)
{
    SetResizeItems(progressResize);
}

AProgressDlg::~AProgressDlg()
{
    CancelAll();
    close();
}

int AProgressDlg::Watch(const AProgress& progress, const CString& name)
{
    Follow(progress, name);
    return !modal_ || wait(progress);
}

int AProgressDlg::RunSlices(const std::function<int(AProgressWriter&)>& slice, const CString& name)
{
    const AProgress progress;
    Follow(progress, name);
    ProgressJob& job = *jobs_.back();
    job.writer.emplace(progress);
    job.slice = slice;
    // without a window there is no timer, and the work is not to wait for one
    return (!modal_ && SetTimer(sliceTimer, 1)) || wait(progress);
}

void AProgressDlg::Follow(const AProgress& progress, const CString& name)
{
    const auto now = Clock::now();
    if (jobs_.empty())
        next_ = now + delay_;
    jobs_.push_back(std::make_shared<ProgressJob>(progress, name, now));
    staysAway_ = 0;
    if (modal_ && !GetSafeHwnd() && !hasWaitCursor_) {
        BeginWaitCursor();
        hasWaitCursor_ = 1;
    }
    if (!modal_ && !GetSafeHwnd() && CreateModeless())
        (void)SetTimer(showTimer, showTime);
}

/// Until the job has ended, or nobody is left who waits for it.
int AProgressDlg::wait(const AProgress& watched)
{
    const AProgress progress = watched;
    const LifeWatch life(life_);
    ++waits_;
    while (!progress.HasEnded()) {
        const auto at = std::find_if(jobs_.begin(), jobs_.end(), [&](const auto& job) {
            return job->progress == progress && job->slice;
        });
        if (at != jobs_.end())
            runPieces(*at);
        else
            std::this_thread::sleep_for(waitPause);
        if (life.alive())
            (void)Look();
        if (!life.alive() || isLeft_)
            return progress.GetReport().state == ProgressState::finished;
    }
    refresh();
    while (life.alive() && GetSafeHwnd() && !isLeft_ && keeps(progress)) {
        std::this_thread::sleep_for(waitPause);
        (void)Look();
    }
    if (life.alive() && --waits_ == 0 && modal_)
        dropKept();  // what could not be shown
    return progress.GetReport().state == ProgressState::finished;
}

/// What the slice does may end the dialog.
void AProgressDlg::runPieces(const std::shared_ptr<ProgressJob>& shared)
{
    const std::shared_ptr<ProgressJob> job = shared;
    (void)runSlice(sliceTime, [&] {
        if (!job->writer || job->progress.HasEnded())
            return 0;
        if (job->writer->IsCancelled()) {
            job->writer.reset();  // the handle goes, and so the job has stopped
            return 0;
        }
        AProgressWriter writer = *job->writer;
        if (!job->slice(writer))
            (void)writer.Finish();
        return 1;
    });
}

int AProgressDlg::goesOn() const
{
    return !isLeft_ && (jobs_.empty() || std::any_of(jobs_.begin(), jobs_.end(), [](const auto& j) {
                            return !j->progress.IsCancelled();
                        }));
}

int AProgressDlg::Look()
{
    if (Clock::now() < next_)
        return goesOn();
    const LifeWatch life(life_);
    refresh();
    if (life.alive() && GetSafeHwnd() && !HandOutMessages(heardTime, alone_ ? this : nullptr) &&
        life.alive()) {
        CancelAll();
        isLeft_ = 1;
    }
    if (!life.alive())
        return 0;
    next_ = Clock::now() + lookPause;
    return goesOn();
}

int AProgressDlg::GetJobCount() const
{
    return static_cast<int>(std::count_if(
        jobs_.begin(), jobs_.end(), [](const auto& job) { return !job->progress.HasEnded(); }));
}

void AProgressDlg::CancelAll()
{
    for (const auto& job : jobs_)
        job->progress.Cancel();
}

/// Takes over how the jobs stand, shows it, and tells of those that have ended.
void AProgressDlg::refresh()
{
    const auto now = Clock::now();
    for (const auto& job : jobs_)
        job->update(now);
    std::vector<AProgress> ended;
    dropEnded(ended);
    const LifeWatch life(life_);
    const auto isKept = [](const auto& job) { return job->isKept; };
    if (jobs_.empty())
        close();
    else if (now >= next_ || (modal_ && std::any_of(jobs_.begin(), jobs_.end(), isKept)))
        open();
    if (life.alive() && GetSafeHwnd())
        showAll();
    const auto tell = life.alive() ? onEnd : nullptr;
    for (const AProgress& one : ended)
        if (tell && life.alive())
            tell(one);
}

/// What failed stays until the user has seen it; not what is waited for in a loop of the host's
/// own, which goes on, nor what the user gave up.
void AProgressDlg::dropEnded(std::vector<AProgress>& ended)
{
    for (std::size_t i = 0; i < jobs_.size();) {
        ProgressJob& job = *jobs_[i];
        if (job.report.state == ProgressState::running || job.isKept) {
            ++i;
            continue;
        }
        ended.push_back(job.progress);
        job.isKept = job.report.state == ProgressState::failed && !job.progress.IsCancelled() &&
                     (modal_ ? waits_ > 0 : GetSafeHwnd() != 0);
        if (job.isKept)
            ++i;
        else
            drop(i);
    }
}

void AProgressDlg::drop(std::size_t at)
{
    jobs_.erase(jobs_.begin() + static_cast<std::ptrdiff_t>(at));
    if (chosen_ > at || chosen_ == jobs_.size())
        chosen_ -= chosen_ > 0;
    shownJob_ = nullptr;
}

int AProgressDlg::keeps(const AProgress& progress) const
{
    return std::any_of(jobs_.begin(), jobs_.end(),
                       [&](const auto& job) { return job->isKept && job->progress == progress; });
}

void AProgressDlg::dropKept()
{
    for (std::size_t i = jobs_.size(); i-- > 0;)
        if (jobs_[i]->isKept)
            drop(i);
}

void AProgressDlg::open()
{
    if (staysAway_ || isLeft_)
        return;
    if (modal_ && !GetSafeHwnd()) {
        // a frame that takes no input waits for another dialog
        CWnd* const frame =
            owner_ && FromHandle(ownerHandle_) == owner_ ? owner_->GetTopLevelParent() : nullptr;
        staysAway_ = (owner_ && (!frame || !frame->IsWindowEnabled())) || !CreateModeless();
        endWaitCursor();
        if (staysAway_)
            return;
        const CWnd* const focus = GetFocus();
        focus_ = focus ? focus->GetSafeHwnd() : HWND();
        frame_ = frame ? frame->GetSafeHwnd() : HWND();
        if (frame)
            (void)frame->EnableWindow(0);
    }
    if (!IsWindowVisible())
        (void)ShowWindow(SW_SHOW);
}

void AProgressDlg::close()
{
    endWaitCursor();
    if (!GetSafeHwnd())
        return;
    const CWnd* const focus = GetFocus();
    const bool isHere = !focus || focus->GetTopLevelParent() == this;
    releaseFrame();
    isClosing_ = 1;
    (void)DestroyWindow();
    isClosing_ = 0;
    CWnd* const before = FromHandle(std::exchange(focus_, HWND()));
    if (before && isHere)
        (void)before->SetFocus();
}

void AProgressDlg::releaseFrame()
{
    if (CWnd* const frame = FromHandle(std::exchange(frame_, HWND())))
        (void)frame->EnableWindow(1);
}

void AProgressDlg::endWaitCursor()
{
    if (std::exchange(hasWaitCursor_, 0))
        EndWaitCursor();
}

/// With its owner, so that nobody can see the jobs or stop them.
void AProgressDlg::OnDestroy()
{
    if (!isClosing_) {
        CancelAll();
        jobs_.clear();
        isLeft_ = 1;
        releaseFrame();
    }
    AResizeDialog::OnDestroy();
}

void AProgressDlg::OnCancel()
{
    const std::shared_ptr<ProgressJob> job = chosen();
    if (!job)
        return;
    if (job->isKept)
        drop(chosen_);
    else
        job->progress.Cancel();
    refresh();
}

/// The close box: what nobody waits for goes on out of sight.
void AProgressDlg::OnClose()
{
    dropKept();
    if (modal_) {
        CancelAll();
    } else {
        staysAway_ = 1;
        (void)ShowWindow(SW_HIDE);
    }
    refresh();
}

void AProgressDlg::OnTimer(unsigned id)
{
    AResizeDialog::OnTimer(id);
    if (id == showTimer)
        return refresh();
    if (id != sliceTimer || isSlicing_)
        return;
    const LifeWatch life(life_);
    const auto jobs = jobs_;
    int isLeft = 0;
    isSlicing_ = 1;  // a slice may let messages in
    for (const auto& job : jobs) {
        if (!job->slice || job->progress.HasEnded())
            continue;
        runPieces(job);
        if (!life.alive())
            return;
        isLeft = 1;
    }
    isSlicing_ = 0;
    if (!isLeft)
        (void)KillTimer(sliceTimer);
}

}  // namespace pavane
