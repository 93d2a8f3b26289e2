#include "pavane/trackers/areas/area_classes.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "tessel/ForkGate.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <shared_mutex>
#include <utility>

namespace pavane
{

namespace
{

using Kind = ShapeValues::Kind;

/// Of the list below, which hosts add to.
std::shared_mutex classLock;

std::deque<AreaClass>& classes()
{
    // a deque: what was handed out stays where it is, and as it is
    static std::deque<AreaClass> known = [] {
        constexpr std::pair<const char*, Kind> kinds[] = {{"Rect", Kind::rectangle},
                                                          {"RotateRect", Kind::rotatedRectangle},
                                                          {"Ellipse", Kind::ellipse},
                                                          {"Area", Kind::polygon}};
        std::deque<AreaClass> own;
        for (const auto& [kindName, kind] : kinds) {
            const std::string name = kindName;
            own.push_back({"A" + name + "Tracker", 1, AreaPlane::pixels, kind, {}});
            own.push_back({"ARP" + name + "Tracker", 1, AreaPlane::values, kind, {}});
            own.push_back({"A" + name + "TrackerInAxis", 1, AreaPlane::values, kind, {}});
        }
        return own;
    }();
    return known;
}

template <typename Rect, typename Point>
int passShape(Kind kind, AFile& file)
{
    if (!RecordHead().load(file))
        return 0;
    if (kind == Kind::rectangle)
        return RectFields<Rect>().load(file);
    if (kind != Kind::polygon)
        return TurnedFields<Rect>().load(file);
    AArray<Point> points;
    return loadVertices(file, points);
}

}  // namespace

int RegisterAreaClass(const AreaClass& added)
{
    const std::string& name = added.name;
    if (name.empty() || name.size() >= classNameField || name.find('\0') != name.npos ||
        (!added.hasShape && !added.pass))
        return 0;
    const ForkGate gate;
    const std::unique_lock filling(classLock);
    classes().push_back(added);
    return 1;
}

const AreaClass* areaClassOf(std::string_view name)
{
    const ForkGate gate;
    const std::shared_lock reading(classLock);
    const auto& known = classes();
    const auto found = std::find_if(known.rbegin(), known.rend(),
                                    [&](const AreaClass& c) { return c.name == name; });
    return found == known.rend() ? nullptr : &*found;
}

std::string shownClassName(std::string_view name)
{
    std::string text;
    for (const char c : name.substr(0, name.find('\0')))
        text += c >= ' ' && c <= '~' ? c : '?';
    return text;
}

int passRecord(const AreaClass& of, AFile& file)
{
    if (of.pass)
        return of.pass(file);
    return of.plane == AreaPlane::pixels ? passShape<CRect, CPoint>(of.kind, file)
                                         : passShape<ARect<double>, APoint<double>>(of.kind, file);
}

}  // namespace pavane
