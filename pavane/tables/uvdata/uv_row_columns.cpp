#include "pavane/tables/uvdata/uv_row_columns.h"

#include "tessel/stokes_name.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

using Row = UvPointOrigin;

constexpr double megalambda = 1e6;
/// Of what the file has as floats, and of places, which are known to centimetres.
constexpr int floatDigits = 7;
constexpr int placeDigits = 9;

CString telescopeName(const AUVXFile& file, const Row& row, int number)
{
    const AUVXTlscItem* const known = file.telescope(row.subarray, number);
    return known ? known->name : std::to_string(number);
}

CString sourceName(const AUVXFile& file, const Row& row)
{
    const UvSource* const known = file.source(row.source);
    return known ? known->name : std::to_string(row.source);
}

/// A column of numbers that is worth so many digits.
template <double (*of)(const Row& row), int digits>
UvRowColumn number(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const AUVXFile&, const Row& row) { return CString(valToStr(of(row), digits)); },
            [](const AUVXFile&, const Row& row) { return of(row); }};
}

template <double (*of)(const Row& row)>
UvRowColumn whole(const char* title, int width, const char* tip)
{
    return {title, tip, width,
            [](const AUVXFile&, const Row& row) {
                return CString(std::to_string(std::llround(of(row))));
            },
            [](const AUVXFile&, const Row& row) { return of(row); }};
}

double ifNumber(const Row& row) { return row.ifIndex + 1; }
double channelNumber(const Row& row) { return row.channel + 1; }
double groupNumber(const Row& row) { return static_cast<double>(row.group) + 1; }
double u(const Row& row) { return row.u / megalambda; }
double v(const Row& row) { return row.v / megalambda; }
double w(const Row& row) { return row.w / megalambda; }
double visibilities(const Row& row) { return static_cast<double>(row.count); }
double distance(const Row& row) { return std::hypot(row.u, row.v) / megalambda; }
double amplitude(const Row& row) { return amplitudeOf(row.value); }
double weight(const Row& row) { return double{row.value.weight}; }
double phase(const Row& row)
{
    return std::atan2(double{row.value.imaginary}, double{row.value.real}) * 180 / std::numbers::pi;
}

const UvRowColumn columns[] = {
    {"Time", "Since 0h of the reference date", 15,
     [](const AUVXFile&, const Row& row) -> CString { return uvTimeText(row.time); },
     [](const AUVXFile&, const Row& row) { return row.time; }},
    {"First", "First telescope, its number when it is unknown", 10,
     [](const AUVXFile& file, const Row& row) { return telescopeName(file, row, row.antenna1); },
     nullptr},
    {"Second", "Second telescope, its number when it is unknown", 10,
     [](const AUVXFile& file, const Row& row) { return telescopeName(file, row, row.antenna2); },
     nullptr},
    {"Source", "Name of the source, its number when it is unknown", 14, sourceName, nullptr},
    whole<ifNumber>("IF", 5, "Number of the IF, from 1"),
    whole<channelNumber>("Channel", 10, "Number of the channel, from 1"),
    {"Stokes", "Stokes parameter, or hands of both telescopes", 8,
     [](const AUVXFile& file, const Row& row) -> CString {
         return stokesName(file.header().stokes[static_cast<std::size_t>(row.stokes)]);
     },
     nullptr},
    number<u, placeDigits>("u [M\u03bb]", 15, "Towards east"),
    number<v, placeDigits>("v [M\u03bb]", 15, "Towards north"),
    number<w, placeDigits>("w [M\u03bb]", 15, "Towards the source"),
    number<distance, placeDigits>("Distance [M\u03bb]", 16, "In the plane of u and v"),
    number<amplitude, floatDigits>("Amplitude [Jy]", 17, "Of the visibility, or of the mean"),
    number<phase, floatDigits>("Phase [deg]", 14, "Of the visibility, from -180 to 180 degrees"),
    number<weight, floatDigits>("Weight", 12, "Of the visibility, as stored; of a mean the sum"),
    whole<visibilities>("Number", 9, "Visibilities in the mean"),
    whole<groupNumber>("Group", 10, "Number of the group in the file, from 1; of a mean the first"),
};

}  // namespace

std::span<const UvRowColumn> uvRowColumns() { return columns; }

}  // namespace pavane
