#pragma once

#include <functional>

namespace pavane
{

/// Called now and then with the fraction done, 0 to 1; answer 0 to give up.
using ProgressFunction = std::function<int(double)>;

/// What whoever gave up is told.
inline constexpr const char* readingGivenUp = "reading was given up";
inline constexpr const char* writingGivenUp = "writing was given up";

}  // namespace pavane
