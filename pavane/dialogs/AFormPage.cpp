#include "pavane/dialogs/AFormPage.h"

#include "platform/accessibility.h"
#include "platform/controls.h"
#include "platform/message.h"

namespace pavane
{

AFormPage::AFormPage(const DlgTemplate& page, const CString& caption, PageForm& form,
                     std::span<const FormControl> controls, std::span<const FormNote> notes)
    : AResizePage(page, caption), form_(form), controls_(controls), notes_(notes)
{
}

int AFormPage::OnInitDialog()
{
    isShowing_ = 1;
    for (const FormControl& each : controls_) {
        CWnd* const window = GetDlgItem(each.id);
        if (window && *each.accessName)
            SetAccessName(window->GetSafeHwnd(), each.accessName);
        if (auto* const list = dynamic_cast<CComboBox*>(window))
            for (const CString& line : form_.lines(each.field))
                (void)list->AddString(line);
        if (auto* const edit = dynamic_cast<CEdit*>(window))
            edit->LimitText(0);  // what was pasted is refused, not cut to something else
    }
    isShowing_ = 0;
    ShowForm();
    return AResizePage::OnInitDialog();
}

void AFormPage::showField(const FormControl& shown)
{
    CWnd* const window = GetDlgItem(shown.id);
    const int choice = form_.choice(shown.field);
    if (auto* const edit = dynamic_cast<CEdit*>(window)) {
        if (edit->GetWindowText() != form_.text(shown.field))
            edit->SetWindowText(form_.text(shown.field));
    } else if (auto* const button = dynamic_cast<CButton*>(window)) {
        if (button->GetCheck() != choice)
            button->SetCheck(choice);
    } else if (auto* const list = dynamic_cast<CComboBox*>(window)) {
        if (list->GetCurSel() != choice)
            (void)list->SetCurSel(choice);
    }
}

void AFormPage::takeField(const FormControl& shown)
{
    CWnd* const window = GetDlgItem(shown.id);
    if (const auto* const edit = dynamic_cast<const CEdit*>(window))
        form_.setText(shown.field, edit->GetWindowText());
    else if (const auto* const button = dynamic_cast<const CButton*>(window))
        form_.setChoice(shown.field, button->GetCheck());
    else if (const auto* const list = dynamic_cast<const CComboBox*>(window))
        form_.setChoice(shown.field, list->GetCurSel());
}

void AFormPage::ShowNotes()
{
    for (const FormControl& each : controls_)
        if (CWnd* const window = GetDlgItem(each.id)) {
            const int isOn = form_.isEnabled(each.field) != 0;
            if ((window->IsWindowEnabled() != 0) != (isOn != 0))
                (void)window->EnableWindow(isOn);
        }
    for (const FormNote& each : notes_)
        if (GetDlgItemText(each.id) != form_.note(each.note))
            SetDlgItemText(each.id, form_.note(each.note));
}

void AFormPage::ShowForm()
{
    if (!GetSafeHwnd())
        return;
    isShowing_ = 1;
    for (const FormControl& each : controls_)
        showField(each);
    isShowing_ = 0;
    ShowNotes();
}

int AFormPage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (isShowing_)
        return 1;
    for (const FormControl& each : controls_) {
        const CWnd* const window = each.id == id ? GetDlgItem(id) : nullptr;
        if (!window)
            continue;
        const bool isChange = dynamic_cast<const CEdit*>(window)       ? code == EN_CHANGE
                              : dynamic_cast<const CComboBox*>(window) ? code == CBN_SELCHANGE
                                                                       : code == BN_CLICKED;
        if (!isChange)
            break;
        takeField(each);
        ShowForm();
        SetModified();
        return 1;
    }
    return AResizePage::OnCommand(id, code, control);
}

int AFormPage::Refuse(const FormRefusal& refusal)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(refusal.message, MB_OK | MB_ICONWARNING);
    // the page may have gone while the message was there
    if (!self || FromHandle(self) != this)
        return 0;
    for (const FormControl& each : controls_) {
        CWnd* const window = each.field == refusal.field ? GetDlgItem(each.id) : nullptr;
        if (!window)
            continue;
        (void)window->SetFocus();
        if (auto* const edit = dynamic_cast<CEdit*>(window))
            edit->SetSel(0, -1);
    }
    return 0;
}

int AFormPage::SaveForm()
{
    if (GetSafeHwnd())
        for (const FormControl& each : controls_)
            takeField(each);
    const FormRefusal refusal = form_.save();
    return refusal.isRefused() ? Refuse(refusal) : 1;
}

}  // namespace pavane
