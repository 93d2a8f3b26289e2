#pragma once

#include "pavane/dialogs/values/ACleanParameterPM.h"
#include "pavane/dialogs/values/PageForm.h"

namespace pavane
{

/// What stands on the page "CLEAN parameters".
class PAVANE_API CleanForm : public PageForm
{
public:
    enum Field {
        width,
        height,
        cell,
        weighting,
        robust,
        taper,
        shiftX,
        shiftY,  // the map
        gain,
        majorGain,
        iterations,
        threshold,
        unit,
        isAutoMask,
        maskLevel,
        isMultiscale,
        stopsEachCycle,
        fieldCount
    };
    enum Note {
        proposal,  ///< the cell that the data ask for, and why
        extent,    ///< how much of the sky the map shows
        beam       ///< whether beam and dirty map can stay
    };

    CleanForm() : PageForm(fieldCount) {}
    const ACleanParameterPM& record() const { return record_; }
    /// Takes a record and shows it; a cell of 0 is shown as the proposal.
    void setRecord(const ACleanParameterPM& record);
    /// Writes the proposed cell into its field; 0 when there is none.
    int takeProposal();

    std::vector<CString> lines(int field) const override;
    int isEnabled(int field) const override;
    CString note(int which) const override;
    FormRefusal save() override;

private:
    FormRefusal read(CleanParameters& parameters) const;

    ACleanParameterPM record_;
    CleanParameters opened_;  ///< what there are a beam and a dirty map of
};

}  // namespace pavane
