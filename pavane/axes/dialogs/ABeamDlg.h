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
    const ABeamViewWnd& beamView() const { return controls_.view(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnOK() override;
    void OnCancel() override;

private:
    AAxisWnd* window() const;
    int take();

    AAxisWnd* window_;
    LifeWatch windowLives_;
    BeamControls controls_;
    MapDisplay opened_;
    unsigned faulty_ = 0;  ///< the field that `take` could not read
};

}  // namespace pavane
