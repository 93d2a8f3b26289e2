#include "pavane/trackers/areas/area_names.h"

#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace pavane
{

namespace
{

constexpr std::string_view firstLine = "# pavane areas 1";
constexpr std::string_view noColourText = "-";
/// Of a file with as many areas as any has.
constexpr std::int64_t mostBytes = std::int64_t{256} << 20;

class Checksum
{
public:
    void add(std::string_view bytes)
    {
        for (const char c : bytes)
            hash_ = (hash_ ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    }
    std::string digits() const
    {
        std::string digits(16, '0');
        std::uint64_t left = hash_;
        for (std::size_t i = digits.size(); i-- > 0; left >>= 4)
            digits[i] = "0123456789abcdef"[left & 15];
        return digits;
    }

private:
    std::uint64_t hash_ = 0xCBF29CE484222325u;
};

/// That of a whole file; "" when it cannot be read.
std::string checksumOfFile(const std::string& file)
{
    constexpr std::int64_t block = std::int64_t{1} << 16;
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return {};
    Checksum sum;
    std::string bytes;
    for (std::int64_t left = in.left(); left > 0; left = in.left()) {
        bytes.resize(static_cast<std::size_t>(std::min(left, block)));
        if (!in.read(bytes.data(), static_cast<std::int64_t>(bytes.size())))
            return {};
        sum.add(bytes);
    }
    return sum.digits();
}

std::string escaped(const std::string& name)
{
    std::string text;
    for (const char c : name) {
        const std::size_t at = std::string_view("\n\t\r\\").find(c);
        if (at == std::string_view::npos)
            text.push_back(c);
        else
            text.append(1, '\\').push_back("ntr\\"[at]);
    }
    return text;
}

/// 0 for a text with other escapes.
int unescape(std::string_view text, std::string& name)
{
    name.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            name.push_back(text[i]);
            continue;
        }
        const std::size_t at =
            ++i < text.size() ? std::string_view("ntr\\").find(text[i]) : std::string_view::npos;
        if (at == std::string_view::npos)
            return 0;
        name.push_back("\n\t\r\\"[at]);
    }
    return 1;
}

/// Takes a line off the text, which ends with a line end; 0 when none is left.
int takeLine(std::string_view& text, std::string_view& line)
{
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos)
        return 0;
    line = text.substr(0, end);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    text.remove_prefix(end + 1);
    return 1;
}

/// Whether a file begins as one of names: no other is removed.
int isOurs(const std::string& file)
{
    char begin[firstLine.size()] = {};
    AFile in;
    return IsFileExists(file) && in.open(file, AFile::readOnly) && in.read(begin, sizeof begin) &&
           std::string_view(begin, sizeof begin) == firstLine;
}

int readLabel(std::string_view line, AreaLabel& label)
{
    const std::size_t blank = line.find(' ');
    const std::string_view colour = line.substr(0, blank);
    if (blank == std::string_view::npos ||
        (colour != noColourText && !areaColourOf(colour, label.colour)))
        return 0;
    std::string name;
    if (!unescape(line.substr(blank + 1), name))
        return 0;
    label.name = fittingName(name);
    return 1;
}

}  // namespace

std::string namesFileOf(const std::string& areas) { return areas + ".names"; }

std::string areaChecksum(std::string_view bytes)
{
    Checksum sum;
    sum.add(bytes);
    return sum.digits();
}

std::string namesText(const std::string& checksum, const std::vector<AreaLabel>& labels)
{
    int hasLabel = 0;
    std::string text(firstLine);
    text.append("\n").append(std::to_string(labels.size())).append(" ");
    text.append(checksum).append("\n");
    for (const AreaLabel& label : labels) {
        hasLabel = hasLabel || !label.isEmpty();
        const std::string colour = areaColourText(label.colour);
        text.append(colour.empty() ? noColourText : std::string_view(colour)).append(" ");
        text.append(escaped(label.name)).append("\n");
    }
    return hasLabel ? text : std::string();
}

int readNames(std::string_view text, const std::string& checksum, int count,
              std::vector<AreaLabel>& labels, std::string& error)
{
    labels.clear();
    const auto refuse = [&](const char* why) {
        error = why;
        labels.clear();
        return 0;
    };
    std::string_view line;
    if (!takeLine(text, line) || line != firstLine)
        return refuse("not a file of names of areas");
    int promised = 0;
    if (!takeLine(text, line) || !stoval(line.substr(0, line.find(' ')), promised) || promised < 0)
        return refuse("its second line is not the number of areas and their checksum");
    if (promised != count || line.substr(line.find(' ') + 1) != checksum)
        return refuse("belongs to other areas");
    for (int i = 0; i < count; ++i) {
        AreaLabel label;
        if (!takeLine(text, line))
            return refuse("is cut short");
        if (!readLabel(line, label))
            return refuse("is damaged");
        labels.push_back(std::move(label));
    }
    return text.empty() ? 1 : refuse("goes on behind its last name");
}

int writeNamesFile(const std::string& areas, const std::vector<AreaLabel>& labels,
                   std::string& error)
{
    const std::string file = namesFileOf(areas);
    if (std::all_of(labels.begin(), labels.end(), [](const auto& l) { return l.isEmpty(); })) {
        removeNamesFile(areas);
        return 1;
    }
    const std::string text = namesText(checksumOfFile(areas), labels);
    SafeFile out;
    if (out.open(file) && out.file().write(text.data(), static_cast<std::int64_t>(text.size())) &&
        out.commit())
        return 1;
    error = file + ": " + out.fault();
    return 0;
}

int readNamesFile(const std::string& areas, int count, std::vector<AreaLabel>& labels,
                  std::string& error)
{
    labels.clear();
    const std::string file = namesFileOf(areas);
    if (!IsFileExists(file))
        return 1;
    AFile in;
    std::string why = "cannot be read";
    std::string text;
    if (in.open(file, AFile::readOnly)) {
        if (in.left() > mostBytes)
            why = "is larger than any file of names";
        else {
            text.resize(static_cast<std::size_t>(in.left()));
            if (in.read(text.data(), static_cast<std::int64_t>(text.size())) &&
                readNames(text, checksumOfFile(areas), count, labels, why))
                return 1;
        }
    }
    error = file + ": " + why;
    return 0;
}

void removeNamesFile(const std::string& areas)
{
    std::error_code ignored;
    if (isOurs(namesFileOf(areas)))
        std::filesystem::remove(namesFileOf(areas), ignored);
}

}  // namespace pavane
