#pragma once

#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/box/BoxLabels.h"
#include "pavane/axes/box/HiddenLines.h"
#include "pavane/axes/box/SurfaceGrid.h"
#include "pavane/axes/box/SurfaceRaster.h"

#include <array>
#include <memory>
#include <vector>

namespace pavane
{

/// What a box draws around its graphs, and where. Device units.
struct BoxLayout {
    CRect picture;  ///< all of it
    CRect room;     ///< of the box, see BoxView::fit
    std::vector<BoxText> texts;
    std::vector<BoxTick> ticks;
    std::array<TickSet, 4> sets;  ///< x, y, z and the second z
    CString header;
    int headerTop = 0;
    int headerHeight = 0;
};

/// An upright sheet along a line of constant q, from the line down to the floor.
struct BoxCurtain {
    std::vector<BoxPoint> line;
    double floor = -0.5;
    double top = -0.5;  ///< its highest point
    int rises = 1;      ///< p grows along the line

    /// Non-zero where the sheet stands between `at` and the eye; `sight` points away from it.
    int hides(const BoxPoint& at, const BoxPoint& sight) const;
    friend bool operator==(const BoxCurtain&, const BoxCurtain&) = default;
};

/// A surface and what its grid was made from.
struct BoxSurface {
    const ASurfaceGraph* graph = nullptr;
    int z = 0;
    SurfaceGrid grid;
    SurfaceGrid blocks;  ///< coarser, for views that move
    MapScale scale;
    std::vector<double> madeFrom;
    const SurfaceGrid& shown(int draft) const { return draft && !blocks.isEmpty() ? blocks : grid; }
};

/// What a box keeps from one drawing to the next, and what it knows while it draws.
struct BoxDrawing {
    std::array<BoxSurface, 2> surfaces;
    std::array<BoxZ, 2> z;  ///< as they were laid out
    SurfaceScene scene;
    std::uint64_t number = 0;            ///< of the scene, see A2_3DAxis::scene
    std::vector<double> numberOf;        ///< what has this number
    std::unique_ptr<HiddenLines> lines;  ///< of the view and scene as they were laid out
    std::vector<BoxCurtain> curtains;
    CRect picture;
    std::vector<double> rasterOf;  ///< what the raster of bitmap mode shows
    SurfaceRaster seen;            ///< the surfaces in pixels, which do not depend on colours
    std::vector<double> seenOf;
    PicturePieces grid, frame;  ///< of the walls
    std::vector<double> wallsOf;

    BoxSurface* surfaceOf(const AGraph& graph)
    {
        for (BoxSurface& surface : surfaces)
            if (surface.graph == &graph)
                return &surface;
        return nullptr;
    }
};

}  // namespace pavane
