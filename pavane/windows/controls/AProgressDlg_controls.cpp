#include "pavane/windows/controls/AProgressDlg.h"
#include "pavane/windows/controls/progress_dialog.h"
#include "pavane/windows/controls/ProgressJob.h"
#include "platform/accessibility.h"
#include "tessel/rounding.h"

#include <string>

namespace pavane
{

namespace
{

constexpr int mostLines = 500;

/// A text that is the same costs no painting.
void showText(CDialog& dialog, unsigned id, const CString& text)
{
    if (dialog.GetDlgItemText(id) != text)
        dialog.SetDlgItemText(id, text);
}

/// A list in the place of what the template has there.
void replace(CDialog& dialog, unsigned id, AListBox& list, const CString& name)
{
    CRect place;
    if (CWnd* const old = dialog.GetDlgItem(id)) {
        (void)old->GetWindowRect(place);
        dialog.ScreenToClient(place);
        (void)old->DestroyWindow();
    }
    (void)list.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, place, &dialog, id, name);
}

CString lineOf(const ProgressText& said)
{
    const int tenths = truncated(said.seconds * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s   " + said.text;
}

}  // namespace

int AProgressDlg::OnInitDialog()
{
    (void)text_.UpDateControl("", this, IDC_PROGRESS_TEXT, 0);
    (void)bar_.UpDateControl("", this, IDC_PROGRESS_BAR, 0);
    bar_.SetPlain(1);  // beside it stands more than it knows
    replace(*this, IDC_PROGRESS_JOBS, list_, listOfJobs);
    (void)saidText_.UpDateControl("", this, IDC_PROGRESS_SAID,
                                  WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL);
    saidText_.SetName(listOfTexts);
    saidText_.SetMostLines(mostLines);
    const int result = AResizeDialog::OnInitDialog();
    if (!title_.empty())
        SetWindowText(title_);
    shownJob_ = nullptr;
    FoldRows(progressJobsTop, progressJobsBottom, 1);
    FoldRows(progressSaidTop, progressSaidBottom, !details_);
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
    text_.SetText(job->text());
    showText(*this, IDC_PROGRESS_LEFT, job->stateText());
    bar_.SetName(job->name);
    // what is not known moves by itself, but not once it has ended
    bar_.SetFraction(job->isKept ? std::max(job->report.fraction, 0.0) : job->report.fraction);
    showText(*this, IDCANCEL, job->isKept ? closeFailed : cancelJob);
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
    FoldRows(progressJobsTop, progressJobsBottom, jobs_.size() < 2);
    std::vector<CString> lines;
    if (jobs_.size() > 1)
        for (const auto& job : jobs_)
            lines.push_back(job->name + "   " + job->stateText());
    if (lines != jobLines_) {
        list_.ResetContent();
        for (const CString& line : lines)
            (void)list_.AddString(line);
        jobLines_ = std::move(lines);
    }
    if (list_.GetCount() > 0 && list_.GetCurSel() != static_cast<int>(chosen_))
        (void)list_.SetCurSel(static_cast<int>(chosen_));
}

/// Adds what the chosen job has said since; the last line stays in view unless the user reads
/// above.
void AProgressDlg::showSaid()
{
    const auto job = chosen();
    if (!details_ || !job)
        return;
    if (shownJob_ != job.get()) {
        saidText_.Clear();
        shownJob_ = job.get();
        shownSaid_ = job->saidCount - job->said.size();
    }
    const std::uint64_t first = job->saidCount - job->said.size();
    for (std::uint64_t i = std::max(shownSaid_, first); i < job->saidCount; ++i)
        saidText_.Append(lineOf(job->said[static_cast<std::size_t>(i - first)]));
    shownSaid_ = job->saidCount;
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
        const int line = list_.GetCurSel();
        if (line >= 0)
            chosen_ = static_cast<std::size_t>(line);
        showAll();
        return 1;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

}  // namespace pavane
