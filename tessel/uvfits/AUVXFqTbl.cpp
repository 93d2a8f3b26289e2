#include "tessel/uvfits/AUVXFqTbl.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

}  // namespace

AUVXFqTbl::AUVXFqTbl(double reference, double referenceChannel, int channels,
                     std::vector<AUVXFreqs> selections)
    : reference_(reference), referenceChannel_(referenceChannel), channels_(std::max(channels, 0)),
      selections_(std::move(selections))
{
    for (const AUVXFreqs& selection : selections_)
        ifCount_ = std::max(ifCount_, static_cast<int>(selection.ifs.size()));
}

int AUVXFqTbl::selectionOf(int id) const
{
    for (std::size_t i = 0; i < selections_.size(); ++i)
        if (selections_[i].id == id)
            return static_cast<int>(i);
    return selections_.size() == 1 ? 0 : -1;
}

const UvIf* AUVXFqTbl::find(int selection, int ifIndex) const
{
    if (selection < 0 || selection >= selectionCount() || ifIndex < 0)
        return nullptr;
    const std::vector<UvIf>& ifs = selections_[static_cast<std::size_t>(selection)].ifs;
    const auto i = static_cast<std::size_t>(ifIndex);
    return i < ifs.size() ? &ifs[i] : nullptr;
}

double AUVXFqTbl::frequency(int selection, int ifIndex) const
{
    const UvIf* const found = find(selection, ifIndex);
    return found ? reference_ + found->offset.value : unknown;
}

double AUVXFqTbl::frequency(int selection, int ifIndex, int channel) const
{
    const UvIf* const found = find(selection, ifIndex);
    if (!found || channel < 0 || channel >= channels_)
        return unknown;
    return reference_ + (channel + 1 - referenceChannel_) * found->channelWidth.value +
           found->offset.value;
}

}  // namespace pavane
