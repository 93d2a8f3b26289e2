#include "pavane/axes/multi/MultiLayout.h"

#include "pavane/axes/ranges/pixel_rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

double DirectionMap::fraction(double value) const
{
    if (direct != 0)
        return spanFraction(value, range.min, range.max);
    return spanFraction(std::log10(value), std::log10(range.min), std::log10(range.max));
}

double DirectionMap::value(double fraction) const
{
    if (direct != 0)
        return range.min + fraction * (range.max - range.min);
    const double low = std::log10(range.min);
    return std::pow(10.0, low + fraction * (std::log10(range.max) - low));
}

double DirectionMap::yValue(int pixel, int top, int bottom) const
{
    return value(fractionAt(pixel, top, bottom, direct < 0));
}

int DirectionMap::yPixel(double value, int top, int bottom) const
{
    return pixelAt(fraction(value), top, bottom, direct < 0);
}

int DirectionMap::xPixel(double value, int left, int right) const
{
    return pixelAt(fraction(value), left, right, direct >= 0);
}

int MultiWish::panels() const
{
    int last = 0;
    for (const Scale& scale : scales)
        last = std::max(last, scale.spec.panel);
    return last + 1;
}

int MultiWish::rowsOfPage() const
{
    return rows > 0 ? rows : std::max(1, (panels() + columns - 1) / columns);
}

int MultiWish::panelsOfPage() const
{
    constexpr long long most = 1 << 30;
    const auto room = static_cast<int>(std::min(most, 1LL * columns * rowsOfPage()));
    return ofPage > 0 ? std::min(ofPage, room) : room;
}

int MultiWish::pages() const
{
    const int most = panelsOfPage();
    return (panels() + most - 1) / most;
}

const MultiLayout::Panel* MultiLayout::findPanel(int number) const
{
    for (const Panel& panel : panels)
        if (panel.number == number)
            return &panel;
    return nullptr;
}

const MultiLayout::YAxis* MultiLayout::findAxis(int scale) const
{
    for (const YAxis& axis : axes)
        if (axis.scale == scale)
            return &axis;
    return nullptr;
}

CRect MultiLayout::bounds() const
{
    if (panels.empty())
        return {};
    CRect all = panels[0].plot;
    for (const Panel& panel : panels) {
        all.left = std::min(all.left, panel.plot.left);
        all.top = std::min(all.top, panel.plot.top);
        all.right = std::max(all.right, panel.plot.right);
        all.bottom = std::max(all.bottom, panel.plot.bottom);
    }
    return all;
}

/// A title that stands for a column is that of the axis beside the point.
MultiHit MultiLayout::hitColumnTitle(CPoint point) const
{
    MultiHit hit{-1, -1, MultiPart::title};
    int nearest = picture.Height();
    for (const YAxis& axis : axes) {
        const int away = std::max(axis.rect.top - point.y, point.y - axis.rect.bottom);
        if (point.x < axis.rect.left || point.x >= axis.rect.right || away >= nearest)
            continue;
        nearest = away;
        hit.panel = panels[static_cast<std::size_t>(axis.panel)].number;
        hit.scale = axis.scale;
    }
    return hit;
}

MultiHit MultiLayout::hitTest(CPoint point) const
{
    if (panels.empty() || !picture.PtInRect(point))
        return {};
    for (const Text& text : texts)
        if (text.part == MultiPart::title && text.box.PtInRect(point))
            return text.panel < 0 ? hitColumnTitle(point)
                                  : MultiHit{text.panel, text.scale, MultiPart::title};
    for (const Panel& panel : panels) {
        const CRect& plot = panel.plot;
        if (CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1).PtInRect(point))
            return {panel.number, panel.scales.empty() ? -1 : panel.scales[0], MultiPart::plot};
    }
    for (const YAxis& axis : axes)
        if (axis.rect.PtInRect(point))
            return {panels[static_cast<std::size_t>(axis.panel)].number, axis.scale,
                    MultiPart::yAxis};
    for (const Panel& panel : panels) {
        const CRect below(panel.plot.left, panel.plot.bottom + 1, panel.plot.right + 1,
                          panel.plot.bottom + 1 + 2 * fHeight);
        if (panel.isLowest && below.PtInRect(point))
            return {panel.number, -1, MultiPart::xAxis};
    }
    return {-1, -1, MultiPart::gap};
}

}  // namespace pavane
