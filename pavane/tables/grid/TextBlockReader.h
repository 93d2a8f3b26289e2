#pragma once

#include "platform/api.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pavane
{

/// Reads a block of cells from a text as spreadsheets and tables write it: fields separated by
/// tabs, lines ended by LF, CR LF or CR, the last end left out or not. A field in quotes may hold
/// tabs and line ends, and quotes written twice; a quote that is never closed is a character.
class PAVANE_API TextBlockReader
{
public:
    /// The text has to outlive the reader.
    explicit TextBlockReader(std::string_view text) : text_(text) {}
    /// Takes the next field; 0 at the end.
    int next();
    /// Place of the field in the block, from 0, and its text: good until the next call.
    std::int64_t row() const { return row_; }
    std::int64_t column() const { return column_; }
    std::string_view field() const { return field_; }
    /// Bytes of the text that have been read.
    std::size_t taken() const { return at_; }

private:
    int takeQuoted();
    std::string_view text_;
    std::size_t at_ = 0;
    std::int64_t row_ = 0;
    std::int64_t column_ = -1;
    std::int64_t nextRow_ = 0;
    std::int64_t nextColumn_ = 0;
    bool afterTab_ = false;  ///< a field follows even when the text ends
    std::string_view field_;
    std::string unquoted_;
};

}  // namespace pavane
