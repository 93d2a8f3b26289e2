#pragma once

#include "pavane/trackers/planes.h"
#include "pavane/trackers/shapes/rect_handles.h"

namespace pavane
{

struct ShapeTrace;

/// What upright rectangles are in either plane; ARectTracker and ARPRectTracker add their names and
/// what only one of them has. Hit codes: -1 nothing, 0 to 3 the corners clockwise from the top
/// left, 4 to 7 the middles of top, right, bottom and left, 8 inside.
///
/// A drag may turn the rectangle inside out (right below left, bottom above top); it stays so, and
/// handle codes go on meaning the same edges.
template <typename Plane>
class RectTrackerOf : public Plane::Base
{
public:
    ~RectTrackerOf() override;
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void DrawShape(CDC& dc) override;
    int GetShape(ShapeValues& shape) const override;
    int SetShape(const ShapeValues& shape) override;
    int moveCode() const override;

    /// The pixels of the handle `code`, 0 to 7.
    virtual void GetHandleRect(int code, CRect* rect) const;
    /// After each change inside a drag, and once more at its end.
    virtual void OnChangedRect(const typename Plane::Rect& old) { (void)old; }
    /// Before each change: `next` may be altered.
    virtual void OnChangingRect(const typename Plane::Rect& old, typename Plane::Rect& next)
    {
        (void)old, (void)next;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrackRect(CDC* dc, const CRect& pixels);
    /// Keeps the least size, in pixels, while the handle `hit` is dragged; the edges that it does
    /// not drag stay.
    virtual void AdjustRect(int hit, CRect* pixels);

    int GetHandleMask() const;
    const typename Plane::Rect& rect() const { return rect_; }
    /// Values that are not finite are refused.
    void SetRect(const typename Plane::Rect& rect);
    /// The rectangle on the screen; may be inside out.
    CRect pixelRect() const;
    CSize minTrackSize() const { return minTrackSize_; }
    int allowInvert() const { return allowInvert_; }

protected:
    /// The true rectangle with what the catch of edges adds to the room about it.
    CRect caughtRect() const;

    typename Plane::Rect rect_;
    CSize minTrackSize_{2 * newHandleSize, 2 * newHandleSize};
    int allowInvert_ = 0;
    /// During a drag: which sides of the opposite edge the dragged ones may be on.
    DragSides sides_;

private:
    class Drag;
    ShapeTrace trace() const;
};

extern template class PAVANE_API RectTrackerOf<PixelPlane>;
extern template class PAVANE_API RectTrackerOf<ValuePlane>;

}  // namespace pavane
