#pragma once

#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/components/AComponents.h"

namespace pavane
{

/// The components of a model over a map of the sky: the outline of each, a point as a cross. Model
/// and frame are not owned.
class PAVANE_API ModelLayer : public FigureLayer
{
public:
    ModelLayer(const AComponents& model, const MapFrame& frame) : model_(&model), frame_(&frame) {}
    void draw(CDC& dc, const ABAxis& axis) override;

private:
    const AComponents* model_;
    const MapFrame* frame_;
};

}  // namespace pavane
