#include "apps/view/work/WorkFile.h"

#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/SafeFile.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <new>
#include <string_view>
#include <system_error>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view start = "# pavane work ";
constexpr int version = 1;
constexpr std::size_t mostMaps = 100;
constexpr std::size_t mostNotes = 20;
constexpr int allDigits = 17;

constexpr std::string_view shownNames[] = {"tabs", "side by side", "slider"};
constexpr std::string_view linkNames[] = {"nothing", "sky", "cell"};
constexpr struct {
    LinkPart part;
    std::string_view name;
} partNames[] = {
    {linkZoom, "zoom"}, {linkPointer, "pointer"}, {linkColours, "colours"}, {linkAreas, "areas"}};

/// A value on one line: ends of lines and backslashes as two characters.
std::string escaped(std::string_view text)
{
    std::string made;
    for (const char c : text)
        if (c == '\\')
            made += "\\\\";
        else if (c == '\n')
            made += "\\n";
        else if (c == '\r')
            made += "\\r";
        else
            made += c;
    return made;
}

std::string unescaped(std::string_view text)
{
    std::string made;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        const char c = next == 'n' ? '\n' : next == 'r' ? '\r' : next == '\\' ? '\\' : text[i];
        i += next == 'n' || next == 'r' || next == '\\';
        made += c;
    }
    return made;
}

fs::path absolutePath(const std::string& file)
{
    std::error_code fault;
    fs::path whole = fs::absolute(file, fault);
    return (fault ? fs::path(file) : std::move(whole)).lexically_normal();
}

std::string relativeTo(const fs::path& folder, const std::string& file)
{
    return file.empty() ? file : absolutePath(file).lexically_proximate(folder).string();
}

std::string foundFrom(const fs::path& folder, const std::string& file)
{
    return file.empty() ? file : (folder / file).lexically_normal().string();
}

/// So many numbers with commas between them, all of them finite.
int readNumbers(std::string_view text, double* numbers, int count)
{
    for (int i = 0; i < count; ++i) {
        const std::size_t end = std::min(text.find(','), text.size());
        if (!stoval(text.substr(0, end), numbers[i]) || !std::isfinite(numbers[i]) ||
            (end == text.size()) != (i == count - 1))
            return 0;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return 1;
}

int readFlag(std::string_view text, int& flag)
{
    if (text != "0" && text != "1")
        return 0;
    flag = text == "1";
    return 1;
}

template <typename Enum, std::size_t count>
int readName(std::string_view text, const std::string_view (&names)[count], Enum& value)
{
    const auto* const found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names))
        return 0;
    value = static_cast<Enum>(found - std::begin(names));
    return 1;
}

int readParts(std::string_view text, int& parts)
{
    int read = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        const auto* const found =
            std::find_if(std::begin(partNames), std::end(partNames),
                         [&](const auto& part) { return part.name == text.substr(0, end); });
        if (found == std::end(partNames))
            return 0;
        read |= found->part;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    parts = read;
    return 1;
}

int readWhole(std::string_view text, int least, int greatest, int& value)
{
    int read = 0;
    if (!stoval(text, read) || read < least || read > greatest)
        return 0;
    value = read;
    return 1;
}

int readOfWork(std::string_view key, const std::string& value, const fs::path& folder, Work& work)
{
    std::string why;
    if (key == "shown")
        return readName(value, shownNames, work.shown);
    if (key == "current")
        return readWhole(value, 0, static_cast<int>(mostMaps) - 1, work.current);
    if (key == "link")
        return readName(value, linkNames, work.linkBy);
    if (key == "linked")
        return readParts(value, work.linked);
    if (key == "grid")
        return readSkyGridWish(value, work.grid, why);
    if (key == "marks")
        return work.marks = foundFrom(folder, value), 1;
    if (key == "numbers")
        return readFlag(value, work.areaNumbers);
    return key == "names" && readFlag(value, work.areaNames);
}

int readOfMap(std::string_view key, const std::string& value, const fs::path& folder, WorkMap& map)
{
    double n[4] = {};
    if (key == "file")
        return map.file = foundFrom(folder, value), !map.file.empty();
    if (key == "plane")
        return readWhole(value, 0, std::numeric_limits<int>::max(), map.plane);
    if (key == "areas")
        return map.areas = foundFrom(folder, value), 1;
    if (key == "model")
        return map.model = foundFrom(folder, value), 1;
    if (key == "display")
        return map.display = value, 1;
    if (key == "range") {
        if (!readNumbers(value, n, 2) || !(n[0] < n[1]))
            return 0;
        map.low = n[0];
        map.high = n[1];
        return map.hasRange = 1;
    }
    if (key != "view" || !readNumbers(value, n, 4) || !(n[0] < n[1]) || !(n[2] < n[3]))
        return 0;
    map.view = TMinMax();
    map.view.xMin = n[0];
    map.view.xMax = n[1];
    map.view.yMin = n[2];
    map.view.yMax = n[3];
    return map.hasView = 1;
}

int readLines(LineReader& lines, const fs::path& folder, Work& work,
              std::vector<std::string>& notes, std::string& error)
{
    std::string line;
    int number = 0;
    if (!lines.next(line) || !line.starts_with(start) ||
        !stoval(std::string_view(line).substr(start.size()), number) || number < 1) {
        error = "is no work file";
        return 0;
    }
    if (number > version) {
        error = "is of a newer version (" + std::to_string(number) + "; this program knows " +
                std::to_string(version) + ")";
        return 0;
    }
    while (lines.next(line)) {
        const std::string_view text = line;  // names of files may end with a blank
        if (trimmed(text, whiteSpace).empty() || text.front() == '#')
            continue;
        if (text == "[map]") {
            if (work.maps.size() == mostMaps) {
                error = "has more than " + std::to_string(mostMaps) + " maps";
                return 0;
            }
            work.maps.emplace_back();
            continue;
        }
        const std::size_t equal = std::min(text.find('='), text.size());
        const std::string_view key = text.substr(0, equal);
        const std::string value = unescaped(text.substr(std::min(equal + 1, text.size())));
        const int isRead = equal < text.size() &&
                           (work.maps.empty() ? readOfWork(key, value, folder, work)
                                              : readOfMap(key, value, folder, work.maps.back()));
        if (!isRead && notes.size() < mostNotes)
            notes.push_back("line " + std::to_string(lines.number()) + ": '" + plainText(text) +
                            "' is not understood");
    }
    error = lines.fault();
    std::erase_if(work.maps, [](const WorkMap& map) { return map.file.empty(); });
    if (error.empty() && work.maps.empty())
        error = "names no map";
    if (work.current >= static_cast<int>(work.maps.size()))
        work.current = 0;
    return error.empty();
}

}  // namespace

int isWorkFile(const std::string& file)
{
    AFile in;
    char begin[start.size()] = {};
    return in.open(file, AFile::readOnly) && in.read(begin, start.size()) &&
           std::string_view(begin, start.size()) == start;
}

int readWork(const std::string& file, Work& work, std::vector<std::string>& notes,
             std::string& error)
{
    work = Work();
    notes.clear();
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = readFault(file);
        return 0;
    }
    try {
        LineReader lines(in);
        if (readLines(lines, absolutePath(file).parent_path(), work, notes, error))
            return 1;
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    work = Work();
    return 0;
}

std::string workText(const std::string& file, const Work& work)
{
    const fs::path folder = absolutePath(file).parent_path();
    std::string text = std::string(start) + std::to_string(version) + '\n';
    const auto line = [&text](std::string_view key, const std::string& value) {
        text.append(key).append("=").append(escaped(value)).append("\n");
    };
    const auto fileLine = [&](std::string_view key, const std::string& named) {
        if (!named.empty())
            line(key, relativeTo(folder, named));
    };
    const auto number = [](double value) { return valToStr(value, allDigits); };
    line("shown", std::string(shownNames[static_cast<std::size_t>(work.shown)]));
    line("current", std::to_string(work.current));
    line("link", std::string(linkNames[static_cast<std::size_t>(work.linkBy)]));
    std::string parts;
    for (const auto& part : partNames)
        if (work.linked & part.part)
            parts.append(parts.empty() ? "" : ",").append(part.name);
    line("linked", parts);
    line("grid", skyGridWishText(work.grid));
    fileLine("marks", work.marks);
    line("numbers", work.areaNumbers ? "1" : "0");
    line("names", work.areaNames ? "1" : "0");
    for (const WorkMap& map : work.maps) {
        text += "[map]\n";
        fileLine("file", map.file);
        if (map.plane >= 0)
            line("plane", std::to_string(map.plane));
        fileLine("areas", map.areas);
        fileLine("model", map.model);
        if (map.hasView)
            line("view", number(map.view.xMin) + ',' + number(map.view.xMax) + ',' +
                             number(map.view.yMin) + ',' + number(map.view.yMax));
        if (!map.display.empty())
            line("display", map.display);
        if (map.hasRange)
            line("range", number(map.low) + ',' + number(map.high));
    }
    return text;
}

int writeWork(const std::string& file, const Work& work, std::string& error)
{
    const std::string text = workText(file, work);
    SafeFile safe;
    if (safe.open(file) && safe.file().write(text.data(), static_cast<std::int64_t>(text.size())) &&
        safe.commit())
        return 1;
    error = file + ": " + safe.fault();
    return 0;
}

}  // namespace pavane
