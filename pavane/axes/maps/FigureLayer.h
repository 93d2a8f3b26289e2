#pragma once

#include "platform/api.h"

namespace pavane
{

class ABAxis;
class CDC;

/// What lies over the graphs of a figure, such as areas or the components of a model.
class PAVANE_API FigureLayer
{
public:
    virtual ~FigureLayer() = default;
    /// Draws into the plot of `axis`, which is laid out for the context.
    virtual void draw(CDC& dc, const ABAxis& axis) = 0;
};

}  // namespace pavane
