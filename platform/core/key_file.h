#pragma once

#include "platform/types.h"

#include <optional>
#include <string_view>
#include <vector>

namespace pavane
{

/// A text file of the desktop: groups in brackets, lines of "Key=Value", comments after '#'.
class KeyFile
{
public:
    KeyFile() = default;
    explicit KeyFile(CString text) : text_(std::move(text)) {}
    /// Reads a file; without one that is plain and of bearable length the text is empty.
    static KeyFile read(const CString& file);

    /// The value as it stands, of the first line with that key; none without the key or its group.
    std::optional<std::string_view> value(std::string_view group, std::string_view key) const;
    /// The same with its escapes undone (\s, \n, \t, \r, \\); "" without the key.
    CString text(std::string_view group, std::string_view key) const;
    /// The same as "true" or not.
    int isTrue(std::string_view group, std::string_view key) const
    {
        return value(group, key) == "true";
    }
    /// The parts of a list that ';' ends or divides; empty ones left out.
    std::vector<CString> list(std::string_view group, std::string_view key) const;

private:
    CString text_;
};

}  // namespace pavane
