#pragma once

#include "pavane/containers/LifeWatch.h"
#include "pavane/progress/AProgress.h"
#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/controls/AInfoText.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/AStaticText.h"

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace pavane
{

struct ProgressJob;

/// Says how far jobs are, with a bar, what they do, the time left, all that they have said
/// ("Details") and a button to give them up, which Escape presses. Jobs that end within a moment
/// show nothing. Several jobs stand in one list, of which one is chosen.
///
/// A modal one waits for its jobs and keeps input from the frame of its owner, which goes on
/// painting; a frame that takes no input already waits for another dialog, and this one stays away.
/// One that is not modal works by timers beside the main loop. A dialog that goes, also with its
/// owner, asks its jobs to stop.
class PAVANE_API AProgressDlg : public AResizeDialog
{
public:
    /// `owner` is any window of the frame that waits, null for none, and may go meanwhile.
    explicit AProgressDlg(CWnd* owner = nullptr, const CString& title = CString());
    ~AProgressDlg() override;

    /// Before the first job; modal at first.
    void SetModal(int on) { modal_ = on; }
    /// For how long (ms) jobs show nothing; 300 at first.
    void SetDelay(int milliseconds) { delay_ = std::chrono::milliseconds(milliseconds); }

    /// Keeps input and painting from all other windows of the program while Look hears the user:
    /// for work on what they show. Off at first.
    void SetAlone(int on) { alone_ = on; }

    /// Follows a job that another thread does; `name` is what it is ("Gridding"). A modal dialog
    /// returns when the job has ended, non-zero when it has finished, and of one that failed when
    /// the user has read why; 0 also when the dialog went with its owner or the program is to end,
    /// and the job may still be at work then. Otherwise returns 1 at once.
    int Watch(const AProgress& progress, const CString& name);
    /// Does a job in this thread: calls `slice` again and again, for 20 ms at a time, and lets the
    /// user work between. `slice` does a small piece and returns non-zero while there is more; 0
    /// finishes the job, unless it failed. It is not called any more once the user gave up. Returns
    /// as Watch does.
    int RunSlices(const std::function<int(AProgressWriter&)>& slice, const CString& name);
    /// Follows a job of this thread that has a loop of its own, which calls Look.
    void Follow(const AProgress& progress, const CString& name);
    /// Shows what is due and lets the user be heard; 0 when the user gave up. Cheap when called
    /// often.
    int Look();

    /// Jobs that have not ended.
    int GetJobCount() const;
    /// Asks all of them to stop.
    void CancelAll();
    /// Called when a job has ended, of a dialog that lives; may begin another or delete this.
    std::function<void(const AProgress&)> onEnd;

protected:
    int OnInitDialog() override;
    void OnOK() override {}
    void OnCancel() override;
    void OnClose() override;
    void OnTimer(unsigned id) override;
    void OnDestroy() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    using Clock = std::chrono::steady_clock;
    int wait(const AProgress& watched);
    void runPieces(const std::shared_ptr<ProgressJob>& shared);
    int goesOn() const;
    void refresh();
    void dropEnded(std::vector<AProgress>& ended);
    int keeps(const AProgress& progress) const;
    void dropKept();
    void drop(std::size_t at);
    void open();
    void close();
    void releaseFrame();
    void endWaitCursor();
    std::shared_ptr<ProgressJob> chosen() const;
    void showAll();
    void showJobs();
    void showSaid();

    CWnd* owner_;
    HWND ownerHandle_;
    CString title_;
    int modal_ = 1;
    int alone_ = 0;
    std::chrono::milliseconds delay_;
    std::vector<std::shared_ptr<ProgressJob>> jobs_;
    std::size_t chosen_ = 0;
    Clock::time_point next_;  ///< when to look at the user again
    HWND frame_ = 0;          ///< that takes no input meanwhile
    HWND focus_ = 0;          ///< who gets the keyboard back
    int hasWaitCursor_ = 0;
    int staysAway_ = 0;  ///< cannot be shown, or was closed
    int isClosing_ = 0;
    int isLeft_ = 0;  ///< went with its owner, or the program ends
    int isSlicing_ = 0;
    int waits_ = 0;  ///< in Watch and RunSlices
    int details_ = 0;
    AStaticText text_;
    AProgressBar bar_;
    AListBox list_;
    AInfoText saidText_;
    std::vector<CString> jobLines_;
    const ProgressJob* shownJob_ = nullptr;  ///< whose texts are in the list
    std::uint64_t shownSaid_ = 0;            ///< how many of them
    LifeToken life_;
};

}  // namespace pavane
