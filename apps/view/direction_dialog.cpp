#include "apps/view/direction_dialog.h"

#include "apps/view/plot_options.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/value_text.h"

#include <iterator>

namespace pavane
{

namespace
{

enum Control : unsigned { idLabel = 101, idDegrees, idHint };

constexpr int shownDigits = 6;
constexpr DlgItem items[] = {
    {ControlKind::staticText, idLabel, "&Direction:", 8, 10, 48, 10},
    {ControlKind::edit, idDegrees, "", 60, 8, 60, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idHint, "degrees from north (v) through east (u)", 8, 28, 184, 10},
    {ControlKind::defaultButton, IDOK, "OK", 76, 46, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 136, 46, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate dialogOfDirection = {
    0, "Distance along a direction", 200, 68, items, std::size(items)};

class DirectionDialog : public CDialog
{
public:
    DirectionDialog(CWnd* parent, double& degrees)
        : CDialog(dialogOfDirection, parent), degrees_(degrees)
    {
    }

protected:
    int OnInitDialog() override
    {
        SetDlgItemText(idDegrees, valToStr(degrees_, shownDigits));
        return CDialog::OnInitDialog();
    }
    void OnOK() override
    {
        if (readDirection(GetDlgItemText(idDegrees), degrees_))
            return EndDialog(IDOK);
        AfxMessageBox("The direction is no number of degrees from -360 to 360", MB_ICONERROR);
        if (CWnd* const field = GetDlgItem(idDegrees))
            (void)field->SetFocus();
    }

private:
    double& degrees_;
};

}  // namespace

int askDirection(CWnd* parent, double& degrees)
{
    DirectionDialog dialog(parent, degrees);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
