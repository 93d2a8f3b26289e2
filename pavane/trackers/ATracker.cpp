#include "pavane/trackers/ATracker.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/turned_rect.h"

#include <algorithm>

namespace pavane
{

ATracker::ATracker() = default;
ATracker::~ATracker() = default;

int ATracker::Store(AFile& file) const
{
    return RecordHead{style_, handleSize_, validRect_, clipRect_}.store(file);
}

int ATracker::Load(AFile& file)
{
    RecordHead head;
    if (!head.load(file))
        return 0;
    style_ = head.style;
    handleSize_ = head.handleSize;
    validRect_ = head.valid;
    clipRect_ = head.clip;
    return 1;
}

int ATracker::IsReady() const { return 1; }

int ATracker::IsActive() const { return (style_ & trackerActive) != 0; }

void ATracker::SetActive(int on)
{
    style_ = on ? style_ | trackerActive : style_ & ~unsigned{trackerActive};
}

int ATracker::GetShape(ShapeValues&) const { return 0; }

int ATracker::SetShape(const ShapeValues&) { return 0; }

int ATracker::moveCode() const { return hitInside; }

std::size_t ATracker::vertexBytes() const { return 0; }

int ATracker::TrackReady(CWnd*, CPoint) { return 0; }

int ATracker::GetLineSize() const { return (style_ & trackerLineStyle) != 0; }

int ATracker::GetHandleSize(const CRect& rect) const { return handleSizeFor(rect, handleSize_); }

std::string ATracker::State() const
{
    MemoryFile file;
    (void)Store(file);  // memory takes every write
    return file.bytes();
}

int ATracker::SetState(const std::string& state)
{
    const std::string before = State();
    MemoryFile file(state);
    if (Load(file) && !file.left())
        return 1;
    MemoryFile old(before);
    (void)Load(old);  // what was stored loads
    return 0;
}

CRect ATracker::caughtBox(const CRect& box) const
{
    return grown(box, std::max(vertexCatch_, edgeCatch_));
}

int ATracker::ownBounds(CRect& bounds) const
{
    return listener_.to && listener_.to->trackerBounds(*this, bounds);
}

int ATracker::inBothRects(CPoint point) const
{
    const auto in = [&](const CRect& r) {
        return point.x >= r.left && point.y >= r.top &&
               (edgesIncluded_ ? point.x <= r.right && point.y <= r.bottom
                               : point.x < r.right && point.y < r.bottom);
    };
    return in(validRect_) && in(clipRect_);
}

}  // namespace pavane
