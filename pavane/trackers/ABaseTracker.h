#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/trackers/ATracker.h"
#include "pavane/trackers/shapes/PixelMapping.h"

namespace pavane
{

/// The base of the shapes that are kept in window pixels.
class PAVANE_API ABaseTracker : public ATracker
{
public:
    ABaseTracker* Duplicate() const override = 0;
    /// Replaces `points` by the closed outline in window pixels.
    virtual void GetAreaPoints(AArray<CPoint>& points) const = 0;
    /// Moves the shape to the pixels where `to` shows what it covers in `from`. Mappings that are
    /// not usable change nothing.
    virtual void Scale(const PixelMapping& from, const PixelMapping& to) = 0;
};

}  // namespace pavane
