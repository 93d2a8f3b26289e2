#include "pavane/calibration/BaselineReader.h"

#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/series_order.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::size_t mostPairs = 1 << 22;
constexpr double degreesOfRadian = 57.295779513082320877;
constexpr double halfTurn = 180;
constexpr double secondsPerDay = 86400;
/// Times of groups are exact to the millisecond.
constexpr double slack = 5e-4;
constexpr std::size_t mostSeries = std::size_t{1} << 19;

std::size_t partsOf(const AUVXFile& file, UvColour colour)
{
    return colour == UvColour::ifs      ? static_cast<std::size_t>(std::max(1, file.header().ifs))
           : colour == UvColour::source ? file.sources().size() + 1
                                        : 1;
}

UvMarks withStokes(UvMarks marks, const UvHeader& header)
{
    if (!marks.stokes.count())
        marks.stokes = usualStokes(header);
    return marks;
}

}  // namespace

BaselineReader::BaselineReader(AUVXFile& file, std::vector<UvBaseline> baselines, BaselinePlot plot,
                               UvMarks marks, const AComponents& model, std::size_t mostSums,
                               const BaselineDivision& division)
    : file_(file), baselines_(std::move(baselines)), plot_(plot),
      marks_(withStokes(std::move(marks), file.header())), division_(division),
      parts_(partsOf(file, division.colour)), model_(model), choice_(file, marks_), slices_(file),
      indices_(mostPairs), mostSums_(mostSums)
{
    if (parts_ > mostSeries / std::max<std::size_t>(1, baselines_.size())) {
        slices_.fail("has more IFs or sources of baselines than are told apart");
        parts_ = 1;
    }
    series_.resize(baselines_.size() * parts_);
    for (std::size_t i = 0; i < baselines_.size(); ++i) {
        const UvBaseline& b = baselines_[i];
        const auto [low, high] = std::minmax(b.first, b.second);
        const int index = static_cast<int>(i) + 1;
        (void)indices_.of({b.subarray, low, high}, index);
        (void)indices_.of({b.subarray, high, low}, -index);
    }
}

int BaselineReader::step(std::int64_t bytes)
{
    const int what = UvGroups::baselines | UvGroups::origins | UvGroups::times |
                     UvGroups::cellValues | UvGroups::storedCells |
                     (model_.count() > 0 ? UvGroups::places : 0);
    const int goesOn = slices_.step(bytes, what, [this](const UvGroups& groups) {
        if (!std::exchange(hasCells_, 1))
            cells_ = UvCells(file_, choice_, {division_.colour == UvColour::ifs, 0});
        isFresh_ = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(groups.count); ++i)
            takeGroup(groups, i);
    });
    if (!goesOn && error().empty())
        for (auto& [of, mean] : open_)
            endMean(std::get<0>(of), mean);
    if (!goesOn)
        refresh();
    if (!goesOn && !points_ && channels_.empty() && !baselines_.empty() && error().empty())
        slices_.fail("has no good visibilities of what is chosen");
    return goesOn;
}

void BaselineReader::addTo(Sums& sums, std::size_t cell) const
{
    if (!(leg_.valid[cell] > 0))
        return;
    const double weight = 1 / double{leg_.variance[cell]};
    sums.data += weight * std::complex<double>(leg_.real[cell], leg_.imaginary[cell]);
    sums.weight += weight;
    if (model_.count() > 0)
        sums.model += weight * values_[cell];
}

/// The model's visibilities at the places of the leg.
void BaselineReader::addModel(const double* frequencies)
{
    const std::size_t count = cells_.count();
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

/// Null when there are too many.
std::vector<BaselineReader::Sums>* BaselineReader::channelsOf(const ChannelsOf& key)
{
    const UvHeader& header = file_.header();
    const auto count =
        static_cast<std::size_t>(header.ifs) * static_cast<std::size_t>(header.channels);
    if (const auto found = channels_.find(key); found != channels_.end())
        return &found->second;
    if (sums_ + count > mostSums_) {
        slices_.fail("has more channels than are kept; choose fewer baselines");
        return nullptr;
    }
    sums_ += count;
    return &channels_.emplace(key, count).first->second;
}

void BaselineReader::takeGroup(const UvGroups& groups, std::size_t i)
{
    const int* const index =
        indices_.of({groups.subarray[i], groups.antenna1[i], groups.antenna2[i]}, 0);
    const double time = groups.time[i];
    if (!index || !*index || !std::isfinite(time) || !marks_.times.holds(time))
        return;
    const double* const frequencies = choice_.frequenciesOf(groups, i);
    if (!frequencies ||
        !leg_.take(groups, static_cast<int>(i), cells_, frequencies, *index > 0 ? 1 : -1))
        return;
    if (model_.count() > 0)
        addModel(frequencies);
    const std::size_t first = static_cast<std::size_t>(std::abs(*index) - 1) * parts_;
    if (plot_ == BaselinePlot::channels) {
        const int selection = file_.fqTbl().selectionOf(groups.selection[i]);
        if (std::vector<Sums>* const sums =
                channelsOf({first + partOf(groups.source[i]), selection}))
            for (std::size_t k = 0; k < cells_.count(); ++k)
                addTo((*sums)[static_cast<std::size_t>(cells_.cells[k].frequency)], k);
        return;
    }
    for (std::size_t p = 0; p < cells_.parts.size(); ++p) {
        Sums sums;
        for (std::size_t k = cells_.starts[p]; k < cells_.starts[p + 1]; ++k)
            addTo(sums, k);
        const int ifIndex = cells_.parts[p].ifIndex;
        const std::size_t part = division_.colour == UvColour::ifs && ifIndex >= 0
                                     ? static_cast<std::size_t>(ifIndex)
                                     : partOf(groups.source[i]);
        if (sums.weight > 0)
            takePart(groups, i, first + part, sums);
    }
}

/// Of a group that is not divided by IFs.
std::size_t BaselineReader::partOf(int source) const
{
    if (division_.colour != UvColour::source)
        return 0;
    const UvSource* const known = file_.source(source);
    return known ? static_cast<std::size_t>(known - file_.sources().data()) : parts_ - 1;
}

void BaselineReader::takePart(const UvGroups& groups, std::size_t i, std::size_t series,
                              const Sums& sums)
{
    const double time = groups.time[i];
    if (!(division_.seconds > 0))
        return addPoint(series, time, sums);
    OpenMean& mean = open_[{series, groups.source[i], groups.selection[i]}];
    const double interval = std::floor((time * secondsPerDay + slack) / division_.seconds);
    if (interval != mean.interval)
        endMean(series, mean);
    mean.interval = interval;
    mean.time += time * sums.weight;
    mean.sums.data += sums.data;
    mean.sums.model += sums.model;
    mean.sums.weight += sums.weight;
}

void BaselineReader::endMean(std::size_t series, OpenMean& open)
{
    const OpenMean mean = std::exchange(open, OpenMean());
    if (mean.sums.weight > 0)
        addPoint(series, mean.time / mean.sums.weight, mean.sums);
}

void BaselineReader::addPoint(std::size_t series, double x, const Sums& sums)
{
    if (points_ >= mostPoints)
        return slices_.fail("has more visibilities than are kept; choose fewer times or baselines");
    ++points_;
    append(series_[series], x, sums);
}

void BaselineReader::append(BaselineSeries& series, double x, const Sums& sums) const
{
    const std::complex<double> mean = sums.data / sums.weight;
    const double amplitude = std::abs(mean);
    const double error = 1 / std::sqrt(sums.weight);
    const double phaseError = amplitude > 0 ? error / amplitude * degreesOfRadian : halfTurn;
    series.x.push_back(x);
    series.amplitude.push_back(nearestFloat(amplitude));
    series.amplitudeError.push_back(nearestFloat(error));
    series.phase.push_back(static_cast<float>(degreesOf(mean)));
    series.phaseError.push_back(static_cast<float>(std::min(phaseError, halfTurn)));
    if (model_.count() > 0) {
        series.modelAmplitude.push_back(nearestFloat(std::abs(sums.model) / sums.weight));
        series.modelPhase.push_back(static_cast<float>(degreesOf(sums.model)));
    }
}

void BaselineReader::refresh()
{
    if (std::exchange(isFresh_, 1))
        return;
    try {
        if (plot_ == BaselinePlot::channels)
            makeChannels();
        else
            for (BaselineSeries& s : series_)  // groups may have come in any order
                sortSeries(s.x, s.amplitude, s.amplitudeError, s.phase, s.phaseError,
                           s.modelAmplitude, s.modelPhase);
    } catch (const std::bad_alloc&) {
        slices_.fail("needs more memory than there is");
    }
}

void BaselineReader::makeChannels()
{
    for (BaselineSeries& series : series_)
        series = {};
    for (const auto& [key, sums] : channels_) {
        const double before = static_cast<double>(key.second) * static_cast<double>(sums.size());
        for (std::size_t c = 0; c < sums.size(); ++c) {
            const std::size_t part =
                division_.colour == UvColour::ifs
                    ? c / static_cast<std::size_t>(std::max(1, file_.header().channels))
                    : 0;
            if (sums[c].weight > 0)
                append(series_[key.first + part], before + static_cast<double>(c + 1), sums[c]);
        }
    }
}

}  // namespace pavane
