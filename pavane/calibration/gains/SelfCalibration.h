#pragma once

#include "pavane/calibration/gains/gain_frame.h"
#include "pavane/calibration/gains/GainSolver.h"
#include "pavane/tables/components/ModelVisibilities.h"
#include "tessel/api.h"
#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvGroupScan.h"
#include "tessel/uvfits/UvSlices.h"

#include <complex>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pavane
{

/// How a file is calibrated on a model.
struct SelfCalibrationRules {
    GainFrameRules frame;  ///< which gains are looked for
    GainRules gains;       ///< how; its `references` count behind those below
    /// Names of antennas, or their numbers: the first one that has a gain has the phase 0.
    std::vector<std::string> references;
    /// Wavelengths in the plane of u and v; visibilities outside do not count.
    double leastUv = 0, greatestUv = std::numeric_limits<double>::infinity();
    /// Weights are those of the file to this power: 1, as they are; 0, all the same.
    double weightPower = 1;
    /// Sums, of a baseline, group and hand each, that are kept at once where the groups are in no
    /// order of time; of an interval at the least.
    std::size_t mostSums = (std::size_t{64} << 20) / sizeof(GainSums);
};

/// What became of the visibilities of the parallel hands.
struct SelfCalibrationCounts {
    std::int64_t rows = 0;       ///< groups whose baseline, source, time and scan are chosen
    std::int64_t used = 0;       ///< visibilities that gains were solved from
    std::int64_t flagged = 0;    ///< weight of 0 or below, or none
    std::int64_t notFinite = 0;  ///< they or their model
    std::int64_t outsideUv = 0;
    std::int64_t autocorrelations = 0;  ///< groups of one antenna with itself; never used
    std::int64_t noModel = 0;           ///< groups that the model's file lacks
    std::int64_t noModelCells = 0;      ///< visibilities that are 0 in the model's file
    std::int64_t noInterval = 0;        ///< groups in no interval, or of no antenna
};

/// Solves for the gains that make of a model the visibilities of a file, in slices. The
/// visibilities are those that the file's filter makes (AUVXFile::setFilter): data corrected by a
/// chain, without what the user has flagged; the filter stays the same until the end. Scans,
/// antennas and the length of an integration are found first; then the groups are read once where
/// they are in the order of time, and where not, as often as it takes to keep the sums of some
/// intervals at a time in a fixed amount of memory. May be dropped at any time. The files outlive
/// it.
class PAVANE_API SelfCalibration
{
public:
    /// On the components of a model, in Jy about the phase centre, the same in all hands. Without
    /// marks of polarisations those are taken that `usualStokes` gives; hands that are crossed do
    /// not count. It is an error when the model has no component.
    SelfCalibration(AUVXFile& data, const AComponents& model, SelfCalibrationRules rules,
                    UvMarks marks = {});
    /// On the visibilities of another file, as an imaging program predicts them; their weights do
    /// not count. It has the same groups in the same order, or some of them, and the same IFs and
    /// polarisations, or some; what it lacks does not count.
    SelfCalibration(AUVXFile& data, AUVXFile& model, SelfCalibrationRules rules,
                    UvMarks marks = {});
    SelfCalibration(const SelfCalibration&) = delete;
    SelfCalibration& operator=(const SelfCalibration&) = delete;
    ~SelfCalibration();

    /// Goes on with some `bytes` of the file, or a few intervals. Non-zero while more remains; 0
    /// when all is done, or cannot be: then `error` is not empty. It is an error when not one gain
    /// was solved for.
    int step(std::int64_t bytes = std::int64_t{1} << 20);
    double done() const;  ///< 0 to 1, never falling
    /// Why it ended early, a clause about the file without its subject; "" else.
    const std::string& error() const { return error_; }

    /// Known at the end, as what follows.
    const AGains& gains() const;
    /// In the order of intervals, groups and hands.
    const std::vector<GainFit>& fits() const;
    /// By group and hand, what amplitudes were divided by, see GainSolver.
    const std::vector<double>& factors() const;
    const SelfCalibrationCounts& counts() const { return counts_; }
    double integration() const { return integration_; }  ///< days
    /// Turns by which the phases of components are wrong at the most, see
    /// ModelVisibilities::wTurns; 0 with a model's file.
    double wTurns() const;

private:
    enum class Phase { start, scan, read, solve, over };
    /// A parallel hand of the file, and its place in the frame.
    struct Cell {
        std::int64_t stokes;
        std::size_t hand;
        std::int64_t modelStokes = 0;
    };

    int goOn(std::int64_t bytes);
    int begin();
    int makeFrame();
    void beginPass();
    int endPass();
    void take(const UvGroups& groups);
    void takeRows(const UvGroups& groups);
    int findCells();
    int readModel(const UvGroups& groups);
    int nextModel();
    int fail(std::string reason);
    std::pair<int, int> pairOf(int subarray, int first, int second);

    /// A group of the block that counts.
    struct Row {
        int group;
        std::size_t interval, first, second;
        const double* frequencies;
        double distance;     ///< seconds of light in the plane of u and v
        const float* model;  ///< cells of the model's group
        int isTurned;        ///< which goes the other way
    };

    AUVXFile& data_;
    AUVXFile* modelFile_ = nullptr;
    ModelVisibilities model_;
    SelfCalibrationRules rules_;
    UvMarks marks_;
    Phase phase_ = Phase::start;
    std::string error_;
    std::unique_ptr<UvGroupScan> scan_;
    std::unique_ptr<UvChoice> choice_;
    std::unique_ptr<UvSlices> slices_;
    std::unique_ptr<GainSolver> solver_;
    AGains none_;
    double integration_ = 0;
    SelfCalibrationCounts counts_;
    double greatestW_ = 0;

    int isByWindow_ = 0;  ///< the groups are in no order of time
    std::size_t window_ = 0, windowIntervals_ = 0, windows_ = 1;
    std::vector<std::size_t> place_;  ///< of intervals, by time
    std::size_t toSolve_ = 0, solved_ = 0;
    double told_ = 0;
    std::vector<Cell> cells_;   ///< of a channel
    std::vector<int> groupOf_;  ///< by IF; -1: not used
    Distinct<UvPair, std::pair<int, int>> pairs_{std::size_t{1} << 22};
    std::vector<std::pair<int, std::size_t>> open_;  ///< by subarray, its interval now
    UvGroups modelGroups_;
    std::int64_t modelNext_ = 0;        ///< group of the model's file that is not yet read
    int modelAt_ = 0;                   ///< of those that are the one that comes next
    std::vector<int> modelIf_;          ///< by IF; -1: the model's file lacks it
    std::vector<float> modelCells_;     ///< of the block's groups
    std::vector<signed char> modelIs_;  ///< by group: 1 there, -1 the other way round, 0 not
    std::vector<Row> rows_;
    std::vector<double> u_, v_;
    std::vector<std::complex<double>> values_;
};

}  // namespace pavane
