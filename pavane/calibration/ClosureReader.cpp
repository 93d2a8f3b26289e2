#include "pavane/calibration/ClosureReader.h"

#include "pavane/calibration/closure_products.h"
#include "pavane/calibration/series_order.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// Of what is averaged at once; of more the averages end early.
constexpr std::size_t mostOpenSums = std::size_t{1} << 22;
/// What counting is of all that is done.
constexpr double shareOfCount = 0.4;

/// Of those that have points.
template <class Item>
std::vector<Item> withPoints(std::vector<Item> items)
{
    std::erase_if(items, [](const Item& item) { return item.points <= 0; });
    return items;
}

}  // namespace

ClosureReader::ClosureReader(AUVXFile& file, ClosureChoice choice, UvMarks marks,
                             const ClosureAveraging& averaging, const AComponents& model)
    : file_(file), choice_(std::move(choice)), marks_(std::move(marks)), averaging_(averaging),
      model_(model)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    if (choice_.independent)
        counter_ = std::make_unique<ClosureCounter>(file_, std::exchange(choice_.triangles, {}),
                                                    std::exchange(choice_.quads, {}), marks_,
                                                    averaging_.split);
}

ClosureReader::~ClosureReader() = default;

double ClosureReader::done() const
{
    if (counter_)
        return shareOfCount * counter_->done();
    const double before = choice_.independent ? shareOfCount : 0;
    return isOver_ ? 1 : reader_ ? before + (1 - before) * reader_->done() : before;
}

const std::string& ClosureReader::error() const
{
    return error_.empty() && reader_ ? reader_->error() : error_;
}

const std::vector<UvCells::Part>& ClosureReader::parts() const
{
    static const std::vector<UvCells::Part> none;
    return reader_ ? reader_->cells().parts : none;
}

const ClosureSeries& ClosureReader::series(std::size_t triangle, std::size_t part) const
{
    static const ClosureSeries none;
    const std::size_t at = triangle * parts().size() + part;
    return part < parts().size() && at < series_.size() ? series_[at] : none;
}

const ClosureRatios& ClosureReader::ratios(std::size_t quad, std::size_t part) const
{
    static const ClosureRatios none;
    const std::size_t at = quad * parts().size() + part;
    return part < parts().size() && at < ratios_.size() ? ratios_[at] : none;
}

// --- reading

int ClosureReader::step(std::int64_t bytes)
{
    if (isOver_ || !error_.empty())
        return 0;
    try {
        if (counter_)
            return countPoints(bytes);
        if (!reader_) {
            legs_ = ClosureLegs(choice_.triangles, choice_.quads);
            reader_ = std::make_unique<MomentReader>(file_, marks_, averaging_.split,
                                                     legs_.baselines, model_.count() > 0);
        }
        if (reader_->step(bytes, *this) && error_.empty())
            return 1;
        finish();
    } catch (const std::bad_alloc&) {
        error_ = "needs more memory than there is";
    }
    return 0;
}

int ClosureReader::countPoints(std::int64_t bytes)
{
    if (counter_->step(bytes))
        return 1;
    error_ = counter_->error();
    if (error_.empty()) {
        choice_.triangles = independentTriangles(withPoints(counter_->triangles()));
        choice_.quads = independentQuads(withPoints(counter_->quads()));
        if (choice_.triangles.empty() && choice_.quads.empty())
            error_ = "has no telescopes whose baselines all have good visibilities at one time";
    }
    counter_.reset();
    return error_.empty();
}

void ClosureReader::restart()
{
    series_.clear();
    ratios_.clear();
    bins_.clear();
    openSums_ = 0;
    points_ = 0;
    if ((choice_.triangles.size() + choice_.quads.size()) * parts().size() > mostSeries) {
        error_ = "has more closure phases at a time than are kept apart; choose fewer";
        return;
    }
    series_.resize(choice_.triangles.size() * parts().size());
    ratios_.resize(choice_.quads.size() * parts().size());
}

/// What is averaged ends here; series of several origins have come in turns.
void ClosureReader::finish()
{
    for (auto& [origin, bin] : bins_)
        flush(bin);
    for (ClosureSeries& s : series_)
        sortSeries(s.time, s.phase, s.error, s.amplitude, s.model);
    for (ClosureRatios& r : ratios_)
        sortSeries(r.time, r.ratio, r.error, r.model);
    isOver_ = 1;
}

/// An empty one, or that to which the moment belongs.
ClosureReader::Bin& ClosureReader::binOf(const UvMoment& moment,
                                         const ClosureLegs::Members& members)
{
    const std::size_t sums = members.count() * parts().size();
    // without averages in time one serves all
    const int isAveraged = averaging_.seconds > 0;
    const int key = isAveraged ? moment.origin : -1;
    if (!bins_.contains(key) && openSums_ + sums > mostOpenSums) {
        for (auto& [origin, bin] : bins_)
            flush(bin);
        bins_.clear();
        openSums_ = 0;
    }
    Bin& bin = bins_[key];
    const double number =
        isAveraged ? std::floor(moment.time() * secondsPerDay / averaging_.seconds) : 0;
    if (bin.members && (!isAveraged || bin.number != number))
        flush(bin);
    if (!bin.members) {
        openSums_ += sums;
        bin.members = &members;
        bin.number = number;
        bin.phases.assign(members.triangles.size() * parts().size(), {});
        bin.ratios.assign(members.quads.size() * parts().size(), {});
    }
    return bin;
}

void ClosureReader::take(UvMoment& moment)
{
    const auto found = legs_.subarrays.find(moment.subarray);
    if (found == legs_.subarrays.end() || !error_.empty())
        return;
    const ClosureLegs::Members& members = found->second;
    Bin& bin = binOf(moment, members);
    if (model_.count() > 0)
        addModel(moment);
    findCells(moment);
    for (std::size_t i = 0; i < members.triangles.size(); ++i)
        addTriangle(moment, members.triangles[i], bin.phases.data() + i * parts().size());
    for (std::size_t i = 0; i < members.quads.size(); ++i)
        addQuad(moment, members.quads[i], bin.ratios.data() + i * parts().size());
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
            leg.modelReal[i] = static_cast<float>(values_[i].real());
            leg.modelImaginary[i] = static_cast<float>(values_[i].imag());
        }
    }
}

/// Where the numbers of the moment's legs stand; those of the model may be of any size.
void ClosureReader::findCells(const UvMoment& moment)
{
    data_.resize(moment.legs.size());
    modelData_.resize(model_.count() > 0 ? moment.legs.size() : 0);
    for (std::size_t b = 0; b < moment.legs.size(); ++b) {
        const UvLeg& leg = moment.legs[b];
        data_[b] = {leg.real.data(),  leg.imaginary.data(), leg.variance.data(),
                    leg.valid.data(), leg.isWhole,          leg.isTame};
        if (model_.count() > 0)
            modelData_[b] = {leg.modelReal.data(), leg.modelImaginary.data(),
                             leg.variance.data(),  leg.valid.data(),
                             leg.isWhole,          0};
    }
}

namespace
{

template <std::size_t count>
int areThere(const UvMoment& moment, const std::array<ClosureLegs::Leg, count>& legs)
{
    return std::all_of(legs.begin(), legs.end(),
                       [&](const ClosureLegs::Leg& leg) { return moment.has[leg.baseline] != 0; });
}

template <std::size_t count>
std::array<SignedLeg, count> signedLegs(const std::array<ClosureLegs::Leg, count>& legs,
                                        const std::vector<LegCells>& cells)
{
    std::array<SignedLeg, count> found{};
    for (std::size_t k = 0; k < count; ++k)
        found[k] = {&cells[legs[k].baseline], legs[k].sign};
    return found;
}

}  // namespace

void ClosureReader::addTriangle(const UvMoment& moment, std::size_t triangle, PhaseSums* sums) const
{
    const std::array<ClosureLegs::Leg, 3>& legs = legs_.triangles[triangle];
    if (!areThere(moment, legs))
        return;
    const std::array<SignedLeg, 3> data = signedLegs(legs, data_);
    const std::vector<std::size_t>& starts = reader_->cells().starts;
    for (std::size_t part = 0; part + 1 < starts.size(); ++part, ++sums) {
        const double before = sums->data.count;
        addTripleProducts(data, starts[part], starts[part + 1], sums->data);
        sums->time += (sums->data.count - before) * moment.time();
        if (model_.count() > 0)
            sums->model +=
                tripleProducts(signedLegs(legs, modelData_), starts[part], starts[part + 1]);
    }
}

void ClosureReader::addQuad(const UvMoment& moment, std::size_t quad, RatioSums* sums) const
{
    const std::array<ClosureLegs::Leg, 4>& legs = legs_.quads[quad];
    if (!areThere(moment, legs))
        return;
    const std::array<SignedLeg, 4> data = signedLegs(legs, data_);
    const std::vector<std::size_t>& starts = reader_->cells().starts;
    for (std::size_t part = 0; part + 1 < starts.size(); ++part, ++sums) {
        const double before = sums->data.count;
        addAmplitudeProducts(data, starts[part], starts[part + 1], sums->data);
        sums->time += (sums->data.count - before) * moment.time();
        if (model_.count() > 0)
            addAmplitudeProducts(signedLegs(legs, modelData_), starts[part], starts[part + 1],
                                 sums->model);
    }
}

/// Non-zero while points may be kept.
int ClosureReader::hasRoom()
{
    if (points_ < mostPoints)
        return ++points_ > 0;
    error_ = "has more closure phases than are kept; average them over longer times";
    return 0;
}

void ClosureReader::flush(Bin& bin)
{
    if (!bin.members)
        return;
    const ClosureLegs::Members& members = *std::exchange(bin.members, nullptr);
    const std::size_t count = parts().size();
    openSums_ -= members.count() * count;
    const PhaseSums* phase = bin.phases.data();
    for (const std::size_t triangle : members.triangles)
        for (std::size_t part = 0; part < count; ++part, ++phase)
            append(*phase, series_[triangle * count + part]);
    const RatioSums* ratio = bin.ratios.data();
    for (const std::size_t quad : members.quads)
        for (std::size_t part = 0; part < count; ++part, ++ratio)
            append(*ratio, ratios_[quad * count + part]);
}

void ClosureReader::append(const PhaseSums& sums, ClosureSeries& series)
{
    ClosurePoint point;
    if (!closurePoint(sums.data, point) || !hasRoom())
        return;
    series.time.push_back(sums.time / sums.data.count);
    series.phase.push_back(static_cast<float>(point.phase));
    series.error.push_back(static_cast<float>(point.error));
    series.amplitude.push_back(nearestFloat(point.amplitude));
    if (model_.count() > 0)
        series.model.push_back(static_cast<float>(degreesOf(sums.model)));
}

void ClosureReader::append(const RatioSums& sums, ClosureRatios& ratios)
{
    ClosureAmplitude amplitude;
    if (!closureAmplitude(sums.data, amplitude) || !hasRoom())
        return;
    ratios.time.push_back(sums.time / sums.data.count);
    ratios.ratio.push_back(nearestFloat(amplitude.ratio));
    ratios.error.push_back(nearestFloat(amplitude.error));
    ClosureAmplitude model;
    if (model_.count() > 0) {
        (void)closureAmplitude(sums.model, model);
        ratios.model.push_back(nearestFloat(model.ratio));
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

double chiSquaredOf(const ClosureRatios& ratios)
{
    double sum = 0;
    for (std::size_t i = 0; i < ratios.model.size(); ++i)
        if (const double error = ratios.error[i]; error > 0) {
            const double miss = (double{ratios.ratio[i]} - ratios.model[i]) / error;
            sum += miss * miss;
        }
    return ratios.model.empty() ? 0 : sum / static_cast<double>(ratios.model.size());
}

}  // namespace pavane
