#include "apps/ms/ExportPlan.h"

#include "apps/ms/Cells.h"
#include "apps/ms/Failure.h"
#include "apps/ms/import_data.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <casacore/tables/Tables/TableColumn.h>
#include <casacore/tables/Tables/TableRecord.h>
#include <cmath>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr double degreesPerRadian = 180 / 3.14159265358979323846;
constexpr int wideNumber = 255;

/// Degrees that the sidereal time of Greenwich is at 0h of a day; after IAU 1982, to 0.001 degrees.
double siderealDegrees(double julianDay)
{
    const double centuries = (julianDay - 2451545.0) / 36525;
    return std::fmod(100.46061837 + 36000.770053608 * centuries + 360e4, 360.0);
}

double positive(double degrees) { return std::fmod(degrees + 360, 360); }

/// Channels that differ from even steps by less than a thousandth of one.
int isEven(const Array<Double>& frequencies)
{
    const Double* const hertz = frequencies.data();
    const std::size_t count = frequencies.size();
    const double step = count > 1 ? hertz[1] - hertz[0] : 0;
    for (std::size_t i = 2; i < count; ++i)
        if (std::abs(hertz[i] - hertz[0] - static_cast<double>(i) * step) > std::abs(step) * 1e-3)
            return 0;
    return 1;
}

struct Field {
    std::string name;
    double ra, dec, epoch;
};

Field fieldOf(const Table& table, rownr_t row)
{
    const ArrayColumn<Double> places(table, "PHASE_DIR");
    const Array<Double> place = places.get(row);
    if (place.size() < 2)
        throw Failure("does not tell where its source is");
    const TableRecord& keys = TableColumn(table, "PHASE_DIR").keywordSet();
    double epoch = 2000;
    if (keys.isDefined("MEASINFO") && keys.asRecord("MEASINFO").isDefined("Ref"))
        epoch = keys.asRecord("MEASINFO").asString("Ref").startsWith("B1950") ? 1950 : 2000;
    return {ScalarColumn<String>(table, "NAME")(row), positive(place.data()[0] * degreesPerRadian),
            place.data()[1] * degreesPerRadian, epoch};
}

}  // namespace

ExportPlan::ExportPlan(WorkTable& work) : work_(work)
{
    planWindows();
    planHands();
    const WorkFacts& facts = work.facts();
    for (const int number : facts.antennaNumbers)
        hasWideNumbers_ = hasWideNumbers_ || number > wideNumber;
    for (const int subarray : facts.antennaSubarrays)
        subarrays_ = std::max(subarrays_, subarray);
    const auto rows = static_cast<std::size_t>(work.table().nrow());
    constexpr std::size_t block = 65536;
    for (std::size_t first = 0; first < rows; first += block)
        for (const Int array : ScalarColumn<Int>(work.table(), "ARRAY_ID")
                                   .getColumnRange(rowRange(first, std::min(block, rows - first))))
            subarrays_ = std::max(subarrays_, array + 1);
    constexpr int mostSubarrays = 99;
    hasWideNumbers_ = hasWideNumbers_ || subarrays_ > mostSubarrays;
}

Table ExportPlan::subtable(const char* name) const
{
    return work_.table().keywordSet().asTable(name, TableLock(TableLock::NoLocking));
}

void ExportPlan::planWindows()
{
    const Table spectra = subtable("SPECTRAL_WINDOW");
    const std::vector<int>& numbers = work_.facts().ifs;
    ifs_ = numbers;
    std::sort(ifs_.begin(), ifs_.end());
    ifs_.erase(std::unique(ifs_.begin(), ifs_.end()), ifs_.end());
    for (std::size_t w = 0; w < numbers.size(); ++w) {
        const Array<Double> frequencies = ArrayColumn<Double>(spectra, "CHAN_FREQ").get(w);
        const Array<Double> widths = ArrayColumn<Double>(spectra, "CHAN_WIDTH").get(w);
        Window window;
        window.frequency = frequencies.data()[0];
        window.channels = static_cast<int>(frequencies.size());
        window.width =
            window.channels > 1 ? frequencies.data()[1] - frequencies.data()[0] : widths.data()[0];
        unevenWindows_ += !isEven(frequencies);
        window.sideband = ScalarColumn<Int>(spectra, "NET_SIDEBAND")(w) < 0 ? -1 : 1;
        channels_ = std::max(channels_, window.channels);
        windows_.push_back(window);
        Place place;
        place.ifPlace =
            static_cast<int>(std::lower_bound(ifs_.begin(), ifs_.end(), numbers[w]) - ifs_.begin());
        // the same IF again is of another selection of frequencies
        for (std::size_t other = 0; other < w; ++other)
            place.selection += numbers[other] == numbers[w];
        selections_ = std::max(selections_, place.selection + 1);
        places_.push_back(place);
    }
}

std::vector<std::string> ExportPlan::lost() const
{
    std::vector<std::string> lines = {
        "digits of u, v, w and weights beyond the seven that a UVFITS file holds"};
    for (std::size_t i = 0; i < ifs_.size(); ++i)
        if (ifs_[i] != static_cast<int>(i) + 1) {
            std::string numbers;
            for (const int each : ifs_)
                numbers.append(numbers.empty() ? "" : ",").append(std::to_string(each));
            lines.push_back("the numbers of the IFs: those of the copy, " + numbers +
                            ", are counted from 1");
            break;
        }
    if (unevenWindows_ > 0)
        lines.push_back("the frequencies of channels that are not evenly spaced, in " +
                        std::to_string(unevenWindows_) + " spectral windows");
    if (isTable(work_.facts().input))
        lines.emplace_back("subtables of " + work_.facts().input +
                           " that a working copy does not have, as of pointings, weather and "
                           "system temperatures");
    return lines;
}

void ExportPlan::planHands()
{
    const std::vector<std::string>& columns = work_.hands();
    if (work_.facts().isIntensity) {
        hands_ = {{1, 0}};
        return;
    }
    const int isLinear = columns.front() == "XX";
    const int last = work_.handCount() - 1, first = isLinear ? -5 : -1;
    const int hasFirst = work_.hasHand(0), hasLast = work_.hasHand(static_cast<std::size_t>(last));
    if (last == 1 && !(hasFirst && hasLast))
        hands_ = {hasFirst ? Hand{first, 0} : Hand{first - 1, last}};
    else
        hands_ = {{first, 0}, {first - 1, last}};
    if (last == 3) {
        hands_.push_back({first - 2, 1});
        hands_.push_back({first - 3, 2});
    }
}

std::size_t ExportPlan::writeHeader(FitsCards& cards, const std::string& column) const
{
    const WorkFacts& facts = work_.facts();
    const Field field = fieldOf(subtable("FIELD"), 0);
    const Table observation = subtable("OBSERVATION");
    const int isOne = facts.sources.size() < 2;
    const std::int64_t lengths[] = {0,
                                    3,
                                    static_cast<std::int64_t>(hands_.size()),
                                    channels_,
                                    static_cast<std::int64_t>(ifs_.size()),
                                    1,
                                    1};
    cards.logical("SIMPLE", true);
    cards.whole("BITPIX", -32);
    cards.whole("NAXIS", 7);
    for (std::size_t i = 0; i < 7; ++i)
        cards.whole("NAXIS" + std::to_string(i + 1), lengths[i]);
    cards.logical("EXTEND", true);
    cards.logical("GROUPS", true);
    std::vector<std::string> parameters = {"UU---SIN", "VV---SIN", "WW---SIN", "DATE", "DATE"};
    if (hasWideNumbers_)
        parameters.insert(parameters.end(), {"SUBARRAY", "ANTENNA1", "ANTENNA2"});
    else
        parameters.emplace_back("BASELINE");
    parameters.insert(parameters.end(), {"INTTIM", "SOURCE", "FREQSEL"});
    cards.whole("PCOUNT", static_cast<std::int64_t>(parameters.size()));
    const std::size_t countPlace = cards.size();
    cards.whole("GCOUNT", 0);
    struct Axis {
        const char* name;
        double value, step;
    };
    const Axis axes[] = {
        {"COMPLEX", 1, 1},
        {"STOKES", static_cast<double>(hands_[0].fits), hands_[0].fits < 0 ? -1.0 : 1.0},
        {"FREQ", windows_[0].frequency, windows_[0].width},
        {"IF", 1, 1},
        {"RA", field.ra, 1},
        {"DEC", field.dec, 1}};
    for (std::size_t i = 0; i < 6; ++i) {
        const std::string n = std::to_string(i + 2);
        cards.text("CTYPE" + n, axes[i].name);
        cards.number("CRVAL" + n, axes[i].value);
        cards.number("CDELT" + n, axes[i].step);
        cards.number("CRPIX" + n, 1);
        cards.number("CROTA" + n, 0);
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const std::string n = std::to_string(i + 1);
        cards.text("PTYPE" + n, parameters[i]);
        cards.number("PSCAL" + n, 1);
        cards.number("PZERO" + n, i == 3 ? facts.referenceDay : 0);
    }
    cards.text("OBJECT", isOne ? field.name : "MULTI");
    if (observation.nrow() > 0) {
        cards.text("TELESCOP", ScalarColumn<String>(observation, "TELESCOPE_NAME")(0));
        cards.text("OBSERVER", ScalarColumn<String>(observation, "OBSERVER")(0));
    }
    cards.text("DATE-OBS", dateText(facts.referenceDay));
    cards.text("BUNIT", "JY");
    cards.number("BSCALE", 1);
    cards.number("BZERO", 0);
    cards.number("EPOCH", field.epoch);
    cards.number("EQUINOX", field.epoch);
    const Table history = subtable("HISTORY");
    const ScalarColumn<String> messages(history, "MESSAGE");
    for (rownr_t i = 0; i < history.nrow(); ++i)
        cards.history(plain(messages(i)));
    cards.history("pavane-ms export " + column + " of " + plain(facts.input));
    return countPlace;
}

void ExportPlan::writeFrequencies(FitsOutput& file) const
{
    FitsTableOutput table("AIPS FQ", 1);
    const std::string n = std::to_string(ifs_.size());
    table.column("FRQSEL", "1J", "");
    table.column("IF FREQ", n + "D", "HZ");
    table.column("CH WIDTH", n + "E", "HZ");
    table.column("TOTAL BANDWIDTH", n + "E", "HZ");
    table.column("SIDEBAND", n + "J", "");
    table.cards().whole("NO_IF", static_cast<std::int64_t>(ifs_.size()));
    FitsBytes& values = table.values();
    for (int s = 0; s < selections_; ++s) {
        std::vector<Window> row(ifs_.size(), windows_[0]);
        for (std::size_t w = 0; w < windows_.size(); ++w)
            if (places_[w].selection == s)
                row[static_cast<std::size_t>(places_[w].ifPlace)] = windows_[w];
        values.add(std::int32_t{s + 1});
        for (const Window& one : row)
            values.add(one.frequency - windows_[0].frequency);
        for (const Window& one : row)
            values.add(static_cast<float>(one.width));
        for (const Window& one : row)
            values.add(static_cast<float>(std::abs(one.width) * one.channels));
        for (const Window& one : row)
            values.add(std::int32_t{one.sideband});
    }
    table.write(file, selections_);
}

void ExportPlan::writeAntennas(FitsOutput& file, int subarray) const
{
    const WorkFacts& facts = work_.facts();
    const Table antennas = subtable("ANTENNA"), feeds = subtable("FEED");
    std::vector<std::size_t> mine;
    std::size_t longest = 8;
    const ScalarColumn<String> names(antennas, "NAME"), mounts(antennas, "MOUNT");
    for (std::size_t i = 0; i < facts.antennaNumbers.size(); ++i) {
        const int own = i < facts.antennaSubarrays.size() ? facts.antennaSubarrays[i] : 0;
        if (own == 0 || own == subarray) {
            mine.push_back(i);
            longest = std::max(longest, names(i).size());
        }
    }
    FitsTableOutput table("AIPS AN", subarray);
    table.column("ANNAME", std::to_string(longest) + "A", "");
    table.column("STABXYZ", "3D", "METERS");
    table.column("ORBPARM", "0D", "");
    table.column("NOSTA", "1J", "");
    table.column("MNTSTA", "1J", "");
    table.column("STAXOF", "1E", "METERS");
    table.column("DIAMETER", "1E", "METERS");
    table.column("POLTYA", "1A", "");
    table.column("POLAA", "1E", "DEGREES");
    table.column("POLCALA", "0E", "");
    table.column("POLTYB", "1A", "");
    table.column("POLAB", "1E", "DEGREES");
    table.column("POLCALB", "0E", "");
    FitsCards& cards = table.cards();
    for (const char* key : {"ARRAYX", "ARRAYY", "ARRAYZ", "POLARX", "POLARY", "UT1UTC", "DATUTC"})
        cards.number(key, 0);
    cards.number("GSTIA0", siderealDegrees(facts.referenceDay));
    cards.number("DEGPDY", 360.9856449733);
    cards.number("FREQ", windows_[0].frequency);
    cards.text("RDATE", dateText(facts.referenceDay));
    cards.text("TIMSYS", "UTC");
    const Table observation = subtable("OBSERVATION");
    cards.text("ARRNAM", observation.nrow() > 0
                             ? ScalarColumn<String>(observation, "TELESCOPE_NAME")(0)
                             : String("UNKNOWN"));
    cards.text("XYZHAND", "RIGHT");
    cards.text("FRAME", "ITRF");
    for (const char* key : {"NUMORB", "NOPCAL"})
        cards.whole(key, 0);
    cards.whole("NO_IF", static_cast<std::int64_t>(ifs_.size()));
    cards.whole("FREQID", -1);
    const ScalarColumn<Int> feedAntenna(feeds, "ANTENNA_ID");
    FitsBytes& values = table.values();
    for (const std::size_t i : mine) {
        const Array<Double> place = ArrayColumn<Double>(antennas, "POSITION").get(i);
        std::string types = "RL";
        double angles[2] = {0, 0};
        for (rownr_t f = 0; f < feeds.nrow(); ++f) {
            if (feedAntenna(f) != static_cast<Int>(i))
                continue;
            const Array<String> kinds = ArrayColumn<String>(feeds, "POLARIZATION_TYPE").get(f);
            const Array<Double> turned = ArrayColumn<Double>(feeds, "RECEPTOR_ANGLE").get(f);
            for (std::size_t k = 0; k < 2 && k < kinds.size() && k < turned.size(); ++k) {
                types[k] = kinds.data()[k].empty() ? types[k] : kinds.data()[k][0];
                angles[k] = turned.data()[k] * degreesPerRadian;
            }
            break;
        }
        const String mount = mounts(i);
        values.add(names(i), longest);
        for (std::size_t axis = 0; axis < 3; ++axis)
            values.add(axis < place.size() ? place.data()[axis] : 0.0);
        values.add(std::int32_t{facts.antennaNumbers[i]});
        values.add(std::int32_t{mount.startsWith("EQ") || mount.startsWith("eq") ? 1
                                : mount.startsWith("ORB")                        ? 2
                                                                                 : 0});
        values.add(0.0F);
        values.add(static_cast<float>(ScalarColumn<Double>(antennas, "DISH_DIAMETER")(i)));
        for (std::size_t k = 0; k < 2; ++k) {
            values.add(types.substr(k, 1), 1);
            values.add(static_cast<float>(angles[k]));
        }
    }
    table.write(file, static_cast<std::int64_t>(mine.size()));
}

void ExportPlan::writeScans(FitsOutput& file, const std::vector<ExportScan>& scans) const
{
    FitsTableOutput table("AIPS NX", 1);
    table.column("TIME", "1D", "DAYS");
    table.column("TIME INTERVAL", "1E", "DAYS");
    table.column("SOURCE ID", "1J", "");
    table.column("SUBARRAY", "1J", "");
    table.column("START VIS", "1J", "");
    table.column("END VIS", "1J", "");
    table.column("FREQ ID", "1J", "");
    FitsBytes& values = table.values();
    for (const ExportScan& scan : scans) {
        values.add((scan.start + scan.end) / 2);
        values.add(static_cast<float>(scan.end - scan.start));
        values.add(std::int32_t{work_.source(scan.field)});
        values.add(std::int32_t{scan.array + 1});
        values.add(static_cast<std::int32_t>(scan.firstGroup));
        values.add(static_cast<std::int32_t>(scan.lastGroup));
        values.add(std::int32_t{1});
    }
    table.write(file, static_cast<std::int64_t>(scans.size()));
}

void ExportPlan::writeSources(FitsOutput& file) const
{
    const Table fields = subtable("FIELD");
    FitsTableOutput table("AIPS SU", 1);
    table.column("ID. NO.", "1J", "");
    table.column("SOURCE", "20A", "");
    table.column("QUAL", "1J", "");
    table.column("CALCODE", "4A", "");
    table.column("RAEPO", "1D", "DEGREES");
    table.column("DECEPO", "1D", "DEGREES");
    table.column("EPOCH", "1D", "YEARS");
    table.cards().whole("NO_IF", static_cast<std::int64_t>(ifs_.size()));
    for (std::size_t i = 0; i < work_.facts().sources.size(); ++i) {
        const Field field = fieldOf(fields, i);
        FitsBytes& values = table.values();
        values.add(std::int32_t{work_.facts().sources[i]});
        values.add(field.name, 20);
        values.add(std::int32_t{0});
        values.add(std::string(), 4);
        values.add(field.ra);
        values.add(field.dec);
        values.add(field.epoch);
    }
    table.write(file, static_cast<std::int64_t>(work_.facts().sources.size()));
}

void ExportPlan::writeTables(FitsOutput& file, const std::vector<ExportScan>& scans) const
{
    for (int subarray = 1; subarray <= subarrays_; ++subarray)
        writeAntennas(file, subarray);
    writeFrequencies(file);
    writeScans(file, scans);
    if (work_.facts().sources.size() > 1)
        writeSources(file);
}

}  // namespace pavane_ms
