#include "apps/view/several/shift_dialog.h"

#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/value_text.h"

#include <cmath>
#include <iterator>

namespace pavane
{

namespace
{

enum Control : unsigned {
    idWhat = 101,
    idFoundEast,
    idFoundNorth,
    idFoundCells,
    idEastLabel,
    idEast,
    idNorthLabel,
    idNorth,
    idHint,
    idNone
};

constexpr double masPerDegree = 3600e3;
constexpr int errorDigits = 2, fewDigits = 4, shownDigits = 7;
constexpr double mostDegrees = 10;

constexpr DlgItem items[] = {
    {ControlKind::staticText, idWhat, "", 8, 8, 284, 10},
    {ControlKind::staticText, idFoundEast, "", 8, 22, 284, 10},
    {ControlKind::staticText, idFoundNorth, "", 8, 34, 284, 10},
    {ControlKind::staticText, idFoundCells, "", 8, 46, 284, 10},
    {ControlKind::staticText, idEastLabel, "Move it &east by", 8, 66, 64, 10},
    {ControlKind::edit, idEast, "", 74, 64, 62, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idNorthLabel, "mas, &north by", 142, 66, 54, 10},
    {ControlKind::edit, idNorth, "", 200, 64, 62, 14, WS_TABSTOP | WS_BORDER},
    {ControlKind::staticText, idHint, "mas", 268, 66, 24, 10},
    {ControlKind::pushButton, idNone, "&Reset", 96, 88, 60, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "&Apply", 164, 88, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 232, 88, 60, 14, WS_TABSTOP},
};
constexpr DlgTemplate dialogOfShift = {0,     "Shift between two maps", 300, 110,
                                       items, std::size(items)};

std::string wayText(double degrees, double error, double cell, const char* plus, const char* minus)
{
    const double mas = std::fabs(degrees) * masPerDegree;
    // as many digits as the error has
    const double spread = error * masPerDegree;
    const int digits = spread > 0 && mas > spread
                           ? static_cast<int>(std::floor(std::log10(mas / spread))) + errorDigits
                           : errorDigits;
    std::string text = valToStr(mas, digits) + " mas " + (degrees < 0 ? minus : plus);
    text += " \u00b1 " + valToStr(spread, errorDigits) + " mas";
    if (cell > 0)
        text += "  (" + valToStr(std::fabs(degrees) / cell, digits) + " \u00b1 " +
                valToStr(error / cell, errorDigits) + " cells)";
    return text;
}

class ShiftDialog : public CDialog
{
public:
    ShiftDialog(CWnd* parent, ShiftChoice& choice) : CDialog(dialogOfShift, parent), choice_(choice)
    {
    }

protected:
    int OnInitDialog() override
    {
        SetDlgItemText(idWhat, choice_.second + " on " + choice_.first + ":");
        if (choice_.fault.empty()) {
            const MapShift& found = choice_.found;
            SetDlgItemText(idFoundEast, wayText(found.shift.east, found.error.east, choice_.cell,
                                                "east", "west"));
            SetDlgItemText(idFoundNorth, wayText(found.shift.north, found.error.north, choice_.cell,
                                                 "north", "south"));
            SetDlgItemText(idFoundCells, "correlation " + valToStr(found.correlation, fewDigits) +
                                             " over " + std::to_string(found.cells) + " cells" +
                                             (choice_.isOfAreas ? " of the areas" : ""));
        } else {
            SetDlgItemText(idFoundEast, "No shift was found: it " + choice_.fault);
        }
        SetDlgItemText(idEast, valToStr(choice_.wanted.east * masPerDegree, shownDigits));
        SetDlgItemText(idNorth, valToStr(choice_.wanted.north * masPerDegree, shownDigits));
        return CDialog::OnInitDialog();
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id != idNone)
            return CDialog::OnCommand(id, code, control);
        choice_.wanted = {};
        EndDialog(IDOK);
        return 1;
    }
    void OnOK() override
    {
        SkyShift shift;
        if (stoval(GetDlgItemText(idEast), shift.east) &&
            stoval(GetDlgItemText(idNorth), shift.north) &&
            std::hypot(shift.east, shift.north) <= mostDegrees * masPerDegree) {
            choice_.wanted = {shift.east / masPerDegree, shift.north / masPerDegree};
            return EndDialog(IDOK);
        }
        AfxMessageBox("The shift wants two numbers in mas, 10 degrees at most", MB_ICONERROR);
        if (CWnd* const field = GetDlgItem(idEast))
            (void)field->SetFocus();
    }

private:
    ShiftChoice& choice_;
};

}  // namespace

int askShift(CWnd* parent, ShiftChoice& choice)
{
    ShiftDialog dialog(parent, choice);
    return dialog.DoModal() == IDOK;
}

std::string shiftText(const SkyShift& shift)
{
    const auto part = [](double degrees, const char* plus, const char* minus) {
        return valToStr(std::fabs(degrees) * masPerDegree, fewDigits) + " mas " +
               (degrees < 0 ? minus : plus);
    };
    return part(shift.east, "east", "west")
        .append(", ")
        .append(part(shift.north, "north", "south"));
}

}  // namespace pavane
