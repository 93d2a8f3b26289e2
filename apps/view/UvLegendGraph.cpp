#include "apps/view/UvLegendGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/SelectedObject.h"
#include "platform/CDC.h"

#include <algorithm>
#include <vector>

namespace pavane
{

/// The first corner of the plot in which it lies over the fewest points, of some thousands.
CRect UvLegendGraph::placeOf(CSize size, int inset) const
{
    constexpr std::size_t mostPoints = 20000;
    const CRect plot = axis()->getGraphRect();
    std::vector<CRect> boxes;
    for (const bool isTop : {true, false})
        for (const bool isLeft : {false, true}) {
            CRect box(0, 0, size.cx, size.cy);
            box.OffsetRect(isLeft ? plot.left + inset : plot.right - inset - size.cx,
                           isTop ? plot.top + inset : plot.bottom - inset - size.cy);
            boxes.push_back(box);
        }
    std::vector<int> hidden(boxes.size());
    std::size_t all = 0;
    for (const UvPointBlock& block : plot_.points()->blocks())
        all += block.x.size();
    const std::size_t step = 1 + all / mostPoints;
    for (const UvPointBlock& block : plot_.points()->blocks())
        for (std::size_t i = 0; i < block.x.size(); i += step)
            for (const double sign : {1., -1.}) {
                if (sign < 0 && !plot_.isCoverage())
                    continue;
                const CPointF at =
                    axis()->RPtoGPF(sign * double{block.x[i]}, sign * double{block.y[i]});
                for (std::size_t b = 0; b < boxes.size(); ++b)
                    hidden[b] += at.x >= boxes[b].left && at.x <= boxes[b].right &&
                                 at.y >= boxes[b].top && at.y <= boxes[b].bottom;
            }
    return boxes[static_cast<std::size_t>(std::min_element(hidden.begin(), hidden.end()) -
                                          hidden.begin())];
}

void UvLegendGraph::draw(CDC& dc, CRect&, TMinMax&)
{
    const std::vector<UvColourKey::Entry>& entries = plot_.key().entries;
    CFont font;
    if (!axis() || entries.empty() || !plot_.points() ||
        !ABAxis::CreateAxisFont(font, axis()->getFHeight(), 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const CRect plot = axis()->getGraphRect();
    const int h = axis()->getFHeight();
    const int line = h + h / 4;
    const int air = h / 2;
    const int rows = std::max(0, (plot.Height() - 4 * air) / line);
    int widest = 0;
    std::vector<CString> names;
    for (const UvColourKey::Entry& entry : entries) {
        names.push_back(fittedLine(dc, entry.name, plot.Width() / 3));
        widest = std::max(widest, dc.GetTextExtent(names.back()).cx);
    }
    const int count = static_cast<int>(entries.size());
    const int column = h + widest + 2 * air;
    const int columns = rows > 0 ? (count + rows - 1) / rows : 0;
    if (columns == 0 || columns * column + 3 * air > plot.Width())
        return;  // no room
    const int used = (count + columns - 1) / columns;
    const CRect box = placeOf({columns * column + air, used * line + air}, air);
    {
        const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, unitsOf(dc, 1), axis()->workColor(3)));
        const SelectedObject<CBrush> brush(dc, CBrush(axis()->workColor(0)));
        dc.Rectangle(box);
    }
    const int side = std::max(2, h * 2 / 3);
    for (int i = 0; i < count; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const int left = box.left + air + i / used * column;
        const int top = box.top + air / 2 + i % used * line + h / 8;
        dc.FillSolidRect({left, top + (h - side) / 2, left + side, top + (h - side) / 2 + side},
                         entries[k].color);
        dc.TextOut(left + h + air / 2, top, names[k]);
    }
}

}  // namespace pavane
