#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/APoint.h"
#include "pavane/containers/ARect.h"
#include "pavane/trackers/ATracker.h"

namespace pavane
{

class ABAxis;

/// The base of the shapes that are kept in data values (RP) of an axis, so that they stay on their
/// part of the map. On the screen they are where the axis puts their points (GP); without an axis
/// a value is a pixel. A drag changes only what it drags and leaves the bits of the rest.
class PAVANE_API ABTracker : public ATracker
{
public:
    ABTracker* Duplicate() const override = 0;

    /// Values become pixels through the axis, or are cut towards zero without one.
    APoint<int> RPtoGP(const APoint<double>& point) const;
    APoint<double> GPtoRP(const APoint<int>& point) const;
    ARect<int> RPtoGP(const ARect<double>& rect) const;
    ARect<double> GPtoRP(const ARect<int>& rect) const;

    /// Replaces `points` by the closed outline in data values. `count`: how many points an ellipse
    /// shall have, 0 for 720; other shapes have their corners.
    virtual void GetAreaPoints(AArray<APoint<double>>& points, int count) const = 0;
    virtual APoint<double> GetCenter() const;

    /// Not owned, not stored; null for none. Has to outlive its use here.
    ABAxis* axis() const { return axis_; }
    void SetAxis(ABAxis* axis) { axis_ = axis; }
    /// Drops the axis.
    int Load(AFile& file) override;
    /// Keeps the axis.
    int SetState(const std::string& state) override;

protected:
    int ownBounds(CRect& bounds) const override;
    /// Non-zero when pixels can be turned into values: there is no axis, or one with a graph
    /// rectangle and a range that are not empty.
    int convertible() const;
    CPoint pixel(const APoint<double>& point) const;
    APoint<double> value(CPoint point) const;

    ABAxis* axis_ = nullptr;
};

}  // namespace pavane
