#pragma once

#include "pavane/axes/ABAxis.h"

namespace pavane
{

/// Line style, width and colour of an axis, as they were, when this dies.
class AxisPenState
{
public:
    explicit AxisPenState(ABAxis& axis)
        : axis_(axis), style_(axis.getLineStyle()), width_(axis.getLineWidth()),
          color_(axis.getColor())
    {
    }
    AxisPenState(const AxisPenState&) = delete;
    AxisPenState& operator=(const AxisPenState&) = delete;
    ~AxisPenState()
    {
        axis_.setLineStyle(style_);
        axis_.setLineWidth(width_);
        axis_.setColor(color_);
    }

private:
    ABAxis& axis_;
    int style_;
    int width_;
    COLORREF color_;
};

}  // namespace pavane
