#include "tessel/flags/VisibilityFlags.h"

#include "tessel/LineReader.h"
#include "tessel/SafeFile.h"
#include "tessel/stokes_name.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

constexpr const char* firstLine = "# pavane flags 1";
constexpr std::string_view dayWord = "# referenceday";
constexpr int mostIfs = 65536;
/// Of all lines together: short lines can name many.
constexpr std::size_t mostIfsOfFile = std::size_t{1} << 24;
constexpr int leastStokes = -8, mostStokes = 4;

std::string ifsText(const std::vector<int>& ifs)
{
    std::string text;
    for (std::size_t i = 0; i < ifs.size();) {
        std::size_t end = i + 1;
        while (end < ifs.size() && ifs[end] == ifs[end - 1] + 1)
            ++end;
        text.append(text.empty() ? "" : ",").append(std::to_string(ifs[i] + 1));
        if (end > i + 1)
            text.append("-").append(std::to_string(ifs[end - 1] + 1));
        i = end;
    }
    return text.empty() ? "*" : text;
}

int readIfs(std::string_view text, std::vector<int>& ifs)
{
    ifs.clear();
    if (text == "*")
        return 1;
    for (;;) {
        const std::size_t comma = text.find(',');
        const std::string_view part = text.substr(0, comma);
        const std::size_t dash = part.find('-');
        int from = 0, to = 0;
        if (!stoval(part.substr(0, dash), from) || from < 1)
            return 0;
        to = from;
        if (dash != std::string_view::npos && !stoval(part.substr(dash + 1), to))
            return 0;
        if (to < from || to > mostIfs || (!ifs.empty() && from - 1 <= ifs.back()))
            return 0;
        for (int i = from; i <= to; ++i)
            ifs.push_back(i - 1);
        if (comma == std::string_view::npos)
            return 1;
        text.remove_prefix(comma + 1);
    }
}

int readStokes(std::string_view text, int& stokes)
{
    stokes = 0;
    if (text == "*")
        return 1;
    for (int code = leastStokes; code <= mostStokes; ++code)
        if (code != 0 && stokesName(code) == text) {
            stokes = code;
            return 1;
        }
    return 0;
}

int readDay(std::string_view line, double& day)
{
    return line.substr(0, dayWord.size()) == dayWord &&
           stoval(trimmed(line.substr(dayWord.size()), whiteSpace), day) && std::isfinite(day);
}

int readLines(LineReader& reader, VisibilityFlags& flags, std::string& error)
{
    std::string text;
    if (!reader.next(text) || text != firstLine) {
        error = reader.fault().empty() ? "is no file of flags" : reader.fault();
        return 0;
    }
    if (!reader.next(text) || !readDay(text, flags.referenceDay)) {
        error = "has no reference day in its second line";
        return 0;
    }
    std::size_t named = 0;
    while (reader.next(text)) {
        if (text.empty() || text[0] == '#')
            continue;
        std::string wrong;
        FlagLine line;
        if (!readFlagLine(text, line, wrong)) {
            error = "has a line " + std::to_string(reader.number()) + " with a wrong " + wrong;
            return 0;
        }
        if ((named += line.ifs.size()) > mostIfsOfFile) {
            error = "names more IFs than any data have";
            return 0;
        }
        flags.lines.push_back(std::move(line));
    }
    error = reader.fault();
    return error.empty();
}

}  // namespace

std::string flagText(const FlagLine& line)
{
    std::string text = line.isRestore ? "restore" : "flag";
    const auto add = [&text](const std::string& field) { text.append("\t").append(field); };
    for (const int number : {line.subarray, line.first, line.second})
        add(std::to_string(number));
    add(ifsText(line.ifs));
    add(line.stokes == 0 ? "*" : stokesName(line.stokes));
    add(valToStr(line.start));
    add(valToStr(line.end));
    add(std::to_string(line.source));
    return text;
}

int readFlagLine(std::string_view text, FlagLine& line, std::string& wrong)
{
    constexpr std::size_t count = 9;
    std::string_view fields[count];
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t tab = text.find('\t');
        if ((tab == std::string_view::npos) != (i + 1 == count)) {
            wrong = "number of fields";
            return 0;
        }
        fields[i] = text.substr(0, tab);
        text.remove_prefix(i + 1 == count ? text.size() : tab + 1);
    }
    line = {};
    line.isRestore = fields[0] == "restore";
    const auto number = [](std::string_view field, int& value) {
        return stoval(field, value) && value >= 0;
    };
    const auto day = [](std::string_view field, double& value) {
        return stoval(field, value) && std::isfinite(value);
    };
    if (fields[0] != "flag" && !line.isRestore)
        wrong = "first word";
    else if (!number(fields[1], line.subarray))
        wrong = "subarray";
    else if (!number(fields[2], line.first) || !number(fields[3], line.second))
        wrong = "antenna";
    else if (!readIfs(fields[4], line.ifs))
        wrong = "list of IFs";
    else if (!readStokes(fields[5], line.stokes))
        wrong = "hand";
    else if (!day(fields[6], line.start) || !day(fields[7], line.end) || !(line.start < line.end))
        wrong = "time";
    else if (!number(fields[8], line.source))
        wrong = "source";
    else
        return 1;
    return 0;
}

int flagFileText(const VisibilityFlags& flags, std::string& text, std::string& error)
{
    error.clear();
    text = std::string(firstLine) + "\n" + std::string(dayWord) + " " +
           valToStr(flags.referenceDay) + "\n";
    for (const FlagLine& line : flags.lines) {
        const std::string written = flagText(line);
        FlagLine again;
        if (!readFlagLine(written, again, error) || again != line) {
            error = "would have a line with a wrong " + (error.empty() ? "list of IFs" : error);
            return 0;
        }
        text += written + "\n";
    }
    return 1;
}

int writeFlags(const std::string& file, const VisibilityFlags& flags, std::string& error)
{
    std::string text;
    if (!flagFileText(flags, text, error))
        return 0;
    SafeFile safe;
    if (safe.open(file) && safe.file().write(text.data(), static_cast<std::int64_t>(text.size())) &&
        safe.commit())
        return 1;
    error = safe.fault();
    return 0;
}

int readFlags(const std::string& file, VisibilityFlags& flags, std::string& error)
{
    flags = {};
    error.clear();
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = "cannot be read";
        return 0;
    }
    try {
        LineReader reader(in);
        if (readLines(reader, flags, error))
            return 1;
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    flags = {};
    return 0;
}

}  // namespace pavane
