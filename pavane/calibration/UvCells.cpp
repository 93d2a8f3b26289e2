#include "pavane/calibration/UvCells.h"

#include "tessel/stokes_name.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// Real part, imaginary part and weight.
constexpr int numbers = 3;

/// The same arrays of a leg, which do not lie over each other.
struct Arrays {
    double* __restrict real;
    double* __restrict imaginary;
    double* __restrict variance;
    double* __restrict valid;
};

void spreadOut(const float* __restrict from, std::size_t count, const Arrays& to)
{
    const auto [real, imaginary, variance, valid] = to;
    for (std::size_t k = 0; k < count; ++k) {
        real[k] = double{from[numbers * k]};
        imaginary[k] = double{from[numbers * k + 1]};
        variance[k] = double{from[numbers * k + 2]};
    }
}

/// Keeps what is marked, not flagged and finite, and turns weights into variances; how many there
/// are. For the vectoriser: no branch, no call.
double keepGood(const double* __restrict marked, std::size_t count, double sign, const Arrays& of)
{
    const auto [real, imaginary, variance, valid] = of;
    constexpr double most = double{std::numeric_limits<float>::max()};
    double taken = 0;
    for (std::size_t k = 0; k < count; ++k) {
        // products, since a choice that hangs on another one would become a branch
        double good = marked[k];
        good *= variance[k] > 0 ? 1.0 : 0.0;
        good *= variance[k] <= most ? 1.0 : 0.0;
        good *= std::fabs(real[k]) <= most ? 1.0 : 0.0;
        good *= std::fabs(imaginary[k]) <= most ? 1.0 : 0.0;
        valid[k] = good;
        taken += good;
    }
    for (std::size_t k = 0; k < count; ++k) {
        const double inverse = 1 / variance[k];
        real[k] = valid[k] > 0 ? real[k] : 0;
        imaginary[k] = valid[k] > 0 ? sign * imaginary[k] : 0;
        variance[k] = valid[k] > 0 ? inverse : 0;
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
    for (std::vector<double>* each : {&real, &imaginary, &variance, &valid})
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
            marked[k] = frequencies[cells.cells[k].frequency] > 0 ? 1 : 0;
    }
    const Arrays arrays = {real.data(), imaginary.data(), variance.data(), valid.data()};
    spreadOut(from, count, arrays);
    const double taken = keepGood(marked.data(), count, sign, arrays);
    return taken > 0;
}

}  // namespace pavane
