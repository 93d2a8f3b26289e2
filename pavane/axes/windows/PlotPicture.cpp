#include "pavane/axes/windows/PlotPicture.h"

namespace pavane
{

int PlotPicture::drawn(int ratio)
{
    stale_ = moving_ = 0;
    ++drawings_;
    return ratio;
}

int PlotPicture::patch(const std::function<int(CDC& dc)>& draw)
{
    if (stale_ || pictureStale_ || !pixels_.bits())
        return 0;
    CMemoryDC memory(pixels_);
    return draw(memory);
}

int PlotPicture::paint(CDC& dc, const CRect& client, const CRect& update, int bare,
                       const Drawing& draw)
{
    if (moving_ && stale_ && bare) {
        draw(dc, client);
        return drawn(dc.GetPixelRatio());
    }
    const int fits =
        pixels_.bits() && pixels_.size() == client.Size() && pixels_.ratio() == dc.GetPixelRatio();
    if (!fits && !pixels_.CreateCompatibleBitmap(dc, client.Width(), client.Height())) {
        dc.FillSolidRect(client, RGB(255, 255, 255));
        return 0;
    }
    int ratio = 0;
    CMemoryDC memory(pixels_);
    if (!fits || pictureStale_) {
        draw(memory, client);
        pictureStale_ = 0;
        ratio = drawn(pixels_.ratio());
    }
    dc.BitBlt(update.left, update.top, update.Width(), update.Height(), &memory, update.left,
              update.top, SRCCOPY);
    return ratio;
}

}  // namespace pavane
