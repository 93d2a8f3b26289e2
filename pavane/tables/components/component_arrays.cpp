#include "pavane/tables/components/component_arrays.h"

#include "pavane/tables/components/component_map.h"
#include "pavane/tables/components/ModelVisibilities.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr const char* stoppedText = "stopped";
constexpr const char* noMemory = "there is no memory for it";
constexpr const char* fieldNames[componentFields] = {
    "kind", "flux", "large axis", "axis ratio", "inclination", "angle", "distance", "width"};
/// Points that are gathered at a time where they do not stand one behind another.
constexpr std::int64_t gathered = 512;

double& fieldOf(ACompItem& item, int field)
{
    switch (static_cast<ComponentField>(field)) {
    case ComponentField::largeAxis:
        return item.LargeAxis();
    case ComponentField::axisRatio:
        return item.AxisRatio();
    case ComponentField::inclination:
        return item.Inclination();
    case ComponentField::angle:
        return item.Angle();
    case ComponentField::distance:
        return item.Distance();
    case ComponentField::width:
        return item.Width();
    default:
        return item.PeakFlux();
    }
}

double numberAt(const DoubleColumn& column, std::int64_t i)
{
    double number = 0;
    std::memcpy(&number, static_cast<const unsigned char*>(column.first) + i * column.step,
                sizeof number);
    return number;
}

int isKind(double number)
{
    return number == std::floor(number) &&
           std::abs(number) <= std::numeric_limits<std::int32_t>::max();
}

int take(const ComponentColumns& columns, std::int64_t i, ACompItem& item, CString& error)
{
    for (int f = 0; f < componentFields; ++f) {
        if (!columns.field[f].first)
            continue;
        const double number = numberAt(columns.field[f], i);
        if (!std::isfinite(number) || (f == 0 && !isKind(number))) {
            error = "component " + std::to_string(i + 1) + ": its " + fieldNames[f] + " is no " +
                    (f == 0 ? "whole number" : "finite number");
            return 0;
        }
        if (f == 0)
            item.type = static_cast<std::int32_t>(number);
        else
            fieldOf(item, f) = number;
    }
    return 1;
}

int isDense(const DoubleColumn& column)
{
    return column.step == static_cast<std::int64_t>(sizeof(double)) &&
           reinterpret_cast<std::uintptr_t>(column.first) % alignof(double) == 0;
}

const double* doublesOf(const DoubleColumn& column)
{
    return static_cast<const double*>(column.first);
}

/// 0 when stopped.
int sumGathered(const ModelVisibilities& model, DoubleColumn u, DoubleColumn v, std::int64_t n,
                std::complex<double>* out, const StopFlag* stop)
{
    double us[gathered], vs[gathered];
    for (std::int64_t from = 0; from < n; from += gathered) {
        const std::int64_t some = std::min(gathered, n - from);
        for (std::int64_t i = 0; i < some; ++i) {
            us[i] = numberAt(u, from + i);
            vs[i] = numberAt(v, from + i);
        }
        if (!model.at(us, vs, static_cast<std::size_t>(some), out + from, stop))
            return 0;
    }
    return 1;
}

}  // namespace

int componentsFrom(const ComponentColumns& columns, std::int64_t count, AComponents& model,
                   CString& error)
{
    error.clear();
    if (count < 0 || count > std::numeric_limits<int>::max()) {
        error = "there cannot be " + std::to_string(count) + " components";
        return 0;
    }
    AComponents made;
    if (count && made.GrowBy(static_cast<int>(count)).count() != count) {
        error = noMemory;
        return 0;
    }
    for (int i = 0; i < made.count(); ++i)
        if (!take(columns, i, made(i), error))
            return 0;
    model = made;
    if (model.count() != made.count())
        error = noMemory;
    return error.empty();
}

void componentsTo(const AComponents& model, const ComponentTargets& columns)
{
    for (int i = 0; i < model.count(); ++i) {
        ACompItem item = model(i);
        for (int f = 0; f < componentFields; ++f) {
            const double number = f == 0 ? item.type : fieldOf(item, f);
            if (void* const first = columns.field[f].first)
                std::memcpy(static_cast<unsigned char*>(first) + i * columns.field[f].step, &number,
                            sizeof number);
        }
    }
}

int modelVisibilities(const AComponents& model, DoubleColumn u, DoubleColumn v, std::int64_t n,
                      std::complex<double>* out, CString& error, const StopFlag* stop)
{
    error.clear();
    if (n < 1)
        return 1;
    try {
        const ModelVisibilities sums(model);
        const int done = isDense(u) && isDense(v) ? sums.at(doublesOf(u), doublesOf(v),
                                                            static_cast<std::size_t>(n), out, stop)
                                                  : sumGathered(sums, u, v, n, out, stop);
        if (!done)
            error = stoppedText;
    } catch (const std::bad_alloc&) {
        error = noMemory;
    }
    return error.empty();
}

int modelMap(const AComponents& model, int rows, int columns, const TMinMax& range,
             AMatrix<float>& map, CString& error, const StopFlag* stop)
{
    error.clear();
    AMatrix<float> made;
    if (rows < 1 || columns < 1) {
        error = "a map of " + std::to_string(rows) + " x " + std::to_string(columns) +
                " cells holds none";
        return 0;
    }
    if (!made.allocate(rows, columns)) {
        error = noMemory;
        return 0;
    }
    const MapGrid grid(made, range, stop);
    if (!grid.usable) {
        error = "the range of the map is empty or not set";
        return 0;
    }
    made.fill(0);
    for (int i = 0; i < model.count() && !isStopped(stop); ++i)
        addComponent(made, grid, model(i));
    if (isStopped(stop)) {
        error = stoppedText;
        return 0;
    }
    map = std::move(made);
    return 1;
}

}  // namespace pavane
