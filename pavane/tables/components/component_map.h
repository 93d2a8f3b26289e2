#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/tables/components/ACompItem.h"
#include "pavane/tables/components/CellSink.h"

namespace pavane
{

/// The shape of a component on the sky: its centre and the ends of its half axes from there, in
/// arcseconds (x east, y north).
struct ComponentShape {
    explicit ComponentShape(const ACompItem& item);
    APoint<double> centre;
    APoint<double> large;
    APoint<double> small;
    double flux;
};

/// A bound on its size and its distance from the first cell, in cells.
double cellsSpanned(const MapGrid& grid, const ComponentShape& shape);

/// How brightness is spread over an ellipse.
enum class Profile { uniform, sphere };

/// Adds a component as ACompItem::ToMap does; a stop of the grid leaves out the rest.
void addComponent(AMatrix<float>& map, const MapGrid& grid, const ACompItem& item);

// Each adds `shape.flux` to the map, the part on it.

void addPoint(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape);
/// Half axes are half of the widths at half maximum.
void addGaussian(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape);
void addThinRing(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape);
/// A line between the two ends of the small axis.
void addStrip(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape);
/// A filled ellipse, less the same with axes `hole` times and a flux hole^2 times as large.
void addEllipse(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
                Profile profile, double hole);
/// Adds (2 - width) times the flux, as the visibility of this kind has it.
void addWideRing(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
                 double width);

}  // namespace pavane
