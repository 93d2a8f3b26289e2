#include "pavane/trackers/regions/region_ds9.h"

#include "pavane/trackers/regions/region_frames.h"
#include "pavane/trackers/regions/region_label.h"
#include "pavane/trackers/regions/region_text.h"
#include "pavane/trackers/regions/region_values.h"

#include <algorithm>
#include <cctype>
#include <numbers>

namespace pavane
{

namespace
{

using Unit = RegionValue::Unit;
constexpr double radian = std::numbers::pi / 180;

/// Shapes that are no areas, or areas that no shape here can hold.
constexpr std::string_view otherShapes[] = {
    "annulus",   "line",     "point",  "text",    "vector",  "ruler",      "pie",
    "panda",     "epanda",   "bpanda", "cpanda",  "compass", "projection", "segment",
    "composite", "template", "cross",  "diamond", "arrow",   "boxcircle",  "x"};
constexpr std::string_view otherSystems[] = {"linear", "detector", "amplifier", "wcs", "wcs0"};

/// A million vertices; a line of many more would take far more memory than its file.
constexpr std::size_t mostArguments = 2000000;

template <std::size_t n>
int isOneOf(const std::string& word, const std::string_view (&words)[n])
{
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

std::string_view takeWord(std::string_view& text)
{
    std::size_t end = 0;
    while (end < text.size() && std::isalnum(static_cast<unsigned char>(text[end])))
        ++end;
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

/// Numbers between commas or blanks, one more than `mostArguments` when there are more.
std::vector<std::string_view> argumentsOf(std::string_view text)
{
    std::vector<std::string_view> found;
    while (!text.empty() && found.size() <= mostArguments) {
        const std::size_t first = text.find_first_not_of(", \t");
        if (first == std::string_view::npos)
            break;
        const std::size_t end = text.find_first_of(", \t", first);
        found.push_back(text.substr(first, end - first));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
    return found;
}

class Ds9Reader
{
public:
    explicit Ds9Reader(RegionSink& sink) : sink_(sink) {}
    void readLine(std::string_view line);

private:
    enum class System { image, sky, other };
    void readComment(std::string_view text);
    void readProperties(std::string_view text);
    void leaveOutComposite();
    void readStatement(std::string_view text);
    void readShape(const std::string& name, const std::vector<std::string_view>& arguments);
    void readSized(const std::string& name, const std::vector<std::string_view>& arguments);
    void readPolygon(const std::vector<std::string_view>& arguments);
    int setSystem(const std::string& word);
    int readPlace(std::string_view text, int isLongitude, RegionValue& value);
    int readPoint(std::string_view x, std::string_view y, APoint<double>& cell);
    int readSize(std::string_view text, RegionValue& value);
    int readAngle(std::string_view text, double& angle);

    RegionSink& sink_;
    System system_ = System::image;
    std::string otherName_;
    int longitudeInHours_ = 1;  ///< in sexagesimal positions: not in galactic and ecliptic ones
    int isComposite_ = 0;       ///< what comes next is a part of the composite that came last
    int isExcludedByDefault_ = 0;
    int isExcluded_ = 0;
};

void Ds9Reader::readLine(std::string_view line)
{
    line = trimmedText(line);
    if (line.empty())
        return;
    if (line[0] == '#')
        return readComment(line.substr(1));
    const std::size_t hash = line.find('#');
    isExcluded_ = isExcludedByDefault_;
    sink_.setLabel({});
    if (hash != std::string_view::npos) {
        const std::string_view properties = trimmedText(line.substr(hash + 1));
        if (properties.find("include=0") != std::string_view::npos)
            isExcluded_ = 1;
        else if (properties.find("include=1") != std::string_view::npos)
            isExcluded_ = 0;
        readProperties(properties);
    }
    std::string_view rest = line.substr(0, hash);
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of(";|");
        const int isJoined = end != std::string_view::npos && rest[end] == '|';
        const std::string_view statement = trimmedText(rest.substr(0, end));
        if (isJoined && !isComposite_)
            leaveOutComposite();
        if (!isComposite_)
            readStatement(statement);
        else if (!isJoined && !statement.empty() && !setSystem(lowerWord(statement)))
            isComposite_ = 0;  // this was its last part
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    // an older way to close it: "circle(...) || circle(...) || # composite=1"
    if (hash != std::string_view::npos && line.find("composite=1", hash) != std::string_view::npos)
        isComposite_ = 0;
}

/// "color=red text={knot A} tag={jet}": values may stand in braces or quotes. The colour that a
/// "global" line gives to all is the look of the program that wrote it, and is not taken.
void Ds9Reader::readProperties(std::string_view text)
{
    AreaLabel label;
    int hasOthers = 0;
    while (!text.empty()) {
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos) {
            hasOthers = 1;
            break;
        }
        const std::string_view before = trimmedText(text.substr(0, equals));
        const std::size_t blank = before.find_last_of(" \t");
        const std::string_view key = before.substr(blank == std::string_view::npos ? 0 : blank + 1);
        text = trimmedText(text.substr(equals + 1));
        const char open = text.empty() ? ' ' : text[0];
        const char close = open == '{' ? '}' : open;
        const int isQuoted = open == '{' || open == '"' || open == '\'';
        const std::size_t end =
            isQuoted ? text.find(close, 1) : std::min(text.find_first_of(" \t"), text.size());
        const std::string_view value =
            isQuoted ? text.substr(1, end == std::string_view::npos ? end : end - 1)
                     : text.substr(0, end);
        if (!takeLabelProperty(key, value, "text", label, sink_.notes()))
            hasOthers = hasOthers || (key != "include" && key != "composite");
        text = end == std::string_view::npos
                   ? std::string_view()
                   : trimmedText(text.substr(std::min(end + (isQuoted ? 1 : 0), text.size())));
    }
    sink_.setLabel(label);
    if (hasOthers)
        sink_.notes().addOnce(RegionNotes::Kind::changed,
                              "tags, fonts, lines and other properties are not kept");
}

/// One loss for all of its parts.
void Ds9Reader::leaveOutComposite()
{
    sink_.leaveOut("a composite of areas cannot be held");
    isComposite_ = 1;
}

/// Some marks stand behind a '#', so that old readers pass over them.
void Ds9Reader::readComment(std::string_view text)
{
    text = trimmedText(text);
    const std::string word = lowerWord(takeWord(text));
    if (!isOneOf(word, otherShapes) || trimmedText(text).substr(0, 1) != "(")
        return;
    if (word == "composite") {
        leaveOutComposite();
        isComposite_ = text.find("||") != std::string_view::npos;
    } else if (word != "text")  // labels are no areas
        sink_.leaveOut(word + " is not a shape of areas");
}

int Ds9Reader::setSystem(const std::string& word)
{
    if (word == "image" || word == "physical") {
        system_ = System::image;
        longitudeInHours_ = 1;
        sink_.setFrame(nullptr);
        if (word == "physical")
            sink_.notes().addOnce(RegionNotes::Kind::changed,
                                  "physical coordinates are taken as pixels of the image");
        return 1;
    }
    if (const SkyFrame* const frame = frameNamed(word, ds9Frames)) {
        system_ = System::sky;
        sink_.setFrame(frame);
        longitudeInHours_ = frame->system != SkyFrame::System::galactic &&
                            frame->system != SkyFrame::System::ecliptic;
        return 1;
    }
    if (!isOneOf(word, otherSystems) && !(word.size() == 4 && word.compare(0, 3, "wcs") == 0))
        return 0;
    system_ = System::other;
    otherName_ = word;
    return 1;
}

void Ds9Reader::readStatement(std::string_view text)
{
    if (text.empty())
        return;
    const std::string_view whole = text;
    int isExcluded = isExcluded_;
    if (text[0] == '-' || text[0] == '!' || text[0] == '+') {
        isExcluded = text[0] == '+' ? 0 : 1;
        text = trimmedText(text.substr(1));
    }
    std::string word = lowerWord(takeWord(text));
    text = trimmedText(text);
    if (word == "rotbox")  // what others than DS9 call it
        word = "box";
    constexpr std::string_view systemOfAll = "coordsys";  // of FUNTOOLS
    if (word == "global" && text.starts_with(systemOfAll)) {
        text = trimmedText(text.substr(systemOfAll.size()));
        word = lowerWord(takeWord(text));
        text = {};
    }
    if (word == "global") {
        if (text.find("include=") != std::string_view::npos)
            isExcludedByDefault_ = text.find("include=0") != std::string_view::npos;
        return;
    }
    if (word == "tile" || (text.empty() && setSystem(word)))
        return;
    std::string_view behind;
    if (!text.empty() && text[0] == '(') {
        const std::size_t end = text.find(')');
        if (end == std::string_view::npos)
            return sink_.damaged(quoted(whole) + " has no closing parenthesis");
        behind = trimmedText(text.substr(end + 1));
        text = text.substr(1, end - 1);
    }
    if (word == "text")
        return;
    if (isOneOf(word, otherShapes))
        return sink_.leaveOut(word + " is not a shape of areas");
    if (word != "circle" && word != "ellipse" && word != "box" && word != "polygon") {
        if (text.empty() && !word.empty()) {  // perhaps a system: what follows is not in the last
            system_ = System::other;
            otherName_ = excerpt(word);
        }
        return sink_.damaged(quoted(whole) + " is not understood");
    }
    if (!behind.empty())  // as "circle(...)-circle(...)": the one without the other is another area
        return sink_.damaged(quoted(behind) + " behind the shape is not understood");
    sink_.setExcluded(isExcluded);
    if (system_ == System::other)
        return sink_.leaveOut("positions in " + otherName_ + " are not supported");
    readShape(word, argumentsOf(text));
}

int Ds9Reader::readPlace(std::string_view text, int isLongitude, RegionValue& value)
{
    const char last = text.empty() ? ' ' : text.back();
    const std::string_view front = text.substr(0, text.size() - (text.empty() ? 0 : 1));
    if ((last == 'i' || last == 'p') && readFinite(front, value.value)) {
        value = {value.value - 1, Unit::cells};
        return 1;
    }
    if (readFinite(text, value.value)) {
        value.unit = system_ == System::image ? Unit::cells : Unit::degrees;
        value.value -= system_ == System::image ? 1 : 0;
        value.slack = halfDigit(text);
        return 1;
    }
    value = {0, Unit::degrees};
    if (last == 'r' && readFinite(front, value.value)) {
        value.value /= radian;
        return 1;
    }
    if ((last == 'd' && readFinite(front, value.value)) ||
        readSexagesimal(text, isLongitude && longitudeInHours_, value.value))
        return 1;
    sink_.damaged(quoted(text) + " is not a position");
    return 0;
}

int Ds9Reader::readPoint(std::string_view x, std::string_view y, APoint<double>& cell)
{
    RegionValue atX;
    RegionValue atY;
    if (!readPlace(x, 1, atX) || !readPlace(y, 0, atY))
        return 0;
    // what DS9 takes positions on the sky for where only pixels were announced
    const int isLoneSky = system_ == System::image && atX.unit == Unit::degrees;
    if (isLoneSky)
        sink_.setFrame(frameNamed("fk5", ds9Frames));
    const int placed = sink_.point(atX, atY, cell);
    if (isLoneSky)
        sink_.setFrame(nullptr);
    return placed;
}

int Ds9Reader::readSize(std::string_view text, RegionValue& value)
{
    static constexpr struct {
        char mark;
        double factor;
        Unit unit;
    } marks[] = {
        {'"', 1 / 3600.0, Unit::degrees}, {'\'', 1 / 60.0, Unit::degrees}, {'d', 1, Unit::degrees},
        {'r', 1 / radian, Unit::degrees}, {'i', 1, Unit::cells},           {'p', 1, Unit::cells}};
    if (readFinite(text, value.value)) {
        value.unit = system_ == System::image ? Unit::cells : Unit::degrees;
        return 1;
    }
    for (const auto& m : marks)
        if (!text.empty() && text.back() == m.mark &&
            readFinite(text.substr(0, text.size() - 1), value.value)) {
            value = {value.value * m.factor, m.unit};
            return 1;
        }
    sink_.damaged(quoted(text) + " is not a size");
    return 0;
}

int Ds9Reader::readAngle(std::string_view text, double& angle)
{
    const int isRadians = !text.empty() && text.back() == 'r';
    if (isRadians || (!text.empty() && text.back() == 'd'))
        text.remove_suffix(1);
    if (!readFinite(text, angle)) {
        sink_.damaged(quoted(text) + " is not an angle");
        return 0;
    }
    angle *= isRadians ? 1 : radian;
    return 1;
}

void Ds9Reader::readShape(const std::string& name, const std::vector<std::string_view>& arguments)
{
    if (name == "polygon")
        return readPolygon(arguments);
    const std::size_t most = name == "circle" ? 3 : 5;
    if (arguments.size() > most && name != "circle")
        return sink_.leaveOut("a ring of " + name + " shape is not a shape of areas");
    if (arguments.size() > most || arguments.size() < (name == "circle" ? 3U : 4U))
        return sink_.damaged(name + " with " + std::to_string(arguments.size()) + " numbers");
    readSized(name, arguments);
}

void Ds9Reader::readSized(const std::string& name, const std::vector<std::string_view>& arguments)
{
    RegionValue width;
    RegionValue height;
    double angle = 0;
    APoint<double> centre;
    if (!readSize(arguments[2], width) || !readSize(arguments[name == "circle" ? 2 : 3], height) ||
        (arguments.size() > 4 && !readAngle(arguments[4], angle)) ||
        !readPoint(arguments[0], arguments[1], centre))
        return;
    if (name == "box")
        return sink_.sized(AreaShape::Kind::rotatedRectangle, centre, width, height, angle);
    width.value *= 2;  // radii in the file
    height.value *= 2;
    sink_.sized(AreaShape::Kind::ellipse, centre, width, height, angle, name == "circle");
}

void Ds9Reader::readPolygon(const std::vector<std::string_view>& arguments)
{
    if (arguments.size() > mostArguments)
        return sink_.leaveOut("a polygon of more than a million vertices");
    if (arguments.size() % 2 || arguments.size() < 6)
        return sink_.damaged("polygon with " + std::to_string(arguments.size()) + " numbers");
    std::vector<APoint<double>> vertices(arguments.size() / 2);
    for (std::size_t i = 0; i < vertices.size(); ++i)
        if (!readPoint(arguments[2 * i], arguments[2 * i + 1], vertices[i]))
            return;
    sink_.polygon(std::move(vertices));
}

}  // namespace

void parseDs9Regions(std::string_view text, const SkyCoordinates* sky,
                     std::vector<AreaShape>& shapes, RegionNotes& notes)
{
    RegionSink sink(sky, shapes, notes);
    Ds9Reader reader(sink);
    std::string_view line;
    for (long long number = 1; nextLine(text, line); ++number) {
        sink.setLine(number);
        reader.readLine(line);
    }
}

int readDs9Regions(const std::string& file, const SkyCoordinates* sky,
                   std::vector<AreaShape>& shapes, RegionNotes& notes, std::string& error)
{
    shapes.clear();
    notes = RegionNotes();
    RegionText text;
    if (!text.read(file, error))
        return 0;
    parseDs9Regions(text.view(), sky, shapes, notes);
    if (!shapes.empty() || notes.leftOut || !notes.damaged)
        return 1;
    error = file + ": not a region file: " + notes.lines[0];
    return 0;
}

}  // namespace pavane
