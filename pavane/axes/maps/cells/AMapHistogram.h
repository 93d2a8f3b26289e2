#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/cells/pixel_cells.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "tessel/ABitMatrix.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace pavane
{

/// Which cells of a map count: a block of rows and columns, cut to the map, and of these the ones
/// that a mask sets. All of them at first.
struct MapPart {
    CellSpan rows{0, std::numeric_limits<int>::max()};
    CellSpan columns{0, std::numeric_limits<int>::max()};
    /// Not owned; null for no mask. Row r of the map is row r % rows() of the mask, so that the
    /// mask of one plane serves planes that lie one behind another.
    const ABitMatrix* mask = nullptr;
};

/// Planes of a cube one behind another: row r is row r % rows of plane r / rows. Planes that have
/// not the columns of the first and as many rows are left out. The planes are not owned.
class PAVANE_API AStackedAccess : public AMatrixAccess
{
public:
    explicit AStackedAccess(const std::vector<const AMatrixAccess*>& planes);
    int rows() const override;
    int columns() const override;
    void copyRow(int row, int first, int count, float* to) const override;
    const float* floatRow(int row) const override;

private:
    std::vector<const AMatrixAccess*> planes_;
    int planeRows_ = 0;
};

/// How the values of a map, or of a part of it, are spread: counts, percentiles and what follows
/// from them. Cells that are not finite count nowhere.
///
/// `set` goes over the cells once; a question whose answer is not known yet goes over them once
/// more, the noise three times, and `bars` only the first time. The cells and the mask have to
/// outlive the histogram and stay as they are.
class PAVANE_API AMapHistogram
{
public:
    AMapHistogram();
    ~AMapHistogram();
    AMapHistogram(const AMapHistogram&) = delete;
    AMapHistogram& operator=(const AMapHistogram&) = delete;

    /// Called all the time on each way over the cells with how much of it is done, 0 to 1; when it
    /// answers 0 the way is broken off, and until the next `set` no answer is worth anything.
    void setGoing(const std::function<int(double)>& goesOn) { goesOn_ = goesOn; }
    int isBrokenOff() const { return isBrokenOff_; }

    /// Non-zero when there are finite cells.
    int set(const AMatrixAccess& cells, const MapPart& part = {});
    void clear();

    /// Finite cells; the values below are 0 without any.
    std::int64_t count() const { return count_; }
    double least() const { return least_; }
    double greatest() const { return greatest_; }
    double mean() const { return mean_; }
    /// Root of the mean squared distance from the mean.
    double rms() const { return rms_; }

    /// How many cells lie in each of `bins` equal parts of the range `low` to `high`, a value on
    /// the border of two in the upper one, `high` itself in the last. Empty for a range that is
    /// none.
    std::vector<std::int64_t> counts(double low, double high, int bins) const;
    /// The same to look at, for any range without another way over the cells: values that few cells
    /// are close to may be counted up to 1/128 of themselves off, those of many exactly.
    std::vector<std::int64_t> bars(double low, double high, int bins) const;
    /// The value that `p` per cent (cut to 0..100) of the cells do not exceed: of n cells in rising
    /// order the one of place ceil(p n / 100), at least the first.
    double percentile(double p) const;
    /// The same for `n` of them, with one way over the cells.
    void percentiles(const double* p, int n, double* values) const;
    /// The range between two percentiles; least to greatest where that is empty.
    TMnMx percentileRange(double low, double high) const;
    /// The range that shows the cells about the median: a line is fitted to 1000 cells at equal
    /// steps in rising order, without those far from it, and its slope divided by `contrast`.
    /// Least to greatest of these cells when more than half of them are far from the line.
    TMnMx zscale(double contrast = 0.25) const;
    /// The values of mapNoise for these cells.
    MapNoise noise() const;

private:
    struct Counts;
    using Block = std::function<void(const float* values, int count)>;
    void forCells(const Block& take) const;
    void forDistances(double centre, const Block& take) const;
    void findRow(int row, RowReader& reader, std::vector<float>& masked, const float*& cells) const;
    std::vector<float> itemsOf(const std::vector<std::int64_t>& ranks) const;
    std::vector<float> sample(int most) const;

    void countCrowded() const;
    int keepsOn(double done) const;

    const AMatrixAccess* cells_ = nullptr;
    MapPart part_;
    std::function<int(double)> goesOn_;
    mutable int isBrokenOff_ = 0;
    std::int64_t count_ = 0;
    double least_ = 0;
    double greatest_ = 0;
    double mean_ = 0;
    double rms_ = 0;
    std::vector<int> finiteOfRow_;
    std::unique_ptr<Counts> counts_;
    mutable MapNoise noise_;
    mutable int hasNoise_ = 0;
};

}  // namespace pavane
