#include "pavane/windows/AProgressDlg.h"
#include "pavane/windows/progress_dialog.h"
#include "pavane/windows/ProgressJob.h"
#include "platform/accessibility.h"
#include "platform/progress.h"
#include "tessel/rounding.h"

#include <string>

namespace pavane
{

namespace
{

constexpr int barSteps = 1000;
constexpr int mostLines = 500;

template <class Control>
Control* controlOf(const CWnd& dialog, unsigned id)
{
    return dynamic_cast<Control*>(dialog.GetDlgItem(id));
}

/// A text that is the same costs no painting; a reader hears of another one.
void showText(CDialog& dialog, unsigned id, const CString& text, bool tells)
{
    if (dialog.GetDlgItemText(id) == text)
        return;
    dialog.SetDlgItemText(id, text);
    const CWnd* const control = dialog.GetDlgItem(id);
    if (control && tells)
        NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, control->GetSafeHwnd(), 0);
}

CString lineOf(const ProgressText& said)
{
    const int tenths = truncated(said.seconds * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s   " + said.text;
}

}  // namespace

int AProgressDlg::OnInitDialog()
{
    const int result = AResizeDialog::OnInitDialog();
    if (!title_.empty())
        SetWindowText(title_);
    shownJob_ = nullptr;
    FoldRows(progressJobsTop, progressJobsBottom, 1);
    FoldRows(progressSaidTop, progressSaidBottom, !details_);
    if (auto* const bar = controlOf<CProgressCtrl>(*this, IDC_PROGRESS_BAR))
        bar->SetRange(0, barSteps);
    for (const auto& [id, name] :
         {std::pair{IDC_PROGRESS_JOBS, listOfJobs}, std::pair{IDC_PROGRESS_SAID, listOfTexts}})
        if (const CWnd* const list = GetDlgItem(id))
            SetAccessName(list->GetSafeHwnd(), name);
    showAll();
    return result;
}

std::shared_ptr<ProgressJob> AProgressDlg::chosen() const
{
    return chosen_ < jobs_.size() ? jobs_[chosen_] : nullptr;
}

void AProgressDlg::showAll()
{
    const auto job = chosen();
    if (!job)
        return;
    showText(*this, IDC_PROGRESS_TEXT, job->text(), true);
    // that is told with every second, and the bar tells it too
    showText(*this, IDC_PROGRESS_LEFT, job->stateText(), false);
    if (auto* const bar = controlOf<CProgressCtrl>(*this, IDC_PROGRESS_BAR)) {
        int least = 0;
        int most = 0;
        bar->GetRange(least, most);
        // what is not known moves by itself, but not once it has ended
        const bool isKnown = job->report.fraction >= 0 || job->isKept;
        if (isKnown != (most > 0))
            bar->SetRange(0, isKnown ? barSteps : 0);
        if (isKnown)
            (void)bar->SetPos(truncated(job->report.fraction * barSteps));
        SetAccessName(bar->GetSafeHwnd(), job->name);
    }
    showText(*this, IDCANCEL, job->isKept ? closeFailed : cancelJob, false);
    if (CWnd* const cancel = GetDlgItem(IDCANCEL))
        if (const int can = job->isKept || !job->progress.IsCancelled();
            can != cancel->IsWindowEnabled())
            (void)cancel->EnableWindow(can);
    showJobs();
    showSaid();
}

/// The list of jobs is there for two and more.
void AProgressDlg::showJobs()
{
    auto* const list = controlOf<CListBox>(*this, IDC_PROGRESS_JOBS);
    if (!list)
        return;
    FoldRows(progressJobsTop, progressJobsBottom, jobs_.size() < 2);
    std::vector<CString> lines;
    if (jobs_.size() > 1)
        for (const auto& job : jobs_)
            lines.push_back(job->name + "   " + job->stateText());
    if (lines != jobLines_) {
        list->ResetContent();
        for (const CString& line : lines)
            (void)list->AddString(line);
        jobLines_ = std::move(lines);
    }
    if (list->GetCount() > 0 && list->GetCurSel() != static_cast<int>(chosen_))
        (void)list->SetCurSel(static_cast<int>(chosen_));
}

/// Adds what the chosen job has said since; the last line is in view unless the user reads there.
void AProgressDlg::showSaid()
{
    auto* const list = controlOf<CListBox>(*this, IDC_PROGRESS_SAID);
    const auto job = chosen();
    if (!list || !details_ || !job)
        return;
    if (shownJob_ != job.get()) {
        list->ResetContent();
        shownJob_ = job.get();
        shownSaid_ = job->saidCount - job->said.size();
    }
    const std::uint64_t first = job->saidCount - job->said.size();
    if (shownSaid_ >= job->saidCount)
        return;
    for (std::uint64_t i = std::max(shownSaid_, first); i < job->saidCount; ++i) {
        (void)list->AddString(lineOf(job->said[static_cast<std::size_t>(i - first)]));
        if (list->GetCount() > mostLines)
            (void)list->DeleteString(0);
    }
    shownSaid_ = job->saidCount;
    if (GetFocus() != list)
        (void)list->SetCurSel(list->GetCount() - 1);
}

int AProgressDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDC_PROGRESS_DETAILS && code == BN_CLICKED) {
        details_ = !details_;
        SetDlgItemText(id, details_ ? hideDetails : showDetails);
        shownJob_ = nullptr;
        FoldRows(progressSaidTop, progressSaidBottom, !details_);
        showSaid();
        return 1;
    }
    if (id == IDC_PROGRESS_JOBS && code == LBN_SELCHANGE) {
        const auto* const list = controlOf<CListBox>(*this, id);
        const int line = list ? list->GetCurSel() : -1;
        if (line >= 0)
            chosen_ = static_cast<std::size_t>(line);
        showAll();
        return 1;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

}  // namespace pavane
