#include "pavane/calibration/BaselineReader.h"

#include "pavane/calibration/closure_point.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::size_t mostPairs = 1 << 22;
constexpr double degreesOfRadian = 57.295779513082320877;
constexpr double halfTurn = 180;

UvMarks withStokes(UvMarks marks, const UvHeader& header)
{
    if (!marks.stokes.count())
        marks.stokes = usualStokes(header);
    return marks;
}

template <class Value>
void reorder(std::vector<Value>& values, const std::vector<std::size_t>& order)
{
    std::vector<Value> sorted;
    sorted.reserve(values.size());
    for (const std::size_t i : order)
        if (i < values.size())
            sorted.push_back(values[i]);
    values = std::move(sorted);
}

}  // namespace

BaselineReader::BaselineReader(AUVXFile& file, std::vector<UvBaseline> baselines, BaselinePlot plot,
                               UvMarks marks, const AComponents& model)
    : file_(file), baselines_(std::move(baselines)), plot_(plot),
      marks_(withStokes(std::move(marks), file.header())), model_(model), choice_(file, marks_),
      cells_(file, choice_, {}), indices_(mostPairs), series_(baselines_.size())
{
    for (std::size_t i = 0; i < baselines_.size(); ++i) {
        const UvBaseline& b = baselines_[i];
        const auto [low, high] = std::minmax(b.first, b.second);
        const int index = static_cast<int>(i) + 1;
        (void)indices_.of({b.subarray, low, high}, index);
        (void)indices_.of({b.subarray, high, low}, -index);
    }
    if (plot == BaselinePlot::channels)
        channels_.assign(baselines_.size(), std::vector<Sums>(static_cast<std::size_t>(
                                                file.header().ifs * file.header().channels)));
}

double BaselineReader::done() const
{
    const std::int64_t groups = file_.header().groups;
    return groups > 0 ? static_cast<double>(next_) / static_cast<double>(groups) : 1;
}

int BaselineReader::step(std::int64_t bytes)
{
    try {
        return goOn(bytes);
    } catch (const std::bad_alloc&) {
        error_ = "needs more memory than there is";
        return 0;
    }
}

int BaselineReader::goOn(std::int64_t bytes)
{
    const int what = UvGroups::baselines | UvGroups::origins | UvGroups::times |
                     UvGroups::cellValues | (model_.count() > 0 ? UvGroups::places : 0);
    const std::int64_t groups = file_.header().groups;
    for (std::int64_t left = bytes; left > 0 && next_ < groups;) {
        const auto count =
            static_cast<int>(std::min<std::int64_t>(file_.blockGroups(), groups - next_));
        if (!error_.empty())
            return 0;
        if (!file_.readGroups(next_, count, what, groups_)) {
            error_ = "has become shorter while it was read";
            return 0;
        }
        for (int i = 0; i < count; ++i)
            takeGroup(i);
        next_ += count;
        left -= count * file_.groupBytes();
    }
    if (next_ < groups)
        return 1;
    if (!std::exchange(isFinished_, 1))
        finish();
    return 0;
}

void BaselineReader::addTo(Sums& sums, std::size_t cell) const
{
    if (!(leg_.valid[cell] > 0))
        return;
    const double weight = 1 / leg_.variance[cell];
    sums.data += weight * std::complex<double>(leg_.real[cell], leg_.imaginary[cell]);
    sums.weight += weight;
    if (model_.count() > 0)
        sums.model += weight * values_[cell];
}

void BaselineReader::takeGroup(int i)
{
    const auto g = static_cast<std::size_t>(i);
    const int* const index =
        indices_.of({groups_.subarray[g], groups_.antenna1[g], groups_.antenna2[g]}, 0);
    const double time = groups_.time[g];
    if (!index || !*index || !std::isfinite(time) || !marks_.times.holds(time))
        return;
    const double* const frequencies = choice_.frequenciesOf(groups_, g);
    if (!frequencies || !leg_.take(groups_, i, cells_, frequencies, *index > 0 ? 1 : -1))
        return;
    const std::size_t count = cells_.count();
    if (model_.count() > 0) {
        u_.resize(count);
        v_.resize(count);
        values_.resize(count);
        for (std::size_t k = 0; k < count; ++k) {
            const double hertz = frequencies[cells_.cells[k].frequency];
            u_[k] = leg_.u * hertz;
            v_[k] = leg_.v * hertz;
        }
        model_.VfromUV(u_.data(), v_.data(), static_cast<int>(count), values_.data());
    }
    const auto baseline = static_cast<std::size_t>(std::abs(*index) - 1);
    if (plot_ == BaselinePlot::channels) {
        for (std::size_t k = 0; k < count; ++k)
            addTo(channels_[baseline][static_cast<std::size_t>(cells_.cells[k].frequency)], k);
        return;
    }
    Sums sums;
    for (std::size_t k = 0; k < count; ++k)
        addTo(sums, k);
    append(series_[baseline], time, sums);
}

void BaselineReader::append(BaselineSeries& series, double x, const Sums& sums)
{
    if (!(sums.weight > 0))
        return;
    if (points_ >= mostPoints) {
        error_ = "has more visibilities than are kept; choose fewer times or baselines";
        return;
    }
    ++points_;
    const std::complex<double> mean = sums.data / sums.weight;
    const double amplitude = std::abs(mean);
    const double error = 1 / std::sqrt(sums.weight);
    const double phaseError = amplitude > 0 ? error / amplitude * degreesOfRadian : halfTurn;
    series.x.push_back(x);
    series.amplitude.push_back(static_cast<float>(amplitude));
    series.amplitudeError.push_back(static_cast<float>(error));
    series.phase.push_back(static_cast<float>(degreesOf(mean)));
    series.phaseError.push_back(static_cast<float>(std::min(phaseError, halfTurn)));
    if (model_.count() > 0) {
        series.modelAmplitude.push_back(static_cast<float>(std::abs(sums.model) / sums.weight));
        series.modelPhase.push_back(static_cast<float>(degreesOf(sums.model)));
    }
}

/// Groups of a baseline may have come in any order.
void BaselineReader::finish()
{
    for (std::size_t b = 0; b < channels_.size(); ++b)
        for (std::size_t c = 0; c < channels_[b].size(); ++c)
            append(series_[b], static_cast<double>(c + 1), channels_[b][c]);
    for (BaselineSeries& s : series_) {
        if (std::is_sorted(s.x.begin(), s.x.end()))
            continue;
        std::vector<std::size_t> order(s.x.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return s.x[a] < s.x[b]; });
        reorder(s.x, order);
        for (std::vector<float>* each : {&s.amplitude, &s.amplitudeError, &s.phase, &s.phaseError,
                                         &s.modelAmplitude, &s.modelPhase})
            reorder(*each, order);
    }
}

}  // namespace pavane
