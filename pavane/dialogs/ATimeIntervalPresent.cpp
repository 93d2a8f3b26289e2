#include "pavane/dialogs/ATimeIntervalPresent.h"

#include "pavane/dialogs/IntervalCountDlg.h"
#include "pavane/dialogs/values/time_texts.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/time_dialogs.h"
#include "platform/accessibility.h"
#include "platform/message.h"
#include "platform/resources.h"

namespace pavane
{

namespace
{

struct Edit {
    unsigned id;
    TimeField field;
    unsigned infoId;
    const char* name;
};
constexpr Edit edits[] = {
    {IDC_TIME_START, TimeField::start, IDC_TIME_INFO_START, "Start time"},
    {IDC_TIME_STOP, TimeField::stop, IDC_TIME_INFO_STOP, "Stop time"},
    {IDC_TIME_INTERVAL, TimeField::interval, IDC_TIME_INFO_INTERVAL, "Time interval"},
};

const Edit* editOf(unsigned id)
{
    for (const Edit& edit : edits)
        if (edit.id == id)
            return &edit;
    return nullptr;
}

}  // namespace

ATimeIntervalPresent::ATimeIntervalPresent(unsigned templateId, unsigned captionId)
    : AResizePage(templateId, captionId)
{
    SetResizeItems(timeIntervalResize);
}

void ATimeIntervalPresent::SetParameters(const AUVXTIntervalPM& parameters)
{
    pm = parameters;
    if (!GetSafeHwnd())
        return;
    ShowTimePar(showAsClock);
    showForm();
}

int ATimeIntervalPresent::OnInitDialog()
{
    for (const Edit& edit : edits)
        if (const CWnd* const window = GetDlgItem(edit.id))
            SetAccessName(window->GetSafeHwnd(), edit.name);
    ShowTimePar(1);
    showForm();
    return AResizePage::OnInitDialog();
}

void ATimeIntervalPresent::ShowTimePar(int asClock)
{
    form_.setRecord(pm, asClock);
    for (const Edit& edit : edits)
        SetDlgItemText(edit.infoId, timeText(form_.info(edit.field), asClock));
    showTexts();
}

/// The radio buttons and "Every point".
void ATimeIntervalPresent::showForm()
{
    const auto check = [&](unsigned id, int on) {
        if (auto* const button = dynamic_cast<CButton*>(GetDlgItem(id)))
            button->SetCheck(on);
    };
    check(IDC_TIME_CLOCK, showAsClock);
    check(IDC_TIME_SECONDS, !showAsClock);
    check(IDC_TIME_EVERY_POINT, pm.everyPoint);
    OnAnyTime();
}

void ATimeIntervalPresent::showTexts()
{
    isShowing_ = 1;
    for (const Edit& edit : edits)
        SetDlgItemText(edit.id, form_.text(edit.field));
    isShowing_ = 0;
    showCount();
}

void ATimeIntervalPresent::takeTexts()
{
    for (const Edit& edit : edits)
        form_.setText(edit.field, GetDlgItemText(edit.id));
    form_.setEveryPoint(isChecked(IDC_TIME_EVERY_POINT));
}

void ATimeIntervalPresent::showCount() { SetDlgItemText(IDC_TIME_COUNT_TEXT, form_.countText()); }

int ATimeIntervalPresent::isChecked(unsigned id) const
{
    const auto* const button = dynamic_cast<const CButton*>(GetDlgItem(id));
    return button && button->GetCheck();
}

void ATimeIntervalPresent::OnAnyTime()
{
    takeTexts();
    for (const unsigned id : {IDC_TIME_INTERVAL, IDC_TIME_SET_INTERVALS})
        if (CWnd* const control = GetDlgItem(id))
            control->EnableWindow(!form_.everyPoint());
    showCount();
}

void ATimeIntervalPresent::chooseForm(int asClock)
{
    if ((showAsClock != 0) == (asClock != 0))
        return;
    takeTexts();
    showAsClock = asClock;
    form_.setClock(asClock);
    showTexts();
}

void ATimeIntervalPresent::Default(double& start, double& stop, double& interval)
{
    start = pm.infoStart;
    stop = pm.infoStop;
    interval = pm.infoInterval;
}

void ATimeIntervalPresent::OnDefault()
{
    double start = pm.infoStart;
    double stop = pm.infoStop;
    double interval = pm.infoInterval;
    Default(start, stop, interval);
    form_.setTimes(start, stop, interval);
    showTexts();
    SetModified();
}

void ATimeIntervalPresent::OnSetIntervals()
{
    const HWND self = GetSafeHwnd();
    takeTexts();
    int count = 0;
    const TimeRefusal refusal = form_.proposeCount(count);
    if (refusal.field != TimeField::none) {
        (void)refuse(refusal);
        return;
    }
    IntervalCountDlg dialog(form_, count, this);
    const int isTaken = dialog.DoModal() == IDOK;
    // the page may have gone while the dialog was there
    if (!isTaken || FromHandle(self) != this || !form_.applyCount(dialog.count()))
        return;
    showTexts();
    SetModified();
}

int ATimeIntervalPresent::refuse(const TimeRefusal& refusal)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(refusal.message, MB_OK | MB_ICONWARNING);
    if (!self || FromHandle(self) != this)
        return 0;
    for (const Edit& each : edits) {
        auto* const edit =
            each.field == refusal.field ? dynamic_cast<CEdit*>(GetDlgItem(each.id)) : nullptr;
        if (!edit)
            continue;
        edit->SetFocus();
        edit->SetSel(0, -1);
    }
    return 0;
}

int ATimeIntervalPresent::SaveTime()
{
    if (GetSafeHwnd())
        takeTexts();
    else
        form_.setRecord(pm, 0);
    const TimeRefusal refusal = form_.save();
    if (refusal.field != TimeField::none)
        return refuse(refusal);
    if (GetSafeHwnd())
        pm = form_.record();
    return 1;
}

int ATimeIntervalPresent::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == EN_CHANGE && editOf(id)) {
        if (!isShowing_) {
            takeTexts();
            showCount();
            SetModified();
        }
        return 1;
    }
    if (code != BN_CLICKED)
        return AResizePage::OnCommand(id, code, control);
    switch (id) {
    case IDC_TIME_CLOCK:
    case IDC_TIME_SECONDS:
        return chooseForm(id == IDC_TIME_CLOCK), 1;
    case IDC_TIME_EVERY_POINT:
        return OnAnyTime(), SetModified(), 1;
    case IDC_TIME_SET_INTERVALS:
        return OnSetIntervals(), 1;
    case IDC_TIME_DEFAULT:
        return OnDefault(), 1;
    default:
        return AResizePage::OnCommand(id, code, control);
    }
}

int AskTimeInterval(CWnd* parent, AUVXTIntervalPM& pm)
{
    struct Page : ATimeIntervalPresent {
        Page() : ATimeIntervalPresent(IDD_TIME_INTERVALS, IDS_TIME_INTERVALS) {}
        int OnApply() override
        {
            if (!ATimeIntervalPresent::OnApply())
                return 0;
            taken = GetParameters();
            return isTaken = 1;
        }
        AUVXTIntervalPM taken;
        int isTaken = 0;
    } page;
    page.SetParameters(pm);
    AResizeSheet sheet(LoadString(IDS_TIME_INTERVALS), parent);
    sheet.SetPlacementSection("TimeIntervals");
    sheet.AddPage(page);
    (void)sheet.DoModal();
    if (page.isTaken)
        pm = page.taken;
    return page.isTaken;
}

}  // namespace pavane
