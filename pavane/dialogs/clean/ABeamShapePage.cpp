#include "pavane/dialogs/clean/ABeamShapePage.h"

#include "pavane/axes/maps/beam_form.h"
#include "pavane/dialogs/ask_page.h"
#include "pavane/resources/beam_shape_dialog.h"
#include "pavane/resources/map_display_messages.h"
#include "platform/controls.h"
#include "platform/message.h"

namespace pavane
{

namespace
{

constexpr double arcsecondsOfMas = 1e-3;

MapDisplay displayOf(const MapBeam& beam)
{
    MapDisplay display;
    display.beam = beam;
    return display;
}

}  // namespace

ABeamShapePage::ABeamShapePage(const CString& caption)
    : AResizePage(beamShapePage, caption), controls_(*this)
{
    controls_.setArcseconds(arcsecondsOfMas);
    SetResizeItems(beamShapeResize);
}

void ABeamShapePage::SetParameters(const ABeamShapePM& parameters)
{
    pm_ = now_ = parameters;
    if (GetSafeHwnd())
        showShape(pm_);
}

int ABeamShapePage::OnInitDialog()
{
    isShowing_ = 1;
    if (auto* const kinds = dynamic_cast<CComboBox*>(GetDlgItem(IDC_SHAPE_KIND)))
        for (const char* const kind : beamKindTexts)
            (void)kinds->AddString(kind);
    controls_.make();
    isShowing_ = 0;
    showShape(pm_);
    return AResizePage::OnInitDialog();
}

/// The beam of the kind that is chosen, with what of it can be typed.
void ABeamShapePage::showShape(const ABeamShapePM& pm)
{
    isShowing_ = 1;
    now_ = pm;
    if (auto* const kinds = dynamic_cast<CComboBox*>(GetDlgItem(IDC_SHAPE_KIND)))
        (void)kinds->SetCurSel(static_cast<int>(pm.kind));
    controls_.show(displayOf(pm.GetBeam()));
    const auto enable = [this](unsigned id, int on) {
        if (CWnd* const field = GetDlgItem(id))
            (void)field->EnableWindow(on);
    };
    enable(IDC_BEAM_MAJOR, pm.kind != BeamKind::fitted);
    enable(IDC_BEAM_MINOR, pm.kind == BeamKind::typed);
    enable(IDC_BEAM_ANGLE, pm.kind == BeamKind::typed);
    CString text = noFittedBeamText;
    if (pm.fitted.isSet()) {
        const int unit = BeamForm::handyUnit(pm.fitted, arcsecondsOfMas);
        const BeamForm form = BeamForm::of(pm.fitted, arcsecondsOfMas, unit);
        text = "fitted: " + form.major + " by " + form.minor + " " + beamUnitTexts[unit] + ", " +
               form.angle + " deg";
    }
    SetDlgItemText(IDC_SHAPE_FITTED_TEXT, text);
    SetDlgItemText(IDC_SHAPE_NOTE, {});
    isShowing_ = 0;
}

int ABeamShapePage::read(ABeamShapePM& pm, CString& error, unsigned& faulty) const
{
    pm = now_;
    if (pm.kind == BeamKind::fitted)
        return 1;
    MapDisplay display;
    if (!controls_.take(display, error, faulty))
        return 0;
    if (pm.kind == BeamKind::circular)
        pm.diameter = display.beam.major;
    else
        pm.typed = display.beam;
    const MapBeam beam =
        pm.kind == BeamKind::circular ? MapBeam{pm.diameter, pm.diameter, 0} : pm.typed;
    error = faultOfBeam(beam);
    faulty = IDC_BEAM_MAJOR;
    return error.empty();
}

/// Another kind; what was typed for the old one comes back with it.
void ABeamShapePage::chooseKind()
{
    const auto* const kinds = dynamic_cast<const CComboBox*>(GetDlgItem(IDC_SHAPE_KIND));
    const int chosen = kinds ? kinds->GetCurSel() : -1;
    if (chosen < 0)
        return;
    ABeamShapePM pm;
    CString ignored;
    unsigned faulty = 0;
    if (!read(pm, ignored, faulty))
        pm = now_;
    pm.kind = static_cast<BeamKind>(chosen);
    if (pm.kind == BeamKind::typed && !pm.typed.isSet())
        pm.typed = pm.fitted;
    showShape(pm);
}

/// A round beam has one number: the others follow it.
void ABeamShapePage::keepRound()
{
    if (now_.kind != BeamKind::circular || isShowing_)
        return;
    isShowing_ = 1;
    SetDlgItemText(IDC_BEAM_MINOR, GetDlgItemText(IDC_BEAM_MAJOR));
    SetDlgItemText(IDC_BEAM_ANGLE, "0");
    isShowing_ = 0;
    CString ignored;
    (void)controls_.command(IDC_BEAM_MINOR, EN_CHANGE, ignored);  // draws it
}

int ABeamShapePage::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (isShowing_)
        return 1;
    if (id == IDC_SHAPE_KIND && code == CBN_SELCHANGE)
        return chooseKind(), SetModified(), 1;
    CString error;
    const auto answer = controls_.command(id, code, error);
    if (answer == BeamControls::Answer::notMine)
        return AResizePage::OnCommand(id, code, control);
    if (id == IDC_BEAM_MAJOR)
        keepRound();
    if (id == IDC_BEAM_FIT && answer == BeamControls::Answer::changed) {
        // what was fitted is the fitted beam, whatever kind was chosen
        MapDisplay display;
        unsigned faulty = 0;
        if (controls_.take(display, error, faulty)) {
            now_.fitted = display.beam;
            now_.kind = BeamKind::fitted;
            showShape(ABeamShapePM(now_));
        }
    }
    ABeamShapePM pm;
    unsigned faulty = 0;
    if (error.empty())
        (void)read(pm, error, faulty);
    SetDlgItemText(IDC_SHAPE_NOTE, error);
    if (answer == BeamControls::Answer::changed)
        SetModified();
    return 1;
}

int ABeamShapePage::refuse(const CString& error, unsigned faulty)
{
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(error, MB_OK | MB_ICONWARNING);
    auto* const edit =
        self && FromHandle(self) == this ? dynamic_cast<CEdit*>(GetDlgItem(faulty)) : nullptr;
    if (edit) {
        (void)edit->SetFocus();
        edit->SetSel(0, -1);
    }
    return 0;
}

int ABeamShapePage::SaveBeam()
{
    ABeamShapePM pm = pm_;
    CString error;
    unsigned faulty = 0;
    if (GetSafeHwnd() && !read(pm, error, faulty))
        return refuse(error, faulty);
    if (!GetSafeHwnd() && pm.kind != BeamKind::fitted) {
        error = faultOfBeam(pm.GetBeam());
        if (!error.empty())
            return refuse(error, 0);
    }
    pm_ = pm;
    return 1;
}

int AskBeamShape(CWnd* parent, ABeamShapePM& pm, const DirtyBeamFinder& finder)
{
    struct Page : ABeamShapePage {
        explicit Page(const DirtyBeamFinder& dirty) { SetDirtyBeam(dirty); }
    };
    return askPage<Page>(parent, beamShapeTitle, "BeamShape", pm, finder);
}

}  // namespace pavane
