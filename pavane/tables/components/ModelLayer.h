#pragma once

#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/components/AComponents.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// The components of a model over a map of the sky: the outline of each, a point as a cross. Model
/// and frame are not owned.
class PAVANE_API ModelLayer : public FigureLayer
{
public:
    ModelLayer(const AComponents& model, const MapFrame& frame) : model_(&model), frame_(&frame) {}
    /// Component `i` stands out from the others; -1 none, as at first.
    void SetSelected(int i) { selected_ = i; }
    void draw(CDC& dc, const ABAxis& axis) override;
    /// The component whose outline is nearest to a pixel of the window that the axis is laid out
    /// for, and no farther than `reach` from it; -1 for none.
    int ComponentAt(const ABAxis& axis, CPoint pixel, double reach) const;

private:
    std::vector<std::vector<CPointF>> curvesOf(int i, const ABAxis& axis, double crossSize) const;

    const AComponents* model_;
    const MapFrame* frame_;
    int selected_ = -1;
};

}  // namespace pavane
