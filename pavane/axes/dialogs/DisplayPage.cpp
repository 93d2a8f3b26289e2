#include "pavane/axes/dialogs/DisplayPage.h"

#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/resources/map_display_ids.h"
#include "platform/controls.h"

namespace pavane
{

DisplayPage::DisplayPage(AMapDisplayDlg& sheet, const DlgTemplate& page, DisplayPart part)
    : CPropertyPage(page), display_(sheet), part_(part)
{
}

CComboBox* DisplayPage::combo(unsigned id) const
{
    return dynamic_cast<CComboBox*>(GetDlgItem(id));
}

CButton* DisplayPage::button(unsigned id) const { return dynamic_cast<CButton*>(GetDlgItem(id)); }

int DisplayPage::isChecked(unsigned id) const
{
    const CButton* const box = button(id);
    return box && box->GetCheck();
}

void DisplayPage::setChecked(unsigned id, int on)
{
    if (CButton* const box = button(id))
        box->SetCheck(on);
}

int DisplayPage::choice(unsigned id) const
{
    const CComboBox* const list = combo(id);
    return list ? list->GetCurSel() : -1;
}

void DisplayPage::choose(unsigned id, int line)
{
    if (CComboBox* const list = combo(id))
        (void)list->SetCurSel(line);
}

void DisplayPage::addLine(unsigned id, const char* text)
{
    if (CComboBox* const list = combo(id))
        (void)list->AddString(text);
}

void DisplayPage::liftLimit(unsigned id)
{
    if (auto* const edit = dynamic_cast<CEdit*>(GetDlgItem(id)))
        edit->LimitText(0);
}

void DisplayPage::note(const CString& text) { SetDlgItemText(IDC_DISPLAY_NOTE, text); }

int DisplayPage::OnInitDialog()
{
    const int result = CPropertyPage::OnInitDialog();
    filling_ = 1;
    make();
    filling_ = 0;
    refresh();
    return result;
}

int DisplayPage::OnSetActive()
{
    refresh();
    return 1;
}

void DisplayPage::refresh()
{
    if (!GetSafeHwnd())
        return;
    filling_ = 1;
    told_ = display_.GetDisplay();
    show(told_);
    filling_ = 0;
    note({});
}

void DisplayPage::follow(const MapDisplay& display)
{
    if (!samePart(part_, told_, display) || told_.titles.header != display.titles.header)
        refresh();
}

int DisplayPage::read(MapDisplay& display, CString& error, unsigned& faulty) const
{
    return take(display, error, faulty) && display.check(part_, error);
}

void DisplayPage::changed()
{
    if (filling_)
        return;
    MapDisplay display = display_.GetDisplay();
    CString error;
    unsigned faulty = 0;
    SetModified();
    const int isRead = read(display, error, faulty);
    note(error);
    if (!isRead)
        return;
    told_ = display;
    display_.Show(display);  // which may end the sheet
}

/// The map shows what stands here already; only what it could not show keeps the page.
int DisplayPage::accept()
{
    MapDisplay display = display_.GetDisplay();
    CString error;
    unsigned faulty = 0;
    if (read(display, error, faulty))
        return 1;
    note(error);
    if (CWnd* const field = GetDlgItem(faulty))
        (void)field->SetFocus();
    return 0;
}

int DisplayPage::OnApply()
{
    const int accepted = accept();
    if (!accepted)
        display_.refused_ = 1;
    return accepted;
}

int DisplayPage::isChange(unsigned id, unsigned code)
{
    if (dynamic_cast<CEdit*>(GetDlgItem(id)))
        return code == EN_CHANGE;
    if (combo(id))
        return code == CBN_SELCHANGE;
    return button(id) && code == BN_CLICKED;
}

int DisplayPage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDOK || id == IDCANCEL || filling_ || !isChange(id, code))
        return CPropertyPage::OnCommand(id, code, control);
    return changed(), 1;
}

}  // namespace pavane
