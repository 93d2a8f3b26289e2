#pragma once

#include "pavane/containers/LifeWatch.h"
#include "pavane/trackers/areas/tracker_style.h"
#include "pavane/trackers/OutlineLook.h"
#include "pavane/trackers/shapes/area_label.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <cstddef>
#include <string>

namespace pavane
{

class AFile;
class ATracker;
class CDC;
class CWnd;
struct ShapeValues;

/// How a drag came to its end.
enum class DragEnd {
    refused,      ///< it never began
    released,     ///< the left button went up
    escaped,      ///< cancelled by the Escape key
    rightButton,  ///< cancelled by the right button: no context menu should follow
    lost,         ///< cancelled because the capture or the window was lost, or the program ends
    dead          ///< the tracker was deleted
};

/// Follows the drags of trackers; a collection is one. It has to outlive what it listens to.
class TrackerListener
{
public:
    virtual ~TrackerListener() = default;
    /// The shape has changed inside a drag; the window is invalid but not painted yet.
    virtual void trackerChanging(ATracker& tracker) { (void)tracker; }
    /// A drag that had begun is over (not called for a tracker that was deleted meanwhile); the
    /// shape is as it stays, the capture is released.
    virtual void trackerDragEnded(ATracker& tracker, DragEnd end) { (void)tracker, (void)end; }
    /// The pixels that drags of the tracker are bound by, both edges included, where that is not
    /// the client area of the window; 0 leaves the client area.
    virtual int trackerBounds(const ATracker& tracker, CRect& bounds)
    {
        return (void)tracker, (void)bounds, 0;
    }
};

/// What all selection shapes have in common, in pixels and in data values: style, the rectangles
/// that bound a drag, the protocol of mouse and drawing, and the head of their stored record.
/// Points are client pixels of the window that a shape is drawn in.
///
/// A tracker may be deleted by a handler that runs while it is being dragged: the drag then returns
/// 0 without touching it again.
class PAVANE_API ATracker
{
public:
    ATracker();
    virtual ~ATracker();

    /// The class name that stored collections carry; at most 31 characters.
    virtual const char* GetClassName() const = 0;

    /// Read and write the record (little-endian). 0 at the first failed read or write, and for
    /// values that no tracker can have (handle sizes, steps, angles, minimum sizes).
    virtual int Load(AFile& file);
    virtual int Store(AFile& file) const;

    virtual int IsReady() const;
    virtual int IsActive() const;
    virtual void SetActive(int on);
    /// A new tracker with the same shape, without the listener; the caller owns it.
    virtual ATracker* Duplicate() const = 0;

    /// One press at `point`: hit test, then the drag. Returns non-zero when the shape changed.
    virtual int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) = 0;
    /// Draws a new shape from a press at `point`.
    virtual int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) = 0;
    virtual int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) = 0;
    /// Closes a polygon that is being drawn; 0 for shapes that are never open.
    virtual int TrackReady(CWnd* window, CPoint point);

    /// Non-zero when it chose a cursor; `hitArea` as in WM_SETCURSOR.
    virtual int SetCursor(CWnd* window, unsigned hitArea) = 0;
    /// Hit codes are those of each shape; -1 for nothing.
    virtual int HitTest(CPoint point, CWnd* window) = 0;
    virtual int HitTestHandles(CPoint point) = 0;
    virtual void Draw(CDC* dc, CWnd* window) = 0;
    /// The pixels that the shape covers with its handles.
    virtual void GetTrueRect(CRect* rect) const = 0;
    /// Refresh validRect and clipRect from the window.
    virtual void GetValidRect(CWnd* window);
    virtual void GetClipRect(CWnd* window);
    /// Both, where there is something to take them from; else they stay.
    void refreshRects(CWnd* window);
    virtual int GetLineSize() const;
    /// Edge of a handle of a shape that covers `rect`, in pixels.
    virtual int GetHandleSize(const CRect& rect) const;
    /// Outline and handles without touching the clip region. In a drag it draws the frame that
    /// tracks the pointer (DrawTrackRect, DrawTrack), else the active or the inactive shape.
    virtual void DrawShape(CDC& dc) = 0;
    /// The shape as numbers: pixels, or data values for what is kept in these. 0 for classes that
    /// have none.
    virtual int GetShape(ShapeValues& shape) const;
    /// The other way; pixels are cut towards zero. 0, and the tracker as it was, for another kind
    /// of shape. The numbers have to be finite.
    virtual int SetShape(const ShapeValues& shape);
    /// The hit code that moves the shape as a whole.
    virtual int moveCode() const;
    /// Bytes of one vertex in the record of a polygon; 0 for other shapes.
    virtual std::size_t vertexBytes() const;

    /// The stored record as bytes: two trackers of one class are alike when their states are.
    std::string State() const;
    /// Loads such a record; on 0 the tracker is as it was.
    virtual int SetState(const std::string& state);

    unsigned GetStyle() const { return style_; }
    void SetStyle(unsigned style) { style_ = style; }
    /// Non-zero for an area whose cells masks leave out (trackerNeverClean).
    int IsNeverClean() const { return (style_ & trackerNeverClean) != 0; }
    void SetNeverClean(int on)
    {
        style_ = on ? style_ | trackerNeverClean : style_ & ~unsigned{trackerNeverClean};
    }
    /// What the user calls it and its colour; not part of the record.
    const AreaLabel& label() const { return label_; }
    void SetLabel(const AreaLabel& label) { label_ = label; }
    /// How its outline is drawn until another look is set; that of never-clean areas comes by
    /// itself. Not stored.
    void SetOutlineLook(const OutlineLook& look) { look_ = look; }
    OutlineLook GetOutlineLook() const
    {
        return {look_.crowded, look_.dashed, IsNeverClean() != 0, look_.clipped, label_.colour};
    }
    int GetHandleSize() const { return handleSize_; }
    const CRect& validRect() const { return validRect_; }
    const CRect& clipRect() const { return clipRect_; }
    int finished() const { return finished_; }
    /// How the last drag ended.
    DragEnd dragEnd() const { return dragEnd_; }
    /// Pixels that the pointer has to leave the press by before a drag begins; 0 begins at once.
    /// Not stored.
    int deadZone() const { return deadZone_; }
    void SetDeadZone(int pixels) { deadZone_ = pixels; }
    /// Pixels about a vertex of a closed polygon and about the outline of any shape in which a
    /// press is taken to be on it; 0, as at first, takes the handle and the inside alone. Not
    /// stored.
    void SetCatch(int vertex, int edge) { vertexCatch_ = vertex, edgeCatch_ = edge; }
    int vertexCatch() const { return vertexCatch_; }
    int edgeCatch() const { return edgeCatch_; }
    /// Not owned, not stored; null for none.
    TrackerListener* listener() const { return listener_.to; }
    void SetListener(TrackerListener* listener) { listener_.to = listener; }
    const LifeToken& life() const { return life_; }

protected:
    ATracker(const ATracker&) = default;
    ATracker& operator=(const ATracker&) = default;

    /// Bounds from the listener, or from the shape's own surroundings (an axis); 0 for none.
    virtual int ownBounds(CRect& bounds) const;
    /// A box with as much room about it as a press may be away.
    CRect caughtBox(const CRect& box) const;
    /// Refreshes both rectangles (unless `window` is null) and tells whether a press may begin.
    int mayBegin(CWnd* window, CPoint point);
    /// Whether a press at `point` lies in both rectangles as they are.
    int inBothRects(CPoint point) const;
    /// inBothRects after a refresh; without a window and with unset rectangles everything is in.
    int mayBeHit(CWnd* window, CPoint point);
    /// Clips to clipRect, draws the shape, and restores the context. Shapes out of sight cost next
    /// to nothing.
    void drawClipped(CDC* dc, CWnd* window);
    /// The pointer in client coordinates, when a cursor may be chosen for this tracker.
    int pointerIn(CWnd* window, unsigned hitArea, CPoint& point) const;
    /// Whether the last drag began and then left the shape as it was before.
    int dragCancelled() const
    {
        return dragEnd_ != DragEnd::refused && dragEnd_ != DragEnd::released;
    }

    unsigned style_ = trackerNew;
    int handleSize_ = newHandleSize;
    CRect validRect_;
    CRect clipRect_;
    int finished_ = 0;
    int deadZone_ = 0;
    int vertexCatch_ = 0;
    int edgeCatch_ = 0;
    /// Whoever listens to a tracker does not listen to its copies.
    struct Listening {
        TrackerListener* to = nullptr;
        Listening() = default;
        Listening(const Listening&) {}
        Listening& operator=(const Listening&) { return *this; }
    };
    Listening listener_;
    /// Non-zero when right and bottom of the rectangles belong to them.
    int edgesIncluded_ = 0;
    DragEnd dragEnd_ = DragEnd::refused;
    /// Of the drag that runs: that it does, and that its frame was drawn. A copy is not dragged.
    struct Tracking {
        int on = 0;
        int drawn = 0;
        Tracking() = default;
        Tracking(const Tracking&) {}
        Tracking& operator=(const Tracking&) { return *this; }
    };
    Tracking tracking_;
    /// For DrawShape: whether the frame of a drag is to be drawn.
    int drawsTrack() { return tracking_.on ? tracking_.drawn = 1 : 0; }

private:
    LifeToken life_;
    OutlineLook look_;
    AreaLabel label_;
};

}  // namespace pavane
