#include "pavane/tables/components/map_components.h"

#include "tessel/clean_components.h"
#include "tessel/uvfits/StoredNumber.h"
#include "tessel/value_text.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerDegree = 3600;
constexpr double degreesPerRadian = 180 / std::numbers::pi;
constexpr double quarterTurn = 90;
constexpr int singleDigits = 9;

/// What the digits of single precision tell of a number that comes of it.
double told(double value, int isSingle)
{
    if (!isSingle)
        return value;
    const bool asStored = value == double{static_cast<float>(value)};
    (void)stoval(asStored ? storedText({value, 1}) : valToStr(value, singleDigits), value);
    return value;
}

/// The kinds of such tables, by their number.
int kindOf(int code)
{
    switch (code) {
    case 0:
        return pointComponent;
    case 1:
        return gaussianComponent;
    default:
        return code > 0 && code < foreignComponent ? foreignComponent + code : foreignComponent;
    }
}

ACompItem componentOf(const CleanComponent& row)
{
    ACompItem item;
    item.type = kindOf(row.code);
    item.PeakFlux() = told(row.flux, row.isSingle);
    item.Distance() = told(std::hypot(row.east, row.north) * arcsecondsPerDegree, row.isSingle);
    if (item.Distance() > 0)
        item.Angle() = told(std::atan2(row.east, row.north) * degreesPerRadian, row.isSingle);
    double large = std::abs(row.major), small = std::abs(row.minor), turn = row.angle;
    if (small > large) {
        std::swap(large, small);
        turn += quarterTurn;
    }
    if (large > 0 && item.type != pointComponent) {
        item.LargeAxis() = told(large * arcsecondsPerDegree, row.isSingle);
        item.AxisRatio() = told(small / large, row.isSingle);
        item.Inclination() = told(turn, row.isSingle);
    }
    return item;
}

}  // namespace

int readMapComponents(const std::string& file, AComponents& model, int& hasTable,
                      std::vector<std::string>& notes, std::string& error)
{
    model.Free();
    hasTable = 0;
    CleanComponents read;
    if (!readCleanComponents(file, read, error))
        return 0;
    int foreign = 0;
    if (!read.rows.empty())
        model.GrowBy(static_cast<int>(read.rows.size()));
    if (model.count() < static_cast<int>(read.rows.size())) {
        model.Free();
        error = "needs more memory than there is";
        return 0;
    }
    for (int i = 0; i < model.count(); ++i) {
        model(i) = componentOf(read.rows[static_cast<std::size_t>(i)]);
        foreign += model(i).type >= foreignComponent;
    }
    hasTable = read.hasTable;
    notes = std::move(read.notes);
    if (foreign)
        notes.push_back("has " + std::to_string(foreign) +
                        " components of a kind without a name; they have " +
                        std::to_string(foreignComponent) + " added to it and count as points");
    return 1;
}

}  // namespace pavane
