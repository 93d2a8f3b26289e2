// What a screen reader hears of a box.
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/windows/ASurfaceWnd.h"
#include "pavane/resources/surface_messages.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{
namespace
{

enum Part : AccessId { partX = 1, partY, partZ, partZ2, partView, partCell };

/// A title as it is spoken: without the markers of prefix and multiplier.
CString spoken(const CString& title)
{
    return hasPrefixMarker(title) ? withPrefix(title, {}) : withMultiplier(title, {});
}

CString axisText(const CString& letter, const CString& title, double from, double to)
{
    const CString name = spoken(title);
    return letter + (name.empty() ? CString() : " " + name) + ", " + valToStr(from, 4) +
           surfaceRangeText + valToStr(to, 4);
}

CString viewText(const A2_3DAxis& box)
{
    if (box.GetObliqueRatio() > 0)
        return surfaceObliqueText + valToStr(box.GetObliqueAngle(), 4) + surfaceDegreesText;
    return surfaceAzimuthText + valToStr(box.GetAzimuth(), 4) + surfaceDegreesText +
           surfaceElevationText + valToStr(box.GetElevation(), 4) + surfaceDegreesText +
           surfaceHeightText + valToStr(box.GetBoxHeight(), 3);
}

CString cellText(const A2_3DAxis& box, int row, int column)
{
    for (int i = 0; i < box.childs().count(); ++i) {
        const auto* const graph = dynamic_cast<const ASurfaceGraph*>(box.childs()(i));
        if (!graph)
            continue;
        const float value = graph->cells().cell(row, column);
        return surfaceColumnText + std::to_string(column) + surfaceRowText + std::to_string(row) +
               ", x " + valToStr(graph->MPXtoRPX(column), 5) + ", y " +
               valToStr(graph->MPYtoRPY(row), 5) + ", " +
               (std::isfinite(value) ? valToStr(value, 5) : CString(surfaceBlankText));
    }
    return {};
}

}  // namespace

std::vector<AccessId> ASurfaceWnd::GetAccessChildren() const
{
    if (!box_)
        return {};
    std::vector<AccessId> parts = {partX, partY, partZ};
    if (dynamic_cast<const A2_3D2ZAxis*>(box_))
        parts.push_back(partZ2);
    parts.push_back(partView);
    int row = 0, column = 0;
    if (GetLinkedCell(row, column))
        parts.push_back(partCell);
    return parts;
}

int ASurfaceWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    CRect client;
    GetClientRect(client);
    part.role = id == 0 ? ROLE_SYSTEM_GRAPHIC : ROLE_SYSTEM_STATICTEXT;
    part.state = id == 0 ? STATE_SYSTEM_FOCUSABLE : STATE_SYSTEM_READONLY;
    part.rect = client;
    if (!box_) {
        part.name = surfaceWindowText;
        return id == 0;
    }
    const TMinMax& range = box_->getMinMax();
    const auto* const twoZ = dynamic_cast<const A2_3D2ZAxis*>(box_);
    int row = 0, column = 0;
    switch (id) {
    case 0:
        part.name = surfaceWindowText;
        part.value = viewText(*box_);
        return 1;
    case partX:
        part.name = axisText("x", box_->shownName(0), range.xMin, range.xMax);
        return 1;
    case partY:
        part.name = axisText("y", box_->shownName(1), range.yMin, range.yMax);
        return 1;
    case partZ:
        part.name = axisText("z", box_->getNameOZ(), range.zMin, range.zMax);
        return 1;
    case partZ2:
        if (!twoZ)
            return 0;
        part.name = axisText(surfaceSecondZText, twoZ->getNameOZ2(), twoZ->getMinMaxZ2().min,
                             twoZ->getMinMaxZ2().max);
        return 1;
    case partView:
        part.name = viewText(*box_);
        return 1;
    case partCell:
        if (!GetLinkedCell(row, column))
            return 0;
        part.name = cellText(*box_, row, column);
        part.state |= STATE_SYSTEM_SELECTED;
        return 1;
    default:
        return 0;
    }
}

}  // namespace pavane
