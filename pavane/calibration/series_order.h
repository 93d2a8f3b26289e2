#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace pavane
{

/// Puts `x` into rising order and the other arrays with it; one that is shorter, as an empty one,
/// stays as it is.
template <class... Arrays>
void sortSeries(std::vector<double>& x, Arrays&... others)
{
    if (std::is_sorted(x.begin(), x.end()))
        return;
    std::vector<std::size_t> order(x.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return x[a] < x[b]; });
    const auto reorder = [&](auto& values) {
        if (values.size() < order.size())
            return;
        auto sorted = values;
        for (std::size_t i = 0; i < order.size(); ++i)
            sorted[i] = values[order[i]];
        values = std::move(sorted);
    };
    reorder(x);
    (reorder(others), ...);
}

}  // namespace pavane
