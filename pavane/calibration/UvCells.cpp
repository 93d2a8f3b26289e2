#include "pavane/calibration/UvCells.h"

#include "tessel/stokes_name.h"

#include <cmath>

namespace pavane
{

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
            starts.push_back(start);
            parts.push_back({split.ifs ? partIf : -1, split.stokes ? partStokes : -1});
        }
    starts.push_back(cells.size());
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
    const float* const group = groups.cells.data() + i * cells.steps.group;
    const std::int64_t part = cells.steps.part;
    double taken = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const float* const at = group + cells.cells[k].offset;
        const float re = at[0];
        const float im = at[part];
        const float weight = cells.steps.hasWeights ? at[2 * part] : 1;
        const bool isGood = weight > 0 && std::isfinite(weight) && std::isfinite(re) &&
                            std::isfinite(im) && frequencies[cells.cells[k].frequency] > 0;
        real[k] = isGood ? double{re} : 0;
        imaginary[k] = isGood ? sign * double{im} : 0;
        variance[k] = isGood ? 1 / double{weight} : 0;
        valid[k] = isGood;
        taken += isGood;
    }
    return taken > 0;
}

}  // namespace pavane
