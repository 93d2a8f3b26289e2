#pragma once

#include "pavane/trackers/collections/TrackerEdits.h"
#include "platform/cursors.h"

#include <functional>

namespace pavane
{

/// What a press is about, once the hand knows.
struct AreaPress {
    enum class Kind { nothing, zoom, select, moveSeveral, move, draw };
    /// Of the one area that has the handles, or of a new one.
    int mayDrag() const { return kind == Kind::move || kind == Kind::draw; }

    Kind kind = Kind::nothing;
    int item = -1;   ///< the area that is pressed, of several that move
    int chosen = 0;  ///< the current area or the selection is another one than before
    int opened = 0;  ///< there is an open polygon now and was none
};

/// What presses do with the tool that is chosen: select, drag, draw, zoom. It calls the eye and the
/// edits and tells nobody: what came of a press is its result. A handler that runs in a drag may do
/// anything with the areas, and destroy the collection.
class AreaHand
{
public:
    AreaHand(AreaTrackers trackers, TrackerEdits& edits, AreaEye& eye, AreaFocus& focus,
             AreaDrag& drag, const PressOptions& options)
        : trackers_(trackers), edits_(edits), eye_(eye), focus_(focus), drag_(drag),
          options_(options)
    {
    }

    // A press in three parts: between them, and before a drag keeps everybody waiting, who calls
    // shows what has come of it so far.
    /// Takes up what the press is about, and leaves the areas beside it.
    AreaPress choose(CWnd* window, unsigned flags, CPoint p);
    /// Makes the polygon that the press begins, if it does.
    void open(AreaPress& press, CPoint p);
    /// Does it, a drag to its end.
    HandResult press(CWnd* window, CPoint p, const AreaPress& press);

    /// Closes the open polygon, or makes the area at p current.
    HandResult doubleClick(CWnd* window, CPoint p);
    /// Closes the open polygon when it has three vertices.
    HandResult closeOpen(CWnd* window);
    /// Shows where the next vertex would be; 0 without an open polygon.
    int hover(CWnd& window, CPoint p);
    /// Non-zero when it chose a cursor.
    int chooseCursor(CWnd* window, unsigned hitArea);

private:
    enum class DragResult { gone, refused, kept };

    int leaveCurrent(CWnd* window, CPoint p);
    int takeClicked(CWnd* window, CPoint p);
    DragResult drag(CWnd*& window, ATracker& tracker, const std::function<int()>& run);
    HandResult zoom(CPoint p) const;
    HandResult select(CWnd* window, CPoint p);
    HandResult move(CWnd* window, CPoint p);
    HandResult moveSeveral(CWnd* window, int item, CPoint p);
    HandResult draw(CWnd* window, CPoint p, int opened);
    HandResult addVertex(CWnd* window, CPoint p, int opened);
    const char* focusPressed(CWnd* window, ATracker& current, CPoint p);

    AreaTrackers trackers_;
    TrackerEdits& edits_;
    AreaEye& eye_;
    AreaFocus& focus_;
    AreaDrag& drag_;
    const PressOptions& options_;
    HCURSOR zoomCursor_ = 0;
    HCURSOR drawCursor_ = 0;
    LifeToken life_;
};

}  // namespace pavane
