#pragma once

#include "pavane/trackers/ABaseTracker.h"
#include "pavane/trackers/shapes/rect_handles.h"

#include <algorithm>

namespace pavane
{

struct ShapeTrace;

/// An upright rectangle with eight handles. Hit codes: -1 nothing, 0 to 3 the corners clockwise
/// from the top left, 4 to 7 the middles of top, right, bottom and left, 8 inside.
///
/// A drag may turn the rectangle inside out (right below left, bottom above top); it stays so, and
/// handle codes go on meaning the same edges.
class PAVANE_API ARectTracker : public ABaseTracker
{
public:
    ARectTracker();
    ARectTracker(const CRect& rect, unsigned style);
    ARectTracker(const ARectTracker&) = default;
    ARectTracker& operator=(const ARectTracker&) = default;

    const char* GetClassName() const override { return "ARectTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    ARectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<CPoint>& points) const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;
    void DrawShape(CDC& dc) override;

    /// The pixels of the handle `code`, 0 to 7.
    virtual void GetHandleRect(int code, CRect* rect) const;
    /// After each change inside a drag, and once more at its end.
    virtual void OnChangedRect(const CRect& old) { (void)old; }
    /// Before each change: `next` may be altered.
    virtual void OnChangingRect(const CRect& old, CRect& next) { (void)old, (void)next; }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrackRect(CDC* dc, const CRect& rect);
    /// Keeps the least size while the handle `hit` is dragged; the edges that it does not drag
    /// stay.
    virtual void AdjustRect(int hit, CRect* rect);

    using ATracker::GetHandleSize;
    int GetHandleMask() const;
    const CRect& rect() const { return rect_; }
    void SetRect(const CRect& rect) { rect_ = rect; }
    CSize minTrackSize() const { return minTrackSize_; }
    int allowInvert() const { return allowInvert_; }

protected:
    CRect rect_;
    CSize minTrackSize_;
    int allowInvert_ = 0;
    /// During a drag: which sides of the opposite edge the dragged ones may be on.
    DragSides sides_;

private:
    class Drag;
    ShapeTrace trace() const;
    /// What the catch of edges adds to the room about the true rectangle.
    int extraCatch() const { return std::max(edgeCatch_ - std::max(handleSize_ / 2 - 1, 0), 0); }
};

}  // namespace pavane
