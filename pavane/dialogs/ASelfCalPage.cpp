#include "pavane/dialogs/ASelfCalPage.h"

#include "pavane/dialogs/ask_page.h"
#include "pavane/dialogs/selfcal_dialog.h"
#include "platform/controls.h"

namespace pavane
{

namespace
{

constexpr FormControl controls[] = {
    {IDC_SELFCAL_KIND, SelfCalForm::kind},
    {IDC_SELFCAL_WHOLE, SelfCalForm::isWhole},
    {IDC_SELFCAL_SECONDS, SelfCalForm::seconds},
    {IDC_SELFCAL_SCALED, SelfCalForm::isScaled},
    {IDC_SELFCAL_RATIO, SelfCalForm::leastRatio},
    {IDC_SELFCAL_ANTENNAS, SelfCalForm::leastAntennas},
    {IDC_SELFCAL_LEAST_UV, SelfCalForm::leastUv},
    {IDC_SELFCAL_MOST_UV, SelfCalForm::mostUv, "Greatest uv distance"},
    {IDC_SELFCAL_MODEL, SelfCalForm::model},
    {IDC_SELFCAL_USE_WEIGHTS, SelfCalForm::usesWeights},
    {IDC_SELFCAL_WEIGHTS, SelfCalForm::changesWeights},
    {IDC_SELFCAL_KEEP, SelfCalForm::keepsFailed},
    {IDC_SELFCAL_REFERENCES, SelfCalForm::references},
};
constexpr FormNote notes[] = {
    {IDC_SELFCAL_COUNT_TEXT, SelfCalForm::count},
    {IDC_SELFCAL_FIRST_TEXT, SelfCalForm::first},
};

}  // namespace

ASelfCalPage::ASelfCalPage(const CString& caption)
    : AFormPage(selfCalPage, caption, form_, controls, notes)
{
    SetResizeItems(selfCalResize);
}

void ASelfCalPage::SetParameters(const ASelfCalPM& parameters)
{
    form_.setRecord(parameters);
    if (!GetSafeHwnd())
        return;
    showAntennas();
    ShowForm();
}

int ASelfCalPage::OnInitDialog()
{
    const int result = AFormPage::OnInitDialog();
    showAntennas();
    return result;
}

void ASelfCalPage::showAntennas()
{
    auto* const list = dynamic_cast<CListBox*>(GetDlgItem(IDC_SELFCAL_REFERENCES));
    if (!list)
        return;
    list->ResetContent();
    for (const SelfCalForm::Antenna& each : form_.antennas())
        (void)list->SetCheck(list->AddString(each.name), each.isOn);
    if (list->GetCount())
        (void)list->SetCurSel(0);
}

void ASelfCalPage::moveAntenna(int by)
{
    auto* const list = dynamic_cast<CListBox*>(GetDlgItem(IDC_SELFCAL_REFERENCES));
    const int from = list ? list->GetCurSel() : -1;
    const int to = form_.move(from, by);
    if (from < 0 || to == from)
        return;
    (void)list->MoveItem(from, to);
    (void)list->SetCurSel(to);
    ShowNotes();
    SetModified();
}

int ASelfCalPage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDC_SELFCAL_REFERENCES) {
        auto* const list = dynamic_cast<CListBox*>(GetDlgItem(id));
        if (code != LBN_CHECKED || !list)
            return 1;
        for (int i = 0; i < list->GetCount(); ++i)
            form_.setOn(i, list->GetCheck(i));
        ShowNotes();
        SetModified();
        return 1;
    }
    if (code == BN_CLICKED && (id == IDC_SELFCAL_UP || id == IDC_SELFCAL_DOWN))
        return moveAntenna(id == IDC_SELFCAL_UP ? -1 : 1), 1;
    return AFormPage::OnCommand(id, code, control);
}

int AskSelfCalibration(CWnd* parent, ASelfCalPM& pm)
{
    return askPage<ASelfCalPage>(parent, selfCalTitle, "SelfCalibration", pm);
}

}  // namespace pavane
