#include "pavane/calibration/gains/UvCorrection.h"

#include "tessel/uvfits/UvGroups.h"

#include <algorithm>

namespace pavane
{

UvCorrection::UvCorrection(const UvHeader& header, const GainChain& chain,
                           const VisibilityFlags& flags, const UvCorrectionRules& rules)
    : rules_(rules), gains_(chain, header.ifs, header.stokes, header.referenceDay, rules.before),
      flags_(flags, header.ifs, header.stokes, header.referenceDay),
      row_(static_cast<std::size_t>(std::max(header.ifs, 0)) * header.stokes.size())
{
}

UvCorrection::~UvCorrection() = default;

const UvChange* UvCorrection::changesOf(const AUVXFile&, const UvGroups& groups, std::size_t i)
{
    const int subarray = groups.subarray[i], first = groups.antenna1[i],
              second = groups.antenna2[i], source = groups.source[i];
    const double time = groups.time[i];
    ++counts_.rows;
    counts_.cells += static_cast<std::int64_t>(row_.size());
    const unsigned char* const flags = flags_.of(subarray, first, second, time, source);
    if (gains_.isEmpty() && !flags)
        return nullptr;
    const GainCorrection* const gains =
        gains_.isEmpty() ? nullptr : gains_.of(subarray, first, second, time, source);
    for (std::size_t k = 0; k < row_.size(); ++k) {
        UvChange& change = row_[k] = {};
        if (gains && gains[k].isUsable) {
            change.factor = gains[k].factor;
            change.weight = rules_.keepsWeights ? 1 : gains[k].weight;
        } else if (gains) {
            ++counts_.lost;
            change.isFlagged = !rules_.keepsFailed;
        }
        if (flags && flags[k]) {
            ++counts_.flagged;
            change.isFlagged = 1;
        }
    }
    return row_.data();
}

}  // namespace pavane
