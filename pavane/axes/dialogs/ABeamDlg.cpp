#include "pavane/axes/dialogs/ABeamDlg.h"

#include "pavane/axes/dialogs/show_map_display.h"
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
    const int result = AResizeDialog::OnInitDialog();
    if (window())
        opened_ = shownDisplay(*window());
    controls_.make();
    controls_.show(opened_);
    return result;
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
        (void)showDisplay(*window(), display);
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
    if (window()) {
        MapDisplay display = shownDisplay(*window());
        display.beam = opened_.beam;
        display.beamLook = opened_.beamLook;
        (void)showDisplay(*window(), display);
    }
    AResizeDialog::OnCancel();
}

}  // namespace pavane
