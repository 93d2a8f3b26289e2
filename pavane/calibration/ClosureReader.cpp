#include "pavane/calibration/ClosureReader.h"

#include "pavane/calibration/closure_products.h"
#include "pavane/calibration/phase_kernels.h"

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
/// Telescopes of all subarrays of which every triangle is thought possible.
constexpr std::size_t mostPossible = 64;

/// All pairs of telescopes of a subarray; none of too many telescopes.
std::vector<UvBaseline> possibleBaselines(const std::vector<AUVXTlscItem>& telescopes)
{
    std::vector<UvBaseline> pairs;
    if (telescopes.size() <= mostPossible)
        for (const AUVXTlscItem& a : telescopes)
            for (const AUVXTlscItem& b : telescopes)
                if (a.subarray == b.subarray && a.number < b.number)
                    pairs.push_back({a.subarray, a.number, b.number, 1});
    return pairs;
}

}  // namespace

ClosureReader::ClosureReader(AUVXFile& file, ClosureChoice choice, UvMarks marks,
                             const ClosureAveraging& averaging, const AComponents& model)
    : file_(file), choice_(std::move(choice)), marks_(std::move(marks)), averaging_(averaging),
      model_(model)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    if (!choice_.isOfFile)
        return;
    const std::vector<UvBaseline> possible = possibleBaselines(file.telescopes());
    choice_.triangles = closureTriangles(telescopesOf(possible), possible);
    if (choice_.triangles.empty())
        scan_ = std::make_unique<UvGroupScan>(file_, UvGroupScan::baselines, marks_.times);
}

ClosureReader::~ClosureReader() = default;

double ClosureReader::done() const
{
    const double part = scan_ ? scan_->done() : reader_ ? reader_->done() : 0;
    return isOver_ ? 1 : before_ + share_ * part;
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
        if (scan_)
            return findTriangles(bytes);
        if (!reader_)
            beginPass();
        return (reader_->step(bytes, *this) && error_.empty()) || endPass();
    } catch (const std::bad_alloc&) {
        error_ = "needs more memory than there is";
    }
    return 0;
}

void ClosureReader::restart()
{
    if (counter_) {
        counter_->restart(reader_->cells());
        guess();
    }
    bins_.clear();
    openSums_ = 0;
    if ((choice_.triangles.size() + choice_.quads.size()) * parts().size() > mostSeries) {
        error_ = "has more closure phases at a time than are kept apart; choose fewer";
        return;
    }
    const auto forget = [&](auto& series, std::size_t index) {
        for (std::size_t part = 0; part < parts().size(); ++part) {
            auto& one = series[index * parts().size() + part];
            points_ -= one.count();
            one = {};
        }
    };
    series_.resize(choice_.triangles.size() * parts().size());
    ratios_.resize(choice_.quads.size() * parts().size());
    needed_.assign(legs_.baselines.size(), 0);
    for (const auto& [subarray, members] : legs_.subarrays) {
        for (const std::size_t t : members.triangles) {
            forget(series_, t);
            for (const ClosureLegs::Leg& leg : legs_.triangles[t])
                needed_[leg.baseline] = 1;
        }
        for (const std::size_t q : members.quads) {
            forget(ratios_, q);
            for (const ClosureLegs::Leg& leg : legs_.quads[q])
                needed_[leg.baseline] = 1;
        }
    }
}

void ClosureReader::flushAll()
{
    for (auto& [origin, bin] : bins_)
        flush(bin);
    bins_.clear();
    openSums_ = 0;
}

/// An empty one, or that to which the moment belongs.
ClosureReader::Bin& ClosureReader::binOf(const UvMoment& moment,
                                         const ClosureLegs::Members& members)
{
    const std::size_t sums = members.count() * parts().size();
    // without averages in time one serves all
    const int isAveraged = averaging_.seconds > 0;
    const int key = isAveraged ? moment.origin : -1;
    if (!bins_.contains(key) && openSums_ + sums > mostOpenSums)
        flushAll();
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
    if (!error_.empty())
        return;
    if (counter_)
        counter_->take(moment);
    const auto found = legs_.subarrays.find(moment.subarray);
    if (found == legs_.subarrays.end() || !found->second.count())
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
        if (!moment.has[b] || !needed_[b])
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

int ClosureReader::refuseMore()
{
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
    appendPhases(members, bin.phases);
    const RatioSums* ratio = bin.ratios.data();
    for (const std::size_t quad : members.quads)
        for (std::size_t part = 0; part < count; ++part, ++ratio)
            append(*ratio, ratios_[quad * count + part]);
}

void ClosureReader::appendPhases(const ClosureLegs::Members& members,
                                 const std::vector<PhaseSums>& sums)
{
    const std::size_t all = sums.size();
    sums_.resize(4 * all);
    points32_.resize(3 * all);
    double* const real = sums_.data();
    for (std::size_t i = 0; i < all; ++i) {
        real[i] = sums[i].data.product.real();
        real[all + i] = sums[i].data.product.imag();
        real[2 * all + i] = sums[i].data.variance;
        real[3 * all + i] = sums[i].data.count;
    }
    float* const phase = points32_.data();
    closurePoints({real, real + all, real + 2 * all, real + 3 * all}, all,
                  {phase, phase + all, phase + 2 * all});
    const std::size_t count = parts().size();
    std::size_t i = 0;
    for (const std::size_t triangle : members.triangles)
        for (std::size_t part = 0; part < count; ++part, ++i) {
            const double products = sums[i].data.count;
            if (!(products > 0) || !hasRoom())
                continue;
            ClosureSeries& series = series_[triangle * count + part];
            series.time.push_back(sums[i].time / products);
            series.phase.push_back(phase[i]);
            series.error.push_back(phase[all + i]);
            series.amplitude.push_back(phase[2 * all + i]);
            if (model_.count() > 0)
                series.model.push_back(static_cast<float>(degreesOf(sums[i].model)));
        }
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

}  // namespace pavane
