#include "apps/view/several/rgb_dialog.h"

#include "platform/controls.h"
#include "platform/message.h"

#include <cctype>
#include <iterator>

namespace pavane
{

namespace
{

enum Control : unsigned {
    idHeading = 101,
    idRangeHeading,
    idHint,
    idLabel = 111,
    idMap = 121,
    idRange = 131
};

constexpr DlgItem items[] = {
    {ControlKind::staticText, idHeading, "Map", 44, 8, 130, 10},
    {ControlKind::staticText, idRangeHeading, "Values LOW,HIGH", 190, 8, 90, 10},
    {ControlKind::staticText, idLabel, "&Red:", 8, 23, 34, 10},
    {ControlKind::comboBox, idMap, "", 44, 20, 140, 90, WS_TABSTOP},
    {ControlKind::edit, idRange, "", 190, 20, 102, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idLabel + 1, "&Green:", 8, 41, 34, 10},
    {ControlKind::comboBox, idMap + 1, "", 44, 38, 140, 90, WS_TABSTOP},
    {ControlKind::edit, idRange + 1, "", 190, 38, 102, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idLabel + 2, "&Blue:", 8, 59, 34, 10},
    {ControlKind::comboBox, idMap + 2, "", 44, 56, 140, 90, WS_TABSTOP},
    {ControlKind::edit, idRange + 2, "", 190, 56, 102, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idHint,
     "Of no colour and of the brightest; p:1,99.5 in per cent of "
     "the cells",
     8, 78, 284, 10},
    {ControlKind::defaultButton, IDOK, "OK", 164, 94, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 232, 94, 60, 14, WS_TABSTOP},
};
constexpr DlgTemplate dialogOfRgb = {
    0, "Three maps as red, green and blue", 300, 116, items, std::size(items)};

class RgbDialog : public CDialog
{
public:
    RgbDialog(CWnd* parent, RgbChoice& choice) : CDialog(dialogOfRgb, parent), choice_(choice) {}

protected:
    int OnInitDialog() override
    {
        for (std::size_t i = 0; i < rgbBands; ++i) {
            const auto band = static_cast<unsigned>(i);
            if (auto* const list = dynamic_cast<CComboBox*>(GetDlgItem(idMap + band))) {
                for (const std::string& name : choice_.names)
                    (void)list->AddString(name);
                (void)list->SetCurSel(choice_.maps[i]);
                list->EnableWindow(!choice_.isFixed);
            }
            SetDlgItemText(idRange + band, choice_.ranges[i]);
        }
        return CDialog::OnInitDialog();
    }
    /// Another map proposes its own values.
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        const int isMap = id >= idMap && id < idMap + rgbBands;
        auto* const list = isMap ? dynamic_cast<CComboBox*>(GetDlgItem(id)) : nullptr;
        const auto band = static_cast<std::size_t>(id - idMap);
        if (list && list->GetCurSel() >= 0 && list->GetCurSel() != choice_.maps[band]) {
            choice_.maps[band] = list->GetCurSel();
            SetDlgItemText(idRange + id - idMap, choice_.rangeOf(choice_.maps[band]));
        }
        return CDialog::OnCommand(id, code, control);
    }
    void OnOK() override
    {
        for (std::size_t i = 0; i < rgbBands; ++i) {
            const auto band = static_cast<unsigned>(i);
            std::string name = rgbNames[i];
            name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
            choice_.ranges[i] = GetDlgItemText(idRange + band);
            choice_.looks[i] = MapLook();
            std::string error;
            if (choice_.ranges[i].empty() ||
                readColourRange(name, choice_.ranges[i], choice_.looks[i], error))
                continue;
            AfxMessageBox(error, MB_ICONERROR);
            if (CWnd* const field = GetDlgItem(idRange + band))
                (void)field->SetFocus();
            return;
        }
        EndDialog(IDOK);
    }

private:
    RgbChoice& choice_;
};

}  // namespace

int askRgb(CWnd* parent, RgbChoice& choice)
{
    RgbDialog dialog(parent, choice);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
