#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/UvMarks.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// The marks of a data file, made ready to be asked of each of its groups. File and marks outlive
/// it. Times are not looked at.
class PAVANE_API UvChoice
{
public:
    UvChoice(const AUVXFile& file, const UvMarks& marks);

    /// Hz, of the channels of the group's IFs one after the other, 0 where they are not marked;
    /// null when nothing of the group is. Of groups with baselines, origins and times.
    const double* frequenciesOf(const UvGroups& groups, std::size_t i);
    /// Whether one of UvHeader::stokes is marked, from 0.
    int takesStokes(int stokes) const { return stokes_[static_cast<std::size_t>(stokes)]; }
    /// Whether groups of one baseline, source and selection may differ in what is marked of them.
    int dependsOnScans() const { return !allScans_; }
    int stokesCount() const { return static_cast<int>(stokes_.size()); }

private:
    int takesPair(const UvPair& pair, int isMarked) const;
    void makeFrequencies(std::size_t selection);

    const AUVXFile& file_;
    const UvMarks& marks_;
    int allTelescopes_, allSources_, allScans_;
    std::vector<int> stokes_;
    std::vector<std::vector<double>> frequencies_;  ///< of each selection, empty until it is met
    Distinct<UvPair, int> pairs_;                   ///< whether those met so far are taken
    int newPair_;                                   ///< what one in no table is marked as
};

}  // namespace pavane
