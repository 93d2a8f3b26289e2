#include "pavane/imaging/MapSums.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// Sums in step, which the processor does side by side.
constexpr int lanes = 8;
constexpr float infinity = std::numeric_limits<float>::infinity();

}  // namespace

void MapSums::add(const float* cells, int row, int columns, const ABitMatrix& mask)
{
    if (mask.rows() == 0) {
        for (int c = 0; c < columns; c += ABitMatrix::wordBits)
            addRun(cells, row, c, std::min(ABitMatrix::wordBits, columns - c), 1);
        return;
    }
    const ABitMatrix::Word* const words = mask.row(row);
    for (int c = 0; c < columns; c += ABitMatrix::wordBits) {
        const ABitMatrix::Word word = words[c / ABitMatrix::wordBits];
        const int count = std::min(ABitMatrix::wordBits, columns - c);
        if (word == 0 || word == ~ABitMatrix::Word{0}) {
            addRun(cells, row, c, count, word != 0);
            continue;
        }
        for (int i = 0; i < count; ++i)
            addRun(cells, row, c + i, 1, static_cast<int>((word >> i) & 1U));
    }
}

void MapSums::addRun(const float* cells, int row, int first, int count, int isInside)
{
    double sums[lanes] = {}, squares[lanes] = {};
    float most[lanes], greatest[lanes];
    int finite[lanes] = {};
    std::fill_n(most, lanes, -1.0F);
    std::fill_n(greatest, lanes, -infinity);
    const auto take = [&](int lane, float value) {
        const bool isFinite = value - value == 0;
        const double usable = isFinite ? static_cast<double>(value) : 0;
        finite[lane] += isFinite;
        sums[lane] += usable;
        squares[lane] += usable * usable;
        most[lane] = std::max(most[lane], isFinite ? std::fabs(value) : -1.0F);
        greatest[lane] = std::max(greatest[lane], isFinite ? value : -infinity);
    };
    const float* const run = cells + first;
    const int whole = count / lanes * lanes;
    for (int i = 0; i < whole; i += lanes)
        for (int lane = 0; lane < lanes; ++lane)
            take(lane, run[i + lane]);
    for (int i = whole; i < count; ++i)
        take(i - whole, run[i]);
    Part& part = isInside ? inside_ : outside_;
    float amount = -1, least = -infinity;
    std::int64_t cellsHere = 0;
    for (int lane = 0; lane < lanes; ++lane) {
        part.sum += sums[lane];
        part.squares += squares[lane];
        cellsHere += finite[lane];
        amount = std::max(amount, most[lane]);
        least = std::max(least, greatest[lane]);
    }
    if (cellsHere > 0)
        part.greatest = part.count > 0 ? std::max(part.greatest, least) : least;
    part.count += cellsHere;
    if (!isInside || cellsHere == 0 || (peak_.x >= 0 && amount <= peakAmount_))
        return;
    for (int i = 0; i < count; ++i)
        if (std::fabs(run[i]) == amount) {
            peakAmount_ = amount;
            peak_ = {static_cast<double>(run[i]), first + i, row};
            return;
        }
}

double MapSums::greatest() const
{
    double greatest = -std::numeric_limits<double>::infinity();
    for (const Part* const part : {&inside_, &outside_})
        if (part->count > 0)
            greatest = std::max(greatest, static_cast<double>(part->greatest));
    return greatest;
}

double MapSums::rms(int inside) const
{
    const Part& part = inside ? inside_ : outside_;
    return part.count ? std::sqrt(part.squares / static_cast<double>(part.count))
                      : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace pavane
