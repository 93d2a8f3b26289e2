#pragma once

#include "pavane/dialogs/values/ASelfCalPM.h"
#include "pavane/dialogs/values/PageForm.h"

#include <string>
#include <vector>

namespace pavane
{

/// What stands on the page "Self-calibration".
class PAVANE_API SelfCalForm : public PageForm
{
public:
    enum Field {
        kind,
        isWhole,
        seconds,
        isScaled,
        leastRatio,
        leastAntennas,
        leastUv,
        mostUv,
        model,
        usesWeights,
        changesWeights,
        keepsFailed,
        references,  ///< the list, for refusals
        fieldCount
    };
    enum Note {
        count,  ///< how the data are cut
        first   ///< whose phase is 0
    };
    /// A line of the list of reference antennas.
    struct Antenna {
        std::string name;
        int isOn = 0;
    };

    SelfCalForm() : PageForm(fieldCount) {}
    const ASelfCalPM& record() const { return record_; }
    void setRecord(const ASelfCalPM& record);

    /// The antennas in the order in which they are taken as reference; those that are on count.
    const std::vector<Antenna>& antennas() const { return antennas_; }
    void setOn(int antenna, int on);
    /// Moves an antenna up (-1) or down (1); its new place, the old one where it cannot move.
    int move(int antenna, int by);

    std::vector<CString> lines(int field) const override;
    int isEnabled(int field) const override;
    CString note(int which) const override;
    FormRefusal save() override;

private:
    FormRefusal read(ASelfCalPM& pm) const;

    ASelfCalPM record_;
    std::vector<Antenna> antennas_;
};

}  // namespace pavane
