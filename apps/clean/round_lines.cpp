#include "apps/clean/round_lines.h"

#include "apps/view/status_text.h"
#include "tessel/value_text.h"

#include <cmath>
#include <cstddef>

namespace pavane
{

namespace
{

constexpr struct {
    const char* title;
    std::int16_t width;
} columns[roundColumns] = {
    {"Round", 16},     {"Cells", 8},     {"Iterations", 11}, {"Flux", 10}, {"Peak", 12},
    {"Noise out", 12}, {"Noise in", 12}, {"Dyn. range", 12}, {"Note", 24},
};
constexpr int digits = 3;

std::string janskys(double value)
{
    return std::isfinite(value) ? prefixedText(value, "Jy", digits) : std::string();
}

}  // namespace

const char* roundTitle(int column)
{
    return column >= 1 && column <= roundColumns ? columns[column - 1].title : "";
}

std::int16_t roundWidth(int column)
{
    return column >= 1 && column <= roundColumns ? columns[column - 1].width : 1;
}

std::string roundCell(const RoundLine& line, int column)
{
    switch (column) {
    case roundName: {
        std::string text(static_cast<std::size_t>(2 * line.depth), ' ');
        if (line.depth > 0)
            text += "+- ";
        return text.append(line.name);
    }
    case roundCells:
        return line.cells < 0 ? "all" : groupedText(line.cells);
    case roundIterations:
        return groupedText(line.iterations);
    case roundFlux:
        return janskys(line.flux);
    case roundPeak:
        return janskys(line.peak);
    case roundNoiseOut:
        return janskys(line.noiseOut);
    case roundNoiseIn:
        return janskys(line.noiseIn);
    case roundRange:
        return std::isfinite(line.dynamicRange) && line.dynamicRange > 0
                   ? valToStr(line.dynamicRange, digits + 1)
                   : std::string();
    case roundNote:
        return line.note;
    }
    return {};
}

std::vector<int> branchDepths(const std::vector<int>& parents)
{
    std::vector<int> depths(parents.size(), 0), children(parents.size(), 0);
    for (std::size_t i = 0; i < parents.size(); ++i) {
        const int parent = parents[i];
        if (parent < 0 || static_cast<std::size_t>(parent) >= i)
            continue;
        const auto at = static_cast<std::size_t>(parent);
        depths[i] = depths[at] + (children[at]++ > 0 ? 1 : 0);
    }
    return depths;
}

}  // namespace pavane
