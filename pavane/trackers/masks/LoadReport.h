#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// What a stored collection held that could not be read, for the user.
struct LoadReport {
    /// One line each, in file order: "area 3: class \"AStar\" is unknown". At most 100.
    std::vector<std::string> lines;
    static constexpr int mostLines = 100;
    int promised = 0;  ///< areas that the file says it holds
    int loaded = 0;
    int complete() const { return lines.empty(); }
    /// Adds a line; `area` counts from 1, 0 is the file as a whole.
    void note(std::int64_t area, const std::string& what)
    {
        if (lines.size() < static_cast<std::size_t>(mostLines))
            lines.push_back(area > 0 ? "area " + std::to_string(area) + ": " + what : what);
    }
};

}  // namespace pavane
