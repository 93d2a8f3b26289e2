#pragma once

#include <fstream>
#include <string>

namespace pavane_ms
{

/// Lines of a text, none of them longer than any real one.
class LineFile
{
public:
    explicit LineFile(const std::string& name);
    /// 0 at the end. Without the end of the line.
    int next(std::string& line);
    /// Throws a Failure that names file and line.
    [[noreturn]] void fail(const std::string& what) const;

private:
    std::string name_;
    std::ifstream file_;
    int number_ = 0;
};

}  // namespace pavane_ms
