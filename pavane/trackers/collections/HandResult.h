#pragma once

#include "pavane/axes/ranges/TMinMax.h"

namespace pavane
{

/// What a press or a key came to. Hand and keys tell nobody; who called them acts on this, once.
struct HandResult {
    /// What shows something else now.
    enum class Shows {
        nothing,
        picture,   ///< the window alone
        commands,  ///< list and toolbar alone
        areas      ///< all of them, and hosts are to know
    };

    /// The press or key is used up.
    int used = 0;
    Shows shows = Shows::nothing;
    /// The tool that has done its work, -1 for none.
    int doneTool = -1;
    /// Another range is asked for.
    int zooms = 0;
    TMinMax range;
    /// Collection or tracker went away meanwhile: nothing of them may be touched.
    int gone = 0;

    /// Used, and nothing is to be told.
    static HandResult quiet() { return {1, Shows::nothing, -1, 0, {}, 0}; }
    static HandResult left() { return {1, Shows::nothing, -1, 0, {}, 1}; }
    static HandResult of(Shows shows, int doneTool = -1) { return {1, shows, doneTool, 0, {}, 0}; }
    static HandResult edited(int doneTool = -1) { return of(Shows::areas, doneTool); }
    static HandResult zoomTo(const TMinMax& range) { return {1, Shows::nothing, -1, 1, range, 0}; }
};

}  // namespace pavane
