#include "pavane/calibration/UvCells.h"

#include "tessel/stokes_name.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace pavane
{

namespace
{

/// Real part, imaginary part and weight.
constexpr int numbers = 3;

/// Single precision counts so far.
constexpr std::size_t mostCounted = std::size_t{1} << 24;
/// No number of a tame leg is greater, and the mean is not smaller: four of them are multiplied,
/// and a variance.
constexpr float leastTame = 1e-5F, mostTame = 1e5F;
constexpr float leastVariance = 1e-12F, mostVariance = 1e12F;

void spreadOut(const float* __restrict from, std::size_t count, float* __restrict real,
               float* __restrict imaginary, float* __restrict variance)
{
    for (std::size_t k = 0; k < count; ++k) {
        real[k] = from[numbers * k];
        imaginary[k] = from[numbers * k + 1];
        variance[k] = from[numbers * k + 2];
    }
}

std::uint32_t allOf(bool is) { return is ? ~std::uint32_t{0} : 0; }

/// The value, or 0 where no bit is set.
float only(std::uint32_t bits, float value)
{
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) & bits);
}

/// Sums over a leg.
struct Taken {
    float good = 0, tame = 0, sizes = 0, variance = 0;
};

/// Keeps what is marked, not flagged and finite, and turns weights into variances. For the
/// vectoriser: no branch, no call.
Taken keepGood(const float* __restrict marked, std::size_t count, float sign,
               float* __restrict real, float* __restrict imaginary, float* __restrict variance,
               float* __restrict valid)
{
    constexpr float most = std::numeric_limits<float>::max();
    for (std::size_t k = 0; k < count; ++k) {
        // bits, since a choice that hangs on another one would become a branch
        std::uint32_t good = allOf(marked[k] > 0);
        good &= allOf(variance[k] > 0);
        good &= allOf(variance[k] <= most);
        good &= allOf(std::fabs(real[k]) <= most);
        good &= allOf(std::fabs(imaginary[k]) <= most);
        valid[k] = only(good, 1);
        real[k] = only(good, real[k]);
        imaginary[k] = only(good, sign * imaginary[k]);
        variance[k] = only(good, 1 / variance[k]);
    }
    Taken taken;
    for (std::size_t k = 0; k < count; ++k) {
        const float size = std::fabs(real[k]) + std::fabs(imaginary[k]);
        float tame = size <= mostTame ? 1.0F : 0.0F;
        tame *= variance[k] <= mostVariance ? 1.0F : 0.0F;
        taken.good += valid[k];
        taken.tame += tame;
        taken.sizes += size;
        taken.variance += variance[k];
    }
    return taken;
}

}  // namespace

UvCells::UvCells(const AUVXFile& file, const UvChoice& choice, const UvSplit& split)
    : steps(file.cellSteps())
{
    const UvHeader& header = file.header();
    const int stokes = static_cast<int>(header.stokes.size());
    for (int partIf = 0; partIf < (split.ifs ? header.ifs : 1); ++partIf)
        for (int partStokes = 0; partStokes < (split.stokes ? stokes : 1); ++partStokes) {
            const std::size_t start = cells.size();
            for (int f = 0; f < header.ifs; ++f)
                for (int s = 0; s < stokes; ++s) {
                    const int isHere = (!split.ifs || f == partIf) &&
                                       (!split.stokes || s == partStokes) && choice.takesStokes(s);
                    for (int c = 0; isHere && c < header.channels; ++c)
                        cells.push_back({f * steps.ifIndex + c * steps.channel + s * steps.stokes,
                                         f * header.channels + c});
                }
            if (cells.size() == start)
                continue;
            std::sort(cells.begin() + static_cast<std::ptrdiff_t>(start), cells.end(),
                      [](const Cell& a, const Cell& b) { return a.offset < b.offset; });
            starts.push_back(start);
            parts.push_back({split.ifs ? partIf : -1, split.stokes ? partStokes : -1});
        }
    starts.push_back(cells.size());
    isDense = steps.hasWeights && steps.part == 1;
    for (std::size_t i = 1; i < cells.size(); ++i)
        isDense = isDense && cells[i].offset == cells[i - 1].offset + numbers;
}

std::string partName(const AUVXFile& file, const UvCells::Part& part)
{
    std::string name;
    if (part.ifIndex >= 0)
        name = "IF " + std::to_string(part.ifIndex + 1);
    const auto stokes = static_cast<std::size_t>(part.stokes);
    if (part.stokes >= 0 && stokes < file.header().stokes.size())
        name.append(name.empty() ? "" : " ").append(stokesName(file.header().stokes[stokes]));
    return name;
}

int UvLeg::take(const UvGroups& groups, int i, const UvCells& cells, const double* frequencies,
                int sign)
{
    const std::size_t count = cells.count();
    if (real.size() != count)
        for (std::vector<float>* each : {&real, &imaginary, &variance, &valid})
            each->resize(count);
    const auto g = static_cast<std::size_t>(i);
    const int hasPlace = !groups.u.empty();
    u = hasPlace ? sign * groups.u[g] : 0;
    v = hasPlace ? sign * groups.v[g] : 0;
    const float* from = groups.cells.data() + i * cells.steps.group;
    if (count > 0 && cells.isDense)
        from += cells.cells.front().offset;
    else {
        scratch.resize(numbers * count);
        for (std::size_t k = 0; k < count; ++k) {
            const float* const at = from + cells.cells[k].offset;
            scratch[numbers * k] = at[0];
            scratch[numbers * k + 1] = at[cells.steps.part];
            scratch[numbers * k + 2] = cells.steps.hasWeights ? at[2 * cells.steps.part] : 1;
        }
        from = scratch.data();
    }
    if (markedBy != frequencies || marked.size() != count) {
        markedBy = frequencies;
        marked.resize(count);
        for (std::size_t k = 0; k < count; ++k)
            marked[k] = frequencies[cells.cells[k].frequency] > 0 ? 1.0F : 0.0F;
    }
    spreadOut(from, count, real.data(), imaginary.data(), variance.data());
    const Taken taken = keepGood(marked.data(), count, static_cast<float>(sign), real.data(),
                                 imaginary.data(), variance.data(), valid.data());
    const auto all = static_cast<float>(count);
    isWhole = count <= mostCounted && taken.good == all;
    isTame = count <= mostCounted && taken.tame == all && taken.sizes > leastTame * all &&
             taken.variance > leastVariance * all;
    return taken.good > 0;
}

}  // namespace pavane
