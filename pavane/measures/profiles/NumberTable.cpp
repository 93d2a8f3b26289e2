#include "pavane/measures/profiles/NumberTable.h"

#include "tessel/plain_text.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace pavane
{

void NumberTable::setColumns(std::vector<NumberColumn> columns)
{
    columns_ = std::move(columns);
    clear();
}

void NumberTable::clear()
{
    cells_.clear();
    words_.clear();
    rows_ = 0;
}

void NumberTable::addRow()
{
    cells_.resize(cells_.size() + columns_.size(), none);
    ++rows_;
}

void NumberTable::put(int column, double number)
{
    cells_[cells_.size() - columns_.size() + static_cast<std::size_t>(column)] = number;
}

void NumberTable::put(int column, const CString& words)
{
    const double before = rows_ > 1 ? cell(rows_ - 2, column) : none;
    if (std::isfinite(before) && words_[static_cast<std::size_t>(before)] == words)
        return put(column, before);
    words_.push_back(words);
    put(column, static_cast<double>(words_.size() - 1));
}

double NumberTable::cell(int row, int column) const
{
    return cells_[static_cast<std::size_t>(row) * columns_.size() +
                  static_cast<std::size_t>(column)];
}

int NumberTable::width(int column) const
{
    return std::max(at(column).width, static_cast<int>(title(column).size()) + 3);
}

CString NumberTable::text(int row, int column, int mostDigits) const
{
    using Form = NumberColumn::Form;
    constexpr double arcsecondsPerDegree = 3600, degreesPerHour = 15;
    const NumberColumn& look = at(column);
    const double value = cell(row, column);
    if (!std::isfinite(value))
        return {};
    switch (look.form) {
    case Form::words:
        return plainText(words_[static_cast<std::size_t>(value)]);
    case Form::whole:
        return nValToStr(value, 0);
    case Form::fixed:
        return nValToStr(value, look.digits);
    case Form::hours:
        return timeToStr(value / degreesPerHour * arcsecondsPerDegree, look.digits);
    case Form::degrees:
        return CString(value < 0 ? "" : "+") + timeToStr(value * arcsecondsPerDegree, look.digits);
    case Form::number:
        break;
    }
    return valToStr(value, std::min(look.digits, mostDigits));
}

int NumberTable::number(int row, int column, double& value) const
{
    if (isText(column) || !std::isfinite(cell(row, column)))
        return 0;
    value = cell(row, column);
    return 1;
}

int NumberTable::writeTsv(std::ostream& stream) const
{
    for (int c = 0; c < columns(); ++c)
        stream << (c ? "\t" : "") << title(c);
    stream << '\n';
    for (int r = 0; r < rows_ && stream.good(); ++r) {
        for (int c = 0; c < columns(); ++c)
            stream << (c ? "\t" : "") << text(r, c);
        stream << '\n';
    }
    return stream.good();
}

}  // namespace pavane
