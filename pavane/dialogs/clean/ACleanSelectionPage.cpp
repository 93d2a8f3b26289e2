#include "pavane/dialogs/clean/ACleanSelectionPage.h"

#include "pavane/dialogs/ask_page.h"
#include "pavane/resources/selection_dialog.h"
#include "platform/controls.h"

namespace pavane
{

namespace
{

constexpr FormControl controls[] = {
    {IDC_SELECT_FORM, SelectionForm::form},
    {IDC_SELECT_START, SelectionForm::start},
    {IDC_SELECT_STOP, SelectionForm::stop},
    {IDC_SELECT_IFS, SelectionForm::ifs},
};
constexpr FormNote notes[] = {
    {IDC_SELECT_SPAN_TEXT, SelectionForm::span},
    {IDC_SELECT_USED_TEXT, SelectionForm::used},
    {IDC_SELECT_BEAM_TEXT, SelectionForm::beam},
};

struct GroupButton {
    unsigned id;
    FreqWhen when;
};
constexpr GroupButton groupButtons[] = {
    {IDC_SELECT_ADD, FreqWhen::hasMarks},
    {IDC_SELECT_DELETE, FreqWhen::hasGroups},
    {IDC_SELECT_ONE, FreqWhen::severalIfs},
    {IDC_SELECT_EACH, FreqWhen::hasIfs},
};

}  // namespace

unsigned ACleanSelectionPage::IfTable::OnGetDlgCode() { return DLGC_WANTARROWS | DLGC_WANTCHARS; }

ACleanSelectionPage::ACleanSelectionPage(const CString& caption)
    : AFormPage(cleanSelectionPage, caption, form_, controls, notes)
{
    SetResizeItems(cleanSelectionResize);
    table_.steps().addView(this);
}

ACleanSelectionPage::~ACleanSelectionPage()
{
    table_.steps().removeView(this);
    DestroyWindow();
}

void ACleanSelectionPage::SetParameters(const ACleanSelectionPM& parameters)
{
    isTaking_ = 1;
    table_.SetParameters(nullptr);
    form_.setRecord(parameters);
    table_.SetParameters(&form_.groups());
    isTaking_ = 0;
    ShowForm();
    enableButtons();
}

int ACleanSelectionPage::OnInitDialog()
{
    (void)ReplaceControl(IDC_SELECT_IFS, table_, table_.GetWndClassName(), "IFs",
                         WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL);
    const int result = AFormPage::OnInitDialog();
    enableButtons();
    return result;
}

void ACleanSelectionPage::GroupsChanged(const FreqGroupNews& news)
{
    if (isTaking_ || !GetSafeHwnd())
        return;
    ShowNotes();
    enableButtons();
    if (news.groups)
        SetModified();
}

void ACleanSelectionPage::enableButtons()
{
    if (!GetSafeHwnd())
        return;
    for (const GroupButton& each : groupButtons)
        if (CWnd* const button = GetDlgItem(each.id)) {
            const int isOn = table_.isTimeOf(each.when);
            // the button that was pressed leaves the keyboard to the table, not to its neighbour
            if (!isOn && CWnd::GetFocus() == button)
                (void)table_.SetFocus();
            (void)button->EnableWindow(isOn);
        }
}

/// Makes the marked IFs a group in the place of those that they hold wholly, such as their own.
void ACleanSelectionPage::addMarked()
{
    const ABitArray marked = table_.steps().edit().marked();
    AFreqGroupArray& groups = form_.groups();
    const bool isOneRun = lastOne(marked) - marked.firstOne() + 1 == marked.ones();
    ABitArray held(groups.count());
    for (int g = 0; g < groups.count(); ++g) {
        int isHeld = groups(g).ones() > 0;
        for (int i = groups(g).firstOne(); i >= 0 && i <= lastOne(groups(g)); ++i)
            isHeld = isHeld && (!groups(g).get(i) || marked.get(i));
        held.set(g, isHeld);
    }
    if (isOneRun && held.ones() > 0) {
        (void)table_.steps().remove(held);
        table_.steps().SetMarked(marked);
    }
    (void)table_.AddFreqGroup();
}

int ACleanSelectionPage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == BN_CLICKED)
        switch (id) {
        case IDC_SELECT_WHOLE:
            form_.takeWholeTime();
            ShowForm();
            SetModified();
            return 1;
        case IDC_SELECT_ADD:
            return addMarked(), 1;
        case IDC_SELECT_DELETE:
            return table_.OnDeleteGroup(), 1;
        case IDC_SELECT_ONE:
            return (void)table_.AllInOne(), 1;
        case IDC_SELECT_EACH:
            return table_.steps().fixedStep(1), 1;
        default:
            break;
        }
    return AFormPage::OnCommand(id, code, control);
}

int AskCleanSelection(CWnd* parent, ACleanSelectionPM& pm)
{
    return askPage<ACleanSelectionPage>(parent, cleanSelectionTitle, "CleanSelection", pm);
}

}  // namespace pavane
