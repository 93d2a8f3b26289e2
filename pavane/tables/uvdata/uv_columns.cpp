#include "pavane/tables/uvdata/uv_columns.h"

#include "pavane/tables/uvdata/UvObservation.h"
#include "tessel/stokes_name.h"
#include "tessel/time_text.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/value_text.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

using Data = UvObservation;

constexpr double turn = 360;
constexpr double secondsPerDegree = 240;  // of right ascension
constexpr double arcsecondsPerDegree = 3600;
constexpr double secondsPerDay = 86400;
constexpr int toMega = 6;
/// Of what is worked out, nanoseconds and micrometres: finer than what it is made of, and the noise
/// of the arithmetic does not show.
constexpr int lengthDecimals = 9;

template <class Items>
const auto& at(const Items& items, int row)
{
    return items[static_cast<std::size_t>(row)];
}

const AUVXTlscItem& telescope(const Data& d, int row) { return at(d.file().telescopes(), row); }
const UvBaseline& baseline(const Data& d, int row) { return at(d.baselines(), row); }
const UvSource& source(const Data& d, int row) { return at(d.file().sources(), row); }
const UvScan& scan(const Data& d, int row) { return at(d.scans(), row); }
int stokes(const Data& d, int row) { return at(d.file().header().stokes, row); }

int selectionId(const Data& d, int row)
{
    return at(d.file().fqTbl().selections(), d.ifAt(row).selection).id;
}
int ifNumber(const Data& d, int row) { return d.ifAt(row).ifIndex + 1; }
int channels(const Data& d, int) { return d.file().fqTbl().channels(); }
const UvIf& ifOf(const Data& d, int row)
{
    const UvIfPlace place = d.ifAt(row);
    return at(at(d.file().fqTbl().selections(), place.selection).ifs, place.ifIndex);
}
StoredNumber frequency(const Data& d, int row)
{
    const UvIfPlace place = d.ifAt(row);
    return {d.file().fqTbl().frequency(place.selection, place.ifIndex), 0};
}

CString mount(const Data& d, int row) { return mountName(telescope(d, row).mount); }
CString nameOfStokes(const Data& d, int row) { return stokesName(stokes(d, row)); }

CString telescopeName(const Data& d, int subarray, int number)
{
    const AUVXTlscItem* const known = d.file().telescope(subarray, number);
    return known ? known->name : std::to_string(number);
}
CString firstName(const Data& d, int row)
{
    return telescopeName(d, baseline(d, row).subarray, baseline(d, row).first);
}
CString secondName(const Data& d, int row)
{
    return telescopeName(d, baseline(d, row).subarray, baseline(d, row).second);
}
double kilometres(const Data& d, int row) { return d.file().lengthOf(baseline(d, row)); }

CString scanSource(const Data& d, int row)
{
    const int id = scan(d, row).source;
    const UvSource* const known = d.file().source(id);
    return known ? known->name : std::to_string(id);
}
/// Of found scans to the millisecond: times of groups are sums of days, and no finer than that.
double seconds(const Data& d, int row)
{
    const double length = (scan(d, row).end - scan(d, row).start) * secondsPerDay;
    return d.file().hasIndex() ? length : std::round(length * 1000) / 1000;
}
double equinox(const Data& d, int row)
{
    const double years = source(d, row).equinox;
    return years == 0 ? std::numeric_limits<double>::quiet_NaN() : years;
}

/// Seconds or kilometres, without the zeros at the end.
CString lengthText(double length)
{
    if (!std::isfinite(length))
        return {};
    CString text = nValToStr(length, lengthDecimals);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

CString knownText(double value) { return std::isfinite(value) ? valToStr(value) : CString(); }

constexpr auto value = &StoredNumber::value;

/// The value of a row: of a function of it, or of members within what that gives.
template <auto item, auto... path>
auto valueOf(const Data& d, int row)
{
    return (item(d, row).*....*path);
}

template <auto... of>
UvColumn words(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const Data& d, int row) -> CString { return valueOf<of...>(d, row); }, nullptr};
}

template <auto... of>
UvColumn whole(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const Data& d, int row) { return CString(std::to_string(valueOf<of...>(d, row))); },
            [](const Data& d, int row) { return static_cast<double>(valueOf<of...>(d, row)); }};
}

/// A number with its digits, divided by ten to the power of `places`.
template <int places, auto... of>
UvColumn stored(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const Data& d, int row) -> CString {
                return storedText(valueOf<of...>(d, row), places);
            },
            [](const Data& d, int row) {
                return valueOf<of...>(d, row).value * std::pow(10.0, -places);
            }};
}

/// A number of which `textOf` makes the text; none where it is not finite.
template <auto textOf, auto... of>
UvColumn worded(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const Data& d, int row) -> CString { return textOf(valueOf<of...>(d, row)); },
            [](const Data& d, int row) -> double {
                const double number = valueOf<of...>(d, row);
                return std::isfinite(number) ? number : std::numeric_limits<double>::quiet_NaN();
            }};
}

using Tlsc = AUVXTlscItem;

const UvColumn telescopeColumns[] = {
    words<telescope, &Tlsc::name>("Name", 14, "Name of the telescope"),
    whole<telescope, &Tlsc::number>("No.", 7, "What baselines call the telescope"),
    whole<telescope, &Tlsc::subarray>("Subarray", 12, "Subarray of the telescope"),
    stored<0, telescope, &Tlsc::x>("X [m]", 20, "Position as stored, towards longitude 0"),
    stored<0, telescope, &Tlsc::y>("Y [m]", 20, "Position as stored; writers differ in its sign"),
    stored<0, telescope, &Tlsc::z>("Z [m]", 20, "Position as stored, towards the north pole"),
    words<mount>("Mount", 13, "Mount; a number is a code of the writer"),
    stored<0, telescope, &Tlsc::axisOffset>("Axis offset [m]", 19, "Between the axes of the mount"),
};

const UvColumn baselineColumns[] = {
    words<firstName>("First", 14, "First telescope, its number when it is unknown"),
    words<secondName>("Second", 14, "Second telescope, its number when it is unknown"),
    whole<baseline, &UvBaseline::subarray>("Subarray", 12, "Subarray of the telescopes"),
    worded<lengthText, kilometres>("Length [km]", 20, "Distance between the telescopes"),
    whole<baseline, &UvBaseline::groups>("Visibilities", 14, "Groups of the baseline"),
    whole<baseline, &UvBaseline::first>("First No.", 13, "Number of the first telescope"),
    whole<baseline, &UvBaseline::second>("Second No.", 15, "Number of the second telescope"),
};

const UvColumn sourceColumns[] = {
    whole<source, &UvSource::id>("No.", 7, "What scans call the source"),
    words<source, &UvSource::name>("Name", 18, "Name of the source"),
    worded<rightAscensionText, source, &UvSource::ra, value>("RA", 18, "Right ascension, hours"),
    worded<declinationText, source, &UvSource::dec, value>("Dec", 18, "Declination, degrees"),
    worded<knownText, equinox>("Equinox", 11, "Equinox of the position, years"),
};

const UvColumn stokesColumns[] = {
    whole<stokes>("Code", 9, "Number of the polarisation in the file"),
    words<nameOfStokes>("Name", 10, "Stokes parameter, or hands of both telescopes"),
};

const UvColumn frequencyColumns[] = {
    whole<selectionId>("Selection", 13, "What groups and scans call the selection"),
    whole<ifNumber>("IF", 6, "Number of the IF"),
    stored<toMega, frequency>("Frequency [MHz]", 21, "Of the reference channel"),
    stored<toMega, ifOf, &UvIf::channelWidth>("Channel width [MHz]", 25, "From channel to channel"),
    stored<toMega, ifOf, &UvIf::bandwidth>("Bandwidth [MHz]", 22, "Of all channels of the IF"),
    whole<channels>("Channels", 13, "Channels of the IF"),
    whole<ifOf, &UvIf::sideband>("Sideband", 13, "1 upper, -1 lower, as stored"),
};

const UvColumn scanColumns[] = {
    words<scanSource>("Source", 18, "Source of the scan, its number when it is unknown"),
    whole<scan, &UvScan::subarray>("Subarray", 12, "Subarray that observed"),
    whole<scan, &UvScan::selection>("Selection", 13, "Frequency selection"),
    worded<uvTimeText, scan, &UvScan::start>("Start", 15, "Since 0h of the reference date"),
    worded<uvTimeText, scan, &UvScan::end>("End", 15, "Since 0h of the reference date"),
    worded<lengthText, seconds>("Length [s]", 18, "From start to end"),
    whole<scan, &UvScan::first>("First visibility", 18, "Least number of a group, from 1"),
    whole<scan, &UvScan::last>("Last visibility", 18, "Greatest number of a group"),
    whole<scan, &UvScan::source>("Source No.", 14, "Number of the source"),
};

/// In the order of UvTable.
const UvTableLook looks[uvTableCount] = {
    {"telescopes", "Telescopes", telescopeColumns},
    {"baselines", "Baselines", baselineColumns},
    {"sources", "Sources", sourceColumns},
    {"stokes", "Stokes", stokesColumns},
    {"frequencies", "Frequencies", frequencyColumns},
    {"scans", "Scans", scanColumns},
};

}  // namespace

const UvTableLook& uvTableLook(UvTable table) { return looks[static_cast<int>(table)]; }

int uvTableOf(std::string_view name, UvTable& table)
{
    for (const UvTable each : uvTables)
        if (uvTableLook(each).name == name)
            return table = each, 1;
    return 0;
}

CString rightAscensionText(double degrees)
{
    double within = std::fmod(degrees, turn);
    if (within < 0)
        within += turn;
    const CString text = timeToStr(within * secondsPerDegree, 6);
    // what rounds to a whole turn
    return text.starts_with("24:") ? timeToStr(0, 6) : text;
}

CString declinationText(double degrees)
{
    const CString text = timeToStr(degrees * arcsecondsPerDegree, 5);
    return text.empty() || text[0] == '-' ? text : '+' + text;
}

}  // namespace pavane
