#include "pavane/axes/dialogs/ABeamDlg.h"

#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/dialogs/stand_beside.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/map_display_dialog.h"

namespace pavane
{

namespace
{

constexpr ResizeItem followers[] = {
    {IDC_BEAM_VIEW, 0, 0, 100, 100},
    {IDC_DISPLAY_NOTE, 0, 100, 100, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};

}  // namespace

ABeamDlg::ABeamDlg(AAxisWnd& plot, double arcseconds, CWnd* parent)
    : AResizeDialog(beamDialog, parent), window_(&plot), windowLives_(plot.life()), controls_(*this)
{
    controls_.setArcseconds(arcseconds);
    SetResizeItems(followers);
    SetPlacementSection("Beam");
}

AAxisWnd* ABeamDlg::window() const { return windowLives_.alive() ? window_ : nullptr; }

int ABeamDlg::OnInitDialog()
{
    standBeside(*this, window());
    const int result = AResizeDialog::OnInitDialog();
    if (window())
        opened_ = known_ = shownDisplay(*window());
    controls_.make();
    controls_.show(opened_);
    return result;
}

/// A step of the views, with what follows within half a second.
void ABeamDlg::show(const MapDisplay& display)
{
    const LifeWatch self(life_);
    window()->BeginViewGesture();
    showing_ = 1;
    const int changed = showDisplay(*window(), display);
    if (!self.alive() || !window())
        return;
    known_ = shownDisplay(*window());
    if (changed)
        OnDisplayShown(known_);
    if (self.alive())
        showing_ = 0;
}

void ABeamDlg::DisplayChanged()
{
    if (!GetSafeHwnd() || !window() || showing_)
        return;
    const MapDisplay now = shownDisplay(*window());
    takeChanges(known_, now, opened_);
    const int same = samePart(DisplayPart::beam, known_, now);
    known_ = now;
    if (same)
        return;
    controls_.show(now);
    SetDlgItemText(IDC_DISPLAY_NOTE, {});
}

/// The map shows what is typed; 0, with a line that says why, when that is no beam.
int ABeamDlg::take()
{
    if (!window())
        return 1;
    MapDisplay display = shownDisplay(*window());
    CString error;
    unsigned faulty = 0;
    const int taken = controls_.take(display, error, faulty);
    SetDlgItemText(IDC_DISPLAY_NOTE, error);
    if (taken)
        show(display);
    else
        faulty_ = faulty;
    return taken;
}

int ABeamDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    CString error;
    switch (controls_.command(id, code, error)) {
    case BeamControls::Answer::changed:
        return (void)take(), 1;
    case BeamControls::Answer::done:
        return SetDlgItemText(IDC_DISPLAY_NOTE, error), 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
}

void ABeamDlg::OnOK()
{
    if (take())
        AResizeDialog::OnOK();
    else if (CWnd* const field = GetDlgItem(faulty_))
        (void)field->SetFocus();
}

/// Only the beam goes back: the map may show other colours meanwhile.
void ABeamDlg::OnCancel()
{
    const LifeWatch self(life_);
    if (window()) {
        MapDisplay display = shownDisplay(*window());
        display.beam = opened_.beam;
        display.beamLook = opened_.beamLook;
        show(display);
    }
    if (self.alive())
        AResizeDialog::OnCancel();
}

}  // namespace pavane
