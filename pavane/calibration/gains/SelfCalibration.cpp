#include "pavane/calibration/gains/SelfCalibration.h"

#include "pavane/calibration/gains/GainApplier.h"
#include "pavane/calibration/gains/integration.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>
#include <tuple>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// What solving an interval counts as, in bytes that are read.
constexpr std::int64_t bytesOfSolution = std::int64_t{1} << 16;
/// Of all the work: finding scans, and what is read and solved afterwards.
constexpr double shareOfScan = 0.15, shareOfReading = 0.8;
/// Days by which times of a group may differ in the file of its model.
constexpr double mostTimeOff = 0.01 / secondsPerDay;
constexpr const char* otherModel = "is not what the model's visibilities were made for: ";

UvMarks withStokes(UvMarks marks, const UvHeader& header)
{
    if (!marks.stokes.count())
        marks.stokes = usualStokes(header);
    return marks;
}

}  // namespace

SelfCalibration::SelfCalibration(AUVXFile& data, const AComponents& model,
                                 SelfCalibrationRules rules, UvMarks marks)
    : data_(data), model_(model), rules_(std::move(rules)),
      marks_(withStokes(std::move(marks), data.header()))
{
}

SelfCalibration::SelfCalibration(AUVXFile& data, AUVXFile& model, SelfCalibrationRules rules,
                                 UvMarks marks)
    : data_(data), modelFile_(&model), rules_(std::move(rules)),
      marks_(withStokes(std::move(marks), data.header()))
{
}

SelfCalibration::~SelfCalibration() = default;

const AGains& SelfCalibration::gains() const { return solver_ ? solver_->gains() : none_; }

const std::vector<GainFit>& SelfCalibration::fits() const
{
    static const std::vector<GainFit> none;
    return solver_ ? solver_->fits() : none;
}

const std::vector<double>& SelfCalibration::factors() const
{
    static const std::vector<double> none;
    return solver_ ? solver_->factors() : none;
}

double SelfCalibration::wTurns() const
{
    return modelFile_ || model_.count() == 0 ? 0 : model_.wTurns(greatestW_);
}

double SelfCalibration::done() const
{
    const auto share = [](double part, double all) { return all > 0 ? part / all : 1; };
    double now = 0;
    switch (phase_) {
    case Phase::start:
        break;
    case Phase::scan:
        now = shareOfScan * (scan_ ? scan_->done() : 1);
        break;
    case Phase::read:
    case Phase::solve: {
        const double solving =
            phase_ == Phase::solve
                ? share(static_cast<double>(solved_), static_cast<double>(solved_ + toSolve_))
                : 0;
        const double pass = phase_ == Phase::solve ? shareOfReading + (1 - shareOfReading) * solving
                                                   : shareOfReading * slices_->done();
        now = shareOfScan + (1 - shareOfScan) * share(static_cast<double>(window_) + pass,
                                                      static_cast<double>(windows_));
        break;
    }
    case Phase::over:
        now = 1;
    }
    return std::max(now, told_);
}

int SelfCalibration::fail(std::string reason)
{
    if (error_.empty())
        error_ = std::move(reason);
    return 0;
}

int SelfCalibration::step(std::int64_t bytes)
{
    if (!error_.empty() || phase_ == Phase::over)
        return 0;
    told_ = done();
    try {
        return goOn(bytes);
    } catch (const std::bad_alloc&) {
        return fail("needs more memory than there is");
    }
}

int SelfCalibration::goOn(std::int64_t bytes)
{
    switch (phase_) {
    case Phase::start:
        return begin();
    case Phase::scan:
        if (scan_->step(bytes))
            return 1;
        return scan_->error().empty() ? makeFrame() : fail(scan_->error());
    case Phase::read: {
        const int what = UvGroups::times | UvGroups::baselines | UvGroups::origins |
                         UvGroups::places | UvGroups::cellValues;
        const int goesOn =
            slices_->step(bytes, what, [this](const UvGroups& groups) { take(groups); });
        if (!slices_->error().empty())
            return fail(slices_->error());
        if (!error_.empty())
            return 0;
        if (solver_->late() > 0) {
            isByWindow_ = 1;
            solver_->restart();
            counts_ = {};
            beginPass();
            return 1;
        }
        if (goesOn)
            return 1;
        toSolve_ = solver_->openCount();
        solved_ = 0;
        phase_ = Phase::solve;
        return 1;
    }
    case Phase::solve:
        for (std::int64_t left = bytes; left > 0; left -= bytesOfSolution) {
            if (!solver_->closeNext())
                return endPass();
            ++solved_;
            --toSolve_;
        }
        return 1;
    default:
        return 0;
    }
}

int SelfCalibration::begin()
{
    if (!modelFile_ && model_.count() == 0)
        return fail("cannot be calibrated on a model without components");
    if (modelFile_) {
        const UvHeader& mine = data_.header();
        const UvHeader& its = modelFile_->header();
        if (mine.groups != its.groups || mine.ifs != its.ifs || mine.channels != its.channels ||
            mine.stokes != its.stokes)
            return fail(std::string(otherModel) +
                        "groups, IFs, channels or polarisations are other ones");
    }
    if (!(rules_.leastUv < rules_.greatestUv))
        return fail("has nothing in a range of uv distances that is empty");
    if (!measureIntegration(data_, integration_))
        return fail("has become shorter while it was read");
    scan_ = std::make_unique<UvGroupScan>(data_, UvGroupScan::baselines | UvGroupScan::scans,
                                          marks_.times);
    phase_ = Phase::scan;
    return 1;
}

int SelfCalibration::makeFrame()
{
    if (!scan_->hasScans())
        return fail("has more different times than an observation has");
    AGains frame;
    if (!makeGainFrame(data_, marks_, rules_.frame, scan_->foundBaselines(), scan_->foundScans(),
                       integration_, frame, error_))
        return 0;
    scan_.reset();
    std::vector<int> references;
    if (!antennasNamed(frame, rules_.references, references, error_))
        return 0;
    for (const int more : rules_.gains.references)
        references.push_back(more);
    rules_.gains.references = std::move(references);

    choice_ = std::make_unique<UvChoice>(data_, marks_);
    const UvHeader& header = data_.header();
    for (std::size_t s = 0; s < header.stokes.size(); ++s) {
        const auto [first, second] = handsOf(header.stokes[s]);
        const int hand = frame.handOf(rules_.frame.joinsHands ? 'I' : first);
        if (first == second && hand >= 0 && choice_->takesStokes(static_cast<int>(s)) &&
            (first != 'I' || header.stokes[s] == 1))
            cells_.push_back({static_cast<std::int64_t>(s), static_cast<std::size_t>(hand)});
    }
    for (int i = 0; i < header.ifs; ++i)
        groupOf_.push_back(frame.groupOf(i));
    std::vector<std::size_t> order(frame.intervals().size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&frame](std::size_t a, std::size_t b) {
        return frame.intervals()[a].start < frame.intervals()[b].start;
    });
    place_.resize(order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        place_[order[i]] = i;
    const std::size_t antennas = frame.antennas().size();
    const std::size_t sums =
        frame.groups().size() * frame.hands().size() * (antennas * (antennas - 1) / 2);
    windowIntervals_ = std::max<std::size_t>(rules_.mostSums / std::max<std::size_t>(sums, 1), 1);
    solver_ = std::make_unique<GainSolver>(frame, rules_.gains);
    beginPass();
    return 1;
}

void SelfCalibration::beginPass()
{
    slices_ = std::make_unique<UvSlices>(data_);
    open_.clear();
    windows_ = isByWindow_ ? (place_.size() + windowIntervals_ - 1) / windowIntervals_ : 1;
    phase_ = Phase::read;
}

int SelfCalibration::endPass()
{
    if (++window_ < windows_) {
        beginPass();
        return 1;
    }
    solver_->finish();
    counts_.used = solver_->used();
    phase_ = Phase::over;
    if (solver_->gains().count(GainState::solved) == 0)
        return fail(counts_.used > 0 ? "has too few antennas, or too much noise, for a single gain"
                                     : "has no good visibilities of what is chosen");
    return 0;
}

/// The indices of the antennas of a baseline; -1 for one that the frame does not have.
std::pair<int, int> SelfCalibration::pairOf(int subarray, int first, int second)
{
    constexpr std::pair<int, int> notKnown{-2, -2};
    std::pair<int, int>* const known = pairs_.of({subarray, first, second}, notKnown);
    if (known && *known != notKnown)
        return *known;
    const AGains& frame = solver_->gains();
    const std::pair<int, int> found{frame.antennaOf(subarray, first),
                                    frame.antennaOf(subarray, second)};
    if (known)
        *known = found;
    return found;
}

void SelfCalibration::take(const UvGroups& groups)
{
    if (!error_.empty() || solver_->late() > 0)
        return;  // of what is late all is read anew
    const AGains& frame = solver_->gains();
    const int isFirst = window_ == 0;
    rows_.clear();
    for (int i = 0; i < groups.count; ++i) {
        const auto g = static_cast<std::size_t>(i);
        const double time = groups.time[g];
        if (!std::isfinite(time) || !marks_.times.holds(time))
            continue;
        const double* const frequencies = choice_->frequenciesOf(groups, g);
        if (!frequencies)
            continue;
        counts_.rows += isFirst;
        const int subarray = groups.subarray[g];
        if (groups.antenna1[g] == groups.antenna2[g]) {
            counts_.autocorrelations += isFirst;
            continue;
        }
        const auto [a, b] = pairOf(subarray, groups.antenna1[g], groups.antenna2[g]);
        const int interval = frame.intervalOf(subarray, time);
        if (a < 0 || b < 0 || interval < 0) {
            counts_.noInterval += isFirst;
            continue;
        }
        const auto at = static_cast<std::size_t>(interval);
        if (isByWindow_ && place_[at] / windowIntervals_ != window_)
            continue;
        rows_.push_back({i, at, static_cast<std::size_t>(a), static_cast<std::size_t>(b),
                         frequencies, std::hypot(groups.u[g], groups.v[g])});
    }
    if (rows_.empty())
        return;
    const UvHeader& header = data_.header();
    const auto perRow =
        static_cast<std::size_t>(header.ifs) * static_cast<std::size_t>(header.channels);
    if (modelFile_) {
        if (!readModel(groups))
            return;
    } else {
        u_.resize(rows_.size() * perRow);
        v_.resize(rows_.size() * perRow);
        values_.resize(rows_.size() * perRow);
        std::size_t at = 0;
        for (const Row& row : rows_) {
            const auto g = static_cast<std::size_t>(row.group);
            double greatest = 0;
            for (std::size_t k = 0; k < perRow; ++k, ++at) {
                u_[at] = groups.u[g] * row.frequencies[k];
                v_[at] = groups.v[g] * row.frequencies[k];
                greatest = std::max(greatest, row.frequencies[k]);
            }
            if (const double w = std::abs(groups.w[g]) * greatest; std::isfinite(w))
                greatestW_ = std::max(greatestW_, w);
        }
        model_.at(u_.data(), v_.data(), values_.size(), values_.data());
    }
    takeRows(groups);
}

void SelfCalibration::takeRows(const UvGroups& groups)
{
    const UvHeader& header = data_.header();
    const UvCellSteps steps = data_.cellSteps();
    const UvCellSteps modelSteps = modelFile_ ? modelFile_->cellSteps() : steps;
    const AGains& frame = solver_->gains();
    const std::complex<double>* model = values_.data();
    for (const Row& row : rows_) {
        const GainInterval& interval = frame.intervals()[row.interval];
        if (!isByWindow_) {
            auto now = std::find_if(open_.begin(), open_.end(), [&](const auto& one) {
                return one.first == interval.subarray;
            });
            if (now == open_.end())
                open_.emplace_back(interval.subarray, row.interval);
            else if (now->second != row.interval) {
                now->second = row.interval;
                solver_->close(interval.subarray, interval.start);
            }
        }
        const float* const cells =
            groups.cells.data() + static_cast<std::int64_t>(row.group) * steps.group;
        const float* const modelCells =
            modelFile_ ? modelGroups_.cells.data() +
                             static_cast<std::int64_t>(row.group) * modelSteps.group
                       : nullptr;
        const double* hertz = row.frequencies;
        for (int f = 0; f < header.ifs; ++f) {
            const int group = groupOf_[static_cast<std::size_t>(f)];
            for (int c = 0; c < header.channels; ++c, ++hertz, model += modelFile_ ? 0 : 1) {
                const double distance = row.distance * *hertz;
                if (group < 0 || !(*hertz > 0))
                    continue;
                if (!(distance >= rules_.leastUv && distance <= rules_.greatestUv)) {
                    counts_.outsideUv += static_cast<std::int64_t>(cells_.size());
                    continue;
                }
                for (const Cell& cell : cells_) {
                    const std::int64_t at =
                        f * steps.ifIndex + c * steps.channel + cell.stokes * steps.stokes;
                    const std::complex<double> data(cells[at], cells[at + steps.part]);
                    const double stored =
                        steps.hasWeights ? double{cells[at + 2 * steps.part]} : 1.0;
                    std::complex<double> value;
                    if (modelCells) {
                        const std::int64_t its = f * modelSteps.ifIndex + c * modelSteps.channel +
                                                 cell.stokes * modelSteps.stokes;
                        value = {modelCells[its], modelCells[its + modelSteps.part]};
                        // a baseline may be stored the other way round
                        if (modelGroups_.antenna1[static_cast<std::size_t>(row.group)] !=
                            groups.antenna1[static_cast<std::size_t>(row.group)])
                            value = std::conj(value);
                    } else
                        value = *model;
                    if (!(stored > 0)) {
                        ++counts_.flagged;
                        continue;
                    }
                    if (!std::isfinite(std::norm(data)) || !std::isfinite(std::norm(value)) ||
                        !std::isfinite(stored)) {
                        ++counts_.notFinite;
                        continue;
                    }
                    const double weight =
                        rules_.weightPower == 1 ? stored : std::pow(stored, rules_.weightPower);
                    solver_->add(row.interval, static_cast<std::size_t>(group), cell.hand,
                                 row.first, row.second, data, value, weight);
                }
            }
        }
    }
}

/// The same groups of the model's file.
int SelfCalibration::readModel(const UvGroups& groups)
{
    const int what = UvGroups::times | UvGroups::baselines | UvGroups::cellValues;
    if (!modelFile_->readGroups(groups.first, groups.count, what, modelGroups_))
        return fail("has a model's file that has become shorter while it was read");
    const double later = modelFile_->header().referenceDay - data_.header().referenceDay;
    const double slack = std::max(mostTimeOff, integration_ / 4);
    for (const Row& row : rows_) {
        const auto g = static_cast<std::size_t>(row.group);
        const std::pair<int, int> mine = std::minmax(groups.antenna1[g], groups.antenna2[g]);
        const std::pair<int, int> its =
            std::minmax(modelGroups_.antenna1[g], modelGroups_.antenna2[g]);
        if (mine != its || !(std::abs(modelGroups_.time[g] + later - groups.time[g]) <= slack))
            return fail(otherModel + ("group " + std::to_string(groups.first + row.group + 1)) +
                        " is of another baseline or time");
    }
    return 1;
}

}  // namespace pavane
