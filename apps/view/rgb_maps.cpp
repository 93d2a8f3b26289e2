#include "apps/view/rgb_maps.h"

#include "apps/view/batch_output.h"
#include "apps/view/progress.h"
#include "apps/view/status_text.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/maps/RgbImage.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

constexpr int floatDigits = 9, fewDigits = 6;
constexpr double masPerDegree = 3600e3;

int refuse(const std::string& file, std::string& error)
{
    error.insert(0, file + ": ");
    return 0;
}

const std::string& fileOf(const ViewOptions& options, std::size_t band)
{
    return band == 0 ? options.map : options.more[band - 1];
}

int readOne(const std::string& file, int plane, FitsMap& map, std::string& error)
{
    FitsCubeReader cube;
    ProgressLine progress("Reading " + plainText(file));
    return (cube.open(file, error) &&
            readFitsMap(file, cube.planes() > 1 ? plane : -1, map, error,
                        [&](double part) { return progress.show(part); })) ||
           refuse(file, error);
}

/// The range that the options give a colour, if any.
void setRange(const MapLook& look, const AMatrix<float>& cells, double& low, double& high)
{
    const TMnMx range = rangeOf(look, AFloatMatrixAccess(cells));
    if (!(range.min < range.max))
        return;
    low = range.min;
    high = range.max;
}

std::vector<std::string> historyOf(const ViewOptions& options, const ViewInputs& inputs)
{
    MapOfRgb maps[rgbBands];
    maps[1].moved = options.made.shift;
    maps[2].moved = options.made.secondShift;
    return rgbHistory(inputs.rgb->map(), maps, options.made.regrid);
}

int combine(const ViewOptions& options, const ViewInputs& inputs, RgbMap& made,
            std::vector<std::string>& notes, std::string& error)
{
    FitsMap others[rgbBands - 1];
    MapOfRgb maps[rgbBands];
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const std::string& file = fileOf(options, i);
        if (i > 0 && !readOne(file, options.plane, others[i - 1], error))
            return 0;
        const FitsMap& map = i > 0 ? others[i - 1] : inputs.map;
        maps[i] = {&map.cells, &map.header, plainText(baseNameOf(file)), 0, 0, {}};
        setRange(options.rgb.looks[i], map.cells, maps[i].low, maps[i].high);
    }
    maps[1].moved = options.made.shift;
    maps[2].moved = options.made.secondShift;
    std::size_t at = 0;
    ProgressLine progress("Making an RGB map");
    const PairFault fault = combineRgb(maps, options.made.regrid, made, notes, at, error,
                                       [&](double part) { return progress.show(part); });
    if (fault == PairFault::none)
        return 1;
    if (fault == PairFault::cells)
        error += "; --regrid brings it onto those of the first";
    return refuse(fileOf(options, at), error);
}

}  // namespace

std::vector<std::string> rgbHistory(const RgbMap& made, const MapOfRgb (&maps)[rgbBands],
                                    int regrid)
{
    const auto few = [](double value) { return valToStr(value, fewDigits); };
    std::vector<std::string> history;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const RgbBand& band = made.bands[i];
        history.push_back(std::string("pavane: ") + rgbNames[i] + " is " + band.name +
                          (band.hasRange()
                               ? ", " + few(band.low) + " to " + few(band.high) + ' ' + band.unit
                               : ", all its values"));
        const SkyShift& moved = maps[i].moved;
        if (i > 0 && (regrid || !moved.isNone()))
            history.push_back("pavane: " + band.name +
                              " was brought onto the cells of the first, bicubic");
        if (i > 0 && !moved.isNone())
            history.push_back("pavane: " + band.name + " was moved by " +
                              few(moved.east * masPerDegree) + " mas east and " +
                              few(moved.north * masPerDegree) + " mas north");
    }
    return history;
}

std::string rgbValueText(const RgbImage& image, int row, int column)
{
    constexpr int digits = 3;
    const RgbMap& map = image.map();
    MapUnit units[rgbBands];
    double values[rgbBands] = {};
    double most = 0;
    int areAlike = 1;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        units[i] = mapUnit(map.bands[i].unit);
        const AMatrix<float>& cells = map.cells[i];
        values[i] = row >= 0 && column >= 0 && row < cells.rows() && column < cells.columns()
                        ? static_cast<double>(cells(row, column)) * units[i].factor
                        : std::numeric_limits<double>::quiet_NaN();
        if (std::isfinite(values[i]))
            most = std::max(most, std::fabs(values[i]));
        areAlike = areAlike && units[i].name == units[0].name;
    }
    const int power = takesPrefix(units[0].name) ? prefixPower(most, digits) : 0;
    std::string text;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        text += i > 0 ? ", " : "";
        text += std::isnan(values[i]) ? "blank"
                : areAlike            ? valToStr(values[i] / std::pow(10.0, power), digits)
                                      : prefixedText(values[i], units[i].name, digits);
    }
    return areAlike && !units[0].name.empty() ? text + ' ' + prefixText(power) + units[0].name
                                              : text;
}

int isRgbFile(const std::string& file)
{
    FitsCubeReader cube;
    std::string none;
    return cube.open(file, none) && isOfRgb(cube.header(0));
}

int readRgb(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
            std::string& error)
{
    RgbMap map;
    if (options.rgb.wanted) {
        if (!combine(options, inputs, map, notes, error))
            return 0;
    } else if (options.plane < 0 && isOfRgb(inputs.map.header)) {
        if (options.hasRange || !options.palette.empty() || !options.play.isNeutral()) {
            error = "is an RGB map: it has --red-range and the like; --range, --palette and "
                    "--contrast go with a --plane of it";
            return refuse(options.map, error);
        }
        if (!readRgbMap(options.map, map, error))
            return refuse(options.map, error);
        for (std::size_t i = 0; i < rgbBands; ++i)
            setRange(options.rgb.looks[i], map.cells[i], map.bands[i].low, map.bands[i].high);
    } else if (options.rgb.hasRange()) {
        error = "is no RGB map: --red-range and the like go with one, or with --rgb";
        return refuse(options.map, error);
    } else {
        return 1;
    }
    inputs.rgb = std::make_shared<RgbImage>(std::move(map));
    return 1;
}

int writeRgb(const ViewOptions& options, const ViewInputs& inputs, std::string& text,
             std::string& error)
{
    const RgbMap& map = inputs.rgb->map();
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const std::string name = rgbNames[i];
        const TMnMx range = inputs.rgb->range(i);
        const AMatrix<float>& cells = map.cells[i];
        std::int64_t known = 0;
        for (std::int64_t k = 0; k < cells.cells(); ++k)
            known += std::isfinite(cells.data()[k]);
        text += name + "_cells " + std::to_string(known) + " cells\n" +
                statLine((name + "_low").c_str(), range.min, floatDigits, map.bands[i].unit) +
                statLine((name + "_high").c_str(), range.max, floatDigits, map.bands[i].unit);
    }
    const std::string& file = options.made.out;
    if (file.empty())
        return 1;
    ProgressLine progress("Writing " + plainText(file));
    return writeRgbMap(file, map, inputs.map.header, historyOf(options, inputs), error,
                       [&](double part) { return progress.show(part); }) ||
           refuse(file, error);
}

}  // namespace pavane
