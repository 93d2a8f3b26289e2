#pragma once

#include "pavane/axes/TickSet.h"
#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

// Lengths of a plot's furniture as parts of the font height, so that pictures of any size and pages
// look alike.

/// A labelled tick; it leaves a gap before the label, which starts fHeight / 2 from the plot.
constexpr int majorTickLength(int fHeight) { return fHeight / 3; }
constexpr int minorTickLength(int fHeight) { return fHeight / 6; }
/// From the plot to the labels.
constexpr int labelGap(int fHeight) { return fHeight / 2; }
/// What a title adds to its margin: its line and half a line of air.
constexpr int titleRoom(int fHeight) { return fHeight * 3 / 2; }

/// The frame is this part of the font height wide.
inline constexpr int framePart = 12;
/// What graphs may draw on: the ends of a graph rectangle belong to it, those of a clip rectangle
/// do not.
constexpr CRect plotClip(const CRect& graph, int overhang)
{
    return CRect(graph.left - overhang, graph.top - overhang, graph.right + 1 + overhang,
                 graph.bottom + 1 + overhang);
}

/// What a plane axis draws around its graphs, and where. Device units.
struct PlotLayout {
    CRect picture;  ///< all of it
    CRect graph;    ///< where the data area lies, both ends included
    TickSet x;
    TickSet y;
    int hasOpposite = 0;  ///< the upper and the right edge have ticks of their own
    TickSet top, right;
    CString header;
    int headerLeft = 0;  ///< its room, centred on the plot, wider where the picture allows it
    int headerRight = 0;
    int headerHeight = 0;
    int yLabelWidth = 0;  ///< of the widest y label
};

}  // namespace pavane
