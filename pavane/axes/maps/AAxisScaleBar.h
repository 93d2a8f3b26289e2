#pragma once

#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/maps/scale_ticks.h"

namespace pavane
{

/// A bar beside a plot that explains the values of a map: the base of the colour and level bars.
/// Holds no range of its own; what it shows comes from the graph that it explains, which is not
/// owned and has to outlive it.
class PAVANE_API AAxisScaleBar : public AB2DAxis
{
public:
    /// `horizontal` non-zero: the low end at the left and the labels below; else the low end at the
    /// bottom and the labels at the right.
    explicit AAxisScaleBar(int horizontal) : AB2DAxis(1, 1, nullptr, 0), horizontal_(horizontal) {}

    int GetAxisType() const override { return 12; }
    int isHorizontal() const { return horizontal_; }
    /// How much room bar, labels and title take across the bar, in device units, for a bar of
    /// `length` with the font height of `setFHeight`.
    int neededBreadth(CDC& dc, int length) const;
    /// Draws the bar along the left (or upper) edge of `rect`, from end to end of it, both edges
    /// included as in a graph rectangle; labels reach half their height beyond the ends.
    /// Nothing is drawn for a map without data or without levels.
    void draw(CDC& dc, CRect& rect) override;

protected:
    /// Ticks for a bar with room for `intervals` labels.
    virtual ScaleTicks ticks(int intervals) const = 0;
    /// Fills the bar; the frame is drawn later.
    virtual void drawBar(CDC& dc, const CRect& bar, const ScaleTicks& ticks) = 0;
    /// Device coordinate along the bar of a position 0..1.
    int along(const CRect& bar, double position) const;

private:
    ScaleTicks fittingTicks(CDC& dc, int length) const;
    int widestLabel(CDC& dc, const ScaleTicks& ticks) const;
    void drawLabels(CDC& dc, const CRect& bar, const ScaleTicks& ticks);
    void drawTitle(CDC& dc, const CRect& bar, const ScaleTicks& ticks, int widest);
    int barBreadth() const { return fHeight_; }

    int horizontal_;
};

}  // namespace pavane
