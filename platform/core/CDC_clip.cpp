#include "platform/core/CDC_state.h"

namespace pavane
{

int CDC::SelectClipRgn(const CRgn* region)
{
    state_->now.clip = region ? std::make_shared<CRgn::Data>(*region->data()) : nullptr;
    state_->clipChanged = true;
    return region ? region->data()->region.kind() : SIMPLEREGION;
}

int CDC::IntersectClipRect(const CRect& rect)
{
    const CRect box = state_->deviceBox(rect);
    const Region whole(state_->deviceRect());
    const Region& before = state_->now.clip ? state_->now.clip->region : whole;
    state_->setClip(Region::combined(before, Region(box), RGN_AND));
    return state_->now.clip->region.kind();
}

int CDC::ExcludeClipRect(const CRect& rect)
{
    const CRect box = state_->deviceBox(rect);
    state_->setClip(Region::combined(state_->visibleRegion(), Region(box), RGN_DIFF));
    return state_->now.clip->region.kind();
}

int CDC::GetClipBox(CRect& box) const
{
    const Region visible = state_->visibleRegion();
    box = visible.box();
    if (!visible.empty()) {
        const CPoint a = state_->now.mapping.toLogical(box.TopLeft());
        const CPoint b = state_->now.mapping.toLogical(box.BottomRight());
        box = CRect(a.x, a.y, b.x, b.y);
    }
    return visible.kind();
}

int CDC::PtVisible(int x, int y) const
{
    const CPoint p = state_->now.mapping.toDevice(CPoint(x, y));
    return state_->deviceRect().PtInRect(p) &&
           (!state_->clip() || state_->clip()->region.contains(p.x, p.y));
}

int CDC::RectVisible(const CRect& rect) const
{
    CRect box = state_->deviceBox(rect);
    if (!box.IntersectRect(box, state_->deviceRect()))
        return 0;
    return !state_->clip() || state_->clip()->region.overlaps(box);
}

}  // namespace pavane
