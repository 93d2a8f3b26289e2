#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFreqs.h"

#include <vector>

namespace pavane
{

/// The frequencies of a data file, a plain value: selections of IFs, each of the same number of
/// channels. IFs, channels and selections count from 0 here. What is outside is NaN.
class PAVANE_API AUVXFqTbl
{
public:
    AUVXFqTbl() = default;
    /// `reference` (Hz) is that of the channel `referenceChannel`, which counts from 1 and may lie
    /// between channels; every selection has IFs.
    AUVXFqTbl(double reference, double referenceChannel, int channels,
              std::vector<AUVXFreqs> selections);

    /// IFs of the selection that has most of them; 0 for a table without frequencies.
    int ifCount() const { return ifCount_; }
    int channels() const { return channels_; }
    int selectionCount() const { return static_cast<int>(selections_.size()); }
    const std::vector<AUVXFreqs>& selections() const { return selections_; }
    /// The selection that groups call `id`, -1 when there is none. A table of one alone is that of
    /// all groups, whatever they call it.
    int selectionOf(int id) const;

    double referenceFrequency() const { return reference_; }
    /// Hz, of the reference channel of an IF.
    double frequency(int selection, int ifIndex) const;
    /// Hz, of a channel of an IF.
    double frequency(int selection, int ifIndex, int channel) const;

private:
    const UvIf* find(int selection, int ifIndex) const;
    double reference_ = 0;
    double referenceChannel_ = 1;
    int channels_ = 0;
    int ifCount_ = 0;
    std::vector<AUVXFreqs> selections_;
};

}  // namespace pavane
