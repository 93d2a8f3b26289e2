#pragma once

#include "platform/api.h"

#include <cstdint>
#include <vector>

namespace pavane
{

class A2DAxisMulti;

enum class MultiFocusKind : std::uint8_t { none, panel, scale, curve };

/// What has the keyboard in a plot with several scales: a panel, one of its scales, or a curve in
/// one of them and a point of it. A plain value; none before anything was laid out.
struct MultiFocus {
    MultiFocusKind kind = MultiFocusKind::none;
    int panel = -1;
    int scale = -1;  ///< of a scale or a curve
    int graph = -1;  ///< index in childs() of the axis
    int point = -1;  ///< of the curve; -1 before one was chosen

    friend bool operator==(const MultiFocus&, const MultiFocus&) = default;
};

/// Of each scale, by index, the graphs in it that have points.
PAVANE_API std::vector<std::vector<int>> curvesByScale(const A2DAxisMulti& axis);
/// The panels on the page with their scales and their curves, in the order in which Tab walks them;
/// of one panel when it is given.
PAVANE_API std::vector<MultiFocus> walkOf(const A2DAxisMulti& axis, int panel = -1);

/// Makes the focus one of what is on the page: a graph or scale that is gone gives it to its panel,
/// a panel that is gone to the first one.
PAVANE_API void fitFocus(const A2DAxisMulti& axis, MultiFocus& focus);
/// The panel `step` panels further on the page; 0, with the focus as it is, when there is none.
PAVANE_API int walkPanels(const A2DAxisMulti& axis, MultiFocus& focus, int step);
/// The next or, with a negative step, the last part of the panel, round its end.
PAVANE_API void walkParts(const A2DAxisMulti& axis, MultiFocus& focus, int step);
/// The point `step` finite points further on the curve, at most to its end; without a point yet the
/// one next to the value `x`. 0 when the point stays the same.
PAVANE_API int walkPoints(const A2DAxisMulti& axis, MultiFocus& focus, int step, double x);

}  // namespace pavane
