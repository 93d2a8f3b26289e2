#include "apps/view/work/work_keys.h"
#include "apps/view/work/WorkFile.h"
#include "tessel/SafeFile.h"
#include "tessel/value_text.h"

#include <cmath>
#include <filesystem>
#include <new>
#include <system_error>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

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

fs::path absolutePath(const std::string& file)
{
    std::error_code fault;
    fs::path whole = fs::absolute(file, fault);
    return (fault ? fs::path(file) : std::move(whole)).lexically_normal();
}

/// The lines of a work file, whose names are relative to its folder.
class WorkWriter
{
public:
    explicit WorkWriter(const std::string& file) : folder_(absolutePath(file).parent_path()) {}

    void section(std::string_view name) { text_.append(name).append("\n"); }
    void line(std::string_view key, const std::string& value)
    {
        text_.append(key).append("=").append(escaped(value)).append("\n");
    }
    void name(std::string_view key, std::string_view value) { line(key, std::string(value)); }
    void flag(std::string_view key, int on) { line(key, on ? "1" : "0"); }
    void file(std::string_view key, const std::string& named)
    {
        if (!named.empty())
            line(key, absolutePath(named).lexically_proximate(folder_).string());
    }
    void numbers(std::string_view key, std::initializer_list<double> values)
    {
        std::string list;
        for (const double value : values)
            list.append(list.empty() ? "" : ",").append(valToStr(value));
        line(key, list);
    }
    const std::string& text() const { return text_; }

private:
    fs::path folder_;
    std::string text_;
};

template <typename Enum, std::size_t count>
std::string_view nameIn(const std::string_view (&names)[count], Enum value)
{
    return names[static_cast<std::size_t>(value)];
}

void writeWindow(WorkWriter& out, const Work& work)
{
    out.name("shown", nameIn(shownNames, work.shown));
    out.line("current", std::to_string(work.current));
    out.name("link", nameIn(linkNames, work.linkBy));
    std::string parts;
    for (const auto& part : partNames)
        if (work.linked & part.part)
            parts.append(parts.empty() ? "" : ",").append(part.name);
    out.line("linked", parts);
    out.line("grid", skyGridWishText(work.grid));
    out.file("marks", work.marks);
    out.flag("numbers", work.areaNumbers);
    out.flag("names", work.areaNames);
    out.flag("values", work.areaValues);
    out.flag("surface", work.surface);
    out.name("curve", nameIn(curveNames, work.curves));
    if (work.line.corners.size() > 1) {
        for (const MapPlace& corner : work.line.corners)
            out.numbers("corner", {corner.x + 1, corner.y + 1});
        out.numbers("width", {work.line.width});
        out.name("across", nameIn(acrossNames, work.line.across));
    }
    out.file("saved", work.savedAs);
}

void writeMap(WorkWriter& out, const WorkMap& map)
{
    out.section("[map]");
    out.file("file", map.file);
    if (map.plane >= 0)
        out.line("plane", std::to_string(map.plane));
    out.file("areas", map.areas);
    out.file("model", map.model);
    out.file("unsaved areas", map.unsavedAreas);
    out.file("unsaved model", map.unsavedModel);
    out.file("contours", map.contours);
    if (!map.shift.isNone())
        out.numbers("shift", {map.shift.east, map.shift.north});
    if (map.hasView)
        out.numbers("view", {map.view.xMin, map.view.xMax, map.view.yMin, map.view.yMax});
    if (!map.display.empty())
        out.line("display", map.display);
    if (map.hasRange)
        out.numbers("range", {map.low, map.high});
}

void writeCurve(WorkWriter& out, const WorkCurve& curve)
{
    out.section("[curve]");
    out.line("name", curve.name);
    out.line("x", curve.xTitle);
    out.line("y", curve.yTitle);
    for (std::size_t i = 0; i < curve.x.size() && i < curve.y.size(); ++i)
        out.numbers("at", {curve.x[i], curve.y[i]});
}

}  // namespace

std::string workText(const std::string& file, const Work& work)
{
    WorkWriter out(file);
    out.section(std::string(workStart) + std::to_string(workVersion));
    writeWindow(out, work);
    for (const WorkMap& map : work.maps)
        writeMap(out, map);
    for (const WorkCurve& curve : work.kept)
        writeCurve(out, curve);
    return out.text();
}

int writeWork(const std::string& file, const Work& work, std::string& error)
{
    try {
        const std::string text = workText(file, work);
        SafeFile safe;
        if (safe.open(file) &&
            safe.file().write(text.data(), static_cast<std::int64_t>(text.size())) && safe.commit())
            return 1;
        error = file + ": " + safe.fault();
    } catch (const std::bad_alloc&) {
        error = file + ": there is no memory for its text";
    }
    return 0;
}

}  // namespace pavane
