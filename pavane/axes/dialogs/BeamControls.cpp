#include "pavane/axes/dialogs/BeamControls.h"

#include "pavane/axes/maps/cells/fit_beam.h"
#include "pavane/resources/map_display_ids.h"
#include "pavane/resources/map_display_messages.h"
#include "platform/CDialog.h"
#include "platform/controls.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr unsigned numbers[] = {IDC_BEAM_MAJOR, IDC_BEAM_MINOR, IDC_BEAM_ANGLE};

int isOnSky(double arcseconds) { return std::isfinite(arcseconds) && arcseconds > 0; }

int sameForm(const BeamForm& a, const BeamForm& b)
{
    return a.major == b.major && a.minor == b.minor && a.angle == b.angle && a.unit == b.unit;
}

}  // namespace

CComboBox* BeamControls::combo(unsigned id) const
{
    return dynamic_cast<CComboBox*>(dialog_.GetDlgItem(id));
}

void BeamControls::make()
{
    filling_ = 1;
    const auto fill = [this](unsigned id, const auto& texts) {
        if (CComboBox* const list = combo(id))
            for (const char* const text : texts)
                (void)list->AddString(text);
    };
    if (isOnSky(arcseconds_))
        fill(IDC_BEAM_UNIT, beamUnitTexts);
    else
        fill(IDC_BEAM_UNIT, std::initializer_list<const char*>{beamAxisUnitText});
    fill(IDC_BEAM_FILL, beamFillTexts);
    fill(IDC_BEAM_CORNER, beamCornerTexts);
    (void)dialog_.ReplaceControl(IDC_BEAM_VIEW, view_, view_.GetWndClassName(), "",
                                 WS_CHILD | WS_VISIBLE);
    if (CWnd* const button = dialog_.GetDlgItem(IDC_BEAM_FIT))
        (void)button->EnableWindow(finder_ != nullptr);
    filling_ = 0;
}

int BeamControls::unit() const
{
    const CComboBox* const list = combo(IDC_BEAM_UNIT);
    const int chosen = list ? list->GetCurSel() : -1;
    return isOnSky(arcseconds_) && chosen >= 0 ? chosen : beamAxisUnit;
}

void BeamControls::setUnit(int unit)
{
    unit_ = unit;
    if (CComboBox* const list = combo(IDC_BEAM_UNIT))
        (void)list->SetCurSel(unit == beamAxisUnit ? 0 : unit);
}

BeamForm BeamControls::form() const
{
    return {dialog_.GetDlgItemText(IDC_BEAM_MAJOR), dialog_.GetDlgItemText(IDC_BEAM_MINOR),
            dialog_.GetDlgItemText(IDC_BEAM_ANGLE), unit_};
}

void BeamControls::setForm(const BeamForm& form)
{
    const CString* const texts[] = {&form.major, &form.minor, &form.angle};
    filling_ = 1;
    for (int i = 0; i < 3; ++i)
        dialog_.SetDlgItemText(numbers[i], *texts[i]);
    filling_ = 0;
    shown_ = form;
}

void BeamControls::show(const MapDisplay& display)
{
    if (unit_ < 0)
        setUnit(BeamForm::handyUnit(display.beam, arcseconds_));
    exact_ = display.beam;
    setForm(BeamForm::of(exact_, arcseconds_, unit_));
    if (CComboBox* const list = combo(IDC_BEAM_FILL))
        (void)list->SetCurSel(static_cast<int>(display.beamLook.fill));
    if (CComboBox* const list = combo(IDC_BEAM_CORNER))
        (void)list->SetCurSel(static_cast<int>(display.beamLook.corner));
    drawBeam();
}

int BeamControls::take(MapDisplay& display, CString& error, unsigned& faulty) const
{
    MapBeam typed = exact_;
    int wrong = 0;
    // texts that nobody touched stand for the number that they were rounded from
    if (!sameForm(form(), shown_) && !form().beam(arcseconds_, typed, error, wrong))
        return faulty = numbers[wrong], 0;
    display.beam = typed;
    if (const CComboBox* const list = combo(IDC_BEAM_FILL); list && list->GetCurSel() >= 0)
        display.beamLook.fill = static_cast<BeamFill>(list->GetCurSel());
    if (const CComboBox* const list = combo(IDC_BEAM_CORNER); list && list->GetCurSel() >= 0)
        display.beamLook.corner = static_cast<BeamCorner>(list->GetCurSel());
    return 1;
}

void BeamControls::drawBeam()
{
    MapDisplay typed;
    CString error;
    unsigned faulty = 0;
    if (!take(typed, error, faulty))
        typed.beam = {};
    const BeamForm form = this->form();
    const CString name =
        unit_ >= 0 && unit_ < beamUnits ? CString(" ") + beamUnitTexts[unit_] : CString();
    view_.SetBeam(typed.beam, typed.beamLook.fill,
                  typed.beam.isSet()
                      ? form.major + name + " x " + form.minor + name + ", " + form.angle + " deg"
                      : CString());
}

int BeamControls::fit(CString& error)
{
    DirtyBeam dirty;
    MapBeam beam;
    if (!finder_ || !finder_(dirty, error))
        return 0;  // a user who gave up need not be told
    if (!dirty.cells)
        return error = noDirtyBeamText, 0;
    if (!fitBeam(*dirty.cells, dirty.centres, beam))
        return error = noBeamFitText, 0;
    if (isOnSky(arcseconds_) && isOnSky(dirty.arcseconds)) {
        beam.major *= dirty.arcseconds / arcseconds_;
        beam.minor *= dirty.arcseconds / arcseconds_;
    }
    exact_ = beam;
    setUnit(BeamForm::handyUnit(beam, arcseconds_));
    setForm(BeamForm::of(beam, arcseconds_, unit_));
    return 1;
}

BeamControls::Answer BeamControls::command(unsigned id, unsigned code, CString& error)
{
    error.clear();
    switch (id) {
    case IDC_BEAM_MAJOR:
    case IDC_BEAM_MINOR:
    case IDC_BEAM_ANGLE:
        if (code != EN_CHANGE || filling_)
            return Answer::notMine;
        break;
    case IDC_BEAM_FILL:
    case IDC_BEAM_CORNER:
        if (code != CBN_SELCHANGE || filling_)
            return Answer::notMine;
        break;
    case IDC_BEAM_UNIT: {
        if (code != CBN_SELCHANGE || filling_)
            return Answer::notMine;
        // the beam stays, its numbers change; what is no beam is kept as it is typed
        MapDisplay typed;
        unsigned faulty = 0;
        CString ignored;
        const int isBeam = take(typed, ignored, faulty);
        unit_ = unit();
        if (isBeam) {
            exact_ = typed.beam;
            setForm(BeamForm::of(exact_, arcseconds_, unit_));
        }
        drawBeam();
        return isBeam ? Answer::done : Answer::changed;
    }
    case IDC_BEAM_FIT:
        if (!fit(error))
            return Answer::done;
        break;
    default:
        return Answer::notMine;
    }
    drawBeam();
    return Answer::changed;
}

}  // namespace pavane
