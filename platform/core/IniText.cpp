#include "platform/core/IniText.h"

namespace pavane
{

namespace
{

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view trimmed(std::string_view s)
{
    const auto first = s.find_first_not_of(" \t");
    if (first == s.npos)
        return {};
    return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameName(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i]))
            return false;
    return true;
}

/// One line without its end.
struct Line {
    std::string_view body;
    std::size_t begin = 0;
    std::size_t bodyEnd = 0;
    std::size_t next = 0;  ///< where the following line begins
};

Line lineAt(std::string_view text, std::size_t begin)
{
    Line line;
    line.begin = begin;
    const auto end = text.find('\n', begin);
    line.next = end == text.npos ? text.size() : end + 1;
    line.bodyEnd = end == text.npos ? text.size() : end;
    if (line.bodyEnd > begin && text[line.bodyEnd - 1] == '\r')
        --line.bodyEnd;
    line.body = text.substr(begin, line.bodyEnd - begin);
    if (begin == 0 && line.body.starts_with(byteOrderMark))
        line.body.remove_prefix(byteOrderMark.size());
    return line;
}

bool isComment(std::string_view body)
{
    const std::string_view s = trimmed(body);
    return s.empty() || s[0] == ';' || s[0] == '#';
}

/// The name in "[name]", and nothing for other lines.
std::optional<std::string_view> sectionOf(std::string_view body)
{
    const std::string_view s = trimmed(body);
    const auto end = s.find(']');
    if (s.empty() || s[0] != '[' || end == s.npos)
        return {};
    return trimmed(s.substr(1, end - 1));
}

/// Names that a line could not hold so that it is read back as the same name.
bool isUsable(std::string_view name, std::string_view forbidden)
{
    return !name.empty() && name.find_first_of(forbidden) == name.npos &&
           name.find_first_of(std::string_view("\r\n\0", 3)) == name.npos;
}

}  // namespace

struct IniText::Place {
    bool hasEntry = false;
    std::size_t valueBegin = 0;
    std::size_t valueEnd = 0;
    bool hasSection = false;
    std::size_t sectionEnd = 0;  ///< behind the last line of the section that says something
};

IniText::Place IniText::find(std::string_view section, std::string_view entry) const
{
    Place place;
    bool inside = false;
    bool inFirst = false;
    for (std::size_t at = 0; at < text_.size();) {
        const Line line = lineAt(text_, at);
        at = line.next;
        if (const auto name = sectionOf(line.body)) {
            inside = sameName(*name, section);
            inFirst = inside && !place.hasSection;
            place.hasSection |= inside;
        }
        if (inFirst && !trimmed(line.body).empty())
            place.sectionEnd = line.next;
        if (!inside || isComment(line.body) || sectionOf(line.body))
            continue;
        const auto equals = line.body.find('=');
        if (equals == line.body.npos || !sameName(trimmed(line.body.substr(0, equals)), entry))
            continue;
        place.hasEntry = true;
        place.valueEnd = line.bodyEnd;
        place.valueBegin = line.bodyEnd - (line.body.size() - equals - 1);
        return place;
    }
    return place;
}

std::optional<std::string> IniText::value(std::string_view section, std::string_view entry) const
{
    const Place place = find(trimmed(section), trimmed(entry));
    if (!place.hasEntry)
        return {};
    return text_.substr(place.valueBegin, place.valueEnd - place.valueBegin);
}

bool IniText::set(std::string_view section, std::string_view entry, std::string_view value)
{
    section = trimmed(section);
    entry = trimmed(entry);
    if (!isUsable(section, "]") || !isUsable(entry, "=") || isComment(entry) || entry[0] == '[')
        return false;
    if (value.find_first_of("\r\n") != value.npos)
        return false;
    const Place place = find(section, entry);
    if (place.hasEntry) {
        text_.replace(place.valueBegin, place.valueEnd - place.valueBegin, value);
        return true;
    }
    const auto firstEnd = text_.find('\n');
    const bool carriageReturns =
        firstEnd != text_.npos && firstEnd > 0 && text_[firstEnd - 1] == '\r';
    const std::string end = carriageReturns ? "\r\n" : "\n";
    const std::string line = std::string(entry) + '=' + std::string(value) + end;
    const bool lastLineIsOpen = !text_.empty() && text_.back() != '\n';
    if (place.hasSection) {
        const bool open = lastLineIsOpen && place.sectionEnd == text_.size();
        text_.insert(place.sectionEnd, (open ? end : std::string()) + line);
        return true;
    }
    if (lastLineIsOpen)
        text_ += end;
    if (!text_.empty())
        text_ += end;
    text_ += '[' + std::string(section) + ']' + end + line;
    return true;
}

}  // namespace pavane
