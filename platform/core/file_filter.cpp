#include "platform/core/file_filter.h"

#include <algorithm>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::size_t longestExtension = 5;

std::vector<std::string_view> pieces(std::string_view list, const char* between)
{
    std::vector<std::string_view> found;
    while (!list.empty()) {
        const auto end = std::min(list.find_first_of(between), list.size());
        found.push_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return found;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isLetterOrDigit(char c) { return isLetter(c) || (c >= '0' && c <= '9'); }

bool hasExtension(std::string_view name)
{
    const auto slash = name.rfind('/');
    if (slash != name.npos)
        name.remove_prefix(slash + 1);
    const auto dot = name.rfind('.');
    if (dot == name.npos || dot == 0)
        return false;
    const std::string_view extension = name.substr(dot + 1);
    return !extension.empty() && extension.size() <= longestExtension && isLetter(extension[0]) &&
           std::all_of(extension.begin(), extension.end(), isLetterOrDigit);
}

}  // namespace

std::vector<FileFilter> fileFilters(const CString& list)
{
    std::vector<FileFilter> filters;
    const auto parts = pieces(list, "|");
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        FileFilter filter{CString(parts[i]), {}};
        for (const std::string_view pattern : pieces(parts[i + 1], "; ")) {
            // the old way to say "all files"; here files without a dot are files too
            if (!pattern.empty())
                filter.patterns.emplace_back(pattern == "*.*" ? "*" : pattern);
        }
        if (!filter.patterns.empty())
            filters.push_back(std::move(filter));
    }
    return filters;
}

CString extensionOf(const FileFilter& filter)
{
    const CString& pattern = filter.patterns.front();
    const bool isPlain = pattern.starts_with("*.") && pattern.size() > 2 &&
                         pattern.find_first_of("*?[", 2) == CString::npos;
    return isPlain ? pattern.substr(2) : CString();
}

CString withTypeOf(const CString& name, const CString& extension,
                   const std::vector<FileFilter>& list)
{
    for (const FileFilter& filter : list) {
        const CString old = extensionOf(filter);
        if (old.empty() || extension.empty() || old == extension || !name.ends_with('.' + old))
            continue;
        return name.substr(0, name.size() - old.size()) + extension;
    }
    return name;
}

CString withExtension(const CString& name, const CString& wanted)
{
    const CString extension = wanted.starts_with("*.") ? wanted.substr(1) : wanted;
    if (name.empty() || name.back() == '/' || extension.empty() || hasExtension(name))
        return name;
    const CString dot = extension[0] == '.' ? "" : ".";
    return name.back() == '.' ? name + extension.substr(dot.empty() ? 1 : 0)
                              : name + dot + extension;
}

}  // namespace pavane
