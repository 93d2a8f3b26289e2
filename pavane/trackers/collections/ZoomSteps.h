#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "platform/api.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

/// The factor of zoom steps and the ranges to go back to.
class PAVANE_API ZoomSteps
{
public:
    /// The i-th factor of zoomFactors; i is not checked.
    void SetZoomScaleNo(int i) { zoomScale_ = zoomFactors[i]; }
    /// 0 when the factor is none of the list.
    int GetZoomScaleNo() const
    {
        const auto at = std::find(std::begin(zoomFactors), std::end(zoomFactors), zoomScale_);
        return at == std::end(zoomFactors) ? 0 : static_cast<int>(at - std::begin(zoomFactors));
    }
    int zoomScale() const { return zoomScale_; }
    /// The last one is the first to go back to.
    const AArray<TMinMax>& zoomHistory() const { return zoomHistory_; }

protected:
    /// Ranges that the history makes room for at once.
    static constexpr int historyGrowth = 256;

    int zoomScale_ = zoomFactors[0];
    AArray<TMinMax> zoomHistory_{0, 0, historyGrowth};
};

}  // namespace pavane
