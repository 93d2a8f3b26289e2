#include "pavane/trackers/areas/VertexTable.h"

#include "pavane/resources/tracker_messages.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

enum Row { centreX, centreY, fullWidth, fullHeight, angleDegrees };

constexpr double degreesPerRadian = 180 / std::numbers::pi;

/// Digits shown: a millionth of a cell on maps of common sizes. More would only be read as noise of
/// the pointer; values that are not edited keep all of theirs.
constexpr int shownDigits = 9;

/// A shape that touches the edge of the map may miss it by so much of the map's size.
constexpr double edgeTolerance = 1e-12;

/// A polygon keeps so many vertices.
constexpr int fewestVertices = 3;

std::string withUnit(const std::string& label, const ValueUnit& unit)
{
    return unit.name.empty() ? label : label + " (" + unit.name + ")";
}

bool within(double value, double end, double otherEnd)
{
    const double low = std::min(end, otherEnd);
    const double high = std::max(end, otherEnd);
    const double slack = std::isfinite(high - low) ? (high - low) * edgeTolerance : 0;
    return value >= low - slack && value <= high + slack;
}

int refuse(std::string& message, const char* why)
{
    message = why;
    return 0;
}

}  // namespace

void VertexTable::setMap(const ARect<double>& bounds, const ValueUnit& x, const ValueUnit& y)
{
    bounds_ = bounds;
    x_ = x;
    y_ = y;
    for (ValueUnit* unit : {&x_, &y_})
        if (unit->scale == 0 || !std::isfinite(unit->scale))
            unit->scale = 1;
}

int VertexTable::rows() const
{
    if (isPolygon())
        return static_cast<int>(shape_.points.size());
    return shape_.kind == ShapeValues::Kind::rectangle ? angleDegrees : angleDegrees + 1;
}

std::string VertexTable::rowLabel(int row) const
{
    if (isPolygon())
        return "Vertex " + std::to_string(row + 1);
    switch (row) {
    case centreX:
        return withUnit("Centre x", x_);
    case centreY:
        return withUnit("Centre y", y_);
    case fullWidth:
        return withUnit("Width", x_);
    case fullHeight:
        return withUnit("Height", y_);
    default:
        return "Angle (degrees)";
    }
}

std::string VertexTable::columnLabel(int column) const
{
    if (!isPolygon())
        return "Value";
    return column == 0 ? withUnit("x", x_) : withUnit("y", y_);
}

double VertexTable::shown(int row, int column) const
{
    const ARect<double>& r = shape_.rect;
    if (isPolygon()) {
        const APoint<double>& p = shape_.points[static_cast<std::size_t>(row)];
        return column == 0 ? p.x * x_.scale : p.y * y_.scale;
    }
    switch (row) {
    case centreX:
        return (r.left / 2 + r.right / 2) * x_.scale;
    case centreY:
        return (r.top / 2 + r.bottom / 2) * y_.scale;
    case fullWidth:
        return std::abs((r.right - r.left) * x_.scale);
    case fullHeight:
        return std::abs((r.bottom - r.top) * y_.scale);
    default:
        return shape_.angle * degreesPerRadian;
    }
}

std::string VertexTable::text(int row, int column) const
{
    if (row < 0 || row >= rows() || column < 0 || column >= columns())
        return {};
    return valToStr(shown(row, column), shownDigits);
}

int VertexTable::setText(int row, int column, std::string_view text, std::string& message)
{
    if (row < 0 || row >= rows() || column < 0 || column >= columns())
        return refuse(message, noSuchValue);
    const std::string_view typed = trimmed(text, " \t");
    if (typed == this->text(row, column))
        return 1;
    double value = 0;
    if (!stoval(typed, value) || !std::isfinite(value)) {
        message = '"' + std::string(typed) + '"' + notANumber;
        return 0;
    }
    if (isPolygon())
        return setVertex(row, column, value, message);
    switch (row) {
    case centreX:
    case centreY:
        return setCentre(row, value, message);
    case fullWidth:
    case fullHeight:
        return setSize(row, value, message);
    default:
        break;
    }
    constexpr double turn = 360;
    shape_.angle =
        (std::abs(value) > turn ? std::remainder(value, turn) : value) / degreesPerRadian;
    return 1;
}

int VertexTable::setVertex(int row, int column, double value, std::string& message)
{
    APoint<double>& p = shape_.points[static_cast<std::size_t>(row)];
    const bool isX = column == 0;
    const double place = value / (isX ? x_ : y_).scale;
    if (!(isX ? within(place, bounds_.left, bounds_.right)
              : within(place, bounds_.top, bounds_.bottom)))
        return refuse(message, outsideTheMap);
    (isX ? p.x : p.y) = place;
    return 1;
}

int VertexTable::setCentre(int row, double value, std::string& message)
{
    const bool isX = row == centreX;
    double& from = isX ? shape_.rect.left : shape_.rect.top;
    double& to = isX ? shape_.rect.right : shape_.rect.bottom;
    const double half = to / 2 - from / 2;
    return setEdges(isX, value / (isX ? x_ : y_).scale, half, message);
}

int VertexTable::setSize(int row, double value, std::string& message)
{
    const bool isX = row == fullWidth;
    if (!(value > 0))
        return refuse(message, isX ? widthAboveZero : heightAboveZero);
    const double from = isX ? shape_.rect.left : shape_.rect.top;
    const double to = isX ? shape_.rect.right : shape_.rect.bottom;
    const double half = std::abs(value / (isX ? x_ : y_).scale) / 2;
    return setEdges(isX, from / 2 + to / 2, to < from ? -half : half, message);
}

/// Unturned rectangles stay on the map as a whole, the others with their centre, as drags keep
/// them.
int VertexTable::setEdges(bool isX, double centre, double half, std::string& message)
{
    const double from = centre - half;
    const double to = centre + half;
    const double low = isX ? bounds_.left : bounds_.top;
    const double high = isX ? bounds_.right : bounds_.bottom;
    const bool inside = shape_.kind == ShapeValues::Kind::rectangle
                            ? within(from, low, high) && within(to, low, high)
                            : within(centre, low, high);
    if (!inside || !std::isfinite(from) || !std::isfinite(to))
        return refuse(message, outsideTheMap);
    if (from == to)
        return refuse(message, isX ? widthAboveZero : heightAboveZero);
    (isX ? shape_.rect.left : shape_.rect.top) = from;
    (isX ? shape_.rect.right : shape_.rect.bottom) = to;
    return 1;
}

int VertexTable::insertVertex(int row)
{
    const int n = rows();
    if (!isPolygon() || row < 0 || row > n || n < 2)
        return -1;
    const auto point = [&](int i) { return shape_.points[static_cast<std::size_t>(i)]; };
    const APoint<double> a = point((row + n - 1) % n);
    const APoint<double> b = point(row % n);
    shape_.points.insert(shape_.points.begin() + row, {a.x / 2 + b.x / 2, a.y / 2 + b.y / 2});
    return row;
}

int VertexTable::removeVertex(int row, std::string& message)
{
    if (!isPolygon() || row < 0 || row >= rows())
        return refuse(message, noSuchValue);
    if (rows() <= fewestVertices)
        return refuse(message, threeVerticesStay);
    shape_.points.erase(shape_.points.begin() + row);
    return 1;
}

}  // namespace pavane
