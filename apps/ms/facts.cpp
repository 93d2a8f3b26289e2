#include "apps/ms/commands.h"
#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"
#include "apps/ms/MsInput.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/UvFile.h"

#include <algorithm>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <cmath>
#include <filesystem>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double degreesPerRadian = 180 / 3.14159265358979323846;

/// What the rows tell.
struct Span {
    double start = 1e300, end = -1e300;  ///< days
    double longest = 0;                  ///< wavelengths
    void take(double time, double u, double v, double frequency)
    {
        start = std::min(start, time);
        end = std::max(end, time);
        longest = std::max(longest, std::hypot(u, v) * frequency);
    }
};

void sayDay(double referenceDay)
{
    say("referenceday", numberText(referenceDay));
    say("date", dateText(referenceDay));
}

void sayAntenna(int subarray, int number, const std::string& name, const double* place,
                double diameter)
{
    say("antenna", std::to_string(subarray) + "\t" + std::to_string(number) + "\t" + name + "\t" +
                       numberText(place[0]) + "\t" + numberText(place[1]) + "\t" +
                       numberText(place[2]) + "\t" + numberText(diameter));
}

void sayIf(int number, double frequency, double width, std::size_t channels)
{
    say("if", std::to_string(number) + "\t" + numberText(frequency) + "\t" + numberText(width) +
                  "\t" + std::to_string(channels));
}

void sayHands(const HandPlan& plan)
{
    std::string all;
    for (const std::string& hand : plan.names)
        all.append(all.empty() ? "" : ",").append(hand);
    say("hands", all);
}

void saySource(int id, const std::string& name, double ra, double dec)
{
    say("source",
        std::to_string(id) + "\t" + name + "\t" + numberText(ra) + "\t" + numberText(dec));
}

void sayRows(const Span& span, const ImportCount& count)
{
    if (span.start <= span.end) {
        say("first-time", numberText(span.start));
        say("last-time", numberText(span.end));
    }
    say("longest-baseline", numberText(span.longest));
    say("selected-rows", count.rows);
    if (count.leftOut > 0)
        say("left-out", std::to_string(count.leftOut) + " without antennas, time or place");
    for (const std::string& note : count.notes)
        say("note", note);
    say("size", workingSize(count.rows, count.cells));
}

double highest(const std::vector<MsWindow>& windows, int window)
{
    const std::vector<double>& all = windows[static_cast<std::size_t>(window)].frequencies;
    return *std::max_element(all.begin(), all.end());
}

void showUvFits(const std::string& name, const Selection& selection)
{
    UvFile file(name);
    std::vector<int> codes;
    for (const int code : file.stokes())
        codes.push_back(storedHand(code));
    say("kind", "UVFITS");
    say("rows", static_cast<std::uint64_t>(file.groups()));
    sayDay(file.referenceDay());
    for (const UvAntenna& antenna : file.antennas())
        sayAntenna(antenna.subarray, antenna.number, antenna.name, antenna.position.data(),
                   antenna.diameter);
    const std::vector<UvIf>& ifs = file.selections().front().ifs;
    double frequency = 0;
    for (std::size_t i = 0; i < ifs.size(); ++i) {
        sayIf(static_cast<int>(i) + 1, ifs[i].frequency, ifs[i].width,
              static_cast<std::size_t>(file.channels()));
        frequency = std::max(
            {frequency, ifs[i].frequency, ifs[i].frequency + (file.channels() - 1) * ifs[i].width});
    }
    sayHands(planHands(codes, {}));
    for (const UvSource& source : file.sources())
        saySource(source.id, source.name, source.ra, source.dec);
    say("columns", "DATA");
    ImportCount count;
    importUvFits(name, "", "", selection, count);
    Span span;
    const std::int64_t step = file.blockGroups();
    for (std::int64_t first = 0; first < file.groups(); first += step) {
        const std::int64_t block = std::min(step, file.groups() - first);
        file.readGroups(first, block);
        for (std::int64_t i = 0; i < block; ++i)
            if (const UvGroup group = file.group(i); isWhole(group))
                span.take(group.time, group.u, group.v, frequency);
    }
    sayRows(span, count);
}

void showMs(const std::string& name, const Selection& selection)
{
    // all of it, whatever is selected
    Selection all = selection;
    all.ifs.clear();
    all.hands.clear();
    all.source.clear();
    const MsInput input(name, all);
    WorkFacts facts;
    const int isWork = facts.read(input.table());
    say("kind", isWork ? "working copy" : "MS");
    say("rows", input.rows());
    sayDay(isWork ? facts.referenceDay : input.referenceDay());
    const Table antennas = input.subtable("ANTENNA");
    for (rownr_t i = 0; i < antennas.nrow(); ++i) {
        const int number = isWork && i < facts.antennaNumbers.size() ? facts.antennaNumbers[i]
                                                                     : static_cast<int>(i) + 1;
        const Array<Double> place = ArrayColumn<Double>(antennas, "POSITION").get(i);
        if (place.size() == 3)
            sayAntenna(1, number, ScalarColumn<String>(antennas, "NAME")(i), place.data(),
                       ScalarColumn<Double>(antennas, "DISH_DIAMETER")(i));
    }
    for (std::size_t i = 0; i < input.windows().size(); ++i) {
        const MsWindow& window = input.windows()[i];
        sayIf(isWork && i < facts.ifs.size() ? facts.ifs[i] : window.ifNumber,
              window.frequencies[0], window.widths[0], window.frequencies.size());
    }
    if (isWork) {
        HandPlan plan;
        plan.names = facts.hands;
        sayHands(plan);
    } else
        sayHands(input.plan());
    const Table fields = input.subtable("FIELD");
    for (rownr_t i = 0; i < fields.nrow(); ++i) {
        const Array<Double> place = ArrayColumn<Double>(fields, "PHASE_DIR").get(i);
        if (place.size() >= 2)
            saySource(static_cast<int>(i) + 1, ScalarColumn<String>(fields, "NAME")(i),
                      std::fmod(place.data()[0] * degreesPerRadian + 360, 360),
                      place.data()[1] * degreesPerRadian);
    }
    std::string columns;
    for (const char* column : {"DATA", "CORRECTED_DATA", "MODEL_DATA"})
        if (input.table().tableDesc().isColumn(column))
            columns.append(columns.empty() ? "" : ",").append(column);
    say("columns", columns);
    Span span;
    std::vector<MsRow> rows;
    const double shift = isWork ? input.referenceDay() - facts.referenceDay : 0;
    for (rownr_t first = 0; first < input.rows(); first += rows.size()) {
        input.readRows(first, rows);
        for (const MsRow& row : rows)
            if (row.window >= 0)
                span.take(row.hostTime + shift, row.uvw[0] / speedOfLight,
                          row.uvw[1] / speedOfLight, highest(input.windows(), row.window));
    }
    ImportCount count;
    importMs(name, "", "", selection, count);
    sayRows(span, count);
    say("disk", sizeOf(name));
}

}  // namespace

void showFacts(const std::vector<std::string>& words)
{
    const Words given(words, Selection::options(), 1, 1);
    const Selection selection(given);
    const std::string name = safePath(given.names()[0]);
    std::error_code error;
    if (!std::filesystem::exists(name, error))
        throw Failure("there is no " + given.names()[0]);
    if (std::filesystem::is_directory(name, error) && !isTable(name))
        throw Failure(name + " is a folder, and no MeasurementSet");
    if (isTable(name))
        showMs(name, selection);
    else
        showUvFits(name, selection);
}

}  // namespace pavane_ms
