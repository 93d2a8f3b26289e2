#include "apps/view/work/WorkFile.h"

#include "apps/view/work/work_keys.h"
#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <new>
#include <system_error>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t mostNotes = 20;
/// Of a line, and points of a kept curve: more than any that can be drawn.
constexpr std::size_t mostCorners = 10000, mostPoints = 10000000;
/// A width of more cells is no width, what lies farther off no corner.
constexpr double mostWidth = 1e6, mostPixels = 1e9;
constexpr double mostShift = 180;  // degrees

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

std::string foundFrom(const fs::path& folder, const std::string& file)
{
    return file.empty() ? file : (folder / file).lexically_normal().string();
}

/// So many numbers with commas between them, all of them finite; `gaps` of the last may be nan.
int readNumbers(std::string_view text, double* numbers, int count, int gaps = 0)
{
    for (int i = 0; i < count; ++i) {
        const std::size_t end = std::min(text.find(','), text.size());
        if (!stoval(text.substr(0, end), numbers[i]) ||
            !(std::isfinite(numbers[i]) || (i >= count - gaps && std::isnan(numbers[i]))) ||
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

int readOfLine(std::string_view key, const std::string& value, ProfileLine& line)
{
    double n[2] = {};
    if (key == "across")
        return readName(value, acrossNames, line.across);
    if (key == "width") {
        if (!readNumbers(value, n, 1) || !(n[0] >= 0 && n[0] <= mostWidth))
            return 0;
        line.width = n[0];
        return 1;
    }
    if (key != "corner" || line.corners.size() == mostCorners || !readNumbers(value, n, 2) ||
        !(std::fabs(n[0]) <= mostPixels && std::fabs(n[1]) <= mostPixels))
        return 0;
    line.corners.push_back({n[0] - 1, n[1] - 1});
    return 1;
}

int readOfWork(std::string_view key, const std::string& value, const fs::path& folder, Work& work)
{
    std::string why;
    if (key == "shown")
        return readName(value, shownNames, work.shown);
    if (key == "current")
        return readWhole(value, 0, static_cast<int>(mostWorkMaps) - 1, work.current);
    if (key == "link")
        return readName(value, linkNames, work.linkBy);
    if (key == "linked")
        return readParts(value, work.linked);
    if (key == "grid")
        return readSkyGridWish(value, work.grid, why);
    if (key == "marks")
        return work.marks = foundFrom(folder, value), 1;
    if (key == "saved")
        return work.savedAs = foundFrom(folder, value), 1;
    if (key == "curve")
        return readName(value, curveNames, work.curves);
    const struct {
        std::string_view key;
        int& flag;
    } flags[] = {{"numbers", work.areaNumbers},
                 {"names", work.areaNames},
                 {"values", work.areaValues},
                 {"surface", work.surface}};
    for (const auto& each : flags)
        if (key == each.key)
            return readFlag(value, each.flag);
    return readOfLine(key, value, work.line);
}

int readOfMap(std::string_view key, const std::string& value, const fs::path& folder, WorkMap& map)
{
    double n[4] = {};
    const struct {
        std::string_view key;
        std::string& file;
    } files[] = {{"areas", map.areas},
                 {"model", map.model},
                 {"unsaved areas", map.unsavedAreas},
                 {"unsaved model", map.unsavedModel},
                 {"contours", map.contours}};
    for (const auto& each : files)
        if (key == each.key)
            return each.file = foundFrom(folder, value), 1;
    if (key == "file")
        return map.file = foundFrom(folder, value), !map.file.empty();
    if (key == "plane")
        return readWhole(value, 0, std::numeric_limits<int>::max(), map.plane);
    if (key == "display")
        return map.display = value, 1;
    if (key == "shift") {
        if (!readNumbers(value, n, 2) || !(std::hypot(n[0], n[1]) <= mostShift))
            return 0;
        map.shift = {n[0], n[1]};
        return 1;
    }
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

int readOfCurve(std::string_view key, const std::string& value, WorkCurve& curve)
{
    double n[2] = {};
    if (key == "name")
        return curve.name = value, 1;
    if (key == "x")
        return curve.xTitle = value, 1;
    if (key == "y")
        return curve.yTitle = value, 1;
    if (key != "at" || curve.x.size() == mostPoints || !readNumbers(value, n, 2, 1))
        return 0;
    curve.x.push_back(n[0]);
    curve.y.push_back(n[1]);
    return 1;
}

/// What lines are about.
enum class Section : std::uint8_t { window, map, curve };

/// Whether the line begins another section; `error` when there are too many of them.
int startSection(std::string_view text, Work& work, Section& section, std::string& error)
{
    if (text == "[map]") {
        section = Section::map;
        work.maps.emplace_back();
        if (work.maps.size() > mostWorkMaps)
            error = "has more than " + std::to_string(mostWorkMaps) + " maps";
        return 1;
    }
    if (text != "[curve]")
        return 0;
    section = Section::curve;
    work.kept.emplace_back();
    if (work.kept.size() > mostWorkCurves)
        error = "has more than " + std::to_string(mostWorkCurves) + " kept curves";
    return 1;
}

int readLines(LineReader& lines, const fs::path& folder, Work& work,
              std::vector<std::string>& notes, std::string& error)
{
    std::string line;
    int number = 0;
    if (!lines.next(line) || !line.starts_with(workStart) ||
        !stoval(std::string_view(line).substr(workStart.size()), number) || number < 1) {
        error = "is no work file";
        return 0;
    }
    if (number > workVersion) {
        error = "is of a newer version (" + std::to_string(number) + "; this program knows " +
                std::to_string(workVersion) + ")";
        return 0;
    }
    Section section = Section::window;
    while (error.empty() && lines.next(line)) {
        const std::string_view text = line;  // names of files may end with a blank
        if (trimmed(text, whiteSpace).empty() || text.front() == '#' ||
            startSection(text, work, section, error))
            continue;
        const std::size_t equal = std::min(text.find('='), text.size());
        const std::string_view key = text.substr(0, equal);
        const std::string value = unescaped(text.substr(std::min(equal + 1, text.size())));
        const int isRead =
            equal < text.size() &&
            (section == Section::curve ? readOfCurve(key, value, work.kept.back())
             : section == Section::map ? readOfMap(key, value, folder, work.maps.back())
                                       : readOfWork(key, value, folder, work));
        if (!isRead && notes.size() < mostNotes)
            notes.push_back("line " + std::to_string(lines.number()) + ": '" + plainText(text) +
                            "' is not understood");
    }
    if (error.empty())
        error = lines.fault();
    std::erase_if(work.maps, [](const WorkMap& map) { return map.file.empty(); });
    if (work.line.corners.size() == 1)
        work.line.corners.clear();
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
    char begin[workStart.size()] = {};
    return in.open(file, AFile::readOnly) && in.read(begin, workStart.size()) &&
           std::string_view(begin, workStart.size()) == workStart;
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
        std::error_code fault;
        const fs::path whole = fs::absolute(file, fault);
        const fs::path folder = (fault ? fs::path(file) : whole).lexically_normal().parent_path();
        if (readLines(lines, folder, work, notes, error))
            return 1;
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    work = Work();
    return 0;
}

}  // namespace pavane
