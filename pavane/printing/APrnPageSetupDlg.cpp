#include "pavane/printing/APrnPageSetupDlg.h"

#include "pavane/printing/layout/page_geometry.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/printing/print_setup.h"
#include "pavane/printing/range_controls.h"
#include "pavane/resources/print_messages.h"
#include "platform/controls.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

namespace
{

/// Edits of the margins and where each is kept, in the order of checkMargins.
constexpr struct {
    unsigned id;
    int CRect::*side;
} marginEdits[] = {{IDC_SETUP_LEFT, &CRect::left},
                   {IDC_SETUP_TOP, &CRect::top},
                   {IDC_SETUP_RIGHT, &CRect::right},
                   {IDC_SETUP_BOTTOM, &CRect::bottom}};

CComboBox* paperList(const CDialog& dialog)
{
    return dynamic_cast<CComboBox*>(dialog.GetDlgItem(IDC_SETUP_PAPER));
}

/// The way in which an own paper is named.
CString ownName(const CString& width, const CString& height) { return width + "x" + height; }

}  // namespace

APrnPageSetupDlg::APrnPageSetupDlg(const CPrintInfo& info, const CRect& margins, CWnd* owner)
    : AResizeDialog(pageSetupTemplate, owner), info_(info),
      paper_(info.settings.paper.empty() ? localePaper() : info.settings.paper),
      landscape_(info.settings.landscape > 0), margins_(margins)
{
    SetResizeItems(pageSetupResize);
}

int APrnPageSetupDlg::OnInitDialog()
{
    (void)AResizeDialog::OnInitDialog();
    (void)sheet_.UpDateControl("", this, IDC_SETUP_SHEET, 0);
    enableItem(*this, IDC_SETUP_PRINTER, 0);
    setChecked(*this, landscape_ ? IDC_SETUP_LANDSCAPE : IDC_SETUP_PORTRAIT, 1);
    for (const auto& edit : marginEdits)
        SetDlgItemText(edit.id, millimetreText(margins_.*edit.side));
    listPapers();
    showSheet();
    if (CComboBox* const list = paperList(*this))
        list->SetFocus();
    return 0;
}

void APrnPageSetupDlg::listPapers()
{
    papers_ = knownPapers();
    const auto lineOf = [&](const CString& name) {
        return std::find_if(papers_.begin(), papers_.end(),
                            [&](const PaperSize& paper) { return paper.name == name; });
    };
    for (const PrinterPaper& offered : info_.printer.papers)
        if (offered.cx > 0 && offered.cy > 0 && lineOf(offered.name) == papers_.end())
            papers_.push_back({offered.name, offered.cx, offered.cy});
    CComboBox* const list = paperList(*this);
    if (!list)
        return;
    for (const PaperSize& paper : papers_)
        (void)list->AddString(paper.name);
    (void)list->AddString(ownPaper);
    PaperSize now;
    CString error;
    if (!readPaper(paper_, now, error) && lineOf(paper_) == papers_.end())
        (void)readPaper(localePaper(), now, error);
    const auto at = lineOf(now.name.empty() ? paper_ : now.name);
    (void)list->SetCurSel(static_cast<int>(at - papers_.begin()));
    if (at == papers_.end()) {
        SetDlgItemText(IDC_SETUP_WIDTH, millimetreText(now.width));
        SetDlgItemText(IDC_SETUP_HEIGHT, millimetreText(now.height));
    }
    choosePaper();
}

int APrnPageSetupDlg::chosenPaper(PaperSize& paper) const
{
    const CComboBox* const list = paperList(*this);
    const int line = list ? list->GetCurSel() : -1;
    if (line >= 0 && line < static_cast<int>(papers_.size())) {
        paper = papers_[static_cast<std::size_t>(line)];
        return 1;
    }
    CString error;
    return readPaper(ownName(GetDlgItemText(IDC_SETUP_WIDTH), GetDlgItemText(IDC_SETUP_HEIGHT)),
                     paper, error);
}

/// Known papers show their size; own ones begin with that of the paper before.
void APrnPageSetupDlg::choosePaper()
{
    const CComboBox* const list = paperList(*this);
    const int line = list ? list->GetCurSel() : -1;
    const bool isOwn = line < 0 || line >= static_cast<int>(papers_.size());
    if (!isOwn) {
        const PaperSize& paper = papers_[static_cast<std::size_t>(line)];
        SetDlgItemText(IDC_SETUP_WIDTH, millimetreText(paper.width));
        SetDlgItemText(IDC_SETUP_HEIGHT, millimetreText(paper.height));
    }
    enableItem(*this, IDC_SETUP_WIDTH, isOwn);
    enableItem(*this, IDC_SETUP_HEIGHT, isOwn);
}

unsigned APrnPageSetupDlg::readMargins(CRect& margins) const
{
    unsigned wrong = 0;
    for (const auto& edit : marginEdits)
        if (!readMillimetres(GetDlgItemText(edit.id), margins.*edit.side) && !wrong)
            wrong = edit.id;
    return wrong;
}

/// A printer tells its margins for the upright sheet, and which way it turns others it does not.
CRect APrnPageSetupDlg::leastMargins(int landscape) const
{
    const CRect& least = info_.printer.leastMargins;
    if (!landscape)
        return least;
    const int across = std::max(least.top, least.bottom);
    const int along = std::max(least.left, least.right);
    return {across, along, across, along};
}

void APrnPageSetupDlg::showSheet()
{
    PaperSize paper;
    CRect margins = margins_;
    (void)readMargins(margins);
    if (chosenPaper(paper))
        sheet_.show(sheetOf(paper, isChecked(*this, IDC_SETUP_LANDSCAPE)), margins);
}

void APrnPageSetupDlg::refuse(const CString& message, unsigned id)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(message, MB_OK | MB_ICONWARNING);
    if (FromHandle(self) != this)
        return;
    if (auto* const edit = dynamic_cast<CEdit*>(GetDlgItem(id))) {
        edit->SetFocus();
        edit->SetSel(0, -1);
    }
}

void APrnPageSetupDlg::OnOK()
{
    PaperSize paper;
    if (!chosenPaper(paper)) {
        refuse(notOwnPaper, IDC_SETUP_WIDTH);
        return;
    }
    CRect margins = margins_;
    if (const unsigned wrong = readMargins(margins)) {
        refuse(notMillimetres, wrong);
        return;
    }
    const int landscape = isChecked(*this, IDC_SETUP_LANDSCAPE);
    const MarginCheck check =
        checkMargins(margins, sheetOf(paper, landscape), leastMargins(landscape));
    if (!check.valid) {
        refuse(check.message, marginEdits[std::max(check.side, 0)].id);
        return;
    }
    paper_ = paper.name;
    landscape_ = landscape;
    margins_ = margins;
    AResizeDialog::OnOK();
}

int APrnPageSetupDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    const bool isList = id == IDC_SETUP_PAPER && code == CBN_SELCHANGE;
    const bool isRadio = id == IDC_SETUP_PORTRAIT || id == IDC_SETUP_LANDSCAPE;
    const bool isEdit = id >= IDC_SETUP_LEFT && id <= IDC_SETUP_HEIGHT && code == EN_CHANGE;
    if (isList)
        choosePaper();
    if (isList || isRadio || isEdit) {
        showSheet();
        return 1;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

}  // namespace pavane
