#include "apps/view/profiles/map_tables.h"

#include "apps/view/area_numbers.h"
#include "apps/view/profiles/fit_batch.h"
#include "apps/view/profiles/profile_options.h"
#include "apps/view/progress.h"
#include "pavane/measures/profiles/profile_tables.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/plain_text.h"
#include "tessel/spectral_axis.h"

#include <algorithm>
#include <new>

namespace pavane
{

namespace
{

constexpr const char* wholeMap = "Whole map";
constexpr const char* noMemory = "there is no memory for its tables";

int cellsOf(const ViewInputs& inputs, std::vector<NamedCells>& all, std::string& error)
{
    const int rows = inputs.map.cells.rows(), columns = inputs.map.cells.columns();
    int done = 1;
    for (std::size_t i = 0; i < inputs.measured.size(); ++i) {
        const MeasuredArea& area = inputs.measured[i];
        NamedCells& named = all.emplace_back();
        named.name = shownName(area.label, static_cast<int>(i));
        done = done &&
               cellsOfPolygon(area.cells.lpArray(), area.cells.count(), rows, columns, named.cells);
    }
    if (all.empty()) {
        NamedCells& named = all.emplace_back();
        named.name = wholeMap;
        done = cellsOfBox(0, 0, rows - 1, columns - 1, rows, columns, named.cells);
    }
    if (!done)
        error = noMemory;
    return done;
}

int fillProfile(const ViewOptions& options, const ViewInputs& inputs, NumberTable& table,
                std::string& error)
{
    SkyCoordinates sky;
    std::string noSky;
    (void)sky.init(inputs.map.header, noSky);
    MapProfile profile;
    const AFloatMatrixAccess cells(inputs.map.cells);
    if (!profile.take(cells, options.profile.line, sky, inputs.frame, error))
        return 0;
    const FluxScale scale = FluxScale::of(inputs.map.header, inputs.frame);
    table = profileTable(profile, scale.valueUnit, sky, inputs.frame);
    return 1;
}

int fillHistogram(const ViewInputs& inputs, const std::vector<NamedCells>& all, NumberTable& table,
                  std::string& error)
{
    const AFloatMatrixAccess cells(inputs.map.cells);
    std::vector<CellHistogram> histograms(all.size());
    std::vector<NamedHistogram> named;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!histograms[i].take(cells, &all[i].cells, inputs.noise))
            return error = noMemory, 0;
        named.push_back({all[i].name, &histograms[i]});
    }
    table = histogramTable(named, FluxScale::of(inputs.map.header, inputs.frame).valueUnit);
    return 1;
}

int fillSpectrum(const ViewOptions& options, const ViewInputs& inputs,
                 const std::vector<NamedCells>& all, NumberTable& table,
                 std::vector<std::string>& notes, std::string& error)
{
    FitsCubeReader cube;
    CubePart part;
    std::string unit;
    if (!cube.open(options.map, error))
        return 0;
    const PrintWish& print = options.print;
    const int first = print.hasPlanes() ? print.firstPlane : 0;
    const int last = print.hasPlanes() ? print.lastPlane : cube.planes() - 1;
    if (!planesBetween(cube.header(0), first, last, 0, part.planes, unit, error))
        return 0;
    if (cube.rows() != inputs.map.cells.rows() || cube.columns() != inputs.map.cells.columns())
        return error = "has changed while it was read", 0;
    part.rows = cube.rows();
    part.columns = cube.columns();
    part.isWhole = cube.isPacked();
    part.read = [&](int plane, int row, int count, float* cells, std::string& fault) {
        return cube.read(plane, row, count, cells, fault);
    };
    std::vector<CellSpectrum> spectra(all.size());
    std::vector<NamedSpectrum> named;
    for (std::size_t i = 0; i < all.size(); ++i) {
        spectra[i].cells = all[i].cells;
        named.push_back({all[i].name, &spectra[i]});
    }
    ProgressLine progress("Reading " + plainText(options.map));
    if (!findSpectra(part, spectra, error, [&](double done) { return progress.show(done); }))
        return 0;
    if (const int left = last - first + 1 - static_cast<int>(part.planes.size()))
        notes.push_back(options.map + ": " + std::to_string(left) +
                        " planes of another Stokes parameter than the first were left out");
    table = spectrumTable(named, part.planes, unit, FluxScale::of(inputs.map.header, inputs.frame));
    return 1;
}

int fillFits(const ViewOptions& options, const ViewInputs& inputs, MapTables& tables,
             std::vector<std::string>& notes, std::string& error)
{
    if (!fitAreas(options, inputs, tables.fits, notes, error))
        return 0;
    SkyCoordinates sky;
    std::string noSky;
    (void)sky.init(inputs.map.header, noSky);
    tables.fit =
        fitTable(tables.fits, FluxScale::of(inputs.map.header, inputs.frame), sky, inputs.frame);
    return 1;
}

int fill(const ViewOptions& options, const ViewInputs& inputs, MapTables& tables,
         std::vector<std::string>& notes, std::string& error)
{
    const int wantsHistogram = options.wantsTable(histogramTableName);
    const int wantsSpectrum = options.wantsTable(spectrumTableName);
    std::vector<NamedCells> cells;
    return (!options.profile.wanted() || fillProfile(options, inputs, tables.profile, error)) &&
           (!options.profile.hasFit || fillFits(options, inputs, tables, notes, error)) &&
           ((!wantsHistogram && !wantsSpectrum) || cellsOf(inputs, cells, error)) &&
           (!wantsHistogram || fillHistogram(inputs, cells, tables.histogram, error)) &&
           (!wantsSpectrum || fillSpectrum(options, inputs, cells, tables.spectrum, notes, error));
}

}  // namespace

int cellsOfAreas(const ViewInputs& inputs, std::vector<NamedCells>& all, std::string& error)
{
    try {
        return cellsOf(inputs, all, error);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
}

const NumberTable* MapTables::numbersOf(const std::string& name) const
{
    return name == profileTableName     ? &profile
           : name == spectrumTableName  ? &spectrum
           : name == histogramTableName ? &histogram
           : name == fitTableName       ? &fit
                                        : nullptr;
}

int fillMapTables(const ViewOptions& options, const ViewInputs& inputs, MapTables& tables,
                  std::vector<std::string>& notes, std::string& error)
{
    if (options.wantsTable(areaTable) && !fillAreaTable(options, inputs, tables.areas, error))
        return 0;  // names the file itself
    int done = 0;
    try {
        done = fill(options, inputs, tables, notes, error);
    } catch (const std::bad_alloc&) {
        error = noMemory;
    }
    if (!done)
        error.insert(0, options.map + ": ");
    return done;
}

}  // namespace pavane
