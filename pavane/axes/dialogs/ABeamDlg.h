#pragma once

#include "pavane/axes/dialogs/BeamControls.h"
#include "pavane/containers/LifeWatch.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

class AAxisWnd;

/// The beam of the map in a window: major and minor axis and angle, how it is drawn and in which
/// corner. The map shows what is typed at once; Cancel brings back what was. "Fit" takes the
/// numbers from a dirty beam that the host finds.
class PAVANE_API ABeamDlg : public AResizeDialog
{
public:
    /// `arcseconds` in a unit of the axes (MapFrame); 0 when the map is not on the sky: lengths
    /// are then in units of the axes.
    ABeamDlg(AAxisWnd& plot, double arcseconds, CWnd* parent = nullptr);
    /// What "Fit" fits; without it the button is not enabled. Before the dialog is made.
    void SetDirtyBeam(const DirtyBeamFinder& finder) { controls_.setFinder(finder); }
    /// The map was changed by others: another beam is shown here, and is what Cancel brings back.
    void DisplayChanged();
    /// The map has another beam now, by the dialog.
    virtual void OnDisplayShown(const MapDisplay& display) { (void)display; }
    const ABeamViewWnd& beamView() const { return controls_.view(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnOK() override;
    void OnCancel() override;

private:
    AAxisWnd* window() const;
    int take();
    void show(const MapDisplay& display);

    AAxisWnd* window_;
    LifeWatch windowLives_;
    LifeToken life_;
    BeamControls controls_;
    MapDisplay opened_;
    MapDisplay known_;     ///< how the map was displayed when the dialog looked last
    int showing_ = 0;      ///< the map is being changed by the dialog
    unsigned faulty_ = 0;  ///< the field that `take` could not read
};

}  // namespace pavane
