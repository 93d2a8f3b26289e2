#include "pavane/axes/maps/ColorLook.h"

#include "pavane/axes/maps/AColorsGraph.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Range, scale and play come before the colours.
constexpr std::size_t headValues = 7;

}  // namespace

ColorLook::ColorLook(const AColorsGraph& graph)
    : range{graph.centres().zMin, graph.centres().zMax}, scale(graph.scaleKind()),
      play(graph.GetColorPlay()),
      colours(graph.colors().lpArray(), graph.colors().lpArray() + graph.colors().count())
{
}

void ColorLook::give(AColorsGraph& graph) const
{
    TMinMax centres = graph.centres();
    centres.zMin = range.min;
    centres.zMax = range.max;
    graph.setCentres(centres);
    if (graph.scaleKind() != scale)
        graph.setScale(scale);
    AArray<COLORREF> own;
    for (const COLORREF colour : colours)
        (void)own.Add(colour);  // without memory: fewer, spread over all
    graph.setColors(own);
    (void)graph.SetColorPlay(play);
}

std::vector<double> ColorLook::values() const
{
    std::vector<double> all = {
        range.min, range.max,  static_cast<double>(scale),      play.contrast,
        play.bias, play.gamma, static_cast<double>(play.invert)};
    all.insert(all.end(), colours.begin(), colours.end());
    return all;
}

ColorLook ColorLook::of(const std::vector<double>& values)
{
    ColorLook look;
    if (values.size() < headValues)
        return look;
    look.range = {values[0], values[1]};
    if (values[2] >= 0 && values[2] <= static_cast<double>(MapScaleKind::equalized))
        look.scale = static_cast<MapScaleKind>(static_cast<int>(values[2]));
    const AColorPlay play{values[3], values[4], values[5], values[6] != 0};
    if (play.isUsable())
        look.play = play;
    for (std::size_t i = headValues; i < values.size(); ++i)
        if (values[i] >= 0 && values[i] <= 0xFFFFFF)
            look.colours.push_back(static_cast<COLORREF>(values[i]));
    return look;
}

}  // namespace pavane
