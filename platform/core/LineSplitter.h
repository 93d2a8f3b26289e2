#pragma once

#include <string>
#include <vector>

namespace pavane
{

/// Makes lines of the pieces of text that a program writes.
class LineSplitter
{
public:
    /// Bytes; a longer line comes in pieces.
    static constexpr std::size_t longest = std::size_t{64} * 1024;

    /// The lines that end in `piece`, without their ends ("\n" or "\r\n").
    std::vector<std::string> take(const std::string& piece);
    /// What came behind the last end, if anything.
    std::vector<std::string> rest();

private:
    std::string open_;
};

}  // namespace pavane
