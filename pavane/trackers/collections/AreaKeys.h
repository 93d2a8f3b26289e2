#pragma once

#include "pavane/trackers/collections/TrackerEdits.h"

#include <vector>

namespace pavane
{

/// What keys do to areas: the focus, moves, vertices, shapes without a pointer. It tells nobody:
/// what came of a key is its result. Nothing moves while a drag runs.
class AreaKeys
{
public:
    AreaKeys(AreaTrackers trackers, TrackerEdits& edits, AreaEye& eye, AreaFocus& focus,
             AreaDrag& drag)
        : trackers_(trackers), edits_(edits), eye_(eye), focus_(focus), drag_(drag)
    {
    }

    /// Gives the focus to the next area or handle (`direction` 1) or the one before (-1).
    HandResult stepFocus(int direction);
    HandResult focusAt(int item, int handle);
    /// Moves the focused handle, or else the selection, inside the valid rectangle.
    HandResult moveBy(CWnd* window, int dx, int dy);
    HandResult moveByValue(CWnd* window, double dx, double dy);
    /// On the edge nearest to `at`, or halfway after the focused vertex, or halfway on the last
    /// edge.
    HandResult insertVertex(const CPoint* at);
    /// The vertex at `at`, or the focused one; never below three.
    HandResult deleteVertex(const CPoint* at);
    /// Puts the shape of the drawing tool into the middle of what is shown.
    HandResult placeShape(CWnd* window);

private:
    HandResult moveByOffset(CWnd* window, APoint<double> offset);
    HandResult moveShapes(CWnd* window, const std::vector<int>& items, APoint<double> offset);
    HandResult moveHandleBy(CWnd* window, APoint<double> offset);
    int polygonForVertices(ShapeValues& shape) const;
    int middleOf(CWnd* window, ATracker& tracker, ShapeValues& shape) const;

    AreaTrackers trackers_;
    TrackerEdits& edits_;
    AreaEye& eye_;
    AreaFocus& focus_;
    AreaDrag& drag_;
};

}  // namespace pavane
