#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pavane
{

/// The text of a profile file: lines "[section]" and "entry=text". Everything else, and the order
/// and spelling of what is there, stays as it is. Names are compared without blanks around them
/// and without telling upper from lower case (ASCII); of equal ones the first counts.
class IniText
{
public:
    explicit IniText(std::string text) : text_(std::move(text)) {}

    /// What stands behind the '=', letter for letter.
    std::optional<std::string> value(std::string_view section, std::string_view entry) const;
    /// Changes the line of the entry, or adds it at the end of its section. False, and nothing
    /// changed, when a name or the value could not be read back.
    bool set(std::string_view section, std::string_view entry, std::string_view value);
    const std::string& text() const { return text_; }

private:
    struct Place;
    Place find(std::string_view section, std::string_view entry) const;
    std::string text_;
};

}  // namespace pavane
