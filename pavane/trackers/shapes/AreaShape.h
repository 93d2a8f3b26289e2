#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/trackers/shapes/area_label.h"

#include <vector>

namespace pavane
{

/// The shape of one area, apart from any window and any file. Cells of a map (MP): x is the column
/// and y the row, both from 0 with fractions, whole numbers are cell centres; cell (x, y) is FITS
/// pixel (x + 1, y + 1). A plain value.
struct AreaShape {
    enum class Kind {
        rectangle,         ///< centre, width along columns, height along rows
        rotatedRectangle,  ///< the same, turned about the centre by `angle`
        ellipse,           ///< inscribed in such a turned rectangle
        polygon            ///< vertices, closed from the last to the first
    };
    Kind kind = Kind::rectangle;
    APoint<double> centre;
    double width = 0;   ///< full size along the angle, cells
    double height = 0;  ///< full size across it, cells
    double angle = 0;   ///< radians from growing columns towards growing rows
    std::vector<APoint<double>> vertices;
    /// The outline of a turned rectangle or an ellipse runs the other way round than usual
    /// (`outlineOf`). Masks take other cells along their edges then.
    int isReversed = 0;
    /// Masks leave out its cells (trackerNeverClean); region files write it as excluded.
    int isNeverClean = 0;
    AreaLabel label = {};
};

}  // namespace pavane
