#pragma once

#include "pavane/trackers/ATracker.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// Where a shape shows on the screen, for repainting: lines and the room about them.
struct ShapeTrace {
    std::vector<CPoint> points;  ///< of a closed outline, or an open one
    bool closed = true;
    std::vector<CPoint> stem;  ///< an open line beside the outline
    int margin = 0;            ///< pixels on each side that handles and lines take
};

inline ShapeTrace rectTrace(const CRect& r, int margin)
{
    return {{{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}},
            true,
            {},
            margin};
}

/// One drag of one shape, as the message loop sees it. Hooks of the shape may delete the tracker;
/// nothing is called afterwards.
class DragSession
{
public:
    virtual ~DragSession() = default;
    /// The drag begins; non-zero when the press alone changes the shape.
    virtual int begin() { return 0; }
    /// The pointer is at `point` (client pixels), `shift` when that key is held, `released` when
    /// the button went up there. Non-zero when the shape changed.
    virtual int moveTo(CPoint point, int shift, int released) = 0;
    /// Puts the shape back as it was before `begin`.
    virtual void cancel() = 0;
    virtual ShapeTrace trace() const = 0;
};

/// Fields of a tracker that tell of its last drag.
struct DragState {
    int& finished;  ///< 1 once the button went up, else 0
    DragEnd& end;
    int& tracking;  ///< 1 while the drag runs
    int& drawn;     ///< set when the frame of the drag is drawn
};

/// Runs a drag: captures the mouse for `window`, hands out messages and feeds the session until the
/// left button goes up, Escape or the right button cancels, or capture, window or tracker are lost.
/// Each change invalidates thin strips, tells the listener and paints; where painting the window
/// does not draw the tracker, its frame is drawn over what the window shows. The press must have
/// been accepted before (ATracker::mayBegin).
DragEnd runDrag(ATracker& tracker, DragState state, DragSession& session, CWnd* window,
                CPoint press, CWnd* clipTo);

/// Paints the window; while the tracker tracks the pointer and that did not draw it, draws its
/// frame over what the window shows. Tracker and window may be gone afterwards.
void paintTrack(ATracker& tracker, DragState state, CWnd& window);

/// Invalidates what `trace` covers on the window.
void invalidateTrace(CWnd& window, const ShapeTrace& trace);

}  // namespace pavane
