#include "pavane/trackers/regions/region_windows.h"

#include "pavane/trackers/regions/region_lines.h"
#include "pavane/trackers/regions/region_text.h"
#include "pavane/trackers/regions/region_values.h"
#include "pavane/trackers/shapes/area_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

using Kind = AreaShape::Kind;
using NoteKind = RegionNotes::Kind;

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view between = " \t,";
constexpr double masPerDegree = 3.6e6;
/// Cells by which corners may be off: masks are made of whole cells; what is written comes back.
constexpr double readTolerance = 0.01, writeTolerance = 1e-6;
/// An edge half way between cells but for its digits is taken as half way, so near at most.
constexpr double mostSnap = 1e-4;
constexpr double rounding = 1e-9;

/// The plane of a map, in mas from the reference position, and its cells.
struct WindowPlane {
    PlaneMap toPlane, toCells;
    APoint<double> reference;
    int isSet = 0;

    explicit WindowPlane(const SkyCoordinates* sky)
    {
        isSet = sky && sky->plane(toPlane.m, reference.x, reference.y);
        for (auto& row : toPlane.m)
            for (double& value : row)
                value *= masPerDegree;
        toCells = inverse(toPlane);
    }
    APoint<double> cell(double x, double y) const
    {
        const APoint<double> offset = toCells(x, y);
        return {reference.x + offset.x, reference.y + offset.y};
    }
    APoint<double> place(APoint<double> cell) const
    {
        return toPlane(cell.x - reference.x, cell.y - reference.y);
    }
};

struct Window {
    double edges[4] = {};  ///< xmin, xmax, ymin, ymax, mas
    double slack[4] = {};
};

/// The numbers of a line; how many it has, -1 when one is none.
int readNumbers(std::string_view line, Window& window)
{
    int count = 0;
    for (std::size_t at = line.find_first_not_of(between); at != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(between, at), line.size());
        const std::string_view word = line.substr(at, end - at);
        double value = 0;
        if (!readFinite(word, value))
            return -1;
        if (count < 4) {
            window.edges[count] = value;
            window.slack[count] = halfDigit(word);
        }
        ++count;
        at = line.find_first_not_of(between, end);
    }
    return count;
}

double snapped(double cell, double tolerance)
{
    const double half = std::floor(cell) + 0.5;
    return std::abs(cell - half) <= std::min(tolerance + rounding, mostSnap) ? half : cell;
}

/// Edges in cells of a map whose cells run along the plane.
std::array<double, 2> edgesOf(const WindowPlane& plane, const Window& window, std::size_t axis)
{
    std::array<double, 2> cells{};
    const double scale = plane.toCells.m[axis][axis];
    const double start = axis ? plane.reference.y : plane.reference.x;
    for (std::size_t i = 0; i < 2; ++i)
        cells[i] = snapped(start + scale * window.edges[2 * axis + i],
                           2 * std::abs(scale) * window.slack[2 * axis + i]);
    return {std::min(cells[0], cells[1]), std::max(cells[0], cells[1])};
}

void takeWindow(const WindowPlane& plane, const Window& w, RegionSink& sink)
{
    const auto cells = [](double size) { return RegionValue{size, RegionValue::Unit::cells, 0}; };
    const double width = std::abs(w.edges[1] - w.edges[0]);
    const double height = std::abs(w.edges[3] - w.edges[2]);
    if (plane.toCells.m[0][1] == 0 && plane.toCells.m[1][0] == 0) {
        const auto x = edgesOf(plane, w, 0);
        const auto y = edgesOf(plane, w, 1);
        return sink.sized(Kind::rotatedRectangle, {(x[0] + x[1]) / 2, (y[0] + y[1]) / 2},
                          cells(x[1] - x[0]), cells(y[1] - y[0]), 0);
    }
    AreaShape shape;
    shape.kind = Kind::rotatedRectangle;
    shape.width = width;
    shape.height = height;
    const double skew = mapRectangle(plane.toCells, shape);
    if (skew * std::max(shape.width, shape.height) / 2 <= readTolerance)
        return sink.sized(Kind::rotatedRectangle,
                          plane.cell((w.edges[0] + w.edges[1]) / 2, (w.edges[2] + w.edges[3]) / 2),
                          cells(shape.width), cells(shape.height), shape.angle);
    sink.changed("the window is not a rectangle on the map; taken as a polygon");
    sink.polygon({plane.cell(w.edges[0], w.edges[2]), plane.cell(w.edges[1], w.edges[2]),
                  plane.cell(w.edges[1], w.edges[3]), plane.cell(w.edges[0], w.edges[3])});
}

/// The window of a shape, from its corners in the plane. 0 when it is none along east and north.
int windowOf(const WindowPlane& plane, const AreaShape& shape, Window& window)
{
    if (shape.kind == Kind::ellipse)
        return 0;
    const std::vector<APoint<double>> corners = outlineOf(shape);
    if (corners.size() != 4)
        return 0;
    std::array<double, 4> x{};
    std::array<double, 4> y{};
    for (std::size_t i = 0; i < 4; ++i) {
        const APoint<double> at = plane.place(corners[i]);
        x[i] = at.x;
        y[i] = at.y;
    }
    const auto [left, right] = std::minmax_element(x.begin(), x.end());
    const auto [low, high] = std::minmax_element(y.begin(), y.end());
    window = {{*left, *right, *low, *high}, {}};
    // each corner on two edges, and no two on the same two
    const double cell = std::hypot(plane.toPlane.m[0][0], plane.toPlane.m[1][0]);
    const double reach = writeTolerance * cell;
    unsigned met = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const int isRight = window.edges[1] - x[i] <= reach;
        const int isHigh = window.edges[3] - y[i] <= reach;
        const std::size_t next = (i + 1) % 4;
        if ((!isRight && x[i] - window.edges[0] > reach) ||
            (!isHigh && y[i] - window.edges[2] > reach) ||
            (std::abs(x[i] - x[next]) > reach) == (std::abs(y[i] - y[next]) > reach))
            return 0;
        met |= 1U << (2 * isRight + isHigh);
    }
    return met == 15;
}

}  // namespace

void parseWindowRegions(std::string_view text, const SkyCoordinates* sky,
                        std::vector<AreaShape>& shapes, RegionNotes& notes)
{
    const WindowPlane plane(sky);
    RegionSink sink(sky, shapes, notes);
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    long long number = 0;
    for (std::string_view line; nextLine(text, line);) {
        sink.setLine(++number);
        const std::string_view words = trimmedText(line.substr(0, line.find('!')));
        if (words.empty())
            continue;
        Window window;
        const int count = readNumbers(words, window);
        if (count < 0)
            sink.damaged(quoted(words) + " is not understood");
        else if (count != 4)
            sink.damaged("a window has four edges, not " + std::to_string(count));
        else if (!plane.isSet)
            sink.leaveOut("the map has no sky coordinates that can be used");
        else
            takeWindow(plane, window, sink);
    }
}

int readWindowRegions(const std::string& file, const SkyCoordinates* sky,
                      std::vector<AreaShape>& shapes, RegionNotes& notes, std::string& error)
{
    shapes.clear();
    notes = RegionNotes();
    RegionText text;
    if (!text.read(file, error))
        return 0;
    parseWindowRegions(text.view(), sky, shapes, notes);
    if (!shapes.empty() || notes.leftOut || !notes.damaged)
        return 1;
    error = file;
    error.append(": not a file of windows: ").append(notes.firstLoss);
    return 0;
}

std::string windowRegionText(const std::vector<AreaShape>& shapes, const SkyCoordinates* sky,
                             RegionNotes& notes)
{
    const WindowPlane plane(sky);
    std::string lines;
    int written = 0;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const AreaShape& shape = shapes[i];
        Window window;
        const char* const fault =
            !plane.isSet         ? "has no place: the map has no sky coordinates; left out"
            : shape.isNeverClean ? "is never cleaned, which a window cannot say; left out"
            : !isWhole(shape)    ? "has no size or lies too far away; left out"
            : !windowOf(plane, shape, window)
                ? "is no rectangle along east and north, as windows are; left out"
                : nullptr;
        if (fault) {
            notes.add(NoteKind::leftOut, "area", static_cast<long long>(i) + 1, fault);
            continue;
        }
        if (!shape.label.isEmpty())
            notes.addOnce(NoteKind::changed, "names and colours of areas are not kept");
        const char* gap = "";
        for (const double edge : window.edges) {
            lines.append(gap).append(plainNumber(edge));
            gap = " ";
        }
        lines += '\n';
        ++written;
    }
    std::string text = "! CLEAN windows: xmin xmax ymin ymax, mas east and north\n! ";
    text.append(std::to_string(written)).append(written == 1 ? " area\n" : " areas\n");
    return text + lines;
}

int writeWindowRegions(const std::string& file, const std::vector<AreaShape>& shapes,
                       const SkyCoordinates* sky, RegionNotes& notes, std::string& error)
{
    notes = RegionNotes();
    if (!sky || !sky->isSet()) {
        error = file + ": windows are places on the sky, and the map has none that can be used";
        return 0;
    }
    return writeRegionText(file, windowRegionText(shapes, sky, notes), error);
}

}  // namespace pavane
