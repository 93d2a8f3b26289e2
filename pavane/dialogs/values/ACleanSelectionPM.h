#pragma once

#include "pavane/dialogs/values/record_entries.h"
#include "pavane/imaging/clean_parameters.h"
#include "platform/api.h"
#include "tessel/uvfits/AUVXFqTbl.h"

#include <string>
#include <vector>

namespace pavane
{

class AUVXFile;
class AUVXTIntervalPM;

/// Which visibilities a map is made of, as the page "CLEAN selection" lets the user choose it. In
/// the profile the keys are "CS FORM", "CS GROUPS", "CS TS", "CS TE".
class PAVANE_API ACleanSelectionPM : public EntryRecord<ACleanSelectionPM>
{
public:
    // Of the data, for information; not stored.
    std::vector<std::string> forms = {"mean"};  ///< those that can be made of its hands
    AUVXFqTbl frequencies;
    double infoStart = 0, infoStop = 0;  ///< seconds since 0h of the reference day
    // The choice.
    std::string form = "mean";
    /// IFs from 0, rising in each group; empty: each IF by itself. An IF of no group is not used.
    std::vector<std::vector<int>> groups;
    double start = 0, stop = 0;  ///< seconds; equal: the whole time

    /// Takes what is for information from a file, and the times from `times`.
    void SetData(const AUVXFile& file, const AUVXTIntervalPM& times);
    /// IFs that are used, rising; empty when all are.
    std::vector<int> ifs() const;
    /// Sets the selection of `parameters`: form, IFs and times, these in days. From the start or to
    /// the end of the data means with their first or last time.
    void giveTo(CleanParameters& parameters) const;
    /// Takes form, IFs and times from them; IFs become a group each, times those of the data at
    /// most.
    void takeFrom(const CleanParameters& parameters);

    std::vector<RecordEntry> entries() const;
    int takeEntry(const RecordEntry& entry);
};

/// The polarisation forms that a map can have of data with these products ("RR", "LL", "RL", "XX",
/// "I" ...): "mean" of the parallel hands, "strict" where both are there, and each of them alone.
/// Empty when there is no parallel hand.
PAVANE_API std::vector<std::string> polarisationForms(const std::vector<std::string>& products);
/// "Mean of the hands that are there", "RR alone"; the name itself for one that is not known.
PAVANE_API CString polarisationFormText(const std::string& form);

/// What is wrong with groups of IFs, a sentence; "" when nothing is. An IF in two groups and groups
/// without any IF are.
PAVANE_API CString faultOfGroups(const std::vector<std::vector<int>>& groups, int ifs);

}  // namespace pavane
