#include "pavane/calibration/UvCells.h"

#include "pavane/calibration/leg_kernels.h"
#include "tessel/big_endian.h"
#include "tessel/stokes_name.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

/// Real part, imaginary part and weight.
constexpr int numbers = 3;

/// Single precision counts so far.
constexpr std::size_t mostCounted = std::size_t{1} << 24;
/// What the cells of a tame leg are in the mean at least, and add up to at most: four of them are
/// multiplied, and a variance.
constexpr float leastTame = 1e-5F, leastVariance = 1e-12F;
constexpr float mostTame = 1e6F, mostVariance = 1e10F;

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

/// The numbers of cells that do not stand one behind the other.
void UvLeg::gather(const UvGroups& groups, int i, const UvCells& cells)
{
    const std::size_t count = cells.count();
    const auto number = [&](std::int64_t at) {
        return groups.stored ? bigEndianItem<float>(groups.stored + i * groups.storedStep +
                                                    at * std::int64_t{sizeof(float)})
                             : groups.cells[static_cast<std::size_t>(i * cells.steps.group + at)];
    };
    scratch.resize(numbers * count);
    for (std::size_t k = 0; k < count; ++k) {
        const std::int64_t at = cells.cells[k].offset;
        scratch[numbers * k] = number(at);
        scratch[numbers * k + 1] = number(at + cells.steps.part);
        scratch[numbers * k + 2] = cells.steps.hasWeights ? number(at + 2 * cells.steps.part) : 1;
    }
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
    if (markedBy != frequencies || marked.size() != count) {
        markedBy = frequencies;
        marked.resize(count);
        for (std::size_t k = 0; k < count; ++k)
            marked[k] = frequencies[cells.cells[k].frequency] > 0 ? 1.0F : 0.0F;
    }
    const LegArrays to = {real.data(), imaginary.data(), variance.data(), valid.data()};
    const auto direction = static_cast<float>(sign);
    LegSums taken;
    if (!cells.isDense || count == 0) {
        gather(groups, i, cells);
        taken = takeCells(scratch.data(), marked.data(), count, direction, to);
    } else if (const std::int64_t first = cells.cells.front().offset; groups.stored)
        taken =
            takeCells(groups.stored + i * groups.storedStep + first * std::int64_t{sizeof(float)},
                      marked.data(), count, direction, to);
    else
        taken = takeCells(groups.cells.data() + i * cells.steps.group + first, marked.data(), count,
                          direction, to);
    const auto all = static_cast<float>(count);
    isWhole = count <= mostCounted && taken.good == all;
    isTame = count <= mostCounted && taken.sizes > leastTame * all && taken.sizes < mostTame &&
             taken.variance > leastVariance * all && taken.variance < mostVariance;
    return taken.good > 0;
}

}  // namespace pavane
