#pragma once

#include "pavane/calibration/gains/GainApplier.h"
#include "tessel/api.h"
#include "tessel/flags/FlagQuery.h"
#include "tessel/uvfits/uv_values.h"
#include "tessel/uvfits/UvFilter.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// How data are corrected.
struct UvCorrectionRules {
    int keepsFailed = 0;   ///< non-zero: data without a usable gain stay as they are, not flagged
    int keepsWeights = 0;  ///< non-zero: weights are not multiplied by |g(a) g(b)|^2
    int before = 0;        ///< the id of a link: only those before it correct; 0: all
};

/// Groups, IFs and polarisations that were asked for so far, with what became of them.
struct UvCorrectionCounts {
    std::int64_t rows = 0, cells = 0;  ///< a cell: an IF and polarisation of a row
    std::int64_t flagged = 0;          ///< by the user
    std::int64_t lost = 0;             ///< flagged, or kept uncorrected, for want of a gain
};

/// A chain of gains and the flags of the user as what stands between a file and its readers: each
/// visibility is divided by g(a) conj(g(b)) of all links that are on. A copy of both: after a
/// change of them a new one is set. Of the file whose header it is made from.
class PAVANE_API UvCorrection final : public UvFilter
{
public:
    UvCorrection(const UvHeader& header, const GainChain& chain, const VisibilityFlags& flags = {},
                 const UvCorrectionRules& rules = {});
    ~UvCorrection() override;

    const UvChange* changesOf(const AUVXFile& file, const UvGroups& groups, std::size_t i) override;
    const UvCorrectionCounts& counts() const { return counts_; }

private:
    UvCorrectionRules rules_;
    GainApplier gains_;
    FlagQuery flags_;
    UvCorrectionCounts counts_;
    std::vector<UvChange> row_;
};

}  // namespace pavane
