#include "pavane/measures/profiles/PositionVelocity.h"

#include "pavane/measures/profiles/LinePath.h"
#include "pavane/measures/profiles/RowsOfPlane.h"
#include "pavane/measures/profiles/sky_ruler.h"
#include "tessel/made_map.h"
#include "tessel/sky_frame.h"
#include "tessel/spectral_axis.h"
#include "tessel/value_text.h"

#include <cmath>
#include <new>
#include <optional>

namespace pavane
{

namespace
{

constexpr double step = LinePath::step;
constexpr double nothing = 1e-9;
/// Parts of a step by which samples may lie beside the place that the axis says.
constexpr double mostBeside = 0.01;
constexpr int digits = 9;

/// Cells of which only the size matters.
class NoCells : public AMatrixAccess
{
public:
    NoCells(int rows, int columns) : rows_(rows), columns_(columns) {}
    int rows() const override { return rows_; }
    int columns() const override { return columns_; }
    void copyRow(int /*row*/, int /*first*/, int count, float* to) const override
    {
        std::fill_n(to, count, 0.0f);
    }

private:
    int rows_, columns_;
};

/// The samples along the line, and their distance: in arcseconds on the sky, else in cells.
struct Samples {
    std::vector<double> cells;
    double apart = step;
    int onSky = 0;
};

/// Arcseconds along the line from one place to another.
double arcsecondsOf(const LinePath& path, double from, double to, const SkyCoordinates& sky,
                    const MapFrame& frame)
{
    double sum = 0;
    while (from < to) {
        const double end = std::min(path.nextCorner(from), to);
        sum += distanceBetween(path.at(from).at, path.at(end).at, sky, frame).arcseconds;
        from = end;
    }
    return sum;
}

/// Samples each half cell; moved to equal distances on the sky where they are not at these.
Samples samplesOf(const LinePath& path, const SkyCoordinates& sky, const MapFrame& frame)
{
    Samples samples;
    const auto last = static_cast<std::size_t>(std::floor(path.length() / step + nothing));
    for (std::size_t i = 0; i <= last; ++i)
        samples.cells.push_back(std::min(static_cast<double>(i) * step, path.length()));
    if (!sky.isSet() && !frame.onSky)
        return samples;
    std::vector<double> along{0};
    for (std::size_t i = 1; i <= last; ++i)
        along.push_back(along.back() +
                        arcsecondsOf(path, samples.cells[i - 1], samples.cells[i], sky, frame));
    const double apart = along.back() / static_cast<double>(last);
    if (!(apart > 0) || !std::isfinite(apart))
        return samples;  // the line leaves the sky
    samples.apart = apart;
    samples.onSky = 1;
    double beside = 0;
    for (std::size_t i = 0; i <= last; ++i)
        beside = std::max(beside, std::fabs(along[i] - static_cast<double>(i) * apart));
    if (!(beside > mostBeside * apart))
        return samples;
    std::size_t from = 0;
    for (std::size_t i = 1; i < last; ++i) {
        const double at = static_cast<double>(i) * apart;
        while (from + 2 <= last && along[from + 1] < at)
            ++from;
        const double part = (at - along[from]) / (along[from + 1] - along[from]);
        samples.cells[i] = (static_cast<double>(from) + part) * step;
    }
    return samples;
}

MapAxis offsetAxis(const Samples& samples)
{
    constexpr double arcminute = 60, degree = 3600;
    constexpr double leastInMinutes = 1000, leastInDegrees = 2 * degree;
    const double length = samples.apart * static_cast<double>(samples.cells.size());
    const int inDegrees = samples.onSky && length >= leastInDegrees;
    const int inMinutes = samples.onSky && length >= leastInMinutes;
    MapAxis axis;
    axis.length = static_cast<int>(samples.cells.size());
    axis.ctype = "OFFSET";
    axis.cunit = inDegrees ? "deg" : inMinutes ? "arcmin" : samples.onSky ? "arcsec" : "pixel";
    axis.crpix = 1;
    axis.cdelt = samples.apart / (inDegrees ? degree : inMinutes ? arcminute : 1);
    return axis;
}

/// The axis of the planes, and how far, in planes, it is from their values.
MapAxis planeAxis(const SpectralAxis& spectral, const MapHeader& header,
                  const std::vector<MomentPlane>& planes, double& beside)
{
    using Kind = SpectralAxis::Kind;
    MapAxis axis;
    axis.length = static_cast<int>(planes.size());
    axis.crpix = 1;
    beside = 0;
    if (spectral.kind() == Kind::none) {
        axis.ctype = "PLANE";
        axis.crval = planes.front().plane;
        return axis;
    }
    const auto at = static_cast<std::size_t>(spectral.axis());
    const double first = pixelsOfPlane(header, planes.front().plane)[at];
    const double last = first + static_cast<double>(planes.size()) - 1;
    const double middle = std::floor((first + last) / 2);
    const double near = spectral.isLinear() ? 0.5 : 1e-3;  // the slope there
    axis.cdelt = (spectral.value(middle + near) - spectral.value(middle - near)) / (2 * near);
    for (const double end : {first, last}) {
        const double drawn = spectral.value(middle) + (end - middle) * axis.cdelt;
        beside = std::max(beside, std::fabs((spectral.value(end) - drawn) / axis.cdelt));
    }
    const int isLinear = spectral.isLinear();
    axis.crpix = isLinear ? 1 : middle - first + 1;
    axis.crval = spectral.value(isLinear ? first : middle);
    axis.cunit = spectral.unit();
    const std::string convention = spectral.convention();
    axis.ctype = spectral.kind() == Kind::hertz ? "FREQ"
                 : convention == "radio"        ? "VRAD"
                 : convention == "optical"      ? (isLinear ? "VOPT" : "VOPT-F2W")
                                                : "VELO";
    return axis;
}

/// A place in ASCII, as headers are written.
std::string placeText(const MapPlace& place, const SkyCoordinates& sky)
{
    constexpr int skyDigits = 12;
    std::string text =
        "pixel " + valToStr(place.x + 1, digits) + ", " + valToStr(place.y + 1, digits);
    double longitude = 0, latitude = 0;
    if (sky.isSet() && sky.toSky(place.x, place.y, longitude, latitude))
        text += ", " + nameOf(sky.skyFrame()) + " " + valToStr(longitude, skyDigits) + " " +
                valToStr(latitude, skyDigits) + " deg";
    return text;
}

}  // namespace

struct PositionVelocity::Work {
    CubePart part;
    LinePath path;
    Samples samples;
    MapHeader header;
    std::vector<std::string> history;
    std::string note;
    int firstRow = 0, lastRow = 0;
    std::optional<RowsOfPlane> plane;
};

PositionVelocity::PositionVelocity() = default;

PositionVelocity::~PositionVelocity() = default;

int PositionVelocity::begin(const CubePart& part, const MapHeader& header, const ProfileLine& line,
                            std::string& error)
{
    work_.reset();
    if (part.planes.empty() || part.rows < 1 || part.columns < 1)
        return error = "has no planes", 0;
    try {
        auto work = std::make_unique<Work>();
        Work& w = *work;
        w.part = part;
        if (!w.path.init(line, error))
            return 0;
        if (!(w.path.length() >= step))
            return error = "the line is shorter than half a cell", 0;
        SkyCoordinates sky;
        std::string noSky;
        (void)sky.init(header, noSky);
        const MapFrame frame = frameOf(header, part.rows, part.columns);
        w.samples = samplesOf(w.path, sky, frame);
        const NoCells size(part.rows, part.columns);
        if (std::none_of(w.samples.cells.begin(), w.samples.cells.end(), [&](double at) {
                return std::isfinite(w.path.value(size, w.path.at(at)));
            }))
            return error = "the line, with its width, lies nowhere on the map", 0;
        double first = 0, last = 0;
        w.path.rows(first, last);
        const double end = part.rows - 1;
        w.firstRow =
            part.isWhole ? 0 : static_cast<int>(std::floor(std::clamp(first - nothing, 0.0, end)));
        w.lastRow = static_cast<int>(std::ceil(std::clamp(last + nothing, 0.0, end)));
        w.plane.emplace(w.part, w.firstRow, w.lastRow);
        const SpectralAxis spectral = SpectralAxis::of(header);
        double beside = 0;
        const MapAxis planes = planeAxis(spectral, header, part.planes, beside);
        if (!std::isfinite(planes.crval) || !std::isfinite(planes.cdelt) || planes.cdelt == 0)
            return error = "has planes without a velocity", 0;
        w.header = headerOnAxes(header, offsetAxis(w.samples), planes);
        if (beside > mostBeside)
            w.note = "the axis of velocities has equal steps; the outermost planes lie " +
                     valToStr(beside, 2) + " planes beside it";
        const auto corners = static_cast<int>(line.corners.size());
        for (int i = 0; i < corners; ++i)
            w.history.push_back(
                (i == 0 ? "pavane: position-velocity map along the line from " : "pavane: to ") +
                placeText(line.corners[static_cast<std::size_t>(i)], sky));
        static constexpr const char* names[] = {"mean", "greatest", "sum"};
        if (line.width > 1)
            w.history.push_back(std::string("pavane: ") + names[static_cast<int>(line.across)] +
                                " of a width of " + valToStr(line.width, digits) + " cells");
        work_ = std::move(work);
    } catch (const std::bad_alloc&) {
        error = "there is no memory for the line or the rows that it crosses";
    }
    return work_ != nullptr;
}

int PositionVelocity::rows() const
{
    return work_ ? static_cast<int>(work_->part.planes.size()) : 0;
}

int PositionVelocity::columns() const
{
    return work_ ? static_cast<int>(work_->samples.cells.size()) : 0;
}

const MapHeader& PositionVelocity::header() const
{
    static const MapHeader none;
    return work_ ? work_->header : none;
}

std::vector<std::string> PositionVelocity::history() const
{
    return work_ ? work_->history : std::vector<std::string>();
}

const std::string& PositionVelocity::note() const
{
    static const std::string none;
    return work_ ? work_->note : none;
}

int PositionVelocity::read(int row, float* values, std::string& error)
{
    if (row < 0 || row >= rows())
        return error = "has no such plane", 0;
    Work& w = *work_;
    const int plane = w.part.planes[static_cast<std::size_t>(row)].plane;
    if (!w.plane->read(plane, w.lastRow - w.firstRow + 1, error))
        return 0;
    for (const double at : w.samples.cells)
        *values++ = static_cast<float>(w.path.value(*w.plane, w.path.at(at)));
    return 1;
}

}  // namespace pavane
