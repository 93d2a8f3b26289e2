#include "pavane/axes/maps/cells/equal_shares.h"

#include "pavane/axes/maps/cells/float_keys.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace pavane
{

namespace
{

constexpr std::int64_t sampledCells = std::int64_t{10} << 20;
constexpr int firstBits = 16;  ///< of a key that the first pass counts by
constexpr int laterBits = 8;   ///< that each pass after it adds
/// A bucket with at most this part of a share is fine enough.
constexpr int fineParts = 200;
/// From so many cells in a share on, the cells of an even bucket lie evenly to within its
/// hundredth.
constexpr std::int64_t manyCells = std::int64_t{1} << 15;

/// keys[i] becomes the ordered key of values[i] above `first`, or `outside` where that exceeds
/// `span`, without its `shift` lowest bits.
inline __attribute__((always_inline)) void keysBody(const float* __restrict values, int count,
                                                    std::uint32_t first, std::uint32_t span,
                                                    std::uint32_t outside, int shift,
                                                    std::uint32_t* __restrict keys)
{
    for (int i = 0; i < count; ++i) {
        const std::uint32_t key = orderedKey(values[i]) - first;
        keys[i] = (key <= span ? key : outside) >> shift;
    }
}

using KeysOf = void (*)(const float*, int, std::uint32_t, std::uint32_t, std::uint32_t, int,
                        std::uint32_t*);

void keysPlain(const float* values, int count, std::uint32_t first, std::uint32_t span,
               std::uint32_t outside, int shift, std::uint32_t* keys)
{
    keysBody(values, count, first, span, outside, shift, keys);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void keysWide(const float* values, int count, std::uint32_t first,
                                              std::uint32_t span, std::uint32_t outside, int shift,
                                              std::uint32_t* keys)
{
    keysBody(values, count, first, span, outside, shift, keys);
}
#endif

KeysOf keysFor(SimdPath path)
{
#if defined(__x86_64__)
    if (path != SimdPath::plain)
        return keysWide;
#else
    (void)path;
#endif
    return keysPlain;
}

/// The cells of a range as keys from 0 to that of its high end; buckets of the first pass are
/// 1 << shift() keys wide, and cells outside the range get the first key behind the last bucket.
class CellKeys
{
public:
    CellKeys(const AMatrixAccess& cells, double low, double high) : cells_(cells)
    {
        constexpr float most = std::numeric_limits<float>::max();
        float first = static_cast<float>(std::clamp(low, -1.0 * most, 1.0 * most));
        float last = static_cast<float>(std::clamp(high, -1.0 * most, 1.0 * most));
        if (static_cast<double>(first) < low)
            first = std::nextafter(first, most);
        if (static_cast<double>(last) > high)
            last = std::nextafter(last, -most);
        isEmpty_ = !(first <= last) || low > static_cast<double>(most) ||
                   high < -static_cast<double>(most);
        first_ = orderedKey(first == 0 ? -0.0f : first);
        span_ = orderedKey(last == 0 ? 0.0f : last) - first_;
        shift_ = std::max(0, static_cast<int>(std::bit_width(span_)) - firstBits);
        const std::int64_t all = std::int64_t{cells.rows()} * cells.columns();
        rows_ = all <= sampledCells
                    ? cells.rows()
                    : std::max(1, static_cast<int>(sampledCells / std::max(1, cells.columns())));
    }
    bool isEmpty() const { return isEmpty_; }
    int shift() const { return shift_; }
    std::uint32_t buckets() const { return (span_ >> shift_) + 1; }
    double value(std::uint64_t key) const
    {
        return static_cast<double>(
            keyValue(first_ + static_cast<std::uint32_t>(std::min<std::uint64_t>(key, span_))));
    }
    /// Hands the keys over in blocks, without their `shift` lowest bits. Non-zero on success, 0
    /// without memory.
    template <typename Take>
    int read(int shift, const Take& take) const
    {
        constexpr int blockSize = 1024;
        std::uint32_t keys[blockSize];
        const std::uint32_t outside = buckets() << shift_;
        const KeysOf keysOf = keysFor(bestSimdPath());
        RowReader reader(cells_);
        for (std::int64_t i = 0; i < rows_; ++i) {
            const float* const row =
                reader.row(static_cast<int>((2 * i + 1) * cells_.rows() / (2 * rows_)));
            if (!row)
                return 0;
            for (int c = 0; c < cells_.columns(); c += blockSize) {
                const int count = std::min(blockSize, cells_.columns() - c);
                keysOf(row + c, count, first_, span_, outside, shift, keys);
                take(keys, count);
            }
        }
        return 1;
    }

private:
    const AMatrixAccess& cells_;
    std::uint32_t first_ = 0;
    std::uint32_t span_ = 0;
    int shift_ = 0;
    std::int64_t rows_ = 0;
    bool isEmpty_ = false;
};

/// A bucket of keys that a wanted rank falls into.
struct Place {
    double rank = 0;
    std::uint64_t key = 0;   ///< the first of the bucket
    std::int64_t below = 0;  ///< cells before the bucket
    std::int64_t count = 0;  ///< cells in it
    int shift = 0;           ///< it is 1 << shift keys wide
    std::uint32_t slot = 0;  ///< of the last pass
    bool isFine = false;
};

/// Counts cells in ever finer buckets, after the first pass only where ranks fall.
class ShareSearch
{
public:
    ShareSearch(const CellKeys& keys, int parts)
        : keys_(keys), places_(static_cast<std::size_t>(std::max(parts, 1)) - 1)
    {
    }
    int run();
    double value(std::size_t i) const;

private:
    /// Tells in which group of buckets of the next pass a bucket lies, 0 for none.
    struct Pass {
        int shift;
        std::vector<std::uint8_t> slots;
    };
    int countFirst(std::vector<std::uint32_t>& counts) const;
    int countFiner(int bits, std::size_t slots, std::vector<std::uint32_t>& counts) const;
    void settle(Place& place, const std::uint32_t* counts, std::size_t bucket, std::size_t end);
    bool isEven(const Place& place, const std::uint32_t* counts, std::size_t bucket,
                std::size_t end) const;
    double width(std::uint64_t key) const
    {
        return keys_.value(key + (std::uint64_t{1} << shift_)) - keys_.value(key);
    }

    const CellKeys& keys_;
    std::vector<Place> places_;
    std::vector<Pass> passes_;
    std::int64_t share_ = 0;
    int shift_ = 0;
};

int ShareSearch::countFirst(std::vector<std::uint32_t>& counts) const
{
    // neighbours that fall into one bucket would wait for each other in a single table
    std::vector<std::uint32_t> odd(counts.size());
    std::uint32_t* const a = counts.data();
    std::uint32_t* const b = odd.data();
    const int read = keys_.read(shift_, [a, b](const std::uint32_t* buckets, int count) {
        int i = 0;
        for (; i + 1 < count; i += 2) {
            ++a[buckets[i]];
            ++b[buckets[i + 1]];
        }
        if (i < count)
            ++a[buckets[i]];
    });
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] += odd[i];
    return read;
}

int ShareSearch::countFiner(int bits, std::size_t slots, std::vector<std::uint32_t>& counts) const
{
    counts.assign(slots << laterBits, 0);
    const std::uint32_t mask = (1u << bits) - 1;
    // All that the loops read is a copy: the counts could be any of it to a compiler.
    const int shift = shift_;
    std::uint32_t* const count = counts.data();
    const std::uint8_t* const slotOf = passes_.front().slots.data();
    const int above = passes_.front().shift - shift;
    if (passes_.size() == 1)
        return keys_.read(shift, [=](const std::uint32_t* keys, int n) {
            for (int i = 0; i < n; ++i)
                ++count[std::uint32_t{slotOf[keys[i] >> above]} << laterBits | (keys[i] & mask)];
        });
    return keys_.read(shift, [&](const std::uint32_t* keys, int n) {
        for (int i = 0; i < n; ++i) {
            std::uint32_t slot = slotOf[keys[i] >> above];
            for (std::size_t p = 1; p < passes_.size(); ++p)
                slot = passes_[p].slots[slot << laterBits | (keys[i] >> (passes_[p].shift - shift) &
                                                             ((1u << laterBits) - 1))];
            ++count[slot << laterBits | (keys[i] & mask)];
        }
    });
}

/// Whether the bucket and its neighbours hold as many cells as their widths ask for.
bool ShareSearch::isEven(const Place& place, const std::uint32_t* counts, std::size_t bucket,
                         std::size_t end) const
{
    if (share_ < manyCells || bucket < 1 || bucket + 1 >= end ||
        place.key < std::uint64_t{1} << shift_)
        return false;
    const double density = static_cast<double>(place.count) / width(place.key);
    for (const int side : {-1, 1}) {
        const std::uint64_t key = side < 0 ? place.key - (std::uint64_t{1} << shift_)
                                           : place.key + (std::uint64_t{1} << shift_);
        const double wanted = density * width(key);
        const double found = static_cast<double>(counts[side < 0 ? bucket - 1 : bucket + 1]);
        if (!(std::fabs(found - wanted) <= 0.05 * wanted + 5 * std::sqrt(wanted)))
            return false;
    }
    return true;
}

/// Moves a place, whose key and number of cells below are those of counts[bucket], on to the bucket
/// of its rank.
void ShareSearch::settle(Place& place, const std::uint32_t* counts, std::size_t bucket,
                         std::size_t end)
{
    while (bucket + 1 < end && static_cast<double>(place.below + counts[bucket]) <= place.rank) {
        place.below += counts[bucket++];
        place.key += std::uint64_t{1} << shift_;
    }
    place.count = counts[bucket];
    place.shift = shift_;
    place.isFine =
        shift_ == 0 || place.count * fineParts <= share_ || isEven(place, counts, bucket, end);
}

int ShareSearch::run()
{
    shift_ = keys_.shift();
    const std::size_t inside = keys_.buckets();
    std::vector<std::uint32_t> counts(inside + 1);
    if (!countFirst(counts))
        return 0;
    const std::int64_t all = std::accumulate(counts.begin(), counts.end() - 1, std::int64_t{0});
    if (all < 1)
        return 0;
    share_ = std::max<std::int64_t>(1, all / static_cast<std::int64_t>(places_.size() + 1));
    Place next;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        next.rank = static_cast<double>(all) * static_cast<double>(i + 1) /
                    static_cast<double>(places_.size() + 1);
        settle(next, counts.data(), static_cast<std::size_t>(next.key >> shift_), inside);
        places_[i] = next;
        places_[i].slot = static_cast<std::uint32_t>(next.key >> shift_);
    }
    while (std::any_of(places_.begin(), places_.end(), [](const Place& p) { return !p.isFine; })) {
        // every bucket that is too coarse gets a group of finer ones
        Pass pass{shift_, std::vector<std::uint8_t>(counts.size())};
        std::uint8_t slots = 1;  // at most as many as places
        for (const Place& place : places_)
            if (!place.isFine && !pass.slots[place.slot])
                pass.slots[place.slot] = slots++;
        passes_.push_back(std::move(pass));
        const int bits = std::min(laterBits, shift_);
        shift_ -= bits;
        if (!countFiner(bits, slots, counts))
            return 0;
        for (Place& place : places_) {
            if (place.isFine)
                continue;
            const std::size_t group = std::size_t{passes_.back().slots[place.slot]} << laterBits;
            const std::uint64_t from = place.key;
            settle(place, counts.data() + group, 0, std::size_t{1} << bits);
            place.slot = static_cast<std::uint32_t>(group + ((place.key - from) >> shift_));
        }
    }
    return 1;
}

/// Between the cells of a bucket when they may differ, else at its nearer end.
double ShareSearch::value(std::size_t i) const
{
    const Place& place = places_[i];
    const double part = place.count > 0 ? (place.rank - static_cast<double>(place.below)) /
                                              static_cast<double>(place.count)
                                        : 0;
    const double from = keys_.value(place.key);
    const double to = keys_.value(place.key + (std::uint64_t{1} << place.shift));
    if (place.shift == 0)
        return part < 0.5 ? from : to;
    return from + (to - from) * part;
}

}  // namespace

int equalShares(const AMatrixAccess& cells, double low, double high, int parts, double* values)
{
    const CellKeys keys(cells, low, high);
    ShareSearch search(keys, parts);
    if (keys.isEmpty() || !search.run())
        return 0;
    for (int i = 1; i < parts; ++i)
        values[i] = search.value(static_cast<std::size_t>(i) - 1);
    return 1;
}

}  // namespace pavane
