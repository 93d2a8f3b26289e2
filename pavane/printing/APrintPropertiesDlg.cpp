#include "pavane/printing/APrintPropertiesDlg.h"

#include "pavane/printing/print_dialogs.h"
#include "pavane/printing/print_setup.h"
#include "pavane/printing/range_controls.h"
#include "pavane/resources/print_messages.h"
#include "platform/controls.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace pavane
{

namespace
{

constexpr int resolutions[] = {150, 300, 600, 1200};

CComboBox* listOf(const CDialog& dialog, unsigned id)
{
    return dynamic_cast<CComboBox*>(dialog.GetDlgItem(id));
}

int chosenIn(const CDialog& dialog, unsigned id)
{
    const CComboBox* const list = listOf(dialog, id);
    return list ? std::max(list->GetCurSel(), 0) : 0;
}

}  // namespace

APrintPropertiesDlg::APrintPropertiesDlg(CPrintInfo& info, CWnd* owner)
    : AResizeDialog(propertiesTemplate, owner), info_(info)
{
    SetResizeItems(propertiesResize);
}

int APrintPropertiesDlg::OnInitDialog()
{
    (void)AResizeDialog::OnInitDialog();
    if (CComboBox* const sides = listOf(*this, IDC_PROPERTY_SIDES)) {
        for (const char* const text : printerSides)
            (void)sides->AddString(text);
        (void)sides->SetCurSel(std::clamp(info_.settings.sides, 0, 3));
        // a file has no sides
        sides->EnableWindow(!info_.printer.name.empty() && info_.printer.duplex != 0);
    }
    if (CComboBox* const colors = listOf(*this, IDC_PROPERTY_COLOR)) {
        for (const char* const text : printerColors)
            (void)colors->AddString(text);
        (void)colors->SetCurSel(info_.settings.gray > 0 || info_.printer.color == 0);
        colors->EnableWindow(info_.printer.color != 0);
    }
    if (CComboBox* const dots = listOf(*this, IDC_PROPERTY_DPI)) {
        for (const int dpi : resolutions)
            (void)dots->AddString(std::to_string(dpi) + dotsPerInch);
        const int now = info_.settings.dpi ? info_.settings.dpi : standardDpi;
        const auto* const at =
            std::lower_bound(std::begin(resolutions), std::end(resolutions) - 1, now);
        (void)dots->SetCurSel(static_cast<int>(at - std::begin(resolutions)));
    }
    return 1;
}

void APrintPropertiesDlg::OnOK()
{
    info_.settings.sides = chosenIn(*this, IDC_PROPERTY_SIDES);
    info_.settings.gray = chosenIn(*this, IDC_PROPERTY_COLOR) ? 1 : -1;
    info_.settings.dpi = resolutions[chosenIn(*this, IDC_PROPERTY_DPI)];
    AResizeDialog::OnOK();
}

}  // namespace pavane
