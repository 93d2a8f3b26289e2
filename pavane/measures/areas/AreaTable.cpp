#include "pavane/measures/areas/AreaTable.h"

#include "tessel/plain_text.h"
#include "tessel/rounding.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace pavane
{

namespace
{

/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;
constexpr int errorDigits = 6;
constexpr int pixelDecimals = 3;
constexpr double milli = 1000;
constexpr double arcsecondsPerDegree = 3600;
constexpr double degreesPerHour = 15;
constexpr int mostDecimals = 9;
/// Positions are told to this part of a cell.
constexpr double partOfCell = 0.01;

enum class Unit { none, value, flux, frame };

/// Decimals that show so small a number.
int decimalsOf(double size)
{
    if (!(size > 0) || !std::isfinite(size))
        return 0;
    return std::clamp(truncated(std::ceil(-std::log10(size) - 1e-6)), 0, mostDecimals);
}

}  // namespace

struct AreaTable::Look {
    const char* title;
    const char* tip;
    Unit unit;
    int width;   ///< in characters
    int digits;  ///< significant ones; 0: a whole number, below 0: words
};

const AreaTable::Look& AreaTable::lookOf(Field field)
{
    static constexpr Look looks[] = {
        {"Plane", "Plane of the cube, from 0", Unit::none, 7, 0},
        {"Name", "What the area is called, or its place in the list", Unit::none, 16, -1},
        {"Kind", "Its shape, and whether its cells are taken out of the mask", Unit::none, 20, -1},
        {"Cells", "Cells with a value, those of the outline included", Unit::none, 9, 0},
        {"Blank", "Cells without a value; they count nowhere else", Unit::none, 7, 0},
        {"Sum", "Sum of the cells", Unit::value, 13, sumDigits},
        {"Flux", "Sum over the beam's area in cells", Unit::flux, 15, sumDigits},
        {"Flux error", "Noise of a cell times the beams below one, their root above", Unit::flux,
         13, errorDigits},
        {"Beams", "Cells over the beam's area in cells", Unit::none, 12, floatDigits},
        {"Mean", "Mean of the cells", Unit::value, 14, floatDigits},
        {"Median", "Median of the cells", Unit::value, 15, floatDigits},
        {"Rms", "Root of the mean square about the mean", Unit::value, 14, floatDigits},
        {"Least", "Least value", Unit::value, 14, floatDigits},
        {"Least pixel_x", "Pixel of the least value, from 1", Unit::none, 13, 0},
        {"Least pixel_y", "Pixel of the least value, from 1", Unit::none, 13, 0},
        {"Greatest", "Greatest value", Unit::value, 14, floatDigits},
        {"Greatest pixel_x", "Pixel of the greatest value, from 1", Unit::none, 15, 0},
        {"Greatest pixel_y", "Pixel of the greatest value, from 1", Unit::none, 15, 0},
        {"Greatest east [mas]", "Offset of the greatest value to the east", Unit::none, 18,
         floatDigits},
        {"Greatest north [mas]", "Offset of the greatest value to the north", Unit::none, 18,
         floatDigits},
        {"Centroid pixel_x", "Mean pixel weighted by the values, from 1", Unit::none, 15,
         floatDigits},
        {"Centroid pixel_y", "Mean pixel weighted by the values, from 1", Unit::none, 15,
         floatDigits},
        {"Centroid east [mas]", "Its offset to the east", Unit::none, 18, floatDigits},
        {"Centroid north [mas]", "Its offset to the north", Unit::none, 18, floatDigits},
        {"Centroid longitude", "Its position on the sky", Unit::frame, 22, floatDigits},
        {"Centroid latitude", "Its position on the sky", Unit::frame, 22, floatDigits},
    };
    return looks[static_cast<std::size_t>(field)];
}

const char* areaKindName(ShapeValues::Kind kind)
{
    switch (kind) {
    case ShapeValues::Kind::rectangle:
        return "rectangle";
    case ShapeValues::Kind::rotatedRectangle:
        return "turned rectangle";
    case ShapeValues::Kind::ellipse:
        return "ellipse";
    case ShapeValues::Kind::polygon:
        break;
    }
    return "polygon";
}

void AreaTable::setMap(const MapHeader& header, const MapFrame& frame)
{
    frame_ = frame;
    scale_ = FluxScale::of(header, frame);
    std::string noSky;
    sky_ = std::make_unique<SkyCoordinates>();
    (void)sky_->init(header, noSky);
    rows_.clear();
    chooseColumns();
}

void AreaTable::add(const AreaMeasures& measures, int plane,
                    const std::function<void(int area, AreaRow& row)>& describe)
{
    for (int i = 0; i < measures.count(); ++i) {
        AreaRow& row = rows_.emplace_back();
        row.area = i;
        row.plane = plane;
        row.isNeverClean = measures.isNeverClean(i);
        row.numbers = measures.numbers(i);
        row.noise = measures.noise();
        describe(i, row);
    }
    AreaRow& all = rows_.emplace_back();
    all.plane = plane;
    all.label.name = measures.count() ? "All areas" : "Whole map";
    all.numbers = measures.allNumbers();
    all.noise = measures.noise();
    chooseColumns();
}

int AreaTable::hasPlanes() const
{
    return std::any_of(rows_.begin(), rows_.end(), [](const AreaRow& r) { return r.plane >= 0; });
}

void AreaTable::chooseColumns()
{
    columns_.clear();
    for (int i = static_cast<int>(Field::plane); i <= static_cast<int>(Field::latitude); ++i) {
        const Field field = static_cast<Field>(i);
        const int isOffset = field == Field::greatestEast || field == Field::greatestNorth ||
                             field == Field::centroidEast || field == Field::centroidNorth;
        const int isPosition = field == Field::longitude || field == Field::latitude;
        if ((field == Field::plane && !hasPlanes()) || (isOffset && !frame_.onSky) ||
            (isPosition && !sky_->isSet()))
            continue;
        columns_.push_back(field);
    }
}

int AreaTable::isOfDegrees() const
{
    const SkyFrame::System system = sky_->skyFrame().system;
    return system == SkyFrame::System::galactic || system == SkyFrame::System::ecliptic;
}

CString AreaTable::title(int column) const
{
    const Look& look = lookOf(field(column));
    CString title = look.title;
    if (look.unit == Unit::frame) {
        if (!isOfDegrees())
            title = field(column) == Field::longitude ? "Centroid right ascension"
                                                      : "Centroid declination";
        return title + " [" + nameOf(sky_->skyFrame()) + (isOfDegrees() ? ", deg]" : "]");
    }
    const std::string& unit = look.unit == Unit::value  ? scale_.valueUnit
                              : look.unit == Unit::flux ? scale_.unit
                                                        : CString();
    return unit.empty() ? title : title + " [" + plainText(unit) + "]";
}

CString AreaTable::tip(int column) const { return lookOf(field(column)).tip; }

int AreaTable::width(int column) const
{
    const auto title = static_cast<int>(this->title(column).size());
    return std::max(lookOf(field(column)).width, title + 3);
}

int AreaTable::isText(int column) const { return lookOf(field(column)).digits < 0; }

double AreaTable::value(const AreaRow& row, Field field) const
{
    const CellNumbers& n = row.numbers;
    const auto pixel = [](int cell) { return cell < 0 ? CellNumbers::none : cell + 1.0; };
    const auto offset = [&](double column, double place, int isNorth) {
        const MapPlace at = frame_.offsetOf(column, place);
        return (isNorth ? at.y : at.x) * milli;
    };
    const auto greatest = [&](int isNorth) {
        return n.greatestColumn < 0 ? CellNumbers::none
                                    : offset(n.greatestColumn, n.greatestRow, isNorth);
    };
    double longitude = CellNumbers::none, latitude = CellNumbers::none;
    switch (field) {
    case Field::plane:
        return row.plane < 0 ? CellNumbers::none : row.plane;
    case Field::name:
        return row.area < 0 ? CellNumbers::none : row.area + 1.0;
    case Field::kind:
        return CellNumbers::none;
    case Field::cells:
        return static_cast<double>(n.cells);
    case Field::blank:
        return static_cast<double>(n.blank);
    case Field::sum:
        return n.sum;
    case Field::flux:
        return scale_.flux(n.sum);
    case Field::error:
        return scale_.error(row.noise, n.cells);
    case Field::beams:
        return scale_.beams(n.cells);
    case Field::mean:
        return n.mean;
    case Field::median:
        return n.median;
    case Field::rms:
        return n.rms;
    case Field::least:
        return n.least;
    case Field::leastX:
        return pixel(n.leastColumn);
    case Field::leastY:
        return pixel(n.leastRow);
    case Field::greatest:
        return n.greatest;
    case Field::greatestX:
        return pixel(n.greatestColumn);
    case Field::greatestY:
        return pixel(n.greatestRow);
    case Field::greatestEast:
        return greatest(0);
    case Field::greatestNorth:
        return greatest(1);
    case Field::centroidX:
        return n.centroidColumn + 1;
    case Field::centroidY:
        return n.centroidRow + 1;
    case Field::centroidEast:
        return offset(n.centroidColumn, n.centroidRow, 0);
    case Field::centroidNorth:
        return offset(n.centroidColumn, n.centroidRow, 1);
    case Field::longitude:
    case Field::latitude:
        if (std::isfinite(n.centroidColumn))
            (void)sky_->toSky(n.centroidColumn, n.centroidRow, longitude, latitude);
        return field == Field::longitude ? longitude : latitude;
    }
    return CellNumbers::none;
}

CString AreaTable::skyText(double degrees, int isLongitude) const
{
    const double step = (isLongitude ? frame_.xStep : frame_.yStep) * frame_.arcseconds;
    const double part = std::fabs(step) * partOfCell;
    const CString sign = degrees < 0 || isLongitude ? "" : "+";
    if (isOfDegrees())
        return sign + nValToStr(degrees, decimalsOf(part / arcsecondsPerDegree));
    if (isLongitude)
        return timeToStr(degrees / degreesPerHour * arcsecondsPerDegree,
                         decimalsOf(part / degreesPerHour));
    return sign + timeToStr(degrees * arcsecondsPerDegree, decimalsOf(part));
}

CString AreaTable::text(int row, int column, int mostDigits) const
{
    const AreaRow& of = rows_[static_cast<std::size_t>(row)];
    const Field which = field(column);
    if (which == Field::name)
        return plainText(of.area < 0 ? of.label.name : shownName(of.label, of.area));
    if (which == Field::kind)
        return of.isNeverClean ? of.kind + ", never clean" : of.kind;
    const double number = value(of, which);
    if (!std::isfinite(number))
        return {};
    if (which == Field::longitude || which == Field::latitude)
        return skyText(number, which == Field::longitude);
    if (which == Field::centroidX || which == Field::centroidY)
        return nValToStr(number, pixelDecimals);
    const int digits = std::min(lookOf(which).digits, mostDigits);
    return digits ? valToStr(number, digits) : std::to_string(std::llround(number));
}

int AreaTable::number(int row, int column, double& value) const
{
    const Field which = field(column);
    if (which == Field::name || which == Field::kind)
        return 0;
    const double number = this->value(rows_[static_cast<std::size_t>(row)], which);
    if (!std::isfinite(number))
        return 0;
    value = number;
    return 1;
}

int AreaTable::writeTsv(std::ostream& stream, const std::vector<int>* order) const
{
    for (int c = 0; c < columns(); ++c)
        stream << (c ? "\t" : "") << title(c);
    stream << '\n';
    const std::size_t count = order ? order->size() : rows_.size();
    for (std::size_t i = 0; i < count && stream.good(); ++i) {
        const int row = order ? (*order)[i] : static_cast<int>(i);
        for (int c = 0; c < columns(); ++c)
            stream << (c ? "\t" : "") << text(row, c);
        stream << '\n';
    }
    return stream.good();
}

}  // namespace pavane
