#include "pavane/axes/maps/cells/AMapHistogram.h"

#include "pavane/axes/maps/cells/float_counts.h"
#include "pavane/axes/maps/cells/row_kernels.h"
#include "pavane/axes/maps/cells/zscale.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int lanes = 16;
constexpr double deviationToSigma = 1.4826;
constexpr int zscaleSample = 1000;
/// Percentiles within this of a whole place are that place: 99.9 per cent of 1000 cells are 999.
constexpr double placeSnap = 1e-12;

CellSpan cut(CellSpan span, int count)
{
    const int first = std::clamp(span.first, 0, count);
    return {first, std::clamp(span.end, first, count)};
}

/// Sums of finite values, in lanes so that they do not wait for each other.
struct Sums {
    std::array<double, 8> sum{};
    std::array<double, 8> squares{};

    /// Adds distances from `shift`; returns how many values are finite.
    int add(const float* values, int count, double shift)
    {
        std::array<int, 8> finite{};
        int i = 0;
        for (; i + 8 <= count; i += 8)
            for (std::size_t k = 0; k < 8; ++k)
                addTo(k, values[i + static_cast<int>(k)], shift, finite);
        for (; i < count; ++i)
            addTo(0, values[i], shift, finite);
        int all = 0;
        for (const int n : finite)
            all += n;
        return all;
    }
    static double total(const std::array<double, 8>& parts)
    {
        double sum = 0;
        for (const double part : parts)
            sum += part;
        return sum;
    }

private:
    void addTo(std::size_t k, float value, double shift, std::array<int, 8>& finite)
    {
        const int known = value - value == 0;
        const double v = known ? static_cast<double>(value) - shift : 0;
        sum[k] += v;
        squares[k] += v * v;
        finite[k] += known;
    }
};

std::int64_t rankOf(double p, std::int64_t count)
{
    const double place = std::clamp(p, 0.0, 100.0) * static_cast<double>(count) / 100;
    const double whole = std::round(place);
    const double up =
        std::fabs(place - whole) <= placeSnap * std::max(1.0, place) ? whole : std::ceil(place);
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(up) - 1, 0, count - 1);
}

}  // namespace

struct AMapHistogram::Counts {
    UpperCounts upper;
    LowerCounts lower;    ///< of the halves that were asked for last
    LowerCounts crowded;  ///< of those that hold many cells
    int hasCrowded = 0;

    const LowerCounts& of(int half) const
    {
        return hasCrowded && crowded.isWanted(half) ? crowded : lower;
    }
};

AStackedAccess::AStackedAccess(const std::vector<const AMatrixAccess*>& planes)
{
    for (const AMatrixAccess* const plane : planes) {
        if (!plane || (!planes_.empty() && (plane->rows() != planes_.front()->rows() ||
                                            plane->columns() != planes_.front()->columns())))
            continue;
        planes_.push_back(plane);
        planeRows_ = plane->rows();
    }
}

int AStackedAccess::rows() const
{
    const std::int64_t all = std::int64_t{planeRows_} * static_cast<std::int64_t>(planes_.size());
    return static_cast<int>(std::min<std::int64_t>(all, std::numeric_limits<int>::max()));
}

int AStackedAccess::columns() const { return planes_.empty() ? 0 : planes_.front()->columns(); }

void AStackedAccess::copyRow(int row, int first, int count, float* to) const
{
    planes_[static_cast<std::size_t>(row / planeRows_)]->copyRow(row % planeRows_, first, count,
                                                                 to);
}

const float* AStackedAccess::floatRow(int row) const
{
    return planes_[static_cast<std::size_t>(row / planeRows_)]->floatRow(row % planeRows_);
}

AMapHistogram::AMapHistogram() = default;
AMapHistogram::~AMapHistogram() = default;

void AMapHistogram::clear()
{
    cells_ = nullptr;
    count_ = 0;
    least_ = greatest_ = mean_ = rms_ = 0;
    finiteOfRow_.clear();
    counts_.reset();
    noise_ = {};
    hasNoise_ = 0;
    isBrokenOff_ = 0;
}

int AMapHistogram::keepsOn(double done) const
{
    if (!isBrokenOff_ && goesOn_ && !goesOn_(done))
        isBrokenOff_ = 1;
    return !isBrokenOff_;
}

/// The wanted cells of a row, those without a bit as blanks; null without memory.
void AMapHistogram::findRow(int row, RowReader& reader, std::vector<float>& masked,
                            const float*& cells) const
{
    cells = reader.row(row);
    if (!cells || !part_.mask)
        return;
    masked.assign(static_cast<std::size_t>(part_.columns.end),
                  std::numeric_limits<float>::quiet_NaN());
    const int bits = part_.mask->rows() > 0 ? row % part_.mask->rows() : -1;
    for (int c = part_.columns.first; c < part_.columns.end; ++c)
        if (part_.mask->get(bits, c))
            masked[static_cast<std::size_t>(c)] = cells[c];
    cells = masked.data();
}

void AMapHistogram::forCells(const Block& take) const
{
    if (!cells_ || part_.columns.first >= part_.columns.end)
        return;
    RowReader reader(*cells_);
    std::vector<float> masked;
    const double rows = std::max(1, part_.rows.end - part_.rows.first);
    for (int r = part_.rows.first; r < part_.rows.end && keepsOn((r - part_.rows.first) / rows);
         ++r) {
        const float* row = nullptr;
        findRow(r, reader, masked, row);
        if (row)
            take(row + part_.columns.first, part_.columns.end - part_.columns.first);
        else
            take(nullptr, 0);
    }
}

void AMapHistogram::forDistances(double centre, const Block& take) const
{
    std::vector<float> distances;
    forCells([&](const float* values, int count) {
        distances.resize(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            distances[static_cast<std::size_t>(i)] =
                static_cast<float>(std::fabs(static_cast<double>(values[i]) - centre));
        take(distances.data(), count);
    });
}

int AMapHistogram::set(const AMatrixAccess& cells, const MapPart& part)
{
    clear();
    cells_ = &cells;
    part_ = part;
    part_.rows = cut(part.rows, cells.rows());
    part_.columns = cut(part.columns, cells.columns());
    counts_ = std::make_unique<Counts>();
    const RowKernels& kernels = rowKernels(bestSimdPath());
    std::array<float, lanes> least, greatest;
    least.fill(std::numeric_limits<float>::infinity());
    greatest.fill(-std::numeric_limits<float>::infinity());
    Sums sums;
    double shift = 0;
    forCells([&](const float* values, int count) {
        kernels.range(values, count, least.data(), greatest.data());
        if (count_ == 0)  // about a value of the map, so that a large common part takes no digits
            for (int i = 0; i < count && shift == 0; ++i)
                shift = std::isfinite(values[i]) ? static_cast<double>(values[i]) : 0;
        finiteOfRow_.push_back(sums.add(values, count, shift));
        count_ += finiteOfRow_.back();
        counts_->upper.add(values, count);
    });
    counts_->upper.finish();
    if (isBrokenOff_)
        count_ = 0;
    if (count_ < 1)
        return 0;
    least_ = static_cast<double>(*std::min_element(least.begin(), least.end()));
    greatest_ = static_cast<double>(*std::max_element(greatest.begin(), greatest.end()));
    const double n = static_cast<double>(count_);
    const double away = Sums::total(sums.sum) / n;
    mean_ = shift + away;
    rms_ = std::sqrt(std::max(0.0, Sums::total(sums.squares) / n - away * away));
    return 1;
}

std::vector<std::int64_t> AMapHistogram::counts(double low, double high, int bins) const
{
    if (!(low < high) || !std::isfinite(high - low) || bins < 1)
        return {};
    std::vector<std::int64_t> found(static_cast<std::size_t>(bins) + 1);
    const double scale = bins / (high - low);
    forCells([&](const float* values, int count) {
        for (int i = 0; i < count; ++i) {
            const double v = static_cast<double>(values[i]);
            if (v >= low && v <= high)
                ++found[static_cast<std::size_t>((v - low) * scale)];
        }
    });
    found[static_cast<std::size_t>(bins) - 1] += found.back();
    found.pop_back();
    return found;
}

void AMapHistogram::countCrowded() const
{
    /// A half with such a part of all cells is counted finely; there are no more than so many.
    constexpr int crowd = 32;
    LowerCounts crowded;
    for (int half = UpperCounts::firstFinite; half < UpperCounts::endFinite; ++half)
        if (counts_->upper.count(half) > count_ / crowd)
            (void)crowded.want(half);
    forCells([&](const float* values, int count) { crowded.add(values, count); });
    counts_->crowded = std::move(crowded);
    counts_->hasCrowded = 1;
}

std::vector<std::int64_t> AMapHistogram::bars(double low, double high, int bins) const
{
    if (!(low < high) || !std::isfinite(high - low) || bins < 1)
        return {};
    std::vector<std::int64_t> found(static_cast<std::size_t>(bins));
    if (count_ < 1)
        return found;
    if (!counts_->hasCrowded)
        countCrowded();
    const double scale = bins / (high - low);
    const auto binOf = [&](double v) {
        return static_cast<std::size_t>(std::clamp((v - low) * scale, 0.0, bins - 1.0));
    };
    const auto edge = [](std::uint32_t key) { return static_cast<double>(keyValue(key)); };
    for (int half = UpperCounts::firstFinite; half < UpperCounts::endFinite; ++half) {
        const std::int64_t count = counts_->upper.count(half);
        const std::uint32_t key = static_cast<std::uint32_t>(half) << 16;
        const double from = std::max(edge(key), least_);
        const double to = std::min(edge(key | 0xFFFF), greatest_);
        if (count < 1 || from > high || to < low)
            continue;
        if (counts_->crowded.isWanted(half)) {
            const std::vector<std::int64_t>& fine = counts_->crowded.countsOf(half);
            for (std::uint32_t k = 0; k <= 0xFFFF; ++k)
                if (const double v = fine[k] ? edge(key | k) : 0; fine[k] && v >= low && v <= high)
                    found[binOf(v)] += fine[k];
            continue;
        }
        // evenly over the half, each cell whole, so that a single one is seen
        const auto below = [&](double v) {
            const double part = to > from ? (v - from) / (to - from) : v > from;
            return std::llround(std::clamp(part, 0.0, 1.0) * static_cast<double>(count));
        };
        std::int64_t before = from < low ? below(low) : 0;
        for (std::size_t bin = binOf(from); bin <= binOf(to); ++bin) {
            const std::int64_t after = bin == binOf(to) && to <= high
                                           ? count
                                           : below(low + static_cast<double>(bin + 1) / scale);
            found[bin] += after - before;
            before = after;
        }
    }
    return found;
}

/// The values of ranks among all cells, from 0, with one way over the cells for all that are new.
std::vector<float> AMapHistogram::itemsOf(const std::vector<std::int64_t>& ranks) const
{
    std::vector<float> values;
    std::vector<int> halves;
    std::vector<std::int64_t> within = ranks;
    int isNew = 0;
    LowerCounts fresh;
    for (std::int64_t& rank : within) {
        halves.push_back(counts_->upper.halfOf(rank));
        isNew = isNew || !counts_->of(halves.back()).isWanted(halves.back());
        (void)fresh.want(halves.back());
    }
    if (isNew) {
        forCells([&](const float* cells, int count) { fresh.add(cells, count); });
        counts_->lower = std::move(fresh);
    }
    for (std::size_t i = 0; i < ranks.size(); ++i)
        values.push_back(isBrokenOff_ ? 0 : counts_->of(halves[i]).value(halves[i], within[i]));
    return values;
}

double AMapHistogram::percentile(double p) const
{
    double value = 0;
    percentiles(&p, 1, &value);
    return value;
}

void AMapHistogram::percentiles(const double* p, int n, double* values) const
{
    std::fill_n(values, std::max(n, 0), 0.0);
    // more at a time than halves can be wanted go in parts
    for (int first = 0; count_ > 0 && first < n; first += LowerCounts::mostHalves) {
        const int end = std::min(n, first + LowerCounts::mostHalves);
        std::vector<std::int64_t> ranks;
        for (int i = first; i < end; ++i)
            ranks.push_back(rankOf(p[i] == p[i] ? p[i] : 0, count_));
        const std::vector<float> items = itemsOf(ranks);
        for (int i = first; i < end; ++i)
            values[i] = static_cast<double>(items[static_cast<std::size_t>(i - first)]);
    }
}

TMnMx AMapHistogram::percentileRange(double low, double high) const
{
    const double p[] = {low, high};
    double values[2];
    percentiles(p, 2, values);
    return values[0] < values[1] ? TMnMx{values[0], values[1]} : TMnMx{least_, greatest_};
}

MapNoise AMapHistogram::noise() const
{
    if (hasNoise_ || count_ < 1)
        return noise_;
    const std::vector<std::int64_t> middle = {(count_ - 1) / 2, count_ / 2};
    const std::vector<float> values = itemsOf(middle);
    noise_.finiteCells = count_;
    // a negative zero becomes the other
    noise_.median = (static_cast<double>(values[0]) + static_cast<double>(values[1])) / 2 + 0.0;
    UpperCounts upper;
    forDistances(noise_.median, [&](const float* d, int count) { upper.add(d, count); });
    upper.finish();
    LowerCounts lower;
    std::vector<std::int64_t> within = middle;
    std::vector<int> halves;
    for (std::int64_t& rank : within) {
        halves.push_back(upper.halfOf(rank));
        (void)lower.want(halves.back());
    }
    forDistances(noise_.median, [&](const float* d, int count) { lower.add(d, count); });
    if (isBrokenOff_)
        return noise_;
    const double deviation = (static_cast<double>(lower.value(halves[0], within[0])) +
                              static_cast<double>(lower.value(halves[1], within[1]))) /
                             2;
    noise_.sigma = deviationToSigma * deviation;
    hasNoise_ = 1;
    return noise_;
}

/// Every k-th finite cell in the order of memory, `most` of them at most.
std::vector<float> AMapHistogram::sample(int most) const
{
    std::vector<float> taken;
    const std::int64_t step = std::max<std::int64_t>(1, count_ / most);
    RowReader reader(*cells_);
    std::vector<float> masked;
    std::int64_t passed = 0;
    std::int64_t next = 0;
    const auto rows = static_cast<double>(std::max<std::size_t>(1, finiteOfRow_.size()));
    for (std::size_t i = 0; i < finiteOfRow_.size() && static_cast<int>(taken.size()) < most &&
                            keepsOn(static_cast<double>(i) / rows);
         ++i) {
        const std::int64_t end = passed + finiteOfRow_[i];
        if (next >= end) {
            passed = end;
            continue;
        }
        const float* row = nullptr;
        findRow(part_.rows.first + static_cast<int>(i), reader, masked, row);
        for (int c = part_.columns.first; row && c < part_.columns.end; ++c) {
            if (!std::isfinite(row[c]) || passed++ != next)
                continue;
            taken.push_back(row[c]);
            next += step;
            if (static_cast<int>(taken.size()) == most)
                break;
        }
        passed = end;
    }
    return taken;
}

TMnMx AMapHistogram::zscale(double contrast) const
{
    if (count_ < 1)
        return {0, 0};
    const std::vector<float> cells = sample(zscaleSample);
    if (isBrokenOff_)
        return {};
    const TMnMx range = zscaleOf(cells, contrast);
    return range.min < range.max ? range : TMnMx{least_, greatest_};
}

}  // namespace pavane
