#include "pavane/tables/grid/SortJob.h"

#include "pavane/tables/grid/text_fold.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <stdexcept>

namespace pavane
{

namespace
{

constexpr std::size_t cellsAtOnce = 256;  // hooks make them
constexpr std::size_t rowsAtOnce = 4096;
constexpr std::size_t prefixBytes = 8;
constexpr std::size_t longestKey = 4096;  // bytes; longer texts that agree so far count as equal

/// A whole number with the order of `value`.
std::uint64_t orderedBits(double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);  // -0 counts as 0
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    return bits & sign ? ~bits : bits | sign;
}

std::uint64_t prefixOf(std::string_view text)
{
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < prefixBytes; ++i)
        prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0u);
    return prefix;
}

}  // namespace

SortJob::SortJob(int rows, const SortedBy& by, const RowOrder& shown)
    : rows_(static_cast<std::size_t>(std::clamp(rows, 0, mostSortedRows))), by_(by), shown_(shown)
{
    for (std::size_t width = rowsAtOnce; width < rows_; width *= 2)
        ++passes_;
}

WorkState SortJob::step(TableValues& values)
{
    try {
        return stepWithMemory(values);
    } catch (const std::bad_alloc&) {
        failed_ = 1;
    } catch (const std::length_error&) {
        failed_ = 1;
    }
    phase_ = Phase::done;
    return WorkState::done;
}

WorkState SortJob::stepWithMemory(TableValues& values)
{
    switch (phase_) {
    case Phase::collect:
        return collect(values);
    case Phase::runs:
        sortRun();
        break;
    case Phase::merge:
        mergePiece();
        break;
    case Phase::place:
        place();
        break;
    case Phase::done:
        break;
    }
    return phase_ == Phase::done ? WorkState::done : WorkState::goesOn;
}

WorkState SortJob::collect(TableValues& values)
{
    if (at_ == 0) {
        keys_.reserve(rows_);
        rowsOfRecords_.reserve(rows_);
        texts_.reserve(rows_ / cellsAtOnce + 1);
    }
    texts_.emplace_back();
    for (const std::size_t end = std::min(at_ + cellsAtOnce, rows_); at_ < end; ++at_) {
        const TableCell cell{static_cast<int>(at_) + 1, by_.column};
        Key key{0, static_cast<std::uint32_t>(at_), Kind::last};
        double value = 0;
        int isNumber = 0;
        if (!values.number(cell, value, isNumber))
            return WorkState::gone;
        if (isNumber && !std::isnan(value)) {
            key.kind = Kind::number;
            key.key = orderedBits(value);
        } else if (!isNumber) {
            if (!values.text(cell, cell_))
                return WorkState::gone;
            addText(key, cell_);
        }
        if (!ends_.empty() && ends_.size() == at_)
            ends_.push_back(texts_.back().size());
        keys_.push_back(key);
        rowsOfRecords_.push_back(0);
    }
    if (at_ == rows_) {
        at_ = 0;
        phase_ = Phase::runs;
    }
    return WorkState::goesOn;
}

void SortJob::addText(Key& key, const CString& text)
{
    if (text.find_first_not_of(' ') == CString::npos)
        return;
    if (ends_.empty()) {
        ends_.reserve(rows_);
        ends_.resize(at_, 0);
    }
    const CString folded = smallLetters(std::string_view(text).substr(0, longestKey));
    key.kind = Kind::text;
    key.key = prefixOf(folded);
    texts_.back() += folded;
    ends_.push_back(texts_.back().size());
}

std::string_view SortJob::textOf(const Key& key) const
{
    const std::size_t begin = key.row % cellsAtOnce ? ends_[key.row - std::size_t{1}] : 0;
    return {texts_[key.row / cellsAtOnce].data() + begin, ends_[key.row] - begin};
}

bool SortJob::isBefore(const Key& a, const Key& b) const
{
    const bool falls = by_.direction == SortDirection::falling;
    if (a.kind != b.kind)
        return falls && a.kind != Kind::last && b.kind != Kind::last ? a.kind > b.kind
                                                                     : a.kind < b.kind;
    if (a.key != b.key)
        return falls ? a.key > b.key : a.key < b.key;
    if (a.kind == Kind::text) {
        const int order = textOf(a).compare(textOf(b));
        if (order != 0)
            return falls ? order > 0 : order < 0;
    }
    return a.row < b.row;
}

/// Short runs at first, each by itself.
void SortJob::sortRun()
{
    const std::size_t end = std::min(at_ + rowsAtOnce, rows_);
    std::sort(keys_.begin() + static_cast<std::ptrdiff_t>(at_),
              keys_.begin() + static_cast<std::ptrdiff_t>(end), Less{*this});
    at_ = end;
    if (at_ < rows_)
        return;
    at_ = 0;
    width_ = rowsAtOnce;
    phase_ = passes_ ? Phase::merge : Phase::place;
    if (passes_) {
        merged_.reserve(rows_);
        beginPair();
    }
}

void SortJob::beginPair()
{
    left_ = at_;
    leftEnd_ = right_ = std::min(at_ + width_, rows_);
    rightEnd_ = std::min(right_ + width_, rows_);
}

/// Pairs of runs become runs of twice the width, until one is left.
void SortJob::mergePiece()
{
    for (const std::size_t end = std::min(at_ + rowsAtOnce, rightEnd_); at_ < end; ++at_) {
        const bool fromRight =
            left_ == leftEnd_ || (right_ < rightEnd_ && isBefore(keys_[right_], keys_[left_]));
        const Key& next = keys_[fromRight ? right_++ : left_++];
        if (at_ == merged_.size())
            merged_.push_back(next);
        else
            merged_[at_] = next;
    }
    if (at_ < rightEnd_)
        return;
    if (at_ == rows_) {
        keys_.swap(merged_);
        at_ = 0;
        width_ *= 2;
        ++passesDone_;
    }
    if (width_ < rows_)
        return beginPair();
    merged_ = {};
    phase_ = Phase::place;
}

void SortJob::place()
{
    records_.reserve(rows_);
    for (const std::size_t end = std::min(at_ + rowsAtOnce, rows_); at_ < end; ++at_) {
        const int record = shown_.recordOf(static_cast<int>(keys_[at_].row) + 1);
        records_.push_back(record);
        rowsOfRecords_[static_cast<std::size_t>(record) - 1] = static_cast<int>(at_) + 1;
    }
    if (at_ == rows_)
        phase_ = Phase::done;
}

int SortJob::percent() const
{
    // a cell costs about as much as ten moves of a row
    constexpr double cellCost = 10;
    const double rows = static_cast<double>(std::max<std::size_t>(rows_, 1));
    const double part = static_cast<double>(at_) / rows;
    const double moves = static_cast<double>(passes_) + 2;
    double done = cellCost * part;
    if (phase_ != Phase::collect)
        done = cellCost + part;
    if (phase_ == Phase::merge)
        done += 1 + static_cast<double>(passesDone_);
    if (phase_ == Phase::place)
        done += 1 + static_cast<double>(passes_);
    if (phase_ == Phase::done)
        done = cellCost + moves;
    return static_cast<int>(100 * done / (cellCost + moves));
}

int SortJob::takeOrder(RowOrder& order)
{
    if (failed_ || phase_ != Phase::done)
        return 0;
    order.set(std::move(records_), std::move(rowsOfRecords_));
    return 1;
}

}  // namespace pavane
