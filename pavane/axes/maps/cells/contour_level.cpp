#include "pavane/axes/maps/cells/contour_level.h"

#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view sigma = "sigma";

}  // namespace

int ContourLevel::isUsable() const { return std::isfinite(number) && number != 0; }

std::string ContourLevel::text() const
{
    std::string text = valToStr(number);
    if (inNoise)
        (text += ' ') += sigma;
    return text;
}

int ContourLevel::read(const std::string& text)
{
    std::string_view rest = trimmed(text, whiteSpace);
    ContourLevel level;
    level.inNoise = rest.ends_with(sigma);
    if (level.inNoise)
        rest = trimmed(rest.substr(0, rest.size() - sigma.size()), whiteSpace);
    if (!stoval(std::string(rest), level.number) || !level.isUsable())
        return 0;
    *this = level;
    return 1;
}

}  // namespace pavane
