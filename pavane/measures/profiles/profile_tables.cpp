#include "pavane/measures/profiles/profile_tables.h"

#include "tessel/plain_text.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

using Form = NumberColumn::Form;
constexpr double arcsecondsPerDegree = 3600;
constexpr double degreesPerHour = 15;
constexpr double milli = 1000;
constexpr int pixelDecimals = 3;
constexpr int sumDigits = 12;
constexpr int mostDecimals = 9;
/// Positions are told to this part of a cell.
constexpr double partOfCell = 0.01;

int decimalsOf(double size)
{
    if (!(size > 0) || !std::isfinite(size))
        return 0;
    return std::clamp(truncated(std::ceil(-std::log10(size) - 1e-6)), 0, mostDecimals);
}

NumberColumn nameColumn() { return {"Name", "What the cells are called", Form::words, 0, 16}; }

NumberColumn cellsColumn() { return {"Cells", "Cells with a value", Form::whole, 0, 9}; }

}  // namespace

CString titleWithUnit(const CString& title, const CString& unit)
{
    return unit.empty() ? title : title + " [" + plainText(unit) + "]";
}

std::vector<NumberColumn> skyColumns(const SkyCoordinates& sky, const MapFrame& frame,
                                     const CString& of)
{
    const SkyFrame::System system = sky.skyFrame().system;
    const int isOfDegrees =
        system == SkyFrame::System::galactic || system == SkyFrame::System::ecliptic;
    const CString name = nameOf(sky.skyFrame());
    const double part = std::fabs(frame.yStep) * frame.arcseconds * partOfCell;
    const CString tip = "Position on the sky";
    const auto titled = [&](CString title) {
        if (!of.empty())
            return of + " " + title;
        title.front() = static_cast<char>(title.front() - 'a' + 'A');
        return title;
    };
    if (isOfDegrees) {
        const int decimals = decimalsOf(part / arcsecondsPerDegree);
        return {{titled("longitude [") + name + ", deg]", tip, Form::fixed, decimals, 18},
                {titled("latitude [") + name + ", deg]", tip, Form::fixed, decimals, 18}};
    }
    return {{titled("right ascension [") + name + "]", tip, Form::hours,
             decimalsOf(part / degreesPerHour), 22},
            {titled("declination [") + name + "]", tip, Form::degrees, decimalsOf(part), 22}};
}

NumberTable profileTable(const MapProfile& profile, const CString& valueUnit,
                         const SkyCoordinates& sky, const MapFrame& frame)
{
    static constexpr const char* values[] = {"Value", "Greatest across", "Sum across"};
    std::vector<NumberColumn> columns = {{"Distance [cells]", "Along the line from its begin"}};
    if (profile.hasSky)
        columns.push_back({"Distance [mas]", "The same on the sky"});
    columns.push_back({"pixel_x", "Pixel, from 1", Form::fixed, pixelDecimals});
    columns.push_back({"pixel_y", "Pixel, from 1", Form::fixed, pixelDecimals});
    if (sky.isSet())
        for (const NumberColumn& column : skyColumns(sky, frame, ""))
            columns.push_back(column);
    columns.push_back({titleWithUnit(values[static_cast<std::size_t>(profile.across)], valueUnit),
                       "Between the cells by bilinear interpolation"});
    NumberTable table;
    table.setColumns(columns);
    for (const MapProfile::Sample& sample : profile.samples) {
        int column = 0;
        table.addRow();
        table.put(column++, sample.cells);
        if (profile.hasSky)
            table.put(column++, sample.arcseconds * milli);
        table.put(column++, sample.place.x + 1);
        table.put(column++, sample.place.y + 1);
        if (sky.isSet()) {
            double longitude = NumberTable::none, latitude = NumberTable::none;
            (void)sky.toSky(sample.place.x, sample.place.y, longitude, latitude);
            table.put(column++, longitude);
            table.put(column++, latitude);
        }
        table.put(column, sample.value);
    }
    return table;
}

NumberTable spectrumTable(const std::vector<NamedSpectrum>& spectra,
                          const std::vector<MomentPlane>& planes, const CString& axisUnit,
                          const FluxScale& scale)
{
    const CString& unit = scale.valueUnit;
    std::vector<NumberColumn> columns = {nameColumn(),
                                         {"Plane", "Plane of the cube, from 0", Form::whole, 0, 7}};
    if (!axisUnit.empty())
        columns.push_back({titleWithUnit(axisUnit == "Hz" ? "Frequency" : "Velocity", axisUnit),
                           "Of the middle of the plane", Form::number, sumDigits});
    const auto first = static_cast<int>(columns.size());
    for (const NumberColumn& column :
         {cellsColumn(),
          {titleWithUnit("Mean", unit), "Mean of the cells"},
          {titleWithUnit("Sum", unit), "Sum of the cells", Form::number, sumDigits},
          {titleWithUnit("Flux", scale.unit), "Sum over the beam's area in cells", Form::number,
           sumDigits},
          {titleWithUnit("Median", unit), "Median of the cells"},
          {titleWithUnit("Rms", unit), "Root of the mean square about the mean"},
          {titleWithUnit("Least", unit), "Least value"},
          {titleWithUnit("Greatest", unit), "Greatest value"}})
        columns.push_back(column);
    NumberTable table;
    table.setColumns(columns);
    for (const NamedSpectrum& named : spectra)
        for (std::size_t i = 0; i < planes.size() && i < named.spectrum->numbers.size(); ++i) {
            const CellNumbers& n = named.spectrum->numbers[i];
            table.addRow();
            table.put(0, named.name);
            table.put(1, planes[i].plane);
            if (!axisUnit.empty())
                table.put(2, planes[i].value);
            int column = first;
            // where no cell has a value there is no sum, not one of 0
            const double none = NumberTable::none;
            for (const double number :
                 {static_cast<double>(n.cells), n.mean, n.cells ? n.sum : none,
                  n.cells ? scale.flux(n.sum) : none, n.median, n.rms, n.least, n.greatest})
                table.put(column++, number);
        }
    return table;
}

NumberTable histogramTable(const std::vector<NamedHistogram>& histograms, const CString& valueUnit)
{
    NumberTable table;
    table.setColumns({nameColumn(),
                      {titleWithUnit("From", valueUnit), "Least value of the bin"},
                      {titleWithUnit("To", valueUnit), "Least value of the next bin"},
                      cellsColumn(),
                      {"Noise", "Cells that would be there by the normal curve of the noise"}});
    for (const NamedHistogram& named : histograms)
        for (int bin = 0; bin < named.histogram->bins(); ++bin) {
            table.addRow();
            int column = 0;
            table.put(column++, named.name);
            table.put(column++, named.histogram->edge(bin));
            table.put(column++, named.histogram->edge(bin + 1));
            table.put(column++, static_cast<double>(named.histogram->count(bin)));
            table.put(column, named.histogram->normal(bin));
        }
    return table;
}

}  // namespace pavane
