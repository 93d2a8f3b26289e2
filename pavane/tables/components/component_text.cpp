#include "pavane/tables/components/component_text.h"

#include "tessel/value_text.h"

#include <charconv>
#include <cmath>
#include <streambuf>

namespace pavane
{

namespace
{

constexpr int longestLine = 64 * 1024;
constexpr char commentMark = ';';
constexpr std::string_view blanks = " \t\r\n\f\v";

std::string_view withoutBlanksInFront(std::string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

template <typename Number>
int takeNumberOf(std::string_view& text, Number& value)
{
    const std::string_view start = withoutBlanksInFront(text);
    const std::size_t sign = start.substr(0, 1) == "+" ? 1 : 0;
    Number read{};
    const char* const end = start.data() + start.size();
    const auto result = std::from_chars(start.data() + sign, end, read);
    if (result.ec == std::errc::invalid_argument)
        return 0;
    // what is too great or too small for a double is for stoval to judge
    const auto length = static_cast<std::size_t>(result.ptr - start.data());
    if (!stoval(start.substr(0, length), value))
        return 0;
    text = start.substr(length);
    return 1;
}

}  // namespace

int takeNumber(std::string_view& text, int& value) { return takeNumberOf(text, value); }
int takeNumber(std::string_view& text, double& value) { return takeNumberOf(text, value); }

int takeComponent(std::string_view& text, ACompItem& item)
{
    if (!takeNumber(text, item.type))
        return 0;
    int taken = 1;
    for (double* field : {&item.PeakFlux(), &item.LargeAxis(), &item.AxisRatio(),
                          &item.Inclination(), &item.Angle(), &item.Distance(), &item.Width()}) {
        if (!takeNumber(text, *field))
            return taken;
        ++taken;
    }
    return taken;
}

int hasFiniteFields(const ACompItem& item)
{
    for (const double field : {item.PeakFlux(), item.LargeAxis(), item.AxisRatio(),
                               item.Inclination(), item.Angle(), item.Distance(), item.Width()})
        if (!std::isfinite(field))
            return 0;
    return 1;
}

int isBlank(std::string_view text) { return withoutBlanksInFront(text).empty(); }

int ComponentLines::next()
{
    while (readLine())
        if (!isBlank(text_) && text_.front() != commentMark)
            return 1;
    return 0;
}

int ComponentLines::readLine()
{
    text_.clear();
    cut_ = 0;
    const std::istream::sentry ready(in_, true);
    if (!ready)
        return 0;
    ++number_;
    using Traits = std::istream::traits_type;
    std::streambuf& source = *in_.rdbuf();
    int dropped = 0;
    for (auto c = source.sbumpc(); c != '\n'; c = source.sbumpc()) {
        if (Traits::eq_int_type(c, Traits::eof())) {
            in_.setstate(std::ios::eofbit);
            return !text_.empty();
        }
        if (text_.size() < ACompItem::lineSize) {
            text_.push_back(Traits::to_char_type(c));
            continue;
        }
        cut_ = 1;
        tooLong_ = ++dropped > longestLine;
        if (tooLong_) {
            in_.setstate(std::ios::failbit);
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane
