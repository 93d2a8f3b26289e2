// What stands around the graphs of a plot: grid, frame, ticks, labels, titles, header line.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>

namespace pavane
{
namespace
{

constexpr unsigned headerFormat = DT_CENTER | DT_WORDBREAK | DT_NOPREFIX;

/// The length of a line centred on `centre` that reaches an end of its picture.
int roomAbout(int centre, int first, int last)
{
    return 2 * std::max(0, std::min(centre - first, last - centre));
}

}  // namespace

void A2DAxis::drawGrid(const PlotLayout& layout)
{
    if (layout.hasOpposite)
        return;  // the lines of the ticks are not straight
    const int style = lineStyle_;
    const int width = lineWidth_;
    const COLORREF color = color_;
    setLineStyle(PS_DOT);
    setLineWidth(isFlagSet(axisBitmapMode) ? 1 : 0);
    setColor(workColor(3));
    if (isFlagSet(axisGridX))
        for (const TickSet::Tick& tick : layout.x.major) {
            const int x = RPXtoGPX(tick.value);
            line(x, graphRect_.bottom, x, graphRect_.top);
        }
    if (isFlagSet(axisGridY))
        for (const TickSet::Tick& tick : layout.y.major) {
            const int y = RPYtoGPY(tick.value);
            line(graphRect_.left, y, graphRect_.right, y);
        }
    setLineStyle(style);
    setLineWidth(width);
    setColor(color);
}

void A2DAxis::drawFrame(CDC& dc)
{
    const SelectedObject<CPen> pen(
        dc, CPen(PS_SOLID, FigureUnits(dc).line(fHeight_, framePart), workColor(1)));
    const CRect& g = graphRect_;
    dc.MoveTo(g.left, g.top);
    dc.LineTo(g.right, g.top);
    dc.LineTo(g.right, g.bottom);
    dc.LineTo(g.left, g.bottom);
    dc.LineTo(g.left, g.top);
}

void A2DAxis::drawTicks(CDC& dc, const PlotLayout& layout)
{
    const SelectedObject<CPen> pen(
        dc, CPen(PS_SOLID, FigureUnits(dc).line(fHeight_, framePart), workColor(1)));
    strokeTicks(layout, [&dc](CPoint from, CPoint to) {
        dc.MoveTo(from.x, from.y);
        dc.LineTo(to.x, to.y);
    });
}

void A2DAxis::strokeTicks(const PlotLayout& layout,
                          const std::function<void(CPoint, CPoint)>& stroke)
{
    const CRect& g = graphRect_;
    const bool inside = isFlagSet(axisTicksInside);
    const FigureUnits units(dc());
    const int major = units.ofFont(fHeight_, majorTickLength);
    const int minor = units.ofFont(fHeight_, minorTickLength);
    const auto xTick = [&](double value, int length) {
        const int x = std::clamp(RPXtoGPX(value), g.left, g.right);
        stroke({x, g.bottom}, {x, g.bottom + (inside ? -length : length)});
        if (inside && !layout.hasOpposite)
            stroke({x, g.top}, {x, g.top + length});
    };
    const auto yTick = [&](double value, int length) {
        const int y = std::clamp(RPYtoGPY(value), g.top, g.bottom);
        stroke({g.left, y}, {g.left + (inside ? length : -length), y});
        if (inside && !layout.hasOpposite)
            stroke({g.right, y}, {g.right - length, y});
    };
    for (const TickSet::Tick& tick : layout.x.major)
        xTick(tick.value, major);
    for (const double value : layout.x.minor)
        xTick(value, minor);
    for (const TickSet::Tick& tick : layout.y.major)
        yTick(tick.value, major);
    for (const double value : layout.y.minor)
        yTick(value, minor);
    const auto topTick = [&](double value, int length) {
        const int x = std::clamp(RPXtoGPX(value), g.left, g.right);
        stroke({x, g.top}, {x, g.top + (inside ? length : -length)});
    };
    const auto rightTick = [&](double value, int length) {
        const int y = std::clamp(RPYtoGPY(value), g.top, g.bottom);
        stroke({g.right, y}, {g.right + (inside ? -length : length), y});
    };
    for (const TickSet::Tick& tick : layout.top.major)
        topTick(tick.value, major);
    for (const double value : layout.top.minor)
        topTick(value, minor);
    for (const TickSet::Tick& tick : layout.right.major)
        rightTick(tick.value, major);
    for (const double value : layout.right.minor)
        rightTick(value, minor);
}

void A2DAxis::drawLabels(CDC& dc, const PlotLayout& layout)
{
    CFont font;
    if (!CreateAxisFont(font, fHeight_, 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const int gap = FigureUnits(dc).ofFont(fHeight_, labelGap);
    for (const TickSet::Tick& tick : layout.x.major) {
        const int width = dc.GetTextExtent(tick.label).cx;
        if (!tick.label.empty())
            dc.TextOut(RPXtoGPX(tick.value) - width / 2, graphRect_.bottom + gap, tick.label);
    }
    for (const TickSet::Tick& tick : layout.y.major) {
        const int width = dc.GetTextExtent(tick.label).cx;
        if (!tick.label.empty())
            dc.TextOut(graphRect_.left - gap - width, RPYtoGPY(tick.value) - fHeight_ / 2,
                       tick.label);
    }
}

void A2DAxis::drawTitles(CDC& dc, const PlotLayout& layout)
{
    const CRect& g = graphRect_;
    CFont font;
    if (!layout.x.title.empty() && CreateAxisFont(font, fHeight_, 0, 0.0)) {
        const SelectedObject<CFont> selected(dc, font);
        const CString title =
            fittedLine(dc, layout.x.title,
                       roomAbout(g.CenterPoint().x, layout.picture.left, layout.picture.right));
        const int width = dc.GetTextExtent(title).cx;
        dc.TextOut((g.left + g.right - width) / 2, g.bottom + 2 * fHeight_, title);
    }
    if (!layout.y.title.empty() && CreateAxisFont(font, fHeight_, 0, 90.0)) {
        // Text that runs upwards starts at its lower end, with its top to the left.
        const SelectedObject<CFont> selected(dc, font);
        const CString title =
            fittedLine(dc, layout.y.title,
                       roomAbout(g.CenterPoint().y, layout.picture.top, layout.picture.bottom));
        const int length = dc.GetTextExtent(title).cx;
        dc.TextOut(g.left - layout.yLabelWidth - 2 * fHeight_, (g.top + g.bottom + length) / 2,
                   title);
    }
    if (!layout.header.empty() && CreateAxisFont(font, fHeight_, 1, 0.0)) {
        const SelectedObject<CFont> selected(dc, font);
        const int bottom = g.top - FigureUnits(dc).ofFont(fHeight_, [](int height) {
            return height / 2 - height / 4;
        });
        CRect text(layout.headerLeft, bottom - layout.headerHeight, layout.headerRight, bottom);
        dc.DrawText(layout.header, text, headerFormat);
    }
}

}  // namespace pavane
