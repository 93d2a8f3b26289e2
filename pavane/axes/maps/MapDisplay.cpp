#include "pavane/axes/maps/MapDisplay.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ALevelsGraph.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/resources/map_display_messages.h"

#include <cmath>
#include <cstring>

namespace pavane
{

namespace
{

/// Assigns and tells whether that changed anything.
template <typename Value>
int take(Value& kept, const Value& value)
{
    if (kept == value)
        return 0;
    kept = value;
    return 1;
}

int isFinite(const TMnMx& range) { return std::isfinite(range.min) && std::isfinite(range.max); }

int isSet(const TMnMx& range) { return !(range == TMnMx()); }

/// No title makes a figure of any use longer than this.
constexpr std::size_t longestTitle = 400;

}  // namespace

MapContours* contoursOf(ABMapGraph& graph)
{
    if (auto* const coloured = dynamic_cast<ALevelsColorGraph*>(&graph))
        return &coloured->contours();
    auto* const lines = dynamic_cast<ALevelsGraph*>(&graph);
    return lines ? &lines->contours() : nullptr;
}

const MapContours* contoursOf(const ABMapGraph& graph)
{
    if (const auto* const coloured = dynamic_cast<const ALevelsColorGraph*>(&graph))
        return &coloured->contours();
    const auto* const lines = dynamic_cast<const ALevelsGraph*>(&graph);
    return lines ? &lines->contours() : nullptr;
}

CString MapTitles::valueTitle() const { return isPlainValue ? value : value + titleUnit(unit); }

void MapTitles::setValueTitle(const CString& title)
{
    isPlainValue = 1;
    value = title;
    unit.clear();
    if (!title.ends_with(']'))
        return;
    for (const char* const opening : {" [%s", "~ ["}) {
        const std::size_t at = title.rfind(opening);
        if (at == CString::npos)
            continue;
        const std::size_t begin = at + std::strlen(opening);
        const CString inside = title.substr(begin, title.size() - 1 - begin);
        if (title.substr(at) != titleUnit(inside))
            continue;  // a unit that a title of ours would write in another way
        value = title.substr(0, at);
        unit = inside;
        isPlainValue = 0;
        return;
    }
}

MapDisplay::MapDisplay(const ABAxis& axis, const ABMapGraph& graph)
    : beamLook(graph.beamLook()), beam(graph.beam())
{
    if (const auto* const coloured = dynamic_cast<const AColorsGraph*>(&graph))
        colours = ColorLook(*coloured);
    if (const MapContours* const lines = contoursOf(graph))
        contours = {lines->wantedLevels(), lines->color(), lines->width()};
    axes = {axis.isFlagSet(axisGridX), axis.isFlagSet(axisGridY), axis.isFlagSet(axisTicksInside),
            !axis.isFlagSet(axisNoMinorTicks)};
    titles.header = graph.getHeaderText(0);
    titles.isOwnHeader = graph.hasOwnHeader();
    titles.x = axis.getNameOX();
    titles.y = axis.getNameOY();
    titles.setValueTitle(graph.GetOZName());
}

int MapDisplay::give(ABAxis& axis, ABMapGraph& graph) const
{
    const MapDisplay shown(axis, graph);
    int changed = 0;
    if (auto* const coloured = dynamic_cast<AColorsGraph*>(&graph);
        coloured && !(colours == shown.colours)) {
        colours.give(*coloured);
        changed = 1;
    }
    if (MapContours* const lines = contoursOf(graph); lines && !(contours == shown.contours)) {
        if (!(contours.levels == shown.contours.levels))
            lines->setLevels(contours.levels);
        lines->setColor(contours.color);
        lines->setWidth(contours.width);
        changed = 1;
    }
    if (!(beamLook == shown.beamLook) || !(beam == shown.beam)) {
        graph.setBeam(beam);
        graph.setBeamLook(beamLook);
        changed = 1;
    }
    if (!(axes == shown.axes)) {
        axis.setFlag(axisGridX, axes.gridX);
        axis.setFlag(axisGridY, axes.gridY);
        axis.setFlag(axisTicksInside, axes.ticksInside);
        axis.setFlag(axisNoMinorTicks, !axes.minorTicks);
        changed = 1;
    }
    if (!(titles == shown.titles)) {
        axis.setNameOX(titles.x);
        axis.setNameOY(titles.y);
        graph.setNames(titles.x, titles.y, titles.valueTitle());
        if (titles.isOwnHeader)
            graph.setHeaderText(0, titles.header);
        else
            graph.dropHeaderText();
        changed = 1;
    }
    return changed;
}

MapDisplay MapDisplay::styleFor(const MapDisplay& own) const
{
    MapDisplay display = *this;
    display.colours.range = own.colours.range;
    display.beam = own.beam;
    display.titles = own.titles;
    return display;
}

int MapDisplay::check(DisplayPart part, CString& error) const
{
    const char* fault = nullptr;
    switch (part) {
    case DisplayPart::colours:
        if (isSet(colours.range) && !isFinite(colours.range))
            fault = displayNoNumberText;
        else if (isSet(colours.range) && !(colours.range.min < colours.range.max))
            fault = displayRangeText;
        else if (!colours.play.isUsable())
            fault = displayPlayText;
        break;
    case DisplayPart::contours:
        if (contours.width < 0 || contours.width > widestContour)
            fault = displayWidthText;
        break;
    case DisplayPart::beam:
        if (!std::isfinite(beam.major) || !std::isfinite(beam.minor) || !std::isfinite(beam.angle))
            fault = displayNoNumberText;
        else if ((beam.major != 0 || beam.minor != 0) && !beam.isSet())
            fault = displayBeamSizeText;
        else if (beam.minor > beam.major)
            fault = displayBeamOrderText;
        break;
    case DisplayPart::axes:
        for (const CString* const title :
             {&titles.header, &titles.x, &titles.y, &titles.value, &titles.unit})
            if (title->size() > longestTitle)
                fault = displayTitleText;
        break;
    }
    if (fault)
        error = fault;
    return !fault;
}

int samePart(DisplayPart part, const MapDisplay& a, const MapDisplay& b)
{
    switch (part) {
    case DisplayPart::colours:
        return a.colours == b.colours;
    case DisplayPart::contours:
        return a.contours == b.contours;
    case DisplayPart::beam:
        return a.beamLook == b.beamLook && a.beam == b.beam;
    default:
        return a.axes == b.axes && a.titles == b.titles;
    }
}

int sameDisplay(const MapDisplay& a, const MapDisplay& b)
{
    for (const DisplayPart part :
         {DisplayPart::colours, DisplayPart::contours, DisplayPart::beam, DisplayPart::axes})
        if (!samePart(part, a, b))
            return 0;
    return 1;
}

void takeChanges(const MapDisplay& before, const MapDisplay& now, MapDisplay& kept)
{
    const auto take = [](const auto& was, const auto& is, auto& mine) {
        if (!(was == is))
            mine = is;
    };
    take(before.colours.range, now.colours.range, kept.colours.range);
    take(before.colours.scale, now.colours.scale, kept.colours.scale);
    take(before.colours.play, now.colours.play, kept.colours.play);
    take(before.colours.colours, now.colours.colours, kept.colours.colours);
    take(before.contours.levels, now.contours.levels, kept.contours.levels);
    take(before.contours.color, now.contours.color, kept.contours.color);
    take(before.contours.width, now.contours.width, kept.contours.width);
    take(before.beamLook, now.beamLook, kept.beamLook);
    take(before.beam, now.beam, kept.beam);
    take(before.axes, now.axes, kept.axes);
    take(before.titles.header, now.titles.header, kept.titles.header);
    take(before.titles.isOwnHeader, now.titles.isOwnHeader, kept.titles.isOwnHeader);
    take(before.titles.x, now.titles.x, kept.titles.x);
    take(before.titles.y, now.titles.y, kept.titles.y);
    if (before.titles.valueTitle() != now.titles.valueTitle())
        kept.titles.setValueTitle(now.titles.valueTitle());
}

}  // namespace pavane
