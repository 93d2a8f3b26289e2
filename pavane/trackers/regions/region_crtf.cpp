#include "pavane/trackers/regions/region_crtf.h"

#include "pavane/trackers/regions/region_frames.h"
#include "pavane/trackers/regions/region_label.h"
#include "pavane/trackers/regions/region_text.h"
#include "pavane/trackers/regions/region_values.h"

#include <algorithm>
#include <cctype>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

using Unit = RegionValue::Unit;
constexpr double radian = std::numbers::pi / 180;

/// A million vertices; a line of many more would take far more memory than its file.
constexpr std::size_t mostValues = 2000000;

/// The values between a region's brackets and the text behind them.
struct Brackets {
    std::vector<std::string_view> values;
    std::string_view tail;
};

/// The letters in front, in small ones, and the blanks behind them taken off the text.
std::string takeLetters(std::string_view& text)
{
    std::size_t end = 0;
    while (end < text.size() && std::isalpha(static_cast<unsigned char>(text[end])))
        ++end;
    const std::string word = lowerWord(text.substr(0, end));
    text = trimmedText(text.substr(end));
    return word;
}

/// Splits "[[a, b], [c, d], e] tail". Nesting is counted, never followed. 0 when it does not close.
int splitBrackets(std::string_view text, Brackets& found)
{
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c != '[' && c != ']' && c != ',')
            continue;
        const std::string_view value = trimmedText(text.substr(start, i - start));
        start = i + 1;
        if (!value.empty() && found.values.size() <= mostValues)
            found.values.push_back(value);
        depth += c == '[' ? 1 : c == ']' ? -1 : 0;
        if (depth > 2)
            return 0;
        if (depth == 0) {
            found.tail = text.substr(i + 1);
            return 1;
        }
    }
    return 0;
}

/// One "key=value" of a region's tail; what stands in quotes or brackets belongs to its value.
int nextProperty(std::string_view& tail, std::string_view& key, std::string_view& value)
{
    const std::size_t equals = tail.find('=');
    if (equals == std::string_view::npos)
        return 0;
    const std::string_view before = trimmedText(tail.substr(0, equals));
    const std::size_t lastBreak = before.find_last_of(", \t");
    key = before.substr(lastBreak == std::string_view::npos ? 0 : lastBreak + 1);
    tail.remove_prefix(equals + 1);
    const std::size_t first = tail.find_first_not_of(" \t");
    tail.remove_prefix(first == std::string_view::npos ? tail.size() : first);
    const char open = tail.empty() ? ' ' : tail[0];
    // each search ends at what it takes, so that a long tail costs no more than its length
    const std::size_t end = open == '"' || open == '\'' ? tail.find(open, 1)
                            : open == '['               ? tail.find(']')
                                                        : tail.find_first_of(", \t");
    value = tail.substr(0, end);
    if (open == '"' || open == '\'')
        value.remove_prefix(1);
    tail.remove_prefix(end == std::string_view::npos ? tail.size() : end + 1);
    return 1;
}

class CrtfReader
{
public:
    explicit CrtfReader(RegionSink& sink) : sink_(sink) {}
    void readLine(std::string_view line);

private:
    void readRegion(std::string_view text);
    void readShape(const std::string& name, const std::vector<std::string_view>& values);
    void readPolygon(const std::vector<std::string_view>& values);
    /// The frame that a tail names, else `frame`; `label`, where there is one, gets name and
    /// colour.
    std::string readTail(std::string_view tail, std::string frame, AreaLabel* label);
    int isImage() const { return frame_ == "image"; }
    /// A number with the unit behind it.
    int readUnit(std::string_view text, RegionValue& value) const;
    int readValue(std::string_view text, int isLongitude, RegionValue& value);
    int readAngle(std::string_view text, double& angle);
    int frameFits(const std::vector<std::string_view>& values);

    RegionSink& sink_;
    int hasExcluded_ = 0;
    std::string globalFrame_;
    std::string frame_;
};

void CrtfReader::readLine(std::string_view line)
{
    line = trimmedText(line);
    if (line.empty() || line[0] == '#')
        return;
    if (sameWord(line.substr(0, 6), "global"))
        globalFrame_ = readTail(line.substr(6), globalFrame_, nullptr);
    else
        readRegion(line);
}

std::string CrtfReader::readTail(std::string_view tail, std::string frame, AreaLabel* label)
{
    std::string_view key;
    std::string_view value;
    int hasOthers = 0;
    while (nextProperty(tail, key, value)) {
        if (sameWord(key, "coord"))
            frame = lowerWord(value);
        else if (sameWord(key, "range") || sameWord(key, "corr"))
            sink_.notes().addOnce(RegionNotes::Kind::changed,
                                  "ranges of channels and polarisations are not kept");
        else if (label && takeLabelProperty(key, value, "label", *label, sink_.notes()))
            continue;
        else if (!sameWord(key, "frame") && !sameWord(key, "veltype") && !sameWord(key, "restfreq"))
            hasOthers = 1;
    }
    if (hasOthers)
        sink_.notes().addOnce(RegionNotes::Kind::changed,
                              "fonts, lines and other properties are not kept");
    return frame;
}

void CrtfReader::readRegion(std::string_view text)
{
    const std::string_view whole = text;
    const int isExcluded = text[0] == '-';
    if (isExcluded || text[0] == '+')
        text = trimmedText(text.substr(1));
    std::string word = takeLetters(text);
    const int isAnnotation = word == "ann";
    if (isAnnotation)
        word = takeLetters(text);
    if (word == "text")
        return;  // a label, no area
    static constexpr std::string_view others[] = {"annulus", "line", "vector", "symbol"};
    static constexpr std::string_view areas[] = {"box",    "centerbox", "rotbox",
                                                 "circle", "ellipse",   "poly"};
    const int isOther = std::find(std::begin(others), std::end(others), word) != std::end(others);
    if (!isOther && std::find(std::begin(areas), std::end(areas), word) == std::end(areas))
        return sink_.damaged(quoted(whole) + " is not understood");
    if (isAnnotation)
        return;  // drawn over the map by who wrote it, no area either
    if (isOther)
        return sink_.leaveOut(word + " is not a shape of areas");
    if (!isExcluded && hasExcluded_)
        sink_.notes().addOnce(RegionNotes::Kind::changed,
                              "excluded regions are taken off all others, also off those that "
                              "come after them");
    hasExcluded_ |= isExcluded;
    sink_.setExcluded(isExcluded);
    Brackets brackets;
    if (text.empty() || text[0] != '[' || !splitBrackets(text, brackets))
        return sink_.damaged(quoted(whole) + " has brackets that do not close");
    AreaLabel label;
    frame_ = readTail(brackets.tail, globalFrame_, &label);
    sink_.setLabel(label);
    readShape(word, brackets.values);
}

int CrtfReader::readUnit(std::string_view text, RegionValue& value) const
{
    static constexpr struct {
        std::string_view name;
        double factor;
        Unit unit;
    } units[] = {{"pix", 1, Unit::cells},
                 {"deg", 1, Unit::degrees},
                 {"rad", 1 / radian, Unit::degrees},
                 {"arcmin", 1 / 60.0, Unit::degrees},
                 {"arcsec", 1 / 3600.0, Unit::degrees},
                 {"mas", 1 / 3.6e6, Unit::degrees},
                 {"'", 1 / 60.0, Unit::degrees},
                 {"\"", 1 / 3600.0, Unit::degrees}};
    for (const auto& u : units) {
        if (text.size() <= u.name.size() ||
            !sameWord(text.substr(text.size() - u.name.size()), u.name))
            continue;
        if (!readFinite(text.substr(0, text.size() - u.name.size()), value.value))
            continue;
        value = {value.value * u.factor, u.unit,
                 halfDigit(text.substr(0, text.size() - u.name.size())) * u.factor};
        return 1;
    }
    return 0;
}

/// A coordinate or a size: pixels where the file says so, whatever unit its writer puts there.
int CrtfReader::readValue(std::string_view text, int isLongitude, RegionValue& value)
{
    if (isImage()) {
        const std::string_view number = text.substr(0, text.find_first_not_of("0123456789+-.eE"));
        RegionValue any;
        if ((number.size() == text.size() || readUnit(text, any)) &&
            readFinite(number, value.value)) {
            value.unit = Unit::cells;
            return 1;
        }
        sink_.damaged(quoted(text) + " is not a number of pixels");
        return 0;
    }
    if (readUnit(text, value))
        return 1;
    value.unit = Unit::degrees;
    if (readSexagesimal(text, isLongitude, value.value))
        return 1;
    sink_.damaged(quoted(text) + " is not a number with a unit");
    return 0;
}

int CrtfReader::readAngle(std::string_view text, double& angle)
{
    RegionValue value;
    if (!readUnit(text, value)) {
        value.unit = Unit::degrees;
        if (!readSexagesimal(text, 0, value.value))
            value.unit = Unit::none;
    }
    if (value.unit != Unit::degrees) {
        sink_.damaged(quoted(text) + " is not an angle");
        return 0;
    }
    angle = value.value * radian;
    return 1;
}

/// Non-zero when the position needs no frame or one that is known.
int CrtfReader::frameFits(const std::vector<std::string_view>& values)
{
    RegionValue value;
    sink_.setFrame(nullptr);
    if (frame_.empty() || !readValue(values[0], 1, value))
        return frame_.empty();
    if (value.unit == Unit::cells)
        return 1;
    if (const SkyFrame* const frame = frameNamed(frame_, crtfFrames)) {
        sink_.setFrame(frame);
        return 1;
    }
    sink_.leaveOut("positions in " + excerpt(frame_) + " are not supported");
    return 0;
}

void CrtfReader::readShape(const std::string& name, const std::vector<std::string_view>& values)
{
    const int isTurned = name == "rotbox" || name == "ellipse";
    const std::size_t count = isTurned ? 5 : name == "circle" ? 3 : 4;
    if (name == "poly" ? values.size() < 6 || values.size() % 2 : values.size() != count)
        return sink_.damaged(name + " with " + std::to_string(values.size()) + " values");
    if (!frameFits(values))
        return;
    if (name == "poly")
        return readPolygon(values);
    RegionValue v[4];
    double angle = 0;
    APoint<double> centre;
    for (std::size_t i = 0; i < 4; ++i)
        if (!readValue(values[std::min(i, count - 1)], i % 2 == 0 && (i == 0 || name == "box"),
                       v[i]))
            return;
    if (name == "box")
        return sink_.cornerBox(v);
    if ((isTurned && !readAngle(values[4], angle)) || !sink_.point(v[0], v[1], centre))
        return;
    if (name == "rotbox" || name == "centerbox")
        return sink_.sized(AreaShape::Kind::rotatedRectangle, centre, v[2], v[3], angle);
    if (isTurned && v[2].value < v[3].value)
        sink_.changed(
            "the ellipse's first axis is the shorter one; its angle is taken as that of the first");
    v[2].value *= 2;  // semi-axes in the file
    v[3].value *= 2;
    sink_.sized(AreaShape::Kind::ellipse, centre, v[2], v[3], angle + 90 * radian, !isTurned);
}

void CrtfReader::readPolygon(const std::vector<std::string_view>& values)
{
    if (values.size() > mostValues)
        return sink_.leaveOut("a polygon of more than a million vertices");
    std::vector<APoint<double>> vertices(values.size() / 2);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        RegionValue x;
        RegionValue y;
        if (!readValue(values[2 * i], 1, x) || !readValue(values[2 * i + 1], 0, y) ||
            !sink_.point(x, y, vertices[i]))
            return;
    }
    sink_.polygon(std::move(vertices));
}

}  // namespace

void parseCrtfRegions(std::string_view text, const SkyCoordinates* sky,
                      std::vector<AreaShape>& shapes, RegionNotes& notes)
{
    RegionSink sink(sky, shapes, notes);
    CrtfReader reader(sink);
    std::string_view line;
    for (long long number = 1; nextLine(text, line); ++number) {
        sink.setLine(number);
        reader.readLine(line);
    }
}

int readCrtfRegions(const std::string& file, const SkyCoordinates* sky,
                    std::vector<AreaShape>& shapes, RegionNotes& notes, std::string& error)
{
    shapes.clear();
    notes = RegionNotes();
    RegionText text;
    if (!text.read(file, error))
        return 0;
    if (text.view().substr(0, 5) != "#CRTF") {
        error = file + ": not a CRTF region file, which begins with #CRTF";
        return 0;
    }
    parseCrtfRegions(text.view(), sky, shapes, notes);
    return 1;
}

}  // namespace pavane
