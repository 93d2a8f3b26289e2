#include "pavane/axes/maps/sky/SkyMarkLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_fonts.h"
#include "pavane/axes/edged_text.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "platform/CDC.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace pavane
{

namespace
{

constexpr COLORREF markColor = RGB(120, 255, 120);
constexpr COLORREF markEdge = RGB(0, 0, 0);
constexpr OutlineStyle markStyle{markColor, markEdge, 2, 4};
/// Pixels of 96 per inch: half a cross, what its middle leaves free, and the names.
constexpr int crossReach = 9, crossGap = 3, textHeight = 13, textGap = 3;
/// Names stand side by side: of more marks than this in view none is drawn.
constexpr std::size_t mostNames = 2000;

/// Rectangles that keep off one another, by the squares of a net that they touch.
class TakenPlaces
{
public:
    explicit TakenPlaces(int square) : square_(std::max(square, 1)) {}
    int isFree(const CRect& rect) const
    {
        int free = 1;
        forSquares(rect, [&](std::int64_t key) {
            const auto found = taken_.find(key);
            if (found == taken_.end())
                return;
            CRect common;
            for (const CRect& other : found->second)
                free = free && !common.IntersectRect(rect, other);
        });
        return free;
    }
    void take(const CRect& rect)
    {
        forSquares(rect, [&](std::int64_t key) { taken_[key].push_back(rect); });
    }

private:
    template <typename Do>
    void forSquares(const CRect& rect, const Do& apply) const
    {
        for (int y = rect.top / square_; y <= rect.bottom / square_; ++y)
            for (int x = rect.left / square_; x <= rect.right / square_; ++x)
                apply((static_cast<std::int64_t>(y) << 32) ^ x);
    }
    int square_;
    std::unordered_map<std::int64_t, std::vector<CRect>> taken_;
};

CPoint pixelOf(const ABAxis& axis, const MapPlace& at)
{
    const CPointF p = axis.RPtoGPF(at.x, at.y);
    return {static_cast<int>(std::lround(p.x)), static_cast<int>(std::lround(p.y))};
}

}  // namespace

void SkyMarkLayer::setMarks(const std::vector<SkyMark>& marks, const SkyCoordinates& sky,
                            const MapFrame& frame)
{
    placed_.clear();
    for (const SkyMark& mark : marks) {
        double column = mark.x - 1;
        double row = mark.y - 1;
        if (!mark.isPixel && !sky.toPixel(mark.position.longitude, mark.position.latitude,
                                          mark.position.frame, column, row))
            continue;
        const MapPlace at = {frame.xFirst + column * frame.xStep, frame.yFirst + row * frame.yStep};
        if (std::isfinite(at.x) && std::isfinite(at.y))
            placed_.push_back({mark.name, at});
    }
}

void SkyMarkLayer::draw(CDC& dc, const ABAxis& axis)
{
    const CRect plot = axis.getGraphRect();
    const double reach = unitsOf(dc, crossReach);
    const double gap = unitsOf(dc, crossGap);
    OutlineCurves arms;
    std::vector<int> shown;
    for (std::size_t i = 0; i < placed_.size(); ++i) {
        const CPointF c = axis.RPtoGPF(placed_[i].at.x, placed_[i].at.y);
        if (!(c.x >= plot.left && c.x < plot.right && c.y >= plot.top && c.y < plot.bottom))
            continue;
        shown.push_back(static_cast<int>(i));
        arms.push_back({{c.x - reach, c.y}, {c.x - gap, c.y}});
        arms.push_back({{c.x + gap, c.y}, {c.x + reach, c.y}});
        arms.push_back({{c.x, c.y - reach}, {c.x, c.y - gap}});
        arms.push_back({{c.x, c.y + gap}, {c.x, c.y + reach}});
    }
    strokeOutlines(dc, axis, arms, markStyle);
    if (shown.size() <= mostNames)
        drawNames(dc, axis, shown);
}

void SkyMarkLayer::drawNames(CDC& dc, const ABAxis& axis, const std::vector<int>& shown) const
{
    CFont font;
    if (shown.empty() || !CreateFont(font, unitsOf(dc, textHeight), 1, 0, {}))
        return;
    CFont* const old = dc.SelectObject(&font);
    const CRect plot = axis.getGraphRect();
    const int reach = unitsOf(dc, crossReach);
    const int gap = unitsOf(dc, textGap);
    TakenPlaces taken(unitsOf(dc, 8 * textHeight));
    const auto at = [&](int i) { return pixelOf(axis, placed_[static_cast<std::size_t>(i)].at); };
    for (const int i : shown) {
        const CPoint c = at(i);
        taken.take({c.x - reach, c.y - reach, c.x + reach, c.y + reach});
    }
    for (const int i : shown) {
        const CString& name = placed_[static_cast<std::size_t>(i)].name;
        if (name.empty())
            continue;
        const CPoint c = at(i);
        const CSize size = dc.GetTextExtent(name);
        const int away = reach + gap;
        // right of it, left of it, above, below
        const CPoint places[] = {{c.x + away, c.y - size.cy / 2},
                                 {c.x - away - size.cx, c.y - size.cy / 2},
                                 {c.x - size.cx / 2, c.y - away - size.cy},
                                 {c.x - size.cx / 2, c.y + away}};
        for (const CPoint& place : places) {
            const CRect room(place.x, place.y, place.x + size.cx, place.y + size.cy);
            if (room.left < plot.left || room.right > plot.right || room.top < plot.top ||
                room.bottom > plot.bottom || !taken.isFree(room))
                continue;
            taken.take(room);
            drawEdgedText(dc, place, name, unitsOf(dc, 1), markColor, markEdge);
            break;
        }
    }
    dc.SelectObject(old);
}

}  // namespace pavane
