#include "apps/ms/FitsHeader.h"

#include "apps/ms/Failure.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane_ms
{

namespace
{

constexpr std::int64_t blockSize = 2880;
constexpr std::size_t cardSize = 80;
/// No real header is longer.
constexpr int mostBlocks = 20000;
constexpr std::int64_t mostTable = std::int64_t{1} << 28;
constexpr std::int64_t mostBytes = std::int64_t{1} << 60;

/// The product, or -1 when it cannot be that of a file.
std::int64_t product(std::int64_t a, std::int64_t b)
{
    if (a < 0 || b < 0 || (b > 0 && a > mostBytes / b))
        return -1;
    return a * b;
}

std::string valueOf(std::string_view field)
{
    field = trimmed(field);
    if (field.empty() || field[0] != '\'')
        return std::string(trimmed(field.substr(0, field.find('/'))));
    std::string text;
    for (std::size_t i = 1; i < field.size(); ++i) {
        if (field[i] == '\'' && (i + 1 >= field.size() || field[i + 1] != '\''))
            break;
        if (field[i] == '\'')
            ++i;
        text += field[i];
    }
    // some writers end texts by a zero
    text.erase(std::min(text.find('\0'), text.size()));
    return std::string(trimmed(text));
}

void takeCard(std::string_view card, FitsHeader& header)
{
    const std::string key(trimmed(card.substr(0, 8)));
    if (key == "HISTORY")
        header.history.push_back(plain(card.substr(8)));
    else if (card.substr(8, 1) == "=")
        header.values.try_emplace(key, valueOf(card.substr(9)));
}

/// The bytes of the data that the header tells of; -1 for what cannot be.
std::int64_t dataBytes(const FitsHeader& header)
{
    const std::int64_t axes = header.whole("NAXIS", 0);
    if (axes <= 0)
        return axes < 0 ? -1 : 0;
    std::int64_t cells = 1;
    const int isGroups = header.text("GROUPS") == "T" && header.whole("NAXIS1", -1) == 0;
    for (std::int64_t i = isGroups ? 2 : 1; i <= std::min<std::int64_t>(axes, 999); ++i)
        cells = product(cells, header.whole("NAXIS" + std::to_string(i), 0));
    const std::int64_t parameters = header.whole("PCOUNT", 0);
    const std::int64_t bytes = std::abs(header.whole("BITPIX", 8) % 1000) / 8;
    if (cells < 0 || parameters < 0 || parameters > mostBytes)
        return -1;
    return product(product(cells + parameters, bytes), header.whole("GCOUNT", 1));
}

template <typename T>
T bigEndian(const unsigned char* bytes)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bits = bits << 8 | bytes[i];
    T value = {};
    const auto low = static_cast<std::uint32_t>(bits);
    const auto lowest = static_cast<std::uint16_t>(bits);
    if constexpr (sizeof(T) == sizeof bits)
        std::memcpy(&value, &bits, sizeof value);
    else if constexpr (sizeof(T) == sizeof low)
        std::memcpy(&value, &low, sizeof value);
    else
        std::memcpy(&value, &lowest, sizeof value);
    return value;
}

}  // namespace

InputFile::InputFile(const std::string& name) : name_(name)
{
    // a folder of this name is no file of data, and a pipe would wait for ever
    struct stat state = {};
    file_ = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file_ < 0 || ::fstat(file_, &state) != 0 || !S_ISREG(state.st_mode)) {
        const std::string why = file_ < 0 ? std::strerror(errno) : "it is no file";
        if (file_ >= 0)
            ::close(file_);
        throw Failure(name + " cannot be read: " + why);
    }
    size_ = state.st_size;
}

InputFile::~InputFile() { ::close(file_); }

void InputFile::read(std::int64_t position, void* bytes, std::size_t count)
{
    auto* at = static_cast<unsigned char*>(bytes);
    while (count > 0) {
        const ssize_t got = ::pread(file_, at, count, position);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw Failure(name_ + " cannot be read" +
                          (got < 0 ? std::string(": ") + std::strerror(errno)
                                   : " to the end that it should have"));
        at += got;
        position += got;
        count -= static_cast<std::size_t>(got);
    }
}

std::string FitsHeader::text(const std::string& key) const
{
    const auto found = values.find(key);
    return found == values.end() ? std::string() : found->second;
}

double FitsHeader::number(const std::string& key, double missing) const
{
    std::string field = text(key);
    // FORTRAN writes exponents of doubles with a D
    std::replace(field.begin(), field.end(), 'D', 'E');
    double value = 0;
    return readNumber(field, value) && std::isfinite(value) ? value : missing;
}

std::int64_t FitsHeader::whole(const std::string& key, std::int64_t missing) const
{
    const double value = number(key, static_cast<double>(missing));
    return std::abs(value) < 1e18 ? static_cast<std::int64_t>(value) : missing;
}

int readHeader(InputFile& file, std::int64_t start, FitsHeader& header)
{
    header = {};
    char block[blockSize];
    for (int i = 0; i < mostBlocks; ++i) {
        const std::int64_t at = start + i * blockSize;
        if (at < 0 || at > file.size() - blockSize)
            return 0;
        file.read(at, block, blockSize);
        if (i == 0 && std::memcmp(block, start == 0 ? "SIMPLE  " : "XTENSION", 8) != 0)
            return 0;
        for (std::size_t c = 0; c < blockSize; c += cardSize) {
            const std::string_view card(block + c, cardSize);
            if (trimmed(card.substr(0, 8)) != "END") {
                takeCard(card, header);
                continue;
            }
            header.dataStart = at + blockSize;
            header.dataBytes = dataBytes(header);
            if (header.dataBytes < 0)
                return 0;
            header.next =
                header.dataStart + (header.dataBytes + blockSize - 1) / blockSize * blockSize;
            return 1;
        }
    }
    return 0;
}

int FitsTable::read(InputFile& file, const FitsHeader& header)
{
    *this = {};
    rows_ = header.whole("NAXIS2", 0);
    width_ = header.whole("NAXIS1", 0);
    const std::int64_t fields = header.whole("TFIELDS", 0), bytes = product(rows_, width_);
    if (rows_ < 0 || width_ < 0 || fields < 0 || fields > 999 || bytes < 0 || bytes > mostTable ||
        bytes > file.size() - header.dataStart)
        return 0;
    std::int64_t offset = 0;
    for (std::int64_t i = 1; i <= fields; ++i) {
        const std::string n = std::to_string(i), form = header.text("TFORM" + n);
        Column column;
        column.name = header.text("TTYPE" + n);
        column.scale = header.number("TSCAL" + n, 1);
        column.zero = header.number("TZERO" + n, 0);
        column.offset = offset;
        const std::size_t digits = std::min(form.find_first_not_of("0123456789"), form.size());
        int count = 1;
        if (digits == form.size() || (digits > 0 && !readNumber(form.substr(0, digits), count)))
            return 0;
        column.type = form[digits];
        column.count = count;
        const std::string_view types = "LXBIJKAEDCMPQ";
        const int widths[] = {1, 0, 1, 2, 4, 8, 1, 4, 8, 8, 16, 8, 16};
        const std::size_t type = types.find(column.type);
        if (type == std::string_view::npos)
            return 0;
        offset +=
            column.type == 'X' ? (std::int64_t{count} + 7) / 8 : std::int64_t{count} * widths[type];
        columns_.push_back(column);
    }
    if (offset > width_)
        return 0;
    bytes_.resize(static_cast<std::size_t>(bytes));
    file.read(header.dataStart, bytes_.data(), bytes_.size());
    return 1;
}

int FitsTable::column(const std::string& name) const
{
    for (std::size_t i = 0; i < columns_.size(); ++i)
        if (columns_[i].name == name)
            return static_cast<int>(i);
    return -1;
}

int FitsTable::count(int column) const
{
    return column < 0 ? 0 : columns_[static_cast<std::size_t>(column)].count;
}

double FitsTable::number(std::int64_t row, int column, int item) const
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (row < 0 || row >= rows_ || item < 0 || item >= count(column))
        return none;
    const Column& c = columns_[static_cast<std::size_t>(column)];
    const unsigned char* at = bytes_.data() + row * width_ + c.offset;
    int bitpix = 0;
    switch (c.type) {
    case 'B':
        bitpix = 8;
        break;
    case 'I':
        bitpix = 16;
        break;
    case 'J':
        bitpix = 32;
        break;
    case 'K':
        bitpix = 64;
        break;
    case 'E':
        bitpix = -32;
        break;
    case 'D':
        bitpix = -64;
        break;
    default:
        return none;
    }
    return storedNumber(at + std::int64_t{item} * std::abs(bitpix) / 8, bitpix) * c.scale + c.zero;
}

std::string FitsTable::text(std::int64_t row, int column) const
{
    if (row < 0 || row >= rows_ || column < 0 ||
        columns_[static_cast<std::size_t>(column)].type != 'A')
        return {};
    const Column& c = columns_[static_cast<std::size_t>(column)];
    const char* const at =
        reinterpret_cast<const char*>(bytes_.data() + row * width_ + c.offset);  // NOLINT
    const std::string_view field(at, static_cast<std::size_t>(c.count));
    // one writer leaves other bytes behind the zero
    return plain(field.substr(0, field.find('\0')));
}

double storedNumber(const unsigned char* bytes, int bitpix)
{
    switch (bitpix) {
    case 8:
        return bytes[0];
    case 16:
        return bigEndian<std::int16_t>(bytes);
    case 32:
        return bigEndian<std::int32_t>(bytes);
    case 64:
        return static_cast<double>(bigEndian<std::int64_t>(bytes));
    case -32:
        return bigEndian<float>(bytes);
    default:
        return bigEndian<double>(bytes);
    }
}

}  // namespace pavane_ms
