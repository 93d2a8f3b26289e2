#pragma once

#include "tessel/fits_hdus.h"
#include "tessel/uvfits/StoredNumber.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pavane
{

/// The rows of a binary table, read one after the other in blocks. Keeps a reference to the file.
/// Columns of variable length have no items here. Private to tessel's sources.
class FitsTable
{
public:
    /// `goesOn` is asked before each block with its place in the file; after 0 there are no rows
    /// left.
    explicit FitsTable(AFile& file, std::function<int(std::int64_t)> goesOn = {})
        : file_(file), goesOn_(std::move(goesOn))
    {
    }

    /// Takes the table of `hdu`, all of which the file is known to hold. Non-zero on success; else
    /// `error` says what is wrong with its columns, as a clause without its subject.
    int open(const FitsHdu& hdu, std::string& error);
    std::int64_t rows() const { return rows_; }
    /// The column of that name, -1 when there is none. Letters and digits alone count: writers
    /// differ in case, blanks, dots and underscores ("ID. NO.", "ID_NO").
    int column(std::string_view name) const;
    /// How many items a cell of the column has; of a text, characters. 0 without the column.
    std::int64_t length(int column) const;
    /// The unit that the header gives to the column; empty for none.
    std::string unit(int column) const;
    /// Takes the next row. 0 behind the last one, when the file has become shorter or nobody goes
    /// on.
    int next();

    /// Item `i`, from 0, of the cell in the current row, scaled as the header says. NaN without
    /// the column or the item, and where the table leaves it undefined.
    StoredNumber number(int column, std::int64_t i = 0) const;
    /// The same as a whole number; `missing` when it is none in the range of int.
    int whole(int column, int missing, std::int64_t i = 0) const;
    /// A text up to its first zero byte, without the blanks around; what is no printable character
    /// is '?'. A number gives its digits.
    std::string text(int column) const;

private:
    struct Column {
        std::string name;
        std::string unit;
        char type = 0;
        std::int64_t offset = 0;
        std::int64_t length = 0;
        double scale = 1;
        double zero = 0;
        int hasUndefined = 0;
        double undefined = 0;
    };
    int readColumns(const HeaderCards& cards, std::int64_t count, std::string& error);
    int fillBlock();
    const Column* find(int column) const;

    AFile& file_;
    std::function<int(std::int64_t)> goesOn_;
    std::vector<Column> columns_;
    std::vector<unsigned char> block_;
    std::int64_t start_ = 0;
    std::int64_t rows_ = 0;
    std::int64_t rowBytes_ = 0;
    std::int64_t row_ = -1;
    std::int64_t blockFirst_ = 0;
    std::int64_t blockRows_ = 0;
};

}  // namespace pavane
