#include "pavane/imaging/round_maps.h"

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;

/// Calls `use(row, column, value)` for the cells with a value.
template <typename Use>
void forCells(const AMatrix<float>& cells, Use use)
{
    for (int r = 0; r < cells.rows(); ++r) {
        const float* row = cells.row(r);
        for (int c = 0; c < cells.columns(); ++c)
            if (std::isfinite(row[c]))
                use(r, c, static_cast<double>(row[c]));
    }
}

MapFrame frameOfMap(const FitsMap& map)
{
    return frameOf(map.header, map.cells.rows(), map.cells.columns());
}

int isFinite(const ACompItem& item)
{
    for (const double field : {item.PeakFlux(), item.LargeAxis(), item.AxisRatio(),
                               item.Inclination(), item.Angle(), item.Distance(), item.Width()})
        if (!std::isfinite(field))
            return 0;
    return 1;
}

/// Puts a point on the cell that it lies in; 0 outside the map.
int putPoint(const ACompItem& item, const MapFrame& frame, AMatrix<float>& cells)
{
    const double angle = item.Angle() * degree;
    const MapPlace at =
        frame.onAxes(item.Distance() * std::sin(angle), item.Distance() * std::cos(angle));
    const double c = std::round((at.x - frame.xFirst) / frame.xStep);
    const double r = std::round((at.y - frame.yFirst) / frame.yStep);
    if (!(c >= 0 && c < cells.columns() && r >= 0 && r < cells.rows()))
        return 0;
    float& cell = cells(static_cast<int>(r), static_cast<int>(c));
    cell += static_cast<float>(item.PeakFlux());
    return 1;
}

}  // namespace

int maskOfAreas(const std::string& areas, const MapHeader& header, int rows, int columns,
                ABitMatrix& mask, std::string& fault)
try {
    mask = ABitMatrix();
    if (areas.empty())
        return 1;
    MemoryFile file(areas);
    AreaCollection collection;
    LoadReport report;
    if (!collection.Load(file, report)) {
        fault = "the areas cannot be read";
        return 0;
    }
    if (collection.count() == 0)
        return 1;
    mask = ABitMatrix(rows, columns);
    if (mask.rows() != rows) {
        fault = "there is not enough memory for the mask";
        return 0;
    }
    if (!collection.FillMatrix(mask, columns, rows, frameOf(header, rows, columns).centres())) {
        fault = "there are areas that give no cells";
        return 0;
    }
    if (mask.count() == 0) {
        fault = "no cell of the map lies in the areas";
        return 0;
    }
    return 1;
} catch (const std::bad_alloc&) {
    fault = "there is not enough memory for the mask";
    return 0;
}

int componentsOfModel(const FitsMap& model, AComponents& components, std::string& fault,
                      long long most)
try {
    components = AComponents();
    long long count = 0;
    forCells(model.cells, [&count](int, int, double value) { count += value != 0; });
    if (count > most) {
        fault = "has " + std::to_string(count) + " cells that are not 0, and " +
                std::to_string(most) + " can be a list";
        return 0;
    }
    const MapFrame frame = frameOfMap(model);
    if (!frame.onSky) {
        fault = "has no place on the sky";
        return 0;
    }
    forCells(model.cells, [&](int r, int c, double value) {
        if (value == 0)
            return;
        const MapPlace at = frame.offsetOf(c, r);
        ACompItem item;
        item.type = pointComponent;
        item.PeakFlux() = value;
        item.Distance() = std::hypot(at.x, at.y);
        item.Angle() = at.x == 0 && at.y == 0 ? 0 : std::atan2(at.x, at.y) / degree;
        components.Add(item);
    });
    return 1;
} catch (const std::bad_alloc&) {
    fault = "has more components than the memory holds";
    return 0;
}

int modelOfComponents(const AComponents& components, const MapHeader& like, int rows, int columns,
                      FitsMap& model, std::string& fault)
try {
    model = FitsMap();
    const MapFrame frame = frameOf(like, rows, columns);
    if (!frame.onSky) {
        fault = "the map has no place on the sky";
        return 0;
    }
    if (!model.cells.allocate(rows, columns)) {
        fault = "there is not enough memory for the model";
        return 0;
    }
    model.cells.fill(0);
    model.header = like;
    model.header.bunit = "JY/PIXEL";
    model.header.hasBeam = 0;
    TMinMax range = frame.centres();
    for (double* end : {&range.xMin, &range.xMax, &range.yMin, &range.yMax})
        *end *= frame.arcseconds;
    int outside = 0;
    for (int i = 0; i < components.count(); ++i) {
        const ACompItem& item = components(i);
        if (!isFinite(item)) {
            fault = "component " + std::to_string(i + 1) + " has a field that is no number";
            return 0;
        }
        const bool isPoint = item.type < gaussianComponent || item.type > wideRingComponent;
        if (isPoint)
            outside += !putPoint(item, frame, model.cells);
        else
            item.ToMap(model.cells, range);
    }
    if (outside) {
        fault = std::to_string(outside) + " of the components lie outside the map";
        return 0;
    }
    return 1;
} catch (const std::bad_alloc&) {
    fault = "there is not enough memory for the model";
    return 0;
}

}  // namespace pavane
