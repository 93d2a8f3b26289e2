#include "pavane/imaging/TextFields.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace pavane
{

namespace
{

constexpr std::string_view version = "1";

std::string escaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        const char* const special = c == '\\'   ? "\\\\"
                                    : c == '\n' ? "\\n"
                                    : c == '\r' ? "\\r"
                                    : c == '\t' ? "\\t"
                                    : c == '\0' ? "\\0"
                                                : nullptr;
        if (special)
            out += special;
        else
            out += c;
    }
    return out;
}

std::string unescaped(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c == '0' ? '\0' : c;
    }
    return out;
}

int toWhole(std::string_view text, long long& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

std::vector<std::string_view> partsOf(std::string_view text, char between)
{
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t at = std::min(text.find(between), text.size());
        parts.push_back(text.substr(0, at));
        text.remove_prefix(std::min(at + 1, text.size()));
    }
    return parts;
}

}  // namespace

void FieldWriter::add(std::string_view name, std::string_view value)
{
    text_ += name;
    text_ += ' ';
    text_ += escaped(value);
    text_ += '\n';
}

void FieldWriter::number(std::string_view name, double value) { add(name, valToStr(value)); }

void FieldWriter::numbers(std::string_view name, const std::vector<double>& values)
{
    std::string text;
    for (const double value : values)
        text.append(text.empty() ? "" : " ").append(valToStr(value));
    add(name, text);
}

void FieldWriter::list(std::string_view name, const std::vector<int>& values)
{
    std::string text;
    for (const int value : values)
        text.append(text.empty() ? "" : ",").append(std::to_string(value));
    add(name, text);
}

void FieldWriter::words(std::string_view name, const std::vector<std::string>& words)
{
    text_ += name;
    text_ += ' ';
    for (std::size_t i = 0; i < words.size(); ++i)
        text_.append(i ? "\t" : "").append(escaped(words[i]));
    text_ += '\n';
}

FieldReader::FieldReader(std::string_view text, std::string_view head) : rest_(text)
{
    const std::string_view first = rest_.substr(0, std::min(rest_.find('\n'), rest_.size()));
    rest_.remove_prefix(std::min(first.size() + 1, rest_.size()));
    line_ = 1;
    if (first.substr(0, head.size()) != head) {
        fault_ = "is none of ours";
        return;
    }
    const std::string_view told = first.substr(head.size());
    long long number = 0;
    if (!toWhole(told, number) || number < 1)
        fault_ = "has no version";
    isNewer_ = told != version;
}

int FieldReader::next()
{
    if (!fault_.empty() || ended_)
        return 0;
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
        fault_ = "ends too early";
        return 0;
    }
    ++line_;
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (line == "end") {
        ended_ = 1;
        if (!rest_.empty())
            fault_ = "goes on behind its end";
        return 0;
    }
    const std::size_t blank = std::min(line.find(' '), line.size());
    name_ = line.substr(0, blank);
    raw_ = line.substr(std::min(blank + 1, line.size()));
    value_ = unescaped(raw_);
    return 1;
}

std::string FieldReader::fault() const
{
    if (fault_.empty())
        return ended_ ? "" : "ends too early";
    return fault_;
}

void FieldReader::refuse(const std::string& fault)
{
    if (fault_.empty())
        fault_ = "line " + std::to_string(line_) + ": " + fault;
}

void FieldReader::unknown()
{
    if (!isNewer_)
        refuse("has no known name");
}

long long FieldReader::whole(long long least, long long greatest)
{
    long long value = 0;
    if (toWhole(value_, value) && value >= least && value <= greatest)
        return value;
    refuse("is no number that can be");
    return least;
}

double FieldReader::number(int orNan)
{
    double value = 0;
    if (stoval(value_, value) && (orNan || std::isfinite(value)))
        return value;
    refuse("is no number that can be");
    return 0;
}

std::vector<double> FieldReader::numbers(std::size_t least, std::size_t most, int orNan)
{
    std::vector<double> values;
    for (const std::string_view part : partsOf(value_, ' ')) {
        double value = 0;
        if (values.size() == most || !stoval(part, value) || (!orNan && !std::isfinite(value))) {
            refuse("has numbers that cannot be");
            return std::vector<double>(least);
        }
        values.push_back(value);
    }
    if (values.size() < least) {
        refuse("has too few numbers");
        values.resize(least);
    }
    return values;
}

std::vector<int> FieldReader::list(int least)
{
    std::vector<int> values;
    for (const std::string_view part : partsOf(value_, ',')) {
        long long value = 0;
        if (!toWhole(part, value) || value < least || value > 1'000'000'000) {
            refuse("has numbers that cannot be");
            return {};
        }
        values.push_back(static_cast<int>(value));
    }
    return values;
}

std::vector<std::string> FieldReader::words() const
{
    std::vector<std::string> words;
    for (const std::string_view part : partsOf(raw_, '\t'))
        words.push_back(unescaped(part));
    return words;
}

std::string FieldReader::key()
{
    for (const char c : value_)
        if (!(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') && c != '-') {
            refuse("is no name of a shared file");
            return {};
        }
    if (value_.size() > 80)
        refuse("is no name of a shared file");
    return value_.size() > 80 ? std::string() : value_;
}

}  // namespace pavane
