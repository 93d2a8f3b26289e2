#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <iosfwd>
#include <limits>
#include <vector>

namespace pavane
{

/// What a column of numbers or words is called, and how its cells are written.
struct NumberColumn {
    enum class Form {
        number,   ///< with `digits` significant ones
        whole,    ///< without a fraction
        fixed,    ///< with `digits` behind the point
        hours,    ///< degrees, as hours, minutes and seconds with `digits` decimals
        degrees,  ///< degrees, minutes and seconds of arc with `digits` decimals
        words
    };
    CString title;  ///< with the unit in brackets
    CString tip;    ///< what the title stands for, in a line
    Form form = Form::number;
    int digits = 9;
    int width = 14;  ///< in characters
};

/// Rows of numbers and words under titles: what is measured, as it is shown, copied and written. A
/// plain value. Rows and columns count from 0.
class PAVANE_API NumberTable
{
public:
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    /// Drops all rows.
    void setColumns(std::vector<NumberColumn> columns);
    /// Appends a row without numbers. May throw std::bad_alloc, as `put` may.
    void addRow();
    /// Into the last row; NaN is a cell without a number.
    void put(int column, double number);
    void put(int column, const CString& words);
    void clear();

    int rows() const { return rows_; }
    int columns() const { return static_cast<int>(columns_.size()); }
    const CString& title(int column) const { return at(column).title; }
    const CString& tip(int column) const { return at(column).tip; }
    int isText(int column) const { return at(column).form == NumberColumn::Form::words; }
    /// Width that its texts need, in characters.
    int width(int column) const;
    /// "" for what does not exist; all digits that are known.
    CString text(int row, int column) const { return text(row, column, allDigits); }
    /// With as many digits as a column of a window has room for.
    CString shortText(int row, int column) const { return text(row, column, fewDigits); }
    /// What a cell stands for; 0 for words and for what does not exist.
    int number(int row, int column, double& value) const;

    /// Titles, then the rows, cells separated by tabs. 0 at a failed write.
    int writeTsv(std::ostream& stream) const;

private:
    static constexpr int allDigits = 17;
    static constexpr int fewDigits = 6;
    const NumberColumn& at(int column) const { return columns_[static_cast<std::size_t>(column)]; }
    double cell(int row, int column) const;
    CString text(int row, int column, int mostDigits) const;

    std::vector<NumberColumn> columns_;
    std::vector<double> cells_;   ///< row by row; of words their place in `words_`
    std::vector<CString> words_;  ///< each once when it is put in rows one behind another
    int rows_ = 0;
};

}  // namespace pavane
