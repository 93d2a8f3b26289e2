#include "pavane/trackers/regions/area_kind.h"

#include "pavane/trackers/masks/cell_area_file.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace pavane
{

namespace
{

constexpr std::string_view ds9Header = "# Region file format: DS9";
constexpr std::string_view crtfHeader = "#CRTF";
constexpr std::string_view windowsHeader = "! CLEAN windows";
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::int64_t longestText = 64 << 20;
/// The number of the current area and the count of areas, and behind them a class name.
constexpr std::size_t collectionHead = 8;
constexpr std::size_t classNameBytes = 32;

struct Start {
    std::array<char, 64> bytes{};
    std::size_t count = 0;
    std::int64_t size = -1;
    std::string_view text() const { return {bytes.data(), count}; }
};

Start startOf(const std::string& file)
{
    Start start;
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return start;
    start.size = in.size();
    const auto most = static_cast<std::int64_t>(start.bytes.size());
    start.count = static_cast<std::size_t>(std::clamp<std::int64_t>(in.left(), 0, most));
    if (!in.read(start.bytes.data(), static_cast<std::int64_t>(start.count)))
        start = Start();
    return start;
}

int isText(std::string_view start)
{
    return std::none_of(start.begin(), start.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < ' ' && c != '\n' && c != '\r' && c != '\t') || byte == 0xff;
    });
}

int isNone(std::string_view number)
{
    return std::all_of(number.begin(), number.end(), [](char c) { return c == 0; });
}

/// A class name stands where a collection has its first, or it is that of an empty collection.
int looksLikeCollection(const Start& start, AreaKind named)
{
    const std::string_view bytes = start.text();
    if (start.size == static_cast<std::int64_t>(collectionHead) && isNone(bytes.substr(4)))
        return named == AreaKind::collection || bytes.substr(0, 4) == "\xff\xff\xff\xff";
    if (bytes.size() < collectionHead + classNameBytes)
        return 0;
    const std::string_view field = bytes.substr(collectionHead, classNameBytes);
    const std::string_view name = field.substr(0, field.find('\0'));
    return !name.empty() && name.size() < field.size() &&
           std::all_of(name.begin(), name.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)); });
}

AreaKind binaryKind(const std::string& file, const Start& start, AreaKind named)
{
    AAreaArray areas;
    std::string ignored;
    const int isCells = readCellAreaFile(file, areas, ignored);
    // four zero bytes are a file of no polygons, but also the beginning of a collection
    if (isCells && (named != AreaKind::collection || areas.count() > 0) &&
        !(named == AreaKind::collection && looksLikeCollection(start, named)))
        return AreaKind::cells;
    return named == AreaKind::cells && !looksLikeCollection(start, named) ? AreaKind::cells
                                                                          : AreaKind::collection;
}

std::string small(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// A line that only sets something: blank, a comment that stands for no shape, a frame, defaults.
int isSetting(std::string_view line)
{
    line = trimmed(line, whiteSpace);
    if (!line.starts_with('#'))
        return line.starts_with("global") || line.find_first_of("([") == std::string_view::npos;
    line = trimmed(line.substr(1), whiteSpace);
    const auto end = std::find_if_not(line.begin(), line.end(),
                                      [](unsigned char c) { return std::isalnum(c) != 0; });
    return end == line.begin() || end == line.end() || *end != '(';
}

/// The last line can end here only if its shapes are closed and no property is half written.
int isWholeDs9(std::string_view line)
{
    constexpr std::string_view excluding = "include=0";
    const std::size_t hash = line.find('#');
    const std::string_view shapes = trimmed(line.substr(0, hash), whiteSpace);
    if (shapes.empty() || shapes.starts_with("global"))
        return 1;
    if (shapes.back() != ')' && shapes.find_first_of("( \t,") != std::string_view::npos)
        return 0;
    if (hash == std::string_view::npos)
        return 1;
    const std::string_view properties = trimmed(line.substr(hash + 1), whiteSpace);
    const std::string_view last = properties.substr(properties.find_last_of(" \t#") + 1);
    return last.empty() || last == excluding || !excluding.starts_with(last);
}

/// Positions on the sky are sure only with the frame that stands behind them.
int isWholeCrtf(std::string_view line, int hasGlobalFrame)
{
    if (line.starts_with('#') || small(line).starts_with("global"))
        return 1;
    int depth = 0;
    std::size_t end = line.find('[');
    for (; end < line.size(); ++end) {
        depth += line[end] == '[' ? 1 : line[end] == ']' ? -1 : 0;
        if (depth == 0)
            break;
    }
    if (end >= line.size())
        return 1;  // its reader sees that it does not close
    std::string tail = small(line.substr(end + 1));
    std::erase(tail, ' ');
    const std::string_view first = trimmed(line.substr(0, line.find(',')), whiteSpace);
    const std::size_t frame = tail.find("coord=");
    if (first.ends_with("pix") || (frame != std::string::npos && frame + 6 < tail.size()))
        return 1;
    return tail.empty() && hasGlobalFrame;
}

int namesGlobalFrame(std::string_view text)
{
    const std::string all = small(text);
    const std::size_t at = all.find("\nglobal");
    return at != std::string::npos &&
           all.substr(at, all.find('\n', at + 1) - at).find("coord") != std::string::npos;
}

}  // namespace

AreaKind areaKindOfName(const std::string& file)
{
    const std::string ending = small(extensionOf(file));
    return ending == "areas"  ? AreaKind::collection
           : ending == "cma"  ? AreaKind::cells
           : ending == "reg"  ? AreaKind::ds9
           : ending == "crtf" ? AreaKind::crtf
           : ending == "win"  ? AreaKind::windows
                              : AreaKind::unknown;
}

AreaKind areaKindOfFile(const std::string& file)
{
    const AreaKind named = areaKindOfName(file);
    const Start start = startOf(file);
    if (start.count == 0)
        return named;
    std::string_view text = start.text();
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    if (text.starts_with(crtfHeader))
        return AreaKind::crtf;
    if (!isText(text))
        return binaryKind(file, start, named);
    if (text.starts_with(ds9Header))
        return AreaKind::ds9;
    if (text.starts_with(windowsHeader))
        return AreaKind::windows;
    return named == AreaKind::crtf || named == AreaKind::windows ? named : AreaKind::ds9;
}

int isAreaFile(const std::string& file)
{
    if (areaKindOfName(file) != AreaKind::unknown)
        return 1;
    const Start start = startOf(file);
    std::string_view text = start.text();
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    return text.starts_with(ds9Header) || text.starts_with(crtfHeader) ||
           text.starts_with(windowsHeader);
}

int readRegionText(const std::string& file, std::string& text, std::string& error)
{
    text.clear();
    AFile in;
    const std::int64_t size = in.open(file, AFile::readOnly) ? in.size() : -1;
    if (size < 0) {
        error = readFault(file);
        return 0;
    }
    if (size > longestText) {
        error = "is larger than 64 MiB";
        return 0;
    }
    text.resize(static_cast<std::size_t>(size));
    if (!in.read(text.data(), size)) {
        error = "cannot be read";
        return 0;
    }
    if (text.find('\0') != std::string::npos) {
        error = "not a text file";
        return 0;
    }
    if (text.starts_with(byteOrderMark))
        text.erase(0, byteOrderMark.size());
    return 1;
}

int hasRegionHeader(AreaKind kind, std::string_view text)
{
    return text.starts_with(kind == AreaKind::crtf      ? crtfHeader
                            : kind == AreaKind::windows ? windowsHeader
                                                        : ds9Header);
}

int saysItHoldsNone(AreaKind kind, std::string_view text)
{
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos || text.back() != '\n' || !hasRegionHeader(kind, text))
        return 0;
    for (std::size_t at = end + 1; at < text.size();) {
        const std::size_t next = std::min(text.find('\n', at), text.size());
        if (!isSetting(text.substr(at, next - at)))
            return 0;
        at = next + 1;
    }
    return 1;
}

int promisedRegions(std::string_view text)
{
    text.remove_prefix(std::min(text.find('\n') + 1, text.size()));
    std::string_view line = trimmed(text.substr(0, text.find('\n')), whiteSpace);
    constexpr std::string_view behind = " area";
    const std::string_view before = line.starts_with('!') ? "! " : "# ";
    int count = 0;
    if (line.ends_with('s'))
        line.remove_suffix(1);
    if (!line.starts_with(before) || !line.ends_with(behind) || line.size() <= 7)
        return -1;
    line = line.substr(before.size(), line.size() - before.size() - behind.size());
    return stoval(line, count) && count >= 0 ? count : -1;
}

std::size_t cutLineOf(AreaKind kind, std::string_view text)
{
    if (text.empty() || text.back() == '\n' || text.back() == '\r')
        return std::string_view::npos;
    const std::size_t start = text.rfind('\n') + 1;
    const std::string_view line = trimmed(text.substr(start), whiteSpace);
    // the last number of a window may go on; a comment may not
    const int isWhole = kind == AreaKind::windows ? line.empty() || line.starts_with('!')
                        : kind == AreaKind::crtf  ? isWholeCrtf(line, namesGlobalFrame(text))
                                                  : isWholeDs9(line);
    return isWhole ? std::string_view::npos : start;
}

}  // namespace pavane
