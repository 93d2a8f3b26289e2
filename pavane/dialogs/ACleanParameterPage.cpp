#include "pavane/dialogs/ACleanParameterPage.h"

#include "pavane/dialogs/ask_page.h"
#include "pavane/resources/clean_dialogs.h"
#include "platform/controls.h"

namespace pavane
{

namespace
{

constexpr FormControl controls[] = {
    {IDC_CLEAN_WIDTH, CleanForm::width},
    {IDC_CLEAN_HEIGHT, CleanForm::height},
    {IDC_CLEAN_CELL, CleanForm::cell},
    {IDC_CLEAN_WEIGHTING, CleanForm::weighting},
    {IDC_CLEAN_ROBUST, CleanForm::robust},
    {IDC_CLEAN_TAPER, CleanForm::taper},
    {IDC_CLEAN_SHIFT_X, CleanForm::shiftX},
    {IDC_CLEAN_SHIFT_Y, CleanForm::shiftY},
    {IDC_CLEAN_GAIN, CleanForm::gain},
    {IDC_CLEAN_MAJOR_GAIN, CleanForm::majorGain},
    {IDC_CLEAN_ITERATIONS, CleanForm::iterations},
    {IDC_CLEAN_THRESHOLD, CleanForm::threshold},
    {IDC_CLEAN_UNIT, CleanForm::unit, "Unit of the threshold"},
    {IDC_CLEAN_AUTO_MASK, CleanForm::isAutoMask},
    {IDC_CLEAN_MASK_LEVEL, CleanForm::maskLevel, "Level of the automatic mask in sigma"},
    {IDC_CLEAN_MULTISCALE, CleanForm::isMultiscale},
    {IDC_CLEAN_EACH_CYCLE, CleanForm::stopsEachCycle},
};
constexpr FormNote notes[] = {
    {IDC_CLEAN_PROPOSAL_TEXT, CleanForm::proposal},
    {IDC_CLEAN_EXTENT_TEXT, CleanForm::extent},
    {IDC_CLEAN_BEAM_TEXT, CleanForm::beam},
};

}  // namespace

ACleanParameterPage::ACleanParameterPage(const CString& caption)
    : AFormPage(cleanParameterPage, caption, form_, controls, notes)
{
    SetResizeItems(cleanParameterResize);
}

void ACleanParameterPage::SetParameters(const ACleanParameterPM& parameters)
{
    form_.setRecord(parameters);
    ShowForm();
}

int ACleanParameterPage::OnInitDialog()
{
    const int result = AFormPage::OnInitDialog();
    if (CWnd* const button = GetDlgItem(IDC_CLEAN_PROPOSAL))
        (void)button->EnableWindow(form_.record().GetProposedCell() > 0);
    return result;
}

int ACleanParameterPage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != IDC_CLEAN_PROPOSAL || code != BN_CLICKED)
        return AFormPage::OnCommand(id, code, control);
    if (form_.takeProposal()) {
        ShowForm();
        SetModified();
    }
    return 1;
}

int AskCleanParameters(CWnd* parent, ACleanParameterPM& pm)
{
    return askPage<ACleanParameterPage>(parent, cleanParameterTitle, "CleanParameters", pm);
}

}  // namespace pavane
