#include "pavane/calibration/ClosureReader.h"

#include "pavane/calibration/triple_products.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <tuple>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;

}  // namespace

ClosureReader::ClosureReader(AUVXFile& file, std::vector<ClosureTriangle> triangles, UvMarks marks,
                             const ClosureAveraging& averaging, const AComponents& model)
    : file_(file), triangles_(std::move(triangles)), marks_(std::move(marks)),
      averaging_(averaging), model_(model)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    std::map<std::tuple<int, int, int>, std::size_t> indices;
    for (std::size_t t = 0; t < triangles_.size(); ++t) {
        const ClosureTriangle& triangle = triangles_[t];
        std::array<Leg, 3>& legs = legs_.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            const int a = triangle.telescopes[k];
            const int b = triangle.telescopes[(k + 1) % 3];
            const auto [found, isNew] = indices.emplace(
                std::tuple(triangle.subarray, std::min(a, b), std::max(a, b)), baselines_.size());
            if (isNew)
                baselines_.push_back({triangle.subarray, std::min(a, b), std::max(a, b), 0});
            legs[k] = {found->second, a < b ? 1.0 : -1.0};
        }
        subarrays_[triangle.subarray].triangles.push_back(t);
    }
    reader_ = std::make_unique<MomentReader>(file_, marks_, averaging_.split, baselines_,
                                             model_.count() > 0);
    restart();
}

ClosureReader::~ClosureReader() = default;

double ClosureReader::done() const { return reader_->done(); }

const std::string& ClosureReader::error() const
{
    return error_.empty() ? reader_->error() : error_;
}

void ClosureReader::restart()
{
    series_.assign(triangles_.size() * parts().size(), {});
    sums_.assign(series_.size(), {});
    points_ = 0;
    for (auto& [number, subarray] : subarrays_)
        subarray.isOpen = 0;
}

int ClosureReader::step(std::int64_t bytes)
{
    if (!error_.empty())
        return 0;
    const int goesOn = reader_->step(bytes, *this);
    if (!goesOn && reader_->error().empty())
        try {
            for (auto& [number, subarray] : subarrays_)
                flush(subarray);
        } catch (const std::bad_alloc&) {
            error_ = "needs more memory than there is";
        }
    return goesOn && error_.empty();
}

void ClosureReader::take(UvMoment& moment)
{
    const auto found = subarrays_.find(moment.subarray);
    if (found == subarrays_.end())
        return;
    Subarray& subarray = found->second;
    const double seconds = moment.time() * secondsPerDay;
    const Bin bin = {moment.source, moment.selection,
                     averaging_.seconds > 0 ? std::floor(seconds / averaging_.seconds) : 0};
    if (!(averaging_.seconds > 0) || bin != subarray.bin)
        flush(subarray);
    subarray.bin = bin;
    subarray.isOpen = 1;
    if (model_.count() > 0)
        addModel(moment);
    for (const std::size_t triangle : subarray.triangles)
        addTriangle(moment, triangle);
}

/// The model's visibilities at the places of the legs.
void ClosureReader::addModel(UvMoment& moment)
{
    const UvCells& cells = reader_->cells();
    const std::size_t count = cells.count();
    u_.resize(count);
    v_.resize(count);
    values_.resize(count);
    for (std::size_t b = 0; b < moment.legs.size(); ++b) {
        if (!moment.has[b])
            continue;
        UvLeg& leg = moment.legs[b];
        for (std::size_t i = 0; i < count; ++i) {
            const double hertz = moment.frequencies[cells.cells[i].frequency];
            u_[i] = leg.u * hertz;
            v_[i] = leg.v * hertz;
        }
        model_.VfromUV(u_.data(), v_.data(), static_cast<int>(count), values_.data());
        leg.modelReal.resize(count);
        leg.modelImaginary.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            leg.modelReal[i] = values_[i].real();
            leg.modelImaginary[i] = values_[i].imag();
        }
    }
}

void ClosureReader::addTriangle(const UvMoment& moment, std::size_t triangle)
{
    std::array<LegCells, 3> legs;
    std::array<LegCells, 3> modelLegs;
    for (std::size_t k = 0; k < 3; ++k) {
        const Leg& leg = legs_[triangle][k];
        if (!moment.has[leg.baseline])
            return;
        const UvLeg& cells = moment.legs[leg.baseline];
        legs[k] = {cells.real.data(), cells.imaginary.data(), cells.variance.data(),
                   cells.valid.data(), leg.sign};
        modelLegs[k] = {cells.modelReal.data(), cells.modelImaginary.data(), cells.variance.data(),
                        cells.valid.data(), leg.sign};
    }
    const std::vector<std::size_t>& starts = reader_->cells().starts;
    for (std::size_t part = 0; part + 1 < starts.size(); ++part) {
        Sums& sums = sums_[triangle * parts().size() + part];
        const double before = sums.data.count;
        addTripleProducts(legs, starts[part], starts[part + 1], sums.data);
        sums.time += (sums.data.count - before) * moment.time();
        if (model_.count() > 0)
            sums.model += tripleProducts(modelLegs, starts[part], starts[part + 1]);
    }
}

void ClosureReader::flush(Subarray& subarray)
{
    if (!subarray.isOpen)
        return;
    subarray.isOpen = 0;
    for (const std::size_t triangle : subarray.triangles)
        for (std::size_t part = 0; part < parts().size(); ++part) {
            const std::size_t at = triangle * parts().size() + part;
            const Sums sums = std::exchange(sums_[at], {});
            ClosurePoint point;
            if (!closurePoint(sums.data, point))
                continue;
            if (points_ >= mostPoints) {
                error_ = "has more closure phases than are kept; average them over longer times";
                return;
            }
            ++points_;
            ClosureSeries& series = series_[at];
            series.time.push_back(sums.time / sums.data.count);
            series.phase.push_back(static_cast<float>(point.phase));
            series.error.push_back(static_cast<float>(point.error));
            series.amplitude.push_back(nearestFloat(point.amplitude));
            if (model_.count() > 0)
                series.model.push_back(static_cast<float>(degreesOf(sums.model)));
        }
}

ClosureStatistics statisticsOf(const ClosureSeries& series)
{
    ClosureStatistics found;
    found.count = series.count();
    if (!found.count)
        return found;
    constexpr double radians = 0.017453292519943295769;
    std::complex<double> sum{};
    for (const float phase : series.phase)
        sum += std::polar(1.0, phase * radians);
    found.mean = degreesOf(sum);
    double squares = 0;
    double chiSquared = 0;
    for (std::size_t i = 0; i < series.count(); ++i) {
        const double away = wrappedDegrees(series.phase[i] - found.mean);
        squares += away * away;
        if (series.model.empty() || !(series.error[i] > 0))
            continue;
        const double miss = wrappedDegrees(double{series.phase[i]} - series.model[i]);
        chiSquared += miss * miss / (double{series.error[i]} * series.error[i]);
    }
    const auto count = static_cast<double>(found.count);
    found.scatter = std::sqrt(squares / count);
    found.chiSquared = chiSquared / count;
    return found;
}

}  // namespace pavane
