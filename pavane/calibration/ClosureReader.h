#pragma once

#include "pavane/calibration/closure_products.h"
#include "pavane/calibration/closure_sets.h"
#include "pavane/calibration/ClosureCounter.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/uvfits/UvGroupScan.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pavane
{

/// Whose phases and amplitudes are read.
struct ClosureChoice {
    std::vector<ClosureTriangle> triangles{};
    std::vector<ClosureQuad> quads{};
    /// Non-zero: an independent set of each, of those that have points, most points first.
    int independent = 0;
    int isOfFile = 0;  ///< non-zero: all triangles of the file

    ClosureChoice() = default;
    ClosureChoice(std::vector<ClosureTriangle> of, int isIndependent = 0)
        : triangles(std::move(of)), independent(isIndependent)
    {
    }
    ClosureChoice(std::vector<ClosureQuad> of, int isIndependent = 0)
        : quads(std::move(of)), independent(isIndependent)
    {
    }
    /// An independent set of all triangles of the file, which need not be known: they are found
    /// while it is read.
    static ClosureChoice ofFile()
    {
        ClosureChoice choice;
        choice.independent = choice.isOfFile = 1;
        return choice;
    }
};

/// How closure phases and amplitudes are averaged; what is averaged are the products of legs.
struct ClosureAveraging {
    UvSplit split{};     ///< all IFs and polarisations that are marked, or each by itself
    double seconds = 0;  ///< in time, counted from 0h of the reference date; 0: not
};

/// Closure phases of a triangle by time, an array for each of their numbers.
struct ClosureSeries {
    std::vector<double> time;  ///< days since 0h of the reference date, the mean of the products
    std::vector<float> phase, error, amplitude;  ///< as ClosurePoint has them
    std::vector<float> model;                    ///< degrees; empty without a model
    std::size_t count() const { return time.size(); }
};

/// Closure amplitudes of a quad, likewise.
struct ClosureRatios {
    std::vector<double> time;
    std::vector<float> ratio, error;  ///< as ClosureAmplitude has them
    std::vector<float> model;         ///< empty without a model
    std::size_t count() const { return time.size(); }
};

/// What a series comes to.
struct ClosureStatistics {
    std::size_t count = 0;
    double mean = 0;        ///< degrees: of the directions on the circle
    double scatter = 0;     ///< degrees: root mean square about the mean
    double chiSquared = 0;  ///< of data less model over the error, each; 0 without a model
};
PAVANE_API ClosureStatistics statisticsOf(const ClosureSeries& series);
/// Chi-squared of a series of amplitudes; 0 without a model.
PAVANE_API double chiSquaredOf(const ClosureRatios& ratios);

/// Reads all groups of a file, in slices, and makes the closure phases of triangles, the closure
/// amplitudes of quads, and those of a model at the same places. May be dropped at any time. The
/// file outlives it.
///
/// The legs of a point are of one time, source, frequency selection, IF, channel and polarisation;
/// where one is flagged or missing there is no triple product. Without marks of polarisations
/// those are taken that `usualStokes` gives. It is an error when there is not one point.
///
/// Which triangles are an independent set of those with most points is known when all points are
/// counted. What a sample of the file makes likely is read meanwhile; what else is of the set then
/// is read in a second pass.
class PAVANE_API ClosureReader final : private MomentSink
{
public:
    /// Points that are kept at most, and series.
    static constexpr std::size_t mostPoints = std::size_t{1} << 25, mostSeries = 1 << 21;

    ClosureReader(AUVXFile& file, ClosureChoice choice, UvMarks marks = {},
                  const ClosureAveraging& averaging = {}, const AComponents& model = {});
    ClosureReader(const ClosureReader&) = delete;
    ClosureReader& operator=(const ClosureReader&) = delete;
    ~ClosureReader();

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when all is done, or
    /// cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    double done() const;  ///< 0 to 1
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const;

    /// An independent set may become another one when all points have been counted.
    const std::vector<ClosureTriangle>& triangles() const { return choice_.triangles; }
    const std::vector<ClosureQuad>& quads() const { return choice_.quads; }
    /// What the series of a triangle are of; one that is of everything unless they are apart. Known
    /// after the first step.
    const std::vector<UvCells::Part>& parts() const;
    /// Of the groups so far; indices from 0. Without a point where no polarisation is marked, and
    /// for a triangle or part that is not there.
    const ClosureSeries& series(std::size_t triangle, std::size_t part = 0) const;
    const ClosureRatios& ratios(std::size_t quad, std::size_t part = 0) const;
    int hasModel() const { return model_.count() > 0; }

private:
    struct PhaseSums {
        ClosureSums data;
        std::complex<double> model{};
        double time = 0;
    };
    struct RatioSums {
        ClosureRatioSums data, model;
        double time = 0;
    };
    /// What is averaged just now of an origin, by member and part.
    struct Bin {
        const ClosureLegs::Members* members = nullptr;
        double number = 0;
        std::vector<PhaseSums> phases;
        std::vector<RatioSums> ratios;
    };
    int findTriangles(std::int64_t bytes);
    void takeBaselines(const std::vector<UvBaseline>& baselines);
    void beginPass();
    void guess();
    int endPass();
    int hasOthers() const;
    int keepOf(ClosureChoice found);
    void setLegs();
    void flushAll();
    void finish();
    void take(UvMoment& moment) override;
    void restart() override;
    Bin& binOf(const UvMoment& moment, const ClosureLegs::Members& members);
    void addModel(UvMoment& moment);
    void findCells(const UvMoment& moment);
    void addTriangle(const UvMoment& moment, std::size_t triangle, PhaseSums* sums) const;
    void addQuad(const UvMoment& moment, std::size_t quad, RatioSums* sums) const;
    void flush(Bin& bin);
    void appendPhases(const ClosureLegs::Members& members, const std::vector<PhaseSums>& sums);
    void append(const RatioSums& sums, ClosureRatios& ratios);
    int hasRoom() { return points_ < mostPoints ? ++points_ > 0 : refuseMore(); }
    int refuseMore();

    AUVXFile& file_;
    ClosureChoice choice_;
    UvMarks marks_;
    ClosureAveraging averaging_;
    AComponents model_;
    std::unique_ptr<UvGroupScan> scan_;        ///< of triangles that are not known
    std::unique_ptr<ClosureCounter> counter_;  ///< until all points of an independent set are
    ClosureLegs legs_;                         ///< whose members are those being read
    std::vector<char> needed_;                 ///< of the baselines: which they have
    std::unique_ptr<MomentReader> reader_;
    std::vector<ClosureSeries> series_;
    std::vector<ClosureRatios> ratios_;
    std::map<int, Bin> bins_;  ///< by origin
    std::size_t openSums_ = 0, points_ = 0;
    double before_ = 0, share_ = 1;  ///< of all that is done: before the pass, and the pass
    int isOver_ = 0;
    std::string error_;
    std::vector<LegCells> data_, modelData_;  ///< of the moment's legs
    std::vector<double> u_, v_;
    std::vector<double> sums_;     ///< of the averages that end, an array a number
    std::vector<float> points32_;  ///< what they are, likewise
    std::vector<std::complex<double>> values_;
};

}  // namespace pavane
