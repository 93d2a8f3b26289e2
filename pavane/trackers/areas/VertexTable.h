#pragma once

#include "pavane/containers/ARect.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

#include <limits>
#include <string>
#include <string_view>

namespace pavane
{

/// How values of one direction are shown: value * scale, with the unit's name behind the label.
struct ValueUnit {
    double scale = 1;
    std::string name;
};

/// The table of one area that is edited as text. Polygons have a row for each vertex with x and y;
/// the other kinds have one value a row: centre x, centre y, width, height, and for those that turn
/// the angle in degrees.
///
/// Values are shown with nine digits, those of vertices too; a text that is put back as it was
/// shown leaves every bit of the shape.
class PAVANE_API VertexTable
{
public:
    /// `bounds`: the values that lie on the map, either order of its edges.
    void setMap(const ARect<double>& bounds, const ValueUnit& x, const ValueUnit& y);
    void setShape(const ShapeValues& shape) { shape_ = shape; }
    const ShapeValues& shape() const { return shape_; }

    int rows() const;
    int columns() const { return isPolygon() ? 2 : 1; }
    /// "Vertex 1", "Centre x (arcsec)" and the like.
    std::string rowLabel(int row) const;
    /// "x (arcsec)", "y (arcsec)" for polygons, "Value" for the others.
    std::string columnLabel(int column) const;
    /// Empty outside the table.
    std::string text(int row, int column) const;

    /// Reads a text in place of a shown one. 0 when the shape cannot become that: it stays, and
    /// `message` says why in words for the user.
    int setText(int row, int column, std::string_view text, std::string& message);
    /// A vertex in the middle of the edge that ends in vertex `row` (row = rows() and 0: the edge
    /// from the last to the first). Returns the row of the new one, -1 for other shapes.
    int insertVertex(int row);
    /// 0 when it is not there, or when only three are left, with `message` saying so.
    int removeVertex(int row, std::string& message);

private:
    static constexpr double infinite = std::numeric_limits<double>::infinity();
    bool isPolygon() const { return shape_.kind == ShapeValues::Kind::polygon; }
    double shown(int row, int column) const;
    int setVertex(int row, int column, double value, std::string& message);
    int setCentre(int row, double value, std::string& message);
    int setSize(int row, double value, std::string& message);
    int setEdges(bool isX, double centre, double half, std::string& message);

    ShapeValues shape_;
    ARect<double> bounds_{-infinite, -infinite, infinite, infinite};
    ValueUnit x_;
    ValueUnit y_;
};

}  // namespace pavane
