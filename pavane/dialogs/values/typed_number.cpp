#include "pavane/dialogs/values/typed_number.h"

#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr std::size_t shownCharacters = 24;

/// "an even number from 16 to 65536"
CString demand(const TypedNumber& number)
{
    using Kind = TypedNumber::Kind;
    const CString kind = number.kind == Kind::whole  ? "a whole number"
                         : number.kind == Kind::even ? "an even number"
                                                     : "a number";
    const CString least = valToStr(number.least, 15);
    const CString most = valToStr(number.most, 15);
    if (number.kind == Kind::above)
        return kind + " above " + least +
               (std::isfinite(number.most) ? ", at most " + most : CString());
    return std::isfinite(number.most) ? kind + " from " + least + " to " + most
                                      : kind + " of at least " + least;
}

}  // namespace

int isTyped(double value, const TypedNumber& number)
{
    using Kind = TypedNumber::Kind;
    if (!std::isfinite(value) || value < number.least || value > number.most)
        return 0;
    switch (number.kind) {
    case Kind::above:
        return value > number.least;
    case Kind::whole:
        return value == std::trunc(value);
    case Kind::even:
        return std::fmod(value, 2) == 0;
    default:
        return 1;
    }
}

int readTyped(const CString& text, const TypedNumber& number, double& value, CString& error)
{
    double read = 0;
    if (stoval(text, read) && isTyped(read, number)) {
        value = read;
        return 1;
    }
    CString shown = plainText(text.substr(0, shownCharacters));
    if (text.size() > shownCharacters)
        shown += "...";
    error = CString(number.name) + " has to be " + demand(number) +
            (text.find_first_not_of(' ') == CString::npos ? "." : ", not '" + shown + "'.");
    return 0;
}

}  // namespace pavane
