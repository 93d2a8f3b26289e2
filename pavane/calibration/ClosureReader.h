#pragma once

#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/closure_sets.h"
#include "pavane/calibration/MomentReader.h"
#include "pavane/tables/components/AComponents.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// How closure phases are averaged; what is averaged are the triple products.
struct ClosureAveraging {
    UvSplit split{};     ///< all IFs and polarisations that are marked, or each by itself
    double seconds = 0;  ///< in time, counted from 0h of the reference date; 0: not
};

/// Closure phases of a triangle in the order of the file, an array for each of their numbers.
struct ClosureSeries {
    std::vector<double> time;  ///< days since 0h of the reference date, the mean of the products
    std::vector<float> phase, error, amplitude;  ///< as ClosurePoint has them
    std::vector<float> model;                    ///< degrees; empty without a model
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

/// Reads all groups of a file, in slices, and makes the closure phases of triangles, and those of a
/// model at the same places. May be dropped at any time. The file outlives it.
///
/// The legs of a point are of one time, source, frequency selection, IF, channel and polarisation;
/// where one is flagged or missing there is no triple product. Without marks of polarisations
/// those are taken that `usualStokes` gives.
class PAVANE_API ClosureReader : private MomentSink
{
public:
    /// Points that are kept at most.
    static constexpr std::size_t mostPoints = std::size_t{1} << 25;

    ClosureReader(AUVXFile& file, std::vector<ClosureTriangle> triangles, UvMarks marks = {},
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

    const std::vector<ClosureTriangle>& triangles() const { return triangles_; }
    /// What the series of a triangle are of; one that is of everything unless they are apart.
    const std::vector<UvCells::Part>& parts() const { return reader_->cells().parts; }
    /// Of the groups so far; indices from 0. Without a point where no polarisation is marked, and
    /// for a triangle or part that is not there.
    const ClosureSeries& series(std::size_t triangle, std::size_t part = 0) const
    {
        static const ClosureSeries none;
        const std::size_t at = triangle * parts().size() + part;
        return part < parts().size() && at < series_.size() ? series_[at] : none;
    }
    int hasModel() const { return model_.count() > 0; }

private:
    struct Leg {
        std::size_t baseline;
        double sign;
    };
    struct Sums {
        ClosureSums data;
        std::complex<double> model{};
        double time = 0;
    };
    struct Bin {
        int source = 0, selection = 0;
        double number = 0;
        bool operator==(const Bin&) const = default;
    };
    /// The triangles of a subarray, and what is averaged of them just now.
    struct Subarray {
        std::vector<std::size_t> triangles;
        Bin bin;
        int isOpen = 0;
    };
    void take(UvMoment& moment) override;
    void restart() override;
    void addTriangle(const UvMoment& moment, std::size_t triangle);
    void addModel(UvMoment& moment);
    void flush(Subarray& subarray);

    AUVXFile& file_;
    std::vector<ClosureTriangle> triangles_;
    UvMarks marks_;
    ClosureAveraging averaging_;
    AComponents model_;
    std::vector<UvBaseline> baselines_;
    std::vector<std::array<Leg, 3>> legs_;  ///< of the triangles
    std::unique_ptr<MomentReader> reader_;
    std::vector<ClosureSeries> series_;
    std::vector<Sums> sums_;  ///< of what is averaged just now, as the series
    std::map<int, Subarray> subarrays_;
    std::size_t points_ = 0;
    std::string error_;
    std::vector<double> u_, v_;
    std::vector<std::complex<double>> values_;
};

}  // namespace pavane
