#include "pavane/axes/windows/AChannelMapsWnd.h"

#include "pavane/axes/maps/ChannelMaps.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/images/palette_followers.h"
#include "platform/CDC.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// The maps are made anew whenever they are drawn.
class DrawnAgain : public PaletteFollower
{
public:
    explicit DrawnAgain(AChannelMapsWnd& window) : window_(window) {}
    void paletteChanged() override { window_.Invalidate(); }

private:
    AChannelMapsWnd& window_;
};

}  // namespace

AChannelMapsWnd::AChannelMapsWnd() : palette_(std::make_unique<DrawnAgain>(*this))
{
    SetFlag(windowBuffered, 1);
}

AChannelMapsWnd::~AChannelMapsWnd() = default;

const char* AChannelMapsWnd::GetWndClassName() { return "AChannelMapsWnd"; }

void AChannelMapsWnd::SetMaps(ChannelMaps* maps)
{
    maps_ = maps;
    SetShownPage(1);
}

void AChannelMapsWnd::SetShownPage(int page)
{
    shownPage_ = std::clamp(page, 1, maps_ ? maps_->pages() : 1);
    Invalidate();
}

int AChannelMapsWnd::GetPages(CDC&) { return maps_ ? maps_->pages() : 1; }

CString AChannelMapsWnd::GetSubscript()
{
    return (maps_ ? mapTitle(maps_->header()) : CString()) + " ~C";
}

void AChannelMapsWnd::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, RGB(255, 255, 255));
    if (maps_)
        (void)maps_->draw(dc, client, shownPage_);
}

void AChannelMapsWnd::PrintWindow(CDC& dc, CRect& rect, int page)
{
    if (maps_)
        (void)maps_->draw(dc, rect, page);
}

}  // namespace pavane
