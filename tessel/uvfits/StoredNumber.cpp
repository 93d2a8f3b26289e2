#include "tessel/uvfits/StoredNumber.h"

#include "tessel/value_text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace pavane
{

namespace
{

/// Powers of ten that are written with all their zeros.
constexpr int leastPlain = -5;
constexpr int mostPlain = 16;

}  // namespace

std::string storedText(const StoredNumber& number, int places)
{
    if (std::isnan(number.value))
        return {};
    if (std::isinf(number.value) || number.value == 0)
        return valToStr(number.value);
    char buffer[64];
    const double size = std::abs(number.value);
    const auto end =
        number.isSingle
            ? std::to_chars(buffer, std::end(buffer), static_cast<float>(size),
                            std::chars_format::scientific)
            : std::to_chars(buffer, std::end(buffer), size, std::chars_format::scientific);
    const std::string_view text(buffer, static_cast<std::size_t>(end.ptr - buffer));
    const std::size_t e = text.find('e');
    // "1.25e+09": digits 125, the first of them worth ten to the power of `power`
    std::string digits(text.substr(0, e));
    if (digits.size() > 1)
        digits.erase(1, 1);
    const int power = std::atoi(std::string(text.substr(e + 1)).c_str()) - places;
    std::string result = number.value < 0 ? "-" : "";
    const int count = static_cast<int>(digits.size());
    if (power < leastPlain || power > mostPlain) {
        result += digits.substr(0, 1);
        if (count > 1)
            result += '.' + digits.substr(1);
        return result + 'e' + (power < 0 ? "-" : "+") + (std::abs(power) < 10 ? "0" : "") +
               std::to_string(std::abs(power));
    }
    if (power < 0)
        return result + "0." + std::string(static_cast<std::size_t>(-power - 1), '0') + digits;
    if (count <= power + 1)
        return result + digits +
               std::string(static_cast<std::size_t>(power) + 1 - digits.size(), '0');
    return result + digits.insert(static_cast<std::size_t>(power) + 1, 1, '.');
}

}  // namespace pavane
