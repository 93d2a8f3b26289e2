#pragma once

#include <map>
#include <string>
#include <vector>

namespace pavane_ms
{

/// The words behind a command: names of files, and options with their values. A word behind "--" is
/// a name whatever it begins with.
class Words
{
public:
    /// `known`: names of options, with a '=' behind those that take a value.
    Words(const std::vector<std::string>& words, const std::vector<std::string>& known,
          std::size_t fewest, std::size_t most);

    const std::vector<std::string>& names() const { return names_; }
    int has(const std::string& option) const { return values_.count(option) != 0; }
    /// The last value given, or empty.
    std::string value(const std::string& option) const;
    std::vector<std::string> all(const std::string& option) const;

private:
    std::vector<std::string> names_;
    std::map<std::string, std::vector<std::string>> values_;
};

/// What of the data is to be taken.
struct Selection {
    std::string column = "DATA";
    std::vector<int> ifs;                ///< from 1; empty: all
    double start = -1e300, end = 1e300;  ///< days since 0h of the reference day, end not included
    std::vector<std::string> hands;      ///< empty: all
    std::string source;                  ///< name or number; empty: all
    int leavesOut = 0;  ///< rows that cannot be taken are left out, in place of failing

    explicit Selection(const Words& words);
    int hasTime(double time) const { return start <= time && time < end; }
    static std::vector<std::string> options()
    {
        return {"column=", "ifs=", "times=", "hands=", "source=", "leave-out"};
    }
};

/// A name that no library takes for an option or an expression of its own.
std::string safePath(const std::string& name);

}  // namespace pavane_ms
