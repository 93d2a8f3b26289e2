#include "apps/view/means_dialog.h"

#include "apps/view/plot_options.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/value_text.h"

#include <iterator>

namespace pavane
{

namespace
{

enum Control : unsigned { idLabel = 101, idSeconds, idHint };

constexpr int shownDigits = 6;
constexpr DlgItem items[] = {
    {ControlKind::staticText, idLabel, "&Seconds:", 8, 10, 48, 10},
    {ControlKind::edit, idSeconds, "", 60, 8, 60, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idHint, "of a mean; 0 shows each visibility by itself", 8, 28, 184,
     10},
    {ControlKind::defaultButton, IDOK, "OK", 76, 46, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 136, 46, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate dialogOfMeans = {0, "Means over time", 200, 68, items, std::size(items)};

class MeansDialog : public CDialog
{
public:
    MeansDialog(CWnd* parent, double& seconds) : CDialog(dialogOfMeans, parent), seconds_(seconds)
    {
    }

protected:
    int OnInitDialog() override
    {
        SetDlgItemText(idSeconds, valToStr(seconds_, shownDigits));
        return CDialog::OnInitDialog();
    }
    void OnOK() override
    {
        if (readMeans(GetDlgItemText(idSeconds), seconds_))
            return EndDialog(IDOK);
        AfxMessageBox("Means are of 0.001 to 1000000 seconds; 0 for none", MB_ICONERROR);
        if (CWnd* const field = GetDlgItem(idSeconds))
            (void)field->SetFocus();
    }

private:
    double& seconds_;
};

}  // namespace

int askMeans(CWnd* parent, double& seconds)
{
    MeansDialog dialog(parent, seconds);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
