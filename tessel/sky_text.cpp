#include "tessel/sky_text.h"

#include "tessel/sky_steps.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

constexpr std::string_view blanks = " \t\r\n\f\v";

char smallLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string smallLetters(std::string_view text)
{
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), smallLetter);
    return small;
}

int readFinite(std::string_view text, double& value)
{
    double read = 0;
    if (!stoval(text, read) || !std::isfinite(read))
        return 0;
    value = read;
    return 1;
}

/// Up to three fields between separators, each of which ends one field.
struct Fields {
    std::array<std::string_view, 3> text;
    int count = 0;
};

int isField(std::string_view text)
{
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text[0])) &&
           text.find_first_not_of("0123456789.") == std::string_view::npos;
}

/// Fields between two ':' or two '.'; the third of dots keeps its own decimal point.
int splitBy(std::string_view text, char separator, Fields& fields)
{
    for (int i = 0; i < 2; ++i) {
        const std::size_t end = text.find(separator);
        if (end == std::string_view::npos)
            break;
        fields.text[static_cast<std::size_t>(fields.count++)] = text.substr(0, end);
        text.remove_prefix(end + 1);
    }
    fields.text[static_cast<std::size_t>(fields.count++)] = text;
    return fields.count >= 2;
}

/// Fields that end with `unit`, 'm' and 's': "12h34m5.6s", the later ones may be missing.
int splitByUnits(std::string_view text, char unit, Fields& fields)
{
    const char units[] = {unit, 'm', 's'};
    std::size_t next = 0;
    while (!text.empty()) {
        const std::size_t end = text.find_first_not_of("0123456789.");
        if (end == std::string_view::npos)
            return 0;
        while (next < 3 && smallLetter(text[end]) != units[next])
            ++next;
        if (next == 3 || (fields.count == 0 && next != 0))
            return 0;
        while (fields.count < static_cast<int>(next))
            fields.text[static_cast<std::size_t>(fields.count++)] = "0";
        fields.text[static_cast<std::size_t>(fields.count++)] = text.substr(0, end);
        text.remove_prefix(end + 1);
        ++next;
    }
    return fields.count > 0;
}

int joinFields(const Fields& fields, double& whole)
{
    double parts[3] = {0, 0, 0};
    for (int i = 0; i < fields.count; ++i) {
        const std::string_view text = fields.text[static_cast<std::size_t>(i)];
        if (!isField(text) || !readFinite(text, parts[i]) || (i == 1 && !(parts[i] < 60)) ||
            !(parts[2] <= 60))  // some writers round 59.9996 seconds to 60.000
            return 0;
    }
    whole = parts[0] + parts[1] / 60 + parts[2] / 3600;
    return 1;
}

}  // namespace

int readSexagesimal(std::string_view text, int isLongitude, double& degrees)
{
    text = trimmed(text, blanks);
    const int isNegative = !text.empty() && text[0] == '-';
    if (isNegative || (!text.empty() && text[0] == '+'))
        text.remove_prefix(1);
    constexpr std::size_t longest = 64;
    if (text.empty() || text.size() > longest)
        return 0;
    Fields fields;
    double factor = 1;
    int isSplit = 0;
    if (text.find(':') != std::string_view::npos) {
        isSplit = splitBy(text, ':', fields);
        factor = isLongitude ? 15 : 1;
    } else if (text.find_first_of("hH") != std::string_view::npos) {
        isSplit = splitByUnits(text, 'h', fields);
        factor = 15;
    } else if (text.find_first_of("dD") != std::string_view::npos) {
        isSplit = splitByUnits(text, 'd', fields);
    } else if (std::count(text.begin(), text.end(), '.') >= 2) {
        isSplit = splitBy(text, '.', fields);
    }
    double whole = 0;
    if (!isSplit || !joinFields(fields, whole))
        return 0;
    degrees = (isNegative ? -whole : whole) * factor;
    return 1;
}

namespace
{

using System = SkyFrame::System;

constexpr struct {
    std::string_view name;
    SkyFrame frame;
} frameNames[] = {{"icrs", {System::icrs, 2000}},    {"fk5", {System::fk5, 2000}},
                  {"j2000", {System::fk5, 2000}},    {"fk4", {System::fk4, 1950}},
                  {"b1950", {System::fk4, 1950}},    {"galactic", {System::galactic, 2000}},
                  {"gal", {System::galactic, 2000}}, {"ecliptic", {System::ecliptic, 2000}},
                  {"ecl", {System::ecliptic, 2000}}};

/// What people write for the same: signs of arc as letters, commas and brackets as blanks.
std::string plainSigns(std::string_view text)
{
    static constexpr std::pair<std::string_view, char> signs[] = {
        {"\u00b0", 'd'}, {"\u2032", 'm'}, {"\u2019", 'm'}, {"'", 'm'},      {"\u2033", 's'},
        {"\u201d", 's'}, {"\"", 's'},     {"\u2212", '-'}, {"\u2013", '-'}, {",", ' '},
        {";", ' '},      {"(", ' '},      {")", ' '},      {"=", ' '},      {"\t", ' '}};
    std::string plain;
    while (!text.empty()) {
        const auto* const sign =
            std::find_if(std::begin(signs), std::end(signs),
                         [&](const auto& s) { return text.starts_with(s.first); });
        if (sign != std::end(signs)) {
            plain += sign->second;
            text.remove_prefix(sign->first.size());
        } else {
            plain += text[0];
            text.remove_prefix(1);
        }
    }
    return plain;
}

std::vector<std::string> wordsOf(std::string_view text)
{
    std::vector<std::string> words;
    while (!(text = trimmed(text, blanks)).empty()) {
        const std::size_t end = std::min(text.find_first_of(blanks), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

int isNumberLike(const std::string& word)
{
    return word.find_first_of("0123456789") != std::string::npos &&
           !std::isalpha(static_cast<unsigned char>(word[0]));
}

/// "123049.4" as "12:30:49.4", "1230" as "12:30"; other words stay.
std::string withColons(const std::string& word)
{
    const std::size_t first = word.find_first_of("0123456789");
    const std::size_t end = std::min(word.find('.'), word.size());
    if (first > 1 || word.find_first_not_of("0123456789.", first) != std::string::npos)
        return word;
    std::string text = word;
    const std::size_t digits = end - first;
    if (digits == 6 || digits == 7)
        text.insert(end - 2, ":");
    if (digits == 4 || digits == 6 || digits == 7)
        text.insert(end - (digits == 4 ? 2 : 4), ":");
    return text;
}

/// One coordinate of words that belong together.
int readCoordinate(const std::vector<std::string>& words, int isHours, int isLatitude,
                   double& degrees)
{
    std::string text;
    int hasUnits = 0;
    for (const std::string& word : words)
        hasUnits |= word.find_first_of("hHdDmMsS") != std::string::npos;
    for (const std::string& word : words)
        text += (text.empty() || hasUnits ? "" : ":") + word;
    double value = 0;
    const std::string small = smallLetters(text);
    const int isInDegrees = small.ends_with("deg");
    if (!readFinite(isInDegrees ? std::string_view(small).substr(0, small.size() - 3) : small,
                    value) &&
        (isInDegrees || !readSexagesimal(text, isHours, value)))
        return 0;
    const int isTooFar = isLatitude ? std::abs(value) > 90 : value < -180 || value > 360;
    if (isTooFar)
        return 0;
    degrees = isLatitude || value >= 0 ? value : value + 360;
    return 1;
}

/// Cuts a word before a sign inside it, "123049+122328"; exponents keep theirs.
void cutAtSigns(std::vector<std::string>& words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::size_t sign = words[i].find_first_of("+-", 1);
        if (sign == std::string::npos || smallLetter(words[i][sign - 1]) == 'e')
            continue;
        const std::string behind = words[i].substr(sign);
        words[i].resize(sign);
        words.insert(words.begin() + static_cast<std::ptrdiff_t>(i) + 1, behind);
    }
}

/// Takes the name of a frame, and an equinox behind it, from `at` on. How many words that were.
std::size_t frameAt(const std::vector<std::string>& words, std::size_t at, SkyFrame& frame)
{
    const auto word = [&](std::size_t i) { return i < words.size() ? smallLetters(words[i]) : ""; };
    if (word(at + 1) == "at" && readSkyFrame(words[at] + " at " + word(at + 2), frame))
        return 3;
    return at < words.size() && readSkyFrame(words[at], frame);
}

}  // namespace

int readSkyFrame(std::string_view text, SkyFrame& frame)
{
    const std::string small = smallLetters(trimmed(text, blanks));
    const std::size_t at = small.find(" at ");
    const std::string name = small.substr(0, at);
    for (const auto& known : frameNames)
        if (known.name == name) {
            SkyFrame found = known.frame;
            if (at != std::string::npos &&
                (!readFinite(std::string_view(small).substr(at + 4), found.equinox) ||
                 found.system == System::icrs || found.system == System::galactic))
                return 0;
            if (!isKnown(found))
                return 0;
            frame = found;
            return 1;
        }
    SkyFrame found = {System::fk5, 2000};
    constexpr std::size_t leastLetters = 5;  // J1975
    if (small.size() < leastLetters || small[0] != 'j' || at != std::string::npos ||
        !readFinite(std::string_view(small).substr(1), found.equinox) || !isKnown(found))
        return 0;
    frame = found;
    return 1;
}

int readSkyPosition(std::string_view text, const SkyFrame& usual, SkyPosition& position,
                    std::string& error)
{
    constexpr std::size_t longest = 200;
    error =
        "that is no position: two coordinates are wanted, as 12:30:49.4 +12:23:28 or 187.7 12.4, "
        "and perhaps a frame";
    if (text.size() > longest)
        return 0;
    SkyPosition read;
    read.frame = usual;
    int hasFrame = 0;
    std::vector<std::string> numbers;
    std::vector<std::string> words = wordsOf(plainSigns(text));
    for (std::size_t i = 0; i < words.size();) {
        const std::size_t taken = frameAt(words, i, read.frame);
        std::string word = smallLetters(words[i]);
        if (taken > 0) {
            if (hasFrame++)
                return 0;
            i += taken;
            continue;
        }
        // names of sources tell their frame by a letter
        const int isName = word.size() > 1 && (word[0] == 'j' || word[0] == 'b') &&
                           std::isdigit(static_cast<unsigned char>(word[1])) && numbers.empty();
        if (isName) {
            if (!hasFrame++)
                (void)readSkyFrame(word[0] == 'j' ? "fk5" : "fk4", read.frame);
            word.erase(0, 1);
        }
        static constexpr std::string_view names[] = {"ra",     "dec",    "l",      "b",
                                                     "lon",    "lat",    "glon",   "glat",
                                                     "\u03b1", "\u03b4", "\u03bb", "\u03b2"};
        if (isNumberLike(word))
            numbers.push_back(word);
        else if (std::find(std::begin(names), std::end(names), word) == std::end(names))
            return 0;
        ++i;
    }
    cutAtSigns(numbers);
    if (numbers.size() == 2 && (numbers[1][0] == '+' || numbers[1][0] == '-'))
        for (std::string& number : numbers)
            number = withColons(number);
    // a sign begins the second coordinate, else both have as many words
    auto second = std::find_if(numbers.begin() + !numbers.empty(), numbers.end(),
                               [](const auto& w) { return w[0] == '+' || w[0] == '-'; });
    if (second == numbers.end() && numbers.size() % 2 == 0)
        second = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    const int isHours =
        read.frame.system != System::galactic && read.frame.system != System::ecliptic;
    if (second == numbers.begin() || second == numbers.end() ||
        !readCoordinate({numbers.begin(), second}, isHours, 0, read.longitude) ||
        !readCoordinate({second, numbers.end()}, 0, 1, read.latitude))
        return 0;
    position = read;
    error.clear();
    return 1;
}

std::string skyPositionText(const SkyPosition& position, double step)
{
    SkySteps steps;
    std::string texts[2];
    for (int i = 0; i < 2; ++i) {
        steps = roundSteps(numbersOf(position.frame, SkyLabels::usual, i),
                           std::isfinite(step) && step > 0 ? step / 10 : 1e-5, 1);
        // a step of a single digit's last place
        steps.step =
            std::pow(10.0, -steps.decimals) / (steps.numbers == SkyNumbers::degrees ? 1
                                               : steps.numbers == SkyNumbers::hours ? 240
                                                                                    : 3600);
        texts[i] =
            skyText(steps, (i ? position.latitude : position.longitude) / steps.step, i).whole();
    }
    return texts[0] + " " + texts[1] + " (" + nameOf(position.frame) + ")";
}

}  // namespace pavane
