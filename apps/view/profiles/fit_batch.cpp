#include "apps/view/profiles/fit_batch.h"

#include "apps/view/area_numbers.h"
#include "apps/view/batch_output.h"
#include "apps/view/profiles/map_tables.h"
#include "apps/view/progress.h"
#include "tessel/made_map.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// Noise of a cell: that of the map, or of the area that is empty.
int noiseOf(const ViewOptions& options, const ViewInputs& inputs,
            const std::vector<NamedCells>& areas, double& noise, std::string& error)
{
    noise = inputs.noise.finiteCells ? inputs.noise.sigma : CellNumbers::none;
    if (options.emptyArea.empty())
        return 1;
    const int empty = areaOfName(inputs.measured, options.emptyArea);
    if (empty < 0) {
        error = options.areas + ": has no area '" + options.emptyArea + "', or several";
        return 0;
    }
    const AreaCells& cells = areas[static_cast<std::size_t>(empty)].cells;
    CellCounter counter;
    CellNumbers numbers;
    if (!counter.count(AFloatMatrixAccess(inputs.map.cells), cells.mask, cells.firstRow,
                       cells.firstColumn, numbers))
        return error = "there is no memory for the noise of an area", 0;
    noise = counter.deviation(numbers.median);
    return 1;
}

}  // namespace

int fitAreas(const ViewOptions& options, const ViewInputs& inputs, std::vector<NamedFit>& fits,
             std::vector<std::string>& notes, std::string& error)
{
    std::vector<NamedCells> areas;
    double noise = 0;
    if (!cellsOfAreas(inputs, areas, error) || !noiseOf(options, inputs, areas, noise, error))
        return 0;
    const AFloatMatrixAccess cells(inputs.map.cells);
    const auto count = static_cast<double>(areas.size());
    const int empty =
        options.emptyArea.empty() ? -1 : areaOfName(inputs.measured, options.emptyArea);
    ProgressLine progress("Fitting " + plainText(options.map));
    std::string first;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (static_cast<int>(i) == empty)
            continue;
        NamedFit fit{areas[i].name, {}};
        const auto tell = [&](double part) {
            return progress.show((static_cast<double>(i) + part) / count);
        };
        if (fitGaussians(cells, areas[i].cells, inputs.map.header, inputs.frame, noise,
                         options.profile.fit, fit.fit, error, tell)) {
            fits.push_back(std::move(fit));
            continue;
        }
        error.insert(0, plainText(areas[i].name) + ": ");
        if (!options.partial)
            return 0;
        notes.push_back(options.map + ": " + error);
        first = first.empty() ? error : first;
    }
    if (fits.empty())
        return error = first.empty() ? "there is no area to fit to" : first, 0;
    error.clear();
    return 1;
}

std::string fitText(const ViewInputs& inputs, const std::vector<NamedFit>& fits)
{
    constexpr int placeDigits = 12;
    SkyCoordinates sky;
    std::string noSky, text;
    (void)sky.init(inputs.map.header, noSky);
    const FluxScale scale = FluxScale::of(inputs.map.header, inputs.frame);
    for (const NamedFit& named : fits) {
        std::string area;
        for (std::size_t i = 0; i < inputs.measured.size(); ++i)
            if (shownName(inputs.measured[i].label, static_cast<int>(i)) == named.name)
                area = "area" + std::to_string(i + 1) + "_";
        const auto count = static_cast<int>(named.fit.sources.size());
        for (int i = 0; i < count; ++i) {
            const std::string key =
                count > 1 ? area + "gaussian" + std::to_string(i + 1) + "_" : area;
            for (const FitNumber& number : numbersOf(named.fit, i, scale, sky, inputs.frame)) {
                const int digits = number.column.form == NumberColumn::Form::number
                                       ? number.column.digits
                                       : placeDigits;
                text += statLine((key + number.key).c_str(), number.value, digits, number.unit);
            }
        }
        const auto line = [&](const char* key, double value) {
            text += statLine((area + key).c_str(), value, 9, scale.valueUnit);
        };
        if (std::isfinite(named.fit.background.value)) {
            line("background", named.fit.background.value);
            line("background_error", named.fit.background.error);
        }
        line("residual", named.fit.residual);
        line("noise", named.fit.noise);
        text.append(area).append("cells ").append(std::to_string(named.fit.cells));
        text.append(" cells\n").append(area).append("steps ");
        text.append(std::to_string(named.fit.steps)).append("\n");
    }
    return text;
}

int writeResidual(const ViewOptions& options, const ViewInputs& inputs,
                  const std::vector<NamedFit>& fits, std::string& error)
{
    const std::string& file = options.profile.residual;
    const AMatrix<float>& from = inputs.map.cells;
    AMatrix<float> cells;
    std::vector<NamedCells> areas;
    if (!cells.allocate(from.rows(), from.columns()) || !cellsOfAreas(inputs, areas, error)) {
        error = file + ": there is no memory for the residual";
        return 0;
    }
    for (int r = 0; r < cells.rows(); ++r)
        std::copy_n(from.row(r), from.columns(), cells.row(r));
    std::size_t count = 0;
    for (const NamedFit& named : fits) {
        const AreaCells* area = nullptr;
        for (const NamedCells& one : areas)
            area = one.name == named.name ? &one.cells : area;
        takeOff(named.fit, cells, area);
        count += named.fit.sources.size();
    }
    const std::vector<std::string> history = {
        "pavane: " + plainText(baseNameOf(options.map)) + " (plane " +
            std::to_string(inputs.map.header.plane) + ", from 0)",
        "pavane: without " + std::to_string(count) + " fitted Gaussians"};
    ProgressLine progress("Writing " + plainText(file));
    if (writeMadeMap(file, cells, inputs.map.header, history, error,
                     [&](double part) { return progress.show(part); }))
        return 1;
    error.insert(0, file + ": ");
    return 0;
}

}  // namespace pavane
