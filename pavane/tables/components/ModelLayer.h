#pragma once

#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/components/AComponents.h"
#include "platform/geometry.h"

#include <optional>
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
    /// Draws only what meets these pixels of the window that the axis is laid out for; a paint of a
    /// part of a long list costs what is in it.
    void SetPart(const CRect& part) { part_ = part; }
    void draw(CDC& dc, const ABAxis& axis) override;
    /// Pixels that the outline of a component covers, or the cross of a point, as it is drawn when
    /// it is selected.
    CRect BoundsOf(int i, const ABAxis& axis) const;
    /// The component whose outline is nearest to a pixel of the window that the axis is laid out
    /// for, and no farther than `reach` from it; -1 for none.
    int ComponentAt(const ABAxis& axis, CPoint pixel, double reach) const;

private:
    CPointF pixelOf(const ABAxis& axis, double east, double north) const;
    std::vector<std::vector<CPointF>> curvesOf(int i, const ABAxis& axis, double crossSize) const;

    const AComponents* model_;
    const MapFrame* frame_;
    int selected_ = -1;
    std::optional<CRect> part_;
};

}  // namespace pavane
