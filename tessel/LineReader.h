#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// The lines of a text file one by one, however large the file is. A mark of byte order at the
/// start is passed over, "\r\n" ends a line as "\n" does. Keeps a reference to the file.
class PAVANE_API LineReader
{
public:
    /// Bytes; a longer line is no line of a text.
    static constexpr std::size_t longestLine = std::size_t{64} * 1024;

    explicit LineReader(AFile& file) : file_(file), left_(file.left()) {}
    /// Takes the next line, without its end. 0 at the end of the file, or when `fault` says more.
    int next(std::string& line);
    /// Counts the lines taken, from 1.
    std::int64_t number() const { return number_; }
    /// Why there is no further line, as a clause without its subject; "" at the end of the file.
    const std::string& fault() const { return fault_; }

private:
    int fill();
    AFile& file_;
    std::int64_t left_;
    std::vector<char> block_;
    std::size_t at_ = 0;
    std::int64_t number_ = 0;
    std::string fault_;
};

}  // namespace pavane
