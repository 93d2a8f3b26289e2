#pragma once

#include "pavane/axes/dialogs/ABeamViewWnd.h"
#include "pavane/axes/dialogs/DirtyBeam.h"
#include "pavane/axes/maps/beam_form.h"
#include "pavane/axes/maps/MapDisplay.h"

namespace pavane
{

class CComboBox;
class CDialog;

/// The controls of a beam, on whichever dialog has them: numbers with a unit, how it is drawn and
/// where, the beam as it is typed, and "Fit".
class BeamControls
{
public:
    explicit BeamControls(CDialog& dialog) : dialog_(dialog) {}
    /// Of the axes of the map; 0 when it is not on the sky.
    void setArcseconds(double arcseconds) { arcseconds_ = arcseconds; }
    void setFinder(const DirtyBeamFinder& finder) { finder_ = finder; }
    /// Fills the lists; call it in OnInitDialog.
    void make();
    /// In the unit chosen, at first in a handy one.
    void show(const MapDisplay& display);
    /// Takes what stands there. Non-zero on success; else 0, `error` says why and `faulty` is the
    /// identifier of the field.
    int take(MapDisplay& display, CString& error, unsigned& faulty) const;
    enum class Answer { notMine, changed, done };
    /// A command of the dialog: `changed` when something else is typed or chosen now. `error` says
    /// what went wrong, else it is empty.
    Answer command(unsigned id, unsigned code, CString& error);
    const ABeamViewWnd& view() const { return view_; }

private:
    CComboBox* combo(unsigned id) const;
    BeamForm form() const;
    void setForm(const BeamForm& form);
    void setUnit(int unit);
    int unit() const;
    void drawBeam();
    int fit(CString& error);

    CDialog& dialog_;
    DirtyBeamFinder finder_;
    ABeamViewWnd view_;
    double arcseconds_ = 0;
    int unit_ = -1;    ///< that the numbers are in; -1 before they were shown
    int filling_ = 0;  ///< the texts are being written by these lines
    MapBeam exact_;    ///< what the texts were made from
    BeamForm shown_;   ///< and these texts
};

}  // namespace pavane
