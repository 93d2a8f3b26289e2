#include "tessel/fits_scan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <unordered_map>

namespace pavane
{

namespace
{

constexpr std::int64_t blockBytes = 2880;
constexpr std::size_t cardBytes = 80;
constexpr std::int64_t noFileHolds = std::int64_t{1} << 56;
/// What the FITS standard allows, and what a tile-compressed image may have here.
constexpr std::int64_t mostAxes = 999;
constexpr std::int64_t mostPackedAxes = 6;
/// No codec of tile-compressed images packs more cells into a byte.
constexpr std::int64_t mostPacked = 4096;
/// Cells of a plane of a small packed file: what can be unpacked and drawn in two seconds.
constexpr std::int64_t mostOfSmall = std::int64_t{1} << 25;
/// A decoder holds a tile as a whole. Beyond the least, which any file may have, a tile needs a
/// byte for that many cells; rows of nothing but zeros need one for half as many.
constexpr std::int64_t mostOfAnyTile = std::int64_t{1} << 22;
constexpr std::int64_t mostOfTile = 512;
/// Cards of a header; the longest histories have some ten thousand.
constexpr std::int64_t mostHeader = std::int64_t{64} << 20;

using Numbers = std::vector<std::int64_t>;

/// The keywords of one header that say how large its data are; the first of a name counts.
struct Header {
    std::string kind;  ///< "SIMPLE", or the XTENSION
    std::unordered_map<std::string, std::string> values;
    bool repeats = false;  ///< a keyword comes twice: readers may disagree on which one counts
    std::int64_t dataStart = 0;

    std::int64_t number(const std::string& key, std::int64_t missing) const
    {
        const auto found = values.find(key);
        std::int64_t value = missing;
        if (found == values.end())
            return missing;
        const std::string& text = found->second;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool whole = result.ec == std::errc{} && result.ptr == text.data() + text.size();
        return whole ? value : std::numeric_limits<std::int64_t>::min();
    }
    std::string text(const std::string& key) const
    {
        const auto found = values.find(key);
        return found == values.end() ? std::string() : found->second;
    }
    void take(std::string_view card, std::string_view key);
    int isOne(const std::string& key) const { return text(key) == "T"; }
    Numbers lengths(const std::string& prefix, std::int64_t axes) const
    {
        Numbers found;
        for (std::int64_t i = 1; i <= axes; ++i)
            found.push_back(number(prefix + std::to_string(i), -1));
        return found;
    }
};

/// A card's value without quotes and comment.
std::string_view valueOf(std::string_view card)
{
    std::string_view value = withoutBlanks(card.substr(10));
    if (!value.empty() && value[0] == '\'')
        return withoutBlanks(value.substr(1, value.find('\'', 1) - 1));
    return withoutBlanks(value.substr(0, value.find('/')));
}

int isStructural(std::string_view key)
{
    static constexpr std::string_view starts[] = {"BITPIX", "NAXIS",   "PCOUNT", "GCOUNT",
                                                  "GROUPS", "TFIELDS", "Z"};
    return std::any_of(std::begin(starts), std::end(starts),
                       [&](std::string_view s) { return key.substr(0, s.size()) == s; });
}

void Header::take(std::string_view card, std::string_view key)
{
    if (card.substr(8, 2) == "= " && isStructural(key))
        repeats |= !values.emplace(key, valueOf(card)).second;
}

/// Reads the header at `start`. 0 when there is none or the file ends before it does.
int readHeader(AFile& file, std::int64_t start, Header& header)
{
    std::array<char, blockBytes> block{};
    header = Header();
    if (!file.seek(start))
        return 0;
    for (std::int64_t at = start;; at += blockBytes) {
        if (at - start > mostHeader || !file.read(block.data(), blockBytes))
            return 0;
        for (std::size_t i = 0; i < block.size(); i += cardBytes) {
            const std::string_view card(block.data() + i, cardBytes);
            const std::string_view key = withoutBlanks(card.substr(0, 8));
            if (at == start && i == 0) {
                header.kind = key == "XTENSION" ? std::string(valueOf(card)) : std::string(key);
                if (key != (start ? "XTENSION" : "SIMPLE"))
                    return 0;
            } else if (key == "END") {
                header.dataStart = at + blockBytes;
                return 1;
            } else {
                header.take(card, key);
            }
        }
    }
}

/// Bytes of cells behind a header, cut at what no file holds; -1 when the header makes no sense.
std::int64_t dataBytes(const Header& header)
{
    const std::int64_t bitpix = header.number("BITPIX", 0);
    const std::int64_t axes = header.number("NAXIS", -1);
    const std::int64_t extra = header.number("PCOUNT", 0);
    const std::int64_t groups = header.number("GCOUNT", 1);
    if (!isCellType(bitpix) || axes < 0 || axes > mostAxes || extra < 0 || groups < 0)
        return -1;
    Numbers lengths = header.lengths("NAXIS", axes);
    if (!lengths.empty() && *std::min_element(lengths.begin(), lengths.end()) < 0)
        return -1;
    if (!lengths.empty() && lengths[0] == 0 && header.isOne("GROUPS"))
        lengths[0] = 1;
    const std::int64_t cells = lengths.empty() ? 0 : cellCount(lengths);
    const std::int64_t each = std::min(cells + std::min(extra, noFileHolds), noFileHolds);
    const std::int64_t bytes = (bitpix < 0 ? -bitpix : bitpix) / 8;
    return cellCount({each, groups, bytes});
}

std::string sizeText(const Numbers& lengths)
{
    return std::to_string(lengths[0]) + " x " + std::to_string(lengths[1]) + " cells";
}

/// Takes the axes of an image when they are two or more; why not, else.
int takeAxes(const Header& header, const std::string& z, FitsImage& image, std::string& error)
{
    const std::int64_t axes = header.number(z + "NAXIS", 0);
    const std::int64_t bitpix = header.number(z + "BITPIX", 0);
    if (axes < 2 || axes > (z.empty() ? mostAxes : mostPackedAxes) || !isCellType(bitpix))
        return 0;
    image.lengths = header.lengths(z + "NAXIS", axes);
    image.bitpix = static_cast<int>(bitpix);
    image.packed = !z.empty();
    image.dataStart = header.dataStart;
    if (*std::min_element(image.lengths.begin(), image.lengths.end()) < 1) {
        error = header.isOne("GROUPS") ? "holds visibilities, not a map"
                                       : "has an image axis of length 0 or without a length";
        return 0;
    }
    if (std::max(image.lengths[0], image.lengths[1]) <= std::numeric_limits<int>::max())
        return 1;
    error = "has an image that is too large, " + sizeText(image.lengths);
    return 0;
}

/// Whether the tiles of a compressed image are sound: known, positive and as many as the table has
/// rows. The decoder divides by these numbers and takes them on trust.
int hasSoundTiles(const Header& header, FitsImage& image)
{
    static constexpr std::string_view codecs[] = {"RICE_1", "RICE_ONE", "GZIP_1",
                                                  "GZIP_2", "PLIO_1",   "HCOMPRESS_1"};
    if (std::find(std::begin(codecs), std::end(codecs), header.text("ZCMPTYPE")) ==
            std::end(codecs) ||
        header.repeats || header.number("NAXIS", 0) != 2 || header.number("TFIELDS", 0) < 1)
        return 0;
    Numbers tile;
    Numbers tiles;
    for (std::size_t i = 0; i < image.lengths.size(); ++i) {
        tile.push_back(
            header.number("ZTILE" + std::to_string(i + 1), i == 0 ? image.lengths[0] : 1));
        if (tile[i] < 1 || tile[i] > std::numeric_limits<int>::max())
            return 0;
        tiles.push_back((image.lengths[i] - 1) / tile[i] + 1);
    }
    for (int i = 1; i <= 9; ++i) {
        const std::string n = std::to_string(i);
        const std::string name = header.text("ZNAME" + n);
        const std::int64_t value = header.number("ZVAL" + n, 0);
        if (name == "BLOCKSIZE" && value != 16 && value != 32)
            return 0;
        if (name == "BYTEPIX" && value != 1 && value != 2 && value != 4 && value != 8)
            return 0;
    }
    image.tileCells = cellCount(tile);
    return image.tileCells <= cellCount(image.lengths) * 2 &&
           image.tileCells <= std::max(mostOfAnyTile, image.packedBytes * mostOfTile) &&
           cellCount(tiles) == header.number("NAXIS2", 0);
}

int holdsData(const Header& header, FitsImage& image, std::int64_t fileSize, std::string& error)
{
    const std::int64_t held = std::max<std::int64_t>(fileSize - header.dataStart, 0);
    const std::int64_t promised = dataBytes(header);
    if (promised > held) {
        error = "ends before its image of " + sizeText(image.lengths) + " does";
        return 0;
    }
    if (!image.packed)
        return 1;
    image.packedBytes = promised;
    const std::int64_t plane = cellCount({image.lengths[0], image.lengths[1]});
    if (promised < smallPacked && plane > mostOfSmall) {
        error = "has " + sizeText(image.lengths) + " packed into " + std::to_string(promised) +
                " bytes, too many to be shown";
        return 0;
    }
    const std::int64_t cells = cellCount(image.lengths);
    if (cells > promised * mostPacked || !hasSoundTiles(header, image)) {
        error = "has a compressed image of " + sizeText(image.lengths) + " that cannot be right";
        return 0;
    }
    return 1;
}

}  // namespace

int isCellType(std::int64_t bitpix)
{
    return bitpix == 8 || bitpix == 16 || bitpix == 32 || bitpix == 64 || bitpix == -32 ||
           bitpix == -64;
}

std::int64_t cellCount(const std::vector<std::int64_t>& lengths, std::size_t from)
{
    std::int64_t result = 1;
    for (std::size_t i = from; i < lengths.size() && result > 0; ++i)
        result = lengths[i] > noFileHolds / result ? noFileHolds : result * lengths[i];
    return result;
}

int scanForImage(AFile& file, FitsImage& image, std::string& error)
{
    const std::int64_t size = file.size();
    Header header;
    error = "holds no image of two axes";
    for (std::int64_t start = 0; start < size;) {
        if (!readHeader(file, start, header)) {
            if (start == 0)
                error = "has a header that is cut off";
            return 0;
        }
        const std::int64_t bytes = dataBytes(header);
        if (bytes < 0) {
            error = "has a header that makes no sense";
            return 0;
        }
        ++image.hdu;
        image.headerStart = start;
        const bool packed = header.kind == "BINTABLE" && header.isOne("ZIMAGE");
        const bool plain = header.kind == "SIMPLE" || header.kind == "IMAGE";
        if ((packed || plain) && takeAxes(header, packed ? "Z" : "", image, error))
            return holdsData(header, image, size, error);
        if (bytes > size)
            return 0;
        start = header.dataStart + (bytes + blockBytes - 1) / blockBytes * blockBytes;
    }
    return 0;
}

int imageOfCards(const HeaderCards& cards, FitsImage& image, std::string& error)
{
    image = FitsImage();
    Header header;
    for (const std::string& card : cards.cards()) {
        const std::string_view key = withoutBlanks(std::string_view(card).substr(0, 8));
        if (key == "XTENSION" && header.kind.empty())
            header.kind = valueOf(card);
        header.take(card, key);
    }
    const bool packed = header.kind == "BINTABLE" && header.isOne("ZIMAGE");
    const std::string z = packed ? "Z" : "";
    if (!packed && header.text("NAXIS").empty())
        return 1;
    // made by hand for cells in memory, it need not say what these are
    (void)header.values.emplace(z + "BITPIX", "-32");
    error = "has the header of something else than an image of two axes";
    return (packed || header.kind.empty() || header.kind == "IMAGE") &&
           takeAxes(header, z, image, error);
}

int choosePlane(const FitsImage& image, int& plane, std::string& error)
{
    const std::int64_t planes = cellCount(image.lengths, 2);
    if (planes > std::numeric_limits<int>::max()) {
        error = "has more planes than can be counted";
        return 0;
    }
    if (plane < 0 && planes > 1) {
        error = "has " + std::to_string(planes) + " planes; choose one";
        return 0;
    }
    plane = std::max(plane, 0);
    if (plane >= planes) {
        error = "has no plane " + std::to_string(plane) + ": there are " + std::to_string(planes) +
                ", counted from 0";
        return 0;
    }
    return 1;
}

}  // namespace pavane
