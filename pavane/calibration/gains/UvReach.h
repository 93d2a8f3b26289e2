#pragma once

#include "pavane/tables/components/ModelVisibilities.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvSlices.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// Reads the places of all groups of a file, in slices, and finds what decides whether components
/// are added up for their visibilities or an imaging program predicts them. May be dropped at any
/// time. The file outlives it.
class PAVANE_API UvReach
{
public:
    explicit UvReach(AUVXFile& file, UvMarks marks = {});
    UvReach(const UvReach&) = delete;
    UvReach& operator=(const UvReach&) = delete;

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when all is done, or
    /// cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    double done() const { return slices_.done(); }  ///< 0 to 1
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }

    /// Wavelengths, of the channels that are marked.
    double greatestW() const { return greatestW_; }
    /// Where visibilities are wanted: marked groups, IFs and channels.
    std::int64_t places() const { return places_; }

private:
    AUVXFile& file_;
    UvMarks marks_;
    UvChoice choice_;
    UvSlices slices_;
    double greatestW_ = 0;
    std::int64_t places_ = 0;
};

/// How the visibilities of a model are made.
enum class ModelWay {
    components,  ///< added up; exact
    tooWide,     ///< predicted, since a component lies too far from the centre for a flat sky
    tooMany      ///< predicted, since components times places are too many to be added up
};

/// Beyond so many components times places adding up takes longer than predicting.
inline constexpr double mostComponentPlaces = 1e9;

PAVANE_API ModelWay modelWay(const ModelVisibilities& model, const UvReach& reach);

}  // namespace pavane
