#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// The text with great letters (ASCII).
std::string capitals(std::string_view text);

/// Degrees in a unit of angles as writers of tables spell it, case aside: "arcsec", "MAS", "rad";
/// empty stands for degrees. 0 for a unit that is not known.
double degreesOfUnit(std::string_view unit);

}  // namespace pavane
