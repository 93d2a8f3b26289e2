#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/containers/ARect.h"
#include "platform/api.h"

namespace pavane
{

/// How far one press of an arrow key moves.
enum class KeyStep { cell, tenCells, pixel };

/// Shift is ten cells, Ctrl one pixel of the screen; Ctrl counts when both are held.
constexpr KeyStep keyStep(bool shift, bool control)
{
    return control ? KeyStep::pixel : shift ? KeyStep::tenCells : KeyStep::cell;
}

/// Where an arrow key points on the screen: right and down are 1, left and up -1.
struct KeyDirection {
    int right = 0;
    int down = 0;
};

/// The direction of a virtual key; both 0 when it is no arrow.
PAVANE_API KeyDirection arrowDirection(int virtualKey);

/// What a step is at a place: changes of the data value.
struct StepScale {
    APoint<double> cell;   ///< from one cell to the next; its sign does not count
    APoint<double> pixel;  ///< from a pixel to the next one to the right, and to the next below
};

/// Scale at a point of an axis, from its own conversions: `toX`, `toY` give the value (RP) of a
/// pixel column or row, `pixel` is the place. Logarithmic axes have a pixel of another size
/// everywhere.
template <typename ToX, typename ToY>
StepScale stepScale(APoint<double> cell, APoint<int> pixel, ToX&& toX, ToY&& toY)
{
    return {cell, {toX(pixel.x + 1) - toX(pixel.x), toY(pixel.y + 1) - toY(pixel.y)}};
}

/// The change of the data value that moves a shape as the arrow shows on the screen, whichever way
/// the axis runs. Where a map has no cell size, or no number for it, a cell counts as a pixel; 0
/// when there is none of either.
PAVANE_API APoint<double> keyOffset(KeyDirection direction, KeyStep step, const StepScale& scale);

/// `offset` cut so that a shape with the box `box` stays inside `bounds`, each direction by itself.
/// Either order of the edges. A box that is outside already may move inwards, and no further out.
PAVANE_API APoint<double> offsetInside(APoint<double> offset, const ARect<double>& box,
                                       const ARect<double>& bounds);

/// Turns a series of offsets into whole pixels without losing the fractions: ten steps of 0.3 pixel
/// are three pixels. For shapes that are kept in pixels.
class PAVANE_API PixelSteps
{
public:
    void reset() { rest_ = {}; }
    /// `offset` in pixels with fractions.
    APoint<int> take(APoint<double> offset);

private:
    APoint<double> rest_;
};

}  // namespace pavane
