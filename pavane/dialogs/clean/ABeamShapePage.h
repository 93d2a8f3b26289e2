#pragma once

#include "pavane/axes/dialogs/BeamControls.h"
#include "pavane/dialogs/values/ABeamShapePM.h"
#include "pavane/windows/AResizeSheet.h"

namespace pavane
{

/// The page "Beam shape": whether a map is restored with the beam that fits the dirty one, with a
/// round one or with one that is typed, its numbers in a unit of choice, and how it looks. A host
/// restores anew when the choice is taken; nothing is cleaned again.
class PAVANE_API ABeamShapePage : public AResizePage
{
public:
    explicit ABeamShapePage(const CString& caption = CString());

    /// What "Fit" fits anew; without it the button is not enabled. Before the page is made.
    void SetDirtyBeam(const DirtyBeamFinder& finder) { controls_.setFinder(finder); }
    /// Takes a copy, and shows it when the page has its window.
    void SetParameters(const ABeamShapePM& parameters);
    /// The choice as it was accepted last.
    const ABeamShapePM& GetParameters() const { return pm_; }
    /// Checks what stands on the page and takes it. 1 when it is accepted; else 0, with a message
    /// and the focus in the field that is wrong. Without a window it judges the record.
    int SaveBeam();
    const ABeamViewWnd& beamView() const { return controls_.view(); }

    int OnKillActive() override { return SaveBeam(); }
    int OnApply() override { return SaveBeam(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    int read(ABeamShapePM& pm, CString& error, unsigned& faulty) const;
    void showShape(const ABeamShapePM& pm);
    void chooseKind();
    void keepRound();
    int refuse(const CString& error, unsigned faulty);

    BeamControls controls_;
    ABeamShapePM pm_;    ///< as accepted last
    ABeamShapePM now_;   ///< what was typed for each kind
    int isShowing_ = 0;  ///< the page writes its controls itself
};

/// Shows a sheet with the page; `finder` as SetDirtyBeam takes it. Non-zero when the user took a
/// choice, by OK or "Apply", which `pm` then is; else `pm` is as before.
PAVANE_API int AskBeamShape(CWnd* parent, ABeamShapePM& pm, const DirtyBeamFinder& finder = {});

}  // namespace pavane
