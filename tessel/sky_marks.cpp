#include "tessel/sky_marks.h"

#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::size_t mostTold = 20;
constexpr double degreesPerHour = 15;
constexpr int allDigits = 17;
constexpr char blankSeparator = ' ';

using Cells = std::vector<std::string>;

std::string smallLetters(std::string_view text)
{
    std::string small(text);
    for (char& c : small)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return small;
}

/// What the cells of a file stand between, as its first line has it.
char separatorOf(const std::string& line)
{
    for (const char c : {'\t', ';', ','})
        if (line.find(c) != std::string::npos)
            return c;
    return blankSeparator;
}

/// The cells of a line; a quote in a quoted cell is doubled. Of cells between blanks the first is
/// one, and the rest another, in which a position has blanks of its own.
Cells cellsOf(const std::string& line, char separator)
{
    Cells cells(1);
    int isQuoted = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        std::string& cell = cells.back();
        const int starts = trimmed(cell, whiteSpace).empty();
        if (c == '"' && isQuoted && i + 1 < line.size() && line[i + 1] == '"') {
            cell += c;
            ++i;
        } else if (c == '"' && (isQuoted || starts)) {
            isQuoted = !isQuoted;
        } else if (c == separator && !isQuoted && separator != blankSeparator) {
            cells.emplace_back();
        } else if (separator == blankSeparator && !isQuoted && (c == ' ' || c == '\t') &&
                   cells.size() == 1) {
            if (!starts)
                cells.emplace_back();
        } else {
            cell += c;
        }
    }
    for (std::string& cell : cells)
        cell = std::string(trimmed(cell, whiteSpace));
    return cells;
}

/// Which cells hold what; -1 for none.
struct Columns {
    int name = -1, longitude = -1, latitude = -1, position = -1, frame = -1, x = -1, y = -1;
    int inHours = 0;
    int hasFrame = 0;
    SkyFrame ofColumns;

    int arePlaces() const
    {
        return position >= 0 || (longitude >= 0 && latitude >= 0) || (x >= 0 && y >= 0);
    }
};

int isOneOf(std::string_view text, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), text) != names.end();
}

/// A column's name without its unit, "RA (h)" or "ra_deg", which goes to `unit`.
std::string titleOf(const std::string& cell, std::string& unit)
{
    std::string title = smallLetters(cell);
    const std::size_t bracket = title.find_first_of("[(");
    if (bracket != std::string::npos) {
        unit = title.substr(bracket + 1);
        unit.erase(std::min(unit.find_first_of("])"), unit.size()));
        title.erase(bracket);
    }
    title = std::string(trimmed(title, " \t\r\n_"));
    for (const std::string_view end : {"_deg", "_degrees", "_hours", "_hour", "_h", "_icrs"})
        if (title.ends_with(end) && title.size() > end.size()) {
            if (end != "_icrs")
                unit = end.substr(1);
            title.resize(title.size() - end.size());
        }
    return title;
}

/// The columns that a first line names; none of a line that names no place.
Columns columnsOf(const Cells& cells)
{
    Columns columns;
    const auto inFrame = [&columns](SkyFrame::System system) {
        columns.hasFrame = 1;
        columns.ofColumns = {system, 2000};
    };
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::string unit;
        const std::string title = titleOf(cells[i], unit);
        const auto take = [i](int& column) { column = column < 0 ? static_cast<int>(i) : column; };
        if (isOneOf(title, {"name", "source", "object", "target", "id", "main_id", "label",
                            "designation", "iau name", "iau_name", "source_name"}))
            take(columns.name);
        else if (isOneOf(title, {"ra", "alpha", "right ascension", "right_ascension", "lon",
                                 "longitude"})) {
            take(columns.longitude);
            columns.inHours = isOneOf(unit, {"h", "hr", "hour", "hours"});
        } else if (isOneOf(title, {"dec", "de", "decl", "delta", "declination", "lat", "latitude",
                                   "dej2000", "decj2000", "b", "glat"}))
            take(columns.latitude);
        else if (isOneOf(title, {"raj2000"}))
            take(columns.longitude), inFrame(SkyFrame::System::fk5);
        else if (isOneOf(title, {"l", "glon"}))
            take(columns.longitude), inFrame(SkyFrame::System::galactic);
        else if (isOneOf(title, {"position", "pos", "coordinates", "coord", "coords"}))
            take(columns.position);
        else if (isOneOf(title, {"frame", "system", "radesys"}))
            take(columns.frame);
        else if (isOneOf(title, {"x", "pixel_x", "xpix", "x_pixel"}))
            take(columns.x);
        else if (isOneOf(title, {"y", "pixel_y", "ypix", "y_pixel"}))
            take(columns.y);
    }
    return columns.arePlaces() ? columns : Columns();
}

int isPosition(const std::string& text, const SkyFrame& usual)
{
    SkyPosition position;
    std::string error;
    return readSkyPosition(text, usual, position, error);
}

/// Where name and position stand in a line of a file that names no columns.
Columns guessedColumns(const Cells& cells, const SkyFrame& usual)
{
    Columns columns;
    const auto cell = [&cells](std::size_t i) { return i < cells.size() ? cells[i] : ""; };
    if (isPosition(cell(1) + ' ' + cell(2), usual) && !cell(2).empty()) {
        columns.name = 0;
        columns.longitude = 1;
        columns.latitude = 2;
    } else if (isPosition(cell(1), usual)) {
        columns.name = 0;
        columns.position = 1;
    } else if (isPosition(cell(0) + ' ' + cell(1), usual) && !cell(1).empty()) {
        columns.longitude = 0;
        columns.latitude = 1;
        columns.name = cells.size() > 2 ? 2 : -1;
    } else if (isPosition(cell(0), usual)) {
        columns.position = 0;
        columns.name = cells.size() > 1 ? 1 : -1;
    }
    return columns;
}

/// Takes the mark of a line; else 0 and why not.
int takeMark(const Cells& cells, const Columns& columns, const SkyFrame& usual, SkyMark& mark,
             std::string& why)
{
    const auto cell = [&cells](int i) {
        return i >= 0 && static_cast<std::size_t>(i) < cells.size()
                   ? cells[static_cast<std::size_t>(i)]
                   : std::string();
    };
    mark.name = plainText(cell(columns.name));
    SkyFrame frame = columns.hasFrame ? columns.ofColumns : usual;
    if (!cell(columns.frame).empty() && !readSkyFrame(cell(columns.frame), frame)) {
        why = std::string(1, '\'') + cell(columns.frame) + "' is no frame";
        return 0;
    }
    if (columns.x >= 0 && columns.y >= 0 && columns.longitude < 0 && columns.position < 0) {
        mark.isPixel = 1;
        if (stoval(cell(columns.x), mark.x) && stoval(cell(columns.y), mark.y) &&
            std::isfinite(mark.x) && std::isfinite(mark.y))
            return 1;
        why = std::string(1, '\'') + cell(columns.x) + "', '" + cell(columns.y) + "' are no pixels";
        return 0;
    }
    std::string text = cell(columns.position);
    if (columns.longitude >= 0) {
        std::string longitude = cell(columns.longitude);
        if (double hours = 0; columns.inHours && stoval(longitude, hours))
            longitude = valToStr(hours * degreesPerHour, allDigits);
        text = longitude + ' ' + cell(columns.latitude);
    }
    std::string fault;
    if (readSkyPosition(text, frame, mark.position, fault))
        return 1;
    why = std::string(1, '\'') + plainText(trimmed(text, whiteSpace)) + "' is no position";
    return 0;
}

}  // namespace

std::string lostMarksText(const SkyMarks& marks)
{
    if (marks.lost.empty())
        return {};
    const auto all = marks.lostCount + static_cast<std::int64_t>(marks.marks.size());
    return std::to_string(marks.lostCount) + " of " + std::to_string(all) +
           " marks were not read: " + marks.lost.front();
}

int readSkyMarks(const std::string& file, const SkyFrame& usual, SkyMarks& marks,
                 std::string& error)
{
    marks = SkyMarks();
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = readFault(file);
        return 0;
    }
    try {
        LineReader lines(in);
        std::string line;
        char separator = 0;
        Columns named;
        while (lines.next(line)) {
            if (trimmed(line, whiteSpace).empty() || line.front() == '#')
                continue;
            const int isFirst = !separator;
            if (isFirst)
                separator = separatorOf(line);
            const Cells cells = cellsOf(line, separator);
            if (isFirst && (named = columnsOf(cells)).arePlaces())
                continue;
            SkyMark mark;
            std::string why = "holds no position";
            const Columns columns = named.arePlaces() ? named : guessedColumns(cells, usual);
            if (columns.arePlaces() && takeMark(cells, columns, usual, mark, why)) {
                marks.marks.push_back(mark);
                continue;
            }
            ++marks.lostCount;
            if (marks.lost.size() < mostTold)
                marks.lost.push_back("line " + std::to_string(lines.number()) + ": " + why);
        }
        error = lines.fault();
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    if (error.empty() && marks.marks.empty())
        error = marks.lost.empty() ? "holds no names and positions"
                                   : "holds no mark: " + marks.lost.front();
    if (!error.empty())
        marks = SkyMarks();
    return error.empty();
}

}  // namespace pavane
