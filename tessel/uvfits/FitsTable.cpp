#include "tessel/uvfits/FitsTable.h"

#include "tessel/big_endian.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// Bytes read at a time.
constexpr std::int64_t blockBytes = 1 << 16;
/// What the standard allows.
constexpr std::int64_t mostColumns = 999;
/// Longer rows than this hold no table of an observation.
constexpr std::int64_t mostRowBytes = std::int64_t{64} << 20;
constexpr std::int64_t mostLength = std::int64_t{1} << 40;
/// Characters of a text that are kept; names have some twenty.
constexpr std::size_t mostText = 256;
constexpr double undefinedNumber = std::numeric_limits<double>::quiet_NaN();

/// Bytes of an item of the type; 0 for an unknown type. Bits are eight to a byte.
std::int64_t itemBytes(char type)
{
    switch (type) {
    case 'L':
    case 'B':
    case 'A':
        return 1;
    case 'I':
        return 2;
    case 'J':
    case 'E':
        return 4;
    case 'K':
    case 'D':
    case 'C':
    case 'P':
        return 8;
    case 'M':
    case 'Q':
        return 16;
    default:
        return 0;
    }
}

/// "1J", " 8D", "E", "16A16": how many items of which type.
int readForm(std::string_view form, std::int64_t& length, char& type)
{
    const auto digits = std::min(form.find_first_not_of("0123456789"), form.size());
    length = 1;
    if (digits > 0) {
        const auto end = form.data() + digits;
        if (std::from_chars(form.data(), end, length).ec != std::errc{} || length > mostLength)
            return 0;
    }
    if (digits == form.size())
        return 0;
    type = static_cast<char>(std::toupper(static_cast<unsigned char>(form[digits])));
    return type == 'X' || itemBytes(type) > 0;
}

std::int64_t cellBytes(char type, std::int64_t length)
{
    return type == 'X' ? (length + 7) / 8 : length * itemBytes(type);
}

/// Letters, in capitals, and digits of a name.
std::string essence(std::string_view name)
{
    std::string result;
    for (const char c : name)
        if (std::isalnum(static_cast<unsigned char>(c)))
            result += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return result;
}

int isNumber(char type)
{
    return type == 'B' || type == 'I' || type == 'J' || type == 'K' || type == 'E' || type == 'D';
}

double storedNumber(const unsigned char* at, char type)
{
    switch (type) {
    case 'B':
        return *at;
    case 'I':
        return bigEndianItem<std::int16_t>(at);
    case 'J':
        return bigEndianItem<std::int32_t>(at);
    case 'K':
        return static_cast<double>(bigEndianItem<std::int64_t>(at));
    case 'E':
        return double{bigEndianItem<float>(at)};
    default:
        return bigEndianItem<double>(at);
    }
}

}  // namespace

int FitsTable::readColumns(const HeaderCards& cards, std::int64_t count, std::string& error)
{
    std::int64_t offset = 0;
    for (std::int64_t i = 1; i <= count; ++i) {
        const std::string n = std::to_string(i);
        Column column;
        column.name = essence(cards.text("TTYPE" + n));
        column.unit = cards.text("TUNIT" + n);
        column.offset = offset;
        if (!readForm(cards.text("TFORM" + n), column.length, column.type)) {
            error = "has a column without a known format, TFORM" + n;
            return 0;
        }
        offset += cellBytes(column.type, column.length);
        if (offset > rowBytes_) {
            error = "has columns that are wider than its rows";
            return 0;
        }
        if (cards.number("TSCAL" + n, column.scale) && column.scale == 0)
            column.scale = 1;
        (void)cards.number("TZERO" + n, column.zero);
        column.hasUndefined =
            cards.number("TNULL" + n, column.undefined) && column.type != 'E' && column.type != 'D';
        columns_.push_back(column);
    }
    return 1;
}

int FitsTable::open(const FitsHdu& hdu, std::string& error)
{
    columns_.clear();
    row_ = -1;
    blockFirst_ = blockRows_ = 0;
    start_ = hdu.dataStart;
    rowBytes_ = wholeNumber(hdu.cards, "NAXIS1", 0);
    rows_ = wholeNumber(hdu.cards, "NAXIS2", 0);
    const std::int64_t count = wholeNumber(hdu.cards, "TFIELDS", 0);
    if (wholeNumber(hdu.cards, "BITPIX", 0) != 8 || wholeNumber(hdu.cards, "NAXIS", 0) != 2 ||
        wholeNumber(hdu.cards, "GCOUNT", 1) != 1 || count < 0 || count > mostColumns ||
        rowBytes_ > mostRowBytes) {
        error = "is no table that can be read";
        rows_ = 0;
        return 0;
    }
    if (rowBytes_ == 0)
        rows_ = 0;  // no byte stands behind them
    if (readColumns(hdu.cards, count, error))
        return 1;
    rows_ = 0;
    return 0;
}

int FitsTable::column(std::string_view name) const
{
    const std::string wanted = essence(name);
    for (std::size_t i = 0; i < columns_.size(); ++i)
        if (columns_[i].name == wanted)
            return static_cast<int>(i);
    return -1;
}

const FitsTable::Column* FitsTable::find(int column) const
{
    return column >= 0 && static_cast<std::size_t>(column) < columns_.size()
               ? &columns_[static_cast<std::size_t>(column)]
               : nullptr;
}

std::int64_t FitsTable::length(int column) const
{
    const Column* const c = find(column);
    return c ? c->length : 0;
}

std::string FitsTable::unit(int column) const
{
    const Column* const c = find(column);
    return c ? c->unit : std::string();
}

int FitsTable::fillBlock()
{
    if (goesOn_ && !goesOn_(start_ + row_ * rowBytes_))
        return 0;
    blockFirst_ = row_;
    blockRows_ = std::min(std::max<std::int64_t>(blockBytes / rowBytes_, 1), rows_ - row_);
    block_.resize(static_cast<std::size_t>(blockRows_ * rowBytes_));
    return file_.seek(start_ + row_ * rowBytes_) &&
           file_.read(block_.data(), blockRows_ * rowBytes_);
}

int FitsTable::next()
{
    if (row_ >= rows_ || ++row_ >= rows_)
        return 0;
    if (row_ < blockFirst_ + blockRows_ || fillBlock())
        return 1;
    row_ = rows_;
    return 0;
}

StoredNumber FitsTable::number(int column, std::int64_t i) const
{
    const Column* const c = find(column);
    if (!c || i < 0 || i >= c->length || !isNumber(c->type))
        return {undefinedNumber, 0};
    const unsigned char* const row = block_.data() + (row_ - blockFirst_) * rowBytes_;
    const double stored = storedNumber(row + c->offset + i * itemBytes(c->type), c->type);
    if (c->hasUndefined && stored == c->undefined)
        return {undefinedNumber, 0};
    const int isScaled = c->scale != 1 || c->zero != 0;
    return {stored * c->scale + c->zero, c->type == 'E' && !isScaled};
}

int FitsTable::whole(int column, int missing, std::int64_t i) const
{
    const double value = number(column, i).value;
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max() &&
                   value == std::floor(value)
               ? static_cast<int>(value)
               : missing;
}

std::string FitsTable::text(int column) const
{
    const Column* const c = find(column);
    if (!c || c->type != 'A')
        return c && isNumber(c->type) && c->length > 0 ? storedText(number(column)) : std::string();
    const auto* const at =
        reinterpret_cast<const char*>(block_.data()) + (row_ - blockFirst_) * rowBytes_ + c->offset;
    std::string_view all(at, static_cast<std::size_t>(c->length));
    all = all.substr(0, std::min(all.find('\0'), mostText));
    return plainText(trimmed(all, " "));
}

}  // namespace pavane
