#include "tessel/uvfits/UvTimeMeans.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr std::size_t mostKeys = std::size_t{1} << 22;
constexpr double secondsPerDay = 86400;
/// Times of groups are exact to the millisecond: one just before an interval is in it.
constexpr double slack = 5e-4;

}  // namespace

UvTimeMeans::UvTimeMeans(const AUVXFile& file, UvChoice& choice, double seconds,
                         std::size_t mostSums)
    : file_(file), choice_(choice), seconds_(seconds), most_(mostSums), keys_(mostKeys),
      cells_(file.fqTbl().selections().size())
{
}

/// The marked visibilities of a group's selection, in the order of the file.
const std::vector<UvTimeMeans::Cell>& UvTimeMeans::cellsOf(const UvGroups& groups, std::size_t i,
                                                           const double* frequencies)
{
    const UvHeader& header = file_.header();
    std::vector<Cell>& cells =
        cells_[static_cast<std::size_t>(file_.fqTbl().selectionOf(groups.selection[i]))];
    if (!cells.empty())
        return cells;
    std::size_t frequency = 0;
    for (int f = 0; f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c, ++frequency)
            for (int s = 0; s < choice_.stokesCount(); ++s)
                if (choice_.takesStokes(s) && frequencies[frequency] > 0)
                    cells.push_back({{f, c, s}, frequency});
    return cells;
}

int UvTimeMeans::add(const UvGroups& groups, int i, const Take& take)
{
    const auto g = static_cast<std::size_t>(i);
    const double* const frequencies = choice_.frequenciesOf(groups, g);
    if (!frequencies)
        return 1;
    const std::vector<Cell>& cells = cellsOf(groups, g, frequencies);
    const Key key = {{groups.subarray[g], groups.antenna1[g], groups.antenna2[g]},
                     groups.source[g],
                     groups.selection[g]};
    const std::size_t* const at = keys_.of(key, means_.size());
    if (!at)
        return 0;
    if (*at == means_.size()) {
        if (cells.size() > most_ - kept_)
            return 0;
        kept_ += cells.size();
        means_.emplace_back().sums.resize(cells.size());
    }
    Mean& mean = means_[*at];
    const double time = groups.time[g];
    const double interval = std::floor((time * secondsPerDay + slack) / seconds_);
    if (mean.frequencies && interval != mean.interval)
        end(key, mean, take);
    mean.frequencies = frequencies;
    mean.interval = interval;
    for (std::size_t k = 0; k < cells.size(); ++k) {
        const UvCell& cell = cells[k].cell;
        const UvVisibility value =
            file_.visibility(groups, i, cell.ifIndex, cell.channel, cell.stokes);
        if (!(value.weight > 0) || !isFinite(value))
            continue;
        Sums& sums = mean.sums[k];
        const double weight = double{value.weight};
        if (sums.count++ == 0)
            sums.first = groups.first + i;
        sums.real += weight * double{value.real};
        sums.imaginary += weight * double{value.imaginary};
        sums.weight += weight;
        sums.time += weight * time;
        sums.u += weight * groups.u[g];
        sums.v += weight * groups.v[g];
        sums.w += weight * groups.w[g];
    }
    return 1;
}

void UvTimeMeans::end(const Key& key, Mean& mean, const Take& take)
{
    UvPointOrigin origin;
    origin.subarray = key.baseline.subarray;
    origin.antenna1 = key.baseline.first;
    origin.antenna2 = key.baseline.second;
    origin.source = key.source;
    origin.selection = key.selection;
    const std::vector<Cell>& cells =
        cells_[static_cast<std::size_t>(file_.fqTbl().selectionOf(key.selection))];
    for (std::size_t k = 0; k < cells.size(); ++k) {
        Sums& sums = mean.sums[k];
        if (sums.count == 0)
            continue;
        const double hertz = mean.frequencies[cells[k].frequency] / sums.weight;
        origin.group = sums.first;
        origin.count = sums.count;
        origin.ifIndex = cells[k].cell.ifIndex;
        origin.channel = cells[k].cell.channel;
        origin.stokes = cells[k].cell.stokes;
        origin.time = sums.time / sums.weight;
        origin.u = sums.u * hertz;
        origin.v = sums.v * hertz;
        origin.w = sums.w * hertz;
        constexpr double most = double{std::numeric_limits<float>::max()};
        origin.value = {static_cast<float>(sums.real / sums.weight),
                        static_cast<float>(sums.imaginary / sums.weight),
                        static_cast<float>(std::fmin(sums.weight, most))};
        sums = {};
        take(origin);
    }
    mean.frequencies = nullptr;
}

void UvTimeMeans::finish(const Take& take)
{
    for (std::size_t k = 0; k < means_.size(); ++k)
        if (means_[k].frequencies)
            end(keys_.items()[k].key, means_[k], take);
}

}  // namespace pavane
