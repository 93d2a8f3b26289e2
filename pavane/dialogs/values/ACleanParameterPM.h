#pragma once

#include "pavane/dialogs/values/record_entries.h"
#include "pavane/imaging/clean_parameters.h"
#include "platform/api.h"

namespace pavane
{

/// How a round is cleaned and on which map, as the page "CLEAN parameters" lets the user choose it,
/// with what the data propose beside it. In the profile the keys are "CL NX" to "CL TE", see the
/// file formats.
class PAVANE_API ACleanParameterPM : public EntryRecord<ACleanParameterPM>
{
public:
    // Of the data, for information; not stored.
    double greatestUv = 0;  ///< longest baseline in wavelengths, 0 when it is not known
    // The choice.
    CleanParameters parameters;

    ACleanParameterPM() = default;
    explicit ACleanParameterPM(const CleanParameters& chosen, double longestUv = 0)
        : greatestUv(longestUv), parameters(chosen)
    {
    }

    /// The cell that the data ask for, mas; 0 when they do not say.
    double GetProposedCell() const { return proposedCell(greatestUv); }

    std::vector<RecordEntry> entries() const;
    int takeEntry(const RecordEntry& entry);
};

}  // namespace pavane
