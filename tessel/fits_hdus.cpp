#include "tessel/fits_hdus.h"

#include "tessel/fits_scan.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

constexpr std::int64_t blockBytes = 2880;
/// Bytes of cards of a header; the longest histories have some ten thousand cards.
constexpr std::int64_t mostHeader = std::int64_t{64} << 20;
constexpr std::int64_t mostAxes = 999;
constexpr double mostExact = 0x1p53;

/// Bytes of data behind a header; -1 when the header makes no sense.
std::int64_t claimedBytes(const HeaderCards& cards)
{
    const std::int64_t bitpix = wholeNumber(cards, "BITPIX", 0);
    const std::int64_t axes = wholeNumber(cards, "NAXIS", -1);
    const std::int64_t extra = wholeNumber(cards, "PCOUNT", 0);
    const std::int64_t groups = wholeNumber(cards, "GCOUNT", 1);
    if (!isCellType(bitpix) || axes < 0 || axes > mostAxes || extra < 0 || groups < 0)
        return -1;
    std::vector<std::int64_t> lengths;
    for (std::int64_t i = 1; i <= axes; ++i)
        lengths.push_back(wholeNumber(cards, "NAXIS" + std::to_string(i), -1));
    if (std::any_of(lengths.begin(), lengths.end(), [](std::int64_t n) { return n < 0; }))
        return -1;
    if (!lengths.empty() && lengths[0] == 0 && cards.value("GROUPS") == "T")
        lengths[0] = 1;
    const std::int64_t cells = lengths.empty() ? 0 : cellCount(lengths);
    return cellCount({cells + extra, groups, std::abs(bitpix) / 8});
}

}  // namespace

int openFits(const std::string& name, AFile& file, std::string& error)
{
    if (!file.open(name, AFile::readOnly)) {
        error = readFault(name);
        return 0;
    }
    char start[9] = {};
    const int whole = file.read(start, 9);
    if (static_cast<unsigned char>(start[0]) == 0x1f &&
        (static_cast<unsigned char>(start[1]) == 0x8b ||
         static_cast<unsigned char>(start[1]) == 0x9d)) {
        error = "is packed as a whole; unpack it first (gunzip)";
        return 0;
    }
    if (!whole || std::memcmp(start, "SIMPLE  =", 9) != 0) {
        error = "is not a FITS file";
        return 0;
    }
    return 1;
}

std::int64_t wholeNumber(const HeaderCards& cards, const std::string& key, std::int64_t missing)
{
    const std::string field = cards.value(key);
    double value = 0;
    if (field.empty())
        return missing;
    if (!fieldNumber(field, value) || value != std::floor(value) || std::abs(value) > mostExact)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

int readHdu(AFile& file, std::int64_t start, FitsHdu& hdu)
{
    hdu = FitsHdu();
    if (!hdu.cards.read(file, start, start + mostHeader) || hdu.cards.cards().empty())
        return 0;
    hdu.dataStart = file.tell();
    const std::string& first = hdu.cards.cards().front();
    const std::string_view key = withoutBlanks(std::string_view(first).substr(0, 8));
    if (key != (start ? "XTENSION" : "SIMPLE"))
        return 0;
    hdu.kind = start ? fieldText(valueField(first)) : std::string(key);
    hdu.dataBytes = claimedBytes(hdu.cards);
    return hdu.dataBytes >= 0;
}

std::int64_t endOf(const FitsHdu& hdu)
{
    return hdu.dataStart + (hdu.dataBytes + blockBytes - 1) / blockBytes * blockBytes;
}

}  // namespace pavane
