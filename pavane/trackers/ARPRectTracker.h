#pragma once

#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/shapes/rect_handles.h"

#include <algorithm>

namespace pavane
{

struct ShapeTrace;

/// ARectTracker in data values; hit codes and handles are those of its pixels.
class PAVANE_API ARPRectTracker : public ABTracker
{
public:
    ARPRectTracker();
    ARPRectTracker(const ARPRectTracker&) = default;
    ARPRectTracker& operator=(const ARPRectTracker&) = default;

    const char* GetClassName() const override { return "ARPRectTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    ARPRectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    APoint<double> GetCenter() const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void DrawShape(CDC& dc) override;

    virtual void GetHandleRect(int code, CRect* rect) const;
    virtual void OnChangedRect(const ARect<double>& old) { (void)old; }
    virtual void OnChangingRect(const ARect<double>& old, ARect<double>& next)
    {
        (void)old, (void)next;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrackRect(CDC* dc, const CRect& pixels);
    /// Keeps the least size, in pixels.
    virtual void AdjustRect(int hit, CRect* pixels);

    using ATracker::GetHandleSize;
    int GetHandleMask() const;
    const ARect<double>& rect() const { return rect_; }
    /// Values that are not finite are refused.
    void SetRect(const ARect<double>& rect);
    /// The rectangle on the screen; may be inside out.
    CRect pixelRect() const;
    CSize minTrackSize() const { return minTrackSize_; }
    int allowInvert() const { return allowInvert_; }

protected:
    ARect<double> rect_;
    CSize minTrackSize_;
    int allowInvert_ = 0;
    DragSides sides_;

private:
    class Drag;
    ShapeTrace trace() const;
    /// What the catch of edges adds to the room about the true rectangle.
    int extraCatch() const { return std::max(edgeCatch_ - std::max(handleSize_ / 2 - 1, 0), 0); }
};

}  // namespace pavane
