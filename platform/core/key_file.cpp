#include "platform/core/key_file.h"

#include "posix/plain_file.h"

#include <algorithm>
#include <unistd.h>

namespace pavane
{

namespace
{

/// No registration is longer; a longer file is not one.
constexpr std::size_t mostBytes = 16u << 20;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

KeyFile KeyFile::read(const CString& file)
{
    CString text;
    std::string fault;
    const int descriptor = openPlainFile(file, fault);
    char part[16384];
    ssize_t got = 0;
    while (descriptor >= 0 && text.size() <= mostBytes &&
           (got = ::read(descriptor, part, sizeof part)) > 0)
        text.append(part, static_cast<std::size_t>(got));
    if (descriptor >= 0)
        (void)close(descriptor);  // it was only read
    if (got < 0 || text.size() > mostBytes)
        text.clear();
    return KeyFile(std::move(text));
}

std::optional<std::string_view> KeyFile::value(std::string_view group, std::string_view key) const
{
    bool isInGroup = false;
    for (std::string_view rest = text_; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            isInGroup = line.size() == group.size() + 2 && line.back() == ']' &&
                        line.substr(1, group.size()) == group;
            continue;
        }
        const std::size_t sign = line.find('=');
        if (isInGroup && sign != std::string_view::npos && trimmed(line.substr(0, sign)) == key)
            return trimmed(line.substr(sign + 1));
    }
    return std::nullopt;
}

CString KeyFile::text(std::string_view group, std::string_view key) const
{
    const std::string_view raw = value(group, key).value_or("");
    CString plain;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        constexpr std::string_view letters = "sntr\\";
        constexpr std::string_view meant = " \n\t\r\\";
        const std::size_t at =
            raw[i] == '\\' && i + 1 < raw.size() ? letters.find(raw[i + 1]) : letters.npos;
        // other escapes belong to who reads the value
        plain += at == letters.npos ? raw[i] : meant[at];
        i += at == letters.npos ? 0 : 1;
    }
    return plain;
}

std::vector<CString> KeyFile::list(std::string_view group, std::string_view key) const
{
    std::vector<CString> parts;
    for (std::string_view rest = value(group, key).value_or(""); !rest.empty();) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        if (const std::string_view part = trimmed(rest.substr(0, end)); !part.empty())
            parts.emplace_back(part);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return parts;
}

}  // namespace pavane
