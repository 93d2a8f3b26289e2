#include "pavane/windows/controls/AProgressDlg.h"
#include "pavane/windows/controls/JobBox.h"
#include "pavane/windows/controls/progress_dialog.h"
#include "platform/accessibility.h"
#include "platform/message_scope.h"

#include <gtest/gtest.h>
#include <thread>

namespace pavane
{

namespace
{

struct TickingFrame : CWnd {
    std::function<void()> tick;
    void OnTimer(unsigned) override
    {
        if (tick)
            tick();
    }
};

struct ProgressDialog : testing::Test {
    ProgressDialog()
    {
        frame.Create("Frame", "frame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200), nullptr, 0);
        (void)frame.ShowWindow(SW_SHOW);
        dialog = std::make_unique<AProgressDlg>(&frame);
        dialog->SetDelay(0);
    }
    CString text(unsigned id) const
    {
        const auto* const line = dynamic_cast<AStaticText*>(dialog->GetDlgItem(id));
        return line ? line->GetText() : dialog->GetDlgItemText(id);
    }
    template <class Control = AListBox>
    Control& at(unsigned id) const
    {
        return dynamic_cast<Control&>(*dialog->GetDlgItem(id));
    }
    /// Lets timers run until something is so; not for ever.
    static int until(const std::function<bool()>& isSo)
    {
        for (int i = 0; i < 2000 && !isSo(); ++i) {
            (void)HandOutMessages(5);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return isSo();
    }
    TickingFrame frame;
    std::unique_ptr<AProgressDlg> dialog;
};

TEST_F(ProgressDialog, SlicesRunUntilTheyAreDoneStoppedOrOrphaned)
{
    enum End { done, finished, failed, cancelled, closed, frameGone, deleted };
    const struct {
        End end;
        int result;
    } rows[] = {{done, 1},   {finished, 1},  {failed, 0}, {cancelled, 0},
                {closed, 0}, {frameGone, 0}, {deleted, 0}};
    for (const auto& row : rows) {
        int calls = 0;
        int shown = 0;
        CString why;
        frame.tick = [&] {
            if (!dialog || text(IDCANCEL) != "Close")
                return;
            why = text(IDC_PROGRESS_TEXT);
            dialog->SendMessage(WM_COMMAND, IDCANCEL);
        };
        (void)frame.SetTimer(1, 20);
        const auto slice = [&](AProgressWriter& writer) {
            ++calls;
            writer.SetTotal(100);
            writer.SetText("piece");
            writer.Advance();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            if (!dialog->IsWindowVisible())
                return 1;
            if (!shown++) {
                EXPECT_FALSE(frame.IsWindowEnabled());
                EXPECT_EQ(text(IDC_PROGRESS_TEXT), "Counting: piece");
                EXPECT_EQ(text(IDC_PROGRESS_LEFT).find(" %"), 1U);
            }
            if (row.end == cancelled)
                dialog->SendMessage(WM_COMMAND, IDCANCEL);
            if (row.end == closed)
                dialog->SendMessage(WM_CLOSE);
            if (row.end == frameGone)
                frame.DestroyWindow();
            if (row.end == deleted)
                dialog.reset();
            if (row.end == failed)
                (void)writer.Fail("no room");
            if (row.end == finished)
                (void)writer.Finish(5);
            return row.end != done ? 1 : 0;
        };
        EXPECT_EQ(dialog->RunSlices(slice, "Counting"), row.result) << row.end;
        EXPECT_EQ(shown, 1) << row.end;
        EXPECT_EQ(why, row.end == failed ? "Counting: no room" : "") << row.end;
        EXPECT_GT(calls, 1);
        if (row.end == frameGone) {
            frame.Create("Frame", "frame", WS_OVERLAPPEDWINDOW, {}, nullptr, 0);
            (void)frame.ShowWindow(SW_SHOW);
            dialog = std::make_unique<AProgressDlg>(&frame);
            dialog->SetDelay(0);
        }
        EXPECT_TRUE(frame.IsWindowEnabled()) << row.end;
        EXPECT_FALSE(dialog && dialog->GetSafeHwnd()) << row.end;
    }
}

TEST_F(ProgressDialog, AJobThatEndsAtOnceShowsNothing)
{
    AProgressDlg quick(&frame);
    int seen = 0;
    EXPECT_TRUE(quick.RunSlices([&](AProgressWriter&) { return seen += !!quick.GetSafeHwnd(), 0; },
                                "Quick"));
    EXPECT_FALSE(seen);
}

/// Also of a job that fails before anything is shown; but not of one that the user gave up.
TEST_F(ProgressDialog, TellsWhyAJobFailed)
{
    for (const int givenUp : {0, 1}) {
        AProgressDlg quick(&frame);
        AProgress progress;
        AProgressWriter writer(progress);
        if (givenUp)
            progress.Cancel();
        (void)writer.Fail("no room");
        int told = 0;
        frame.tick = [&] {
            told += quick.IsWindowVisible();
            quick.SendMessage(WM_CLOSE);
        };
        (void)frame.SetTimer(1, 20);
        EXPECT_FALSE(quick.Watch(progress, "Quick"));
        EXPECT_EQ(told > 0, !givenUp);
        EXPECT_FALSE(quick.GetSafeHwnd());
    }
}

TEST_F(ProgressDialog, WaitsForAThread)
{
    const AProgress progress;
    long sum = 0;
    std::thread worker([&sum, writer = AProgressWriter(progress)]() mutable {
        writer.SetTotal(50);
        for (int i = 0; i < 50; ++i) {
            sum += i;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            writer.Advance();
        }
        (void)writer.Finish(3);
    });
    EXPECT_TRUE(dialog->Watch(progress, "Summing"));
    EXPECT_EQ(sum, 1225);
    EXPECT_EQ(progress.GetReport().result, 3);
    worker.join();
}

TEST_F(ProgressDialog, SeveralJobsStandInOneListAndFailuresStay)
{
    dialog->SetModal(0);
    std::vector<ProgressState> ended;
    dialog->onEnd = [&](const AProgress& one) { ended.push_back(one.GetReport().state); };
    const AProgress progress[3];
    std::vector<AProgressWriter> writers(progress, progress + 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(dialog->Watch(progress[i], "Job " + std::to_string(i)));
    ASSERT_TRUE(until([&] { return dialog->IsWindowVisible(); }));
    EXPECT_TRUE(frame.IsWindowEnabled());
    EXPECT_EQ(at(IDC_PROGRESS_JOBS).GetCount(), 3);
    const auto& bar = at<AProgressBar>(IDC_PROGRESS_BAR);
    EXPECT_LT(bar.GetFraction(), 0);
    // the chosen one is what the bar shows and the button stops
    (void)at(IDC_PROGRESS_JOBS).SetCurSel(1);
    dialog->SendMessage(WM_COMMAND, IDC_PROGRESS_JOBS | LBN_SELCHANGE << 16);
    dialog->SendMessage(WM_COMMAND, IDCANCEL);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(progress[i].IsCancelled(), i == 1);
    writers[0].SetText("line\none");
    writers[0].SetTotal(4);
    writers[0].Advance(9);
    writers.erase(writers.begin() + 1);
    ASSERT_TRUE(until([&] { return at(IDC_PROGRESS_JOBS).GetCount() == 2; }));
    (void)at(IDC_PROGRESS_JOBS).SetCurSel(0);
    dialog->SendMessage(WM_COMMAND, IDC_PROGRESS_JOBS | LBN_SELCHANGE << 16);
    dialog->SendMessage(WM_COMMAND, IDC_PROGRESS_DETAILS);
    EXPECT_EQ(text(IDC_PROGRESS_TEXT), "Job 0: line one");
    EXPECT_EQ(bar.GetFraction(), 1);
    EXPECT_EQ(at<AInfoText>(IDC_PROGRESS_SAID).GetLines().count(), 1);
    (void)writers[1].Fail("no room");
    (void)writers[0].Finish();
    ASSERT_TRUE(until([&] { return text(IDCANCEL) == "Close"; }));
    EXPECT_EQ(text(IDC_PROGRESS_TEXT), "Job 2: no room");
    EXPECT_EQ(dialog->GetJobCount(), 0);
    dialog->SendMessage(WM_COMMAND, IDCANCEL);
    EXPECT_FALSE(dialog->GetSafeHwnd());
    using enum ProgressState;
    EXPECT_EQ(ended, (std::vector{stopped, finished, failed}));
}

TEST_F(ProgressDialog, RunsSlicesBesideTheMainLoopAndMayGoWithinItsEnd)
{
    dialog->SetModal(0);
    dialog->onEnd = [&](const AProgress&) { dialog.reset(); };
    int calls = 0;
    EXPECT_TRUE(dialog->RunSlices([&](AProgressWriter&) { return ++calls < 100; }, "Beside"));
    EXPECT_TRUE(until([&] { return !dialog; }));
    EXPECT_EQ(calls, 100);
}

TEST_F(ProgressDialog, ADialogThatGoesAsksItsJobsToStop)
{
    const AProgress progress;
    dialog->Follow(progress, "Long");
    dialog.reset();
    EXPECT_TRUE(progress.IsCancelled());
    EXPECT_FALSE(progress.HasEnded());
}

TEST_F(ProgressDialog, BoxesNestAndTheirFractionsMayBeAnything)
{
    JobBox outer(&frame, "Outer");
    JobBox inner(&frame, "Inner");
    for (const double fraction : {0.1, -3.0, 0.5, 7.0, 0.4, 1.0})
        EXPECT_TRUE(outer.show(fraction) && inner.show(fraction));
    JobBox without(nullptr, "Nobody");
    EXPECT_TRUE(without.show(0.5));
}

}  // namespace

}  // namespace pavane
