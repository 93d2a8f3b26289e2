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
        if (modelFile_ && nextModel())
            return fail(std::string(otherModel) + "its group " +
                        std::to_string(modelGroups_.first + modelAt_ + 1) +
                        " follows on none of the same baseline and time");
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
    if (modelFile_ && modelFile_->header().channels != data_.header().channels)
        return fail(std::string(otherModel) + "it has other channels");
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
    AGains made;
    if (!makeGainFrame(data_, marks_, rules_.frame, scan_->foundBaselines(), scan_->foundScans(),
                       integration_, made, error_))
        return 0;
    scan_.reset();
    std::vector<int> references;
    if (!antennasNamed(made, rules_.references, references, error_))
        return 0;
    for (const int more : rules_.gains.references)
        references.push_back(more);
    rules_.gains.references = std::move(references);

    choice_ = std::make_unique<UvChoice>(data_, marks_);
    solver_ = std::make_unique<GainSolver>(std::move(made), rules_.gains);
    const AGains& frame = solver_->gains();
    if (!findCells())
        return 0;
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
    beginPass();
    return 1;
}

/// The hands and IFs that count, and those of the model's file.
int SelfCalibration::findCells()
{
    const AGains& frame = solver_->gains();
    const UvHeader& header = data_.header();
    for (std::size_t s = 0; s < header.stokes.size(); ++s) {
        const int code = header.stokes[s];
        const auto [first, second] = handsOf(code);
        const int hand = frame.handOf(rules_.frame.joinsHands ? 'I' : first);
        if (first != second || hand < 0 || !choice_->takesStokes(static_cast<int>(s)) ||
            (first == 'I' && code != 1))
            continue;
        std::int64_t its = 0;
        if (modelFile_) {
            const std::vector<int>& codes = modelFile_->header().stokes;
            const auto found = std::find(codes.begin(), codes.end(), code);
            if (found == codes.end())
                continue;
            its = found - codes.begin();
        }
        cells_.push_back({static_cast<std::int64_t>(s), static_cast<std::size_t>(hand), its});
    }
    int isThere = !cells_.empty();
    for (int i = 0; i < header.ifs; ++i) {
        groupOf_.push_back(frame.groupOf(i));
        if (!modelFile_)
            continue;
        const double hertz = data_.fqTbl().frequency(0, i, 0);
        const double slack = std::abs(header.channelWidth) / 4 + 1;
        int its = -1;
        for (int k = 0; k < modelFile_->header().ifs && its < 0; ++k)
            if (std::abs(modelFile_->fqTbl().frequency(0, k, 0) - hertz) <= slack)
                its = k;
        modelIf_.push_back(its);
        if (its < 0)
            groupOf_.back() = -1;
    }
    if (modelFile_)
        isThere = isThere &&
                  std::any_of(modelIf_.begin(), modelIf_.end(), [](int its) { return its >= 0; });
    return isThere ||
           fail(std::string(otherModel) + "it has none of the IFs or polarisations chosen");
}

void SelfCalibration::beginPass()
{
    slices_ = std::make_unique<UvSlices>(data_);
    open_.clear();
    modelGroups_.clear();
    modelNext_ = 0;
    modelAt_ = 0;
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
    if (modelFile_ && !readModel(groups))
        return;
    const std::int64_t modelStep = modelFile_ ? modelFile_->cellSteps().group : 0;
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
        if (modelFile_ && modelIs_[g] == 0) {
            ++counts_.noModel;
            continue;
        }
        rows_.push_back({i, at, static_cast<std::size_t>(a), static_cast<std::size_t>(b),
                         frequencies, std::hypot(groups.u[g], groups.v[g]),
                         modelFile_ ? modelCells_.data() + i * modelStep : nullptr,
                         modelFile_ && modelIs_[g] < 0});
    }
    if (rows_.empty())
        return;
    const UvHeader& header = data_.header();
    const auto perRow =
        static_cast<std::size_t>(header.ifs) * static_cast<std::size_t>(header.channels);
    if (!modelFile_) {
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
                    if (row.model) {
                        const std::int64_t its =
                            modelIf_[static_cast<std::size_t>(f)] * modelSteps.ifIndex +
                            c * modelSteps.channel + cell.modelStokes * modelSteps.stokes;
                        value = {row.model[its], row.model[its + modelSteps.part]};
                        if (row.isTurned)
                            value = std::conj(value);
                    } else
                        value = *model;
                    if (!(stored > 0)) {
                        ++counts_.flagged;
                        continue;
                    }
                    // what an imaging program has not predicted; no model is 0 to the last bit
                    if (row.model && value == 0.0) {
                        ++counts_.noModelCells;
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

/// Makes the next group of the model's file known; 0 when there is none.
int SelfCalibration::nextModel()
{
    if (modelAt_ < modelGroups_.count)
        return 1;
    const std::int64_t left = modelFile_->header().groups - modelNext_;
    const auto count = static_cast<int>(std::min<std::int64_t>(left, modelFile_->blockGroups()));
    const int what = UvGroups::times | UvGroups::baselines | UvGroups::cellValues;
    if (count <= 0)
        return 0;
    if (!modelFile_->readGroups(modelNext_, count, what, modelGroups_))
        return fail("has a model's file that has become shorter while it was read");
    modelNext_ += count;
    modelAt_ = 0;
    return 1;
}

/// The model's groups of a block: those of the file follow on each other as the block's do, some
/// may be missing.
int SelfCalibration::readModel(const UvGroups& groups)
{
    const double later = modelFile_->header().referenceDay - data_.header().referenceDay;
    const double slack = std::max(mostTimeOff, integration_ / 4);
    const std::int64_t step = modelFile_->cellSteps().group;
    modelIs_.assign(static_cast<std::size_t>(groups.count), 0);
    modelCells_.resize(static_cast<std::size_t>(groups.count * step));
    for (int i = 0; i < groups.count && nextModel(); ++i) {
        const auto g = static_cast<std::size_t>(i), m = static_cast<std::size_t>(modelAt_);
        const int a = groups.antenna1[g], b = groups.antenna2[g];
        const int its1 = modelGroups_.antenna1[m], its2 = modelGroups_.antenna2[m];
        const int isSame = a == its1 && b == its2, isTurned = a == its2 && b == its1;
        if ((!isSame && !isTurned) ||
            !(std::abs(modelGroups_.time[m] + later - groups.time[g]) <= slack))
            continue;
        modelIs_[g] = static_cast<signed char>(isSame ? 1 : -1);
        std::copy_n(modelGroups_.cells.data() + modelAt_ * step, step,
                    modelCells_.data() + i * step);
        ++modelAt_;
    }
    return error_.empty();
}

}  // namespace pavane
