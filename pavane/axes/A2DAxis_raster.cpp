#include "pavane/axes/A2DAxis.h"

#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/images/ADIBase.h"
#include "pavane/resources/axis_messages.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"

#include <cstdio>
#include <memory>
#include <new>

namespace pavane
{

ADIBase* A2DAxis::loadRaster(const CRect& rect)
{
    if (!isFlagSet(axisBitmapCache) || tempFileName_.empty())
        return nullptr;
    AFile file;
    if (!file.open(tempFileName_, AFile::readOnly)) {
        messages_.tell(loadRasterFailed);
        return nullptr;
    }
    std::unique_ptr<ADIBase> raster(new (std::nothrow) ADIBase(file, messages_));
    if (!raster || !raster->lpArray()) {
        messages_.tell(loadRasterFailed);
        return nullptr;
    }
    return raster->rect() == rect ? raster.release() : nullptr;
}

void A2DAxis::drawInRaster(CDC& dc, CRect& rect, const PlotLayout& layout)
{
    if (ADIBase* const cached = loadRaster(graphRect_)) {
        SetDib(cached);
        dib_->Draw(dc);
        return;
    }
    SetDib(new (std::nothrow) ADIBase(graphRect_));
    if (!dib_ || !dib_->lpArray())
        return;
    *dib_ = static_cast<short>(paletteIndex(workColor(0)));
    drawGrid(layout);
    frameRaster(layout);
    setLineStyle(lineStyle_);
    setLineWidth(lineWidth_);
    setColor(color_);
    drawChilds(dc, rect, range_);
    dib_->Draw(dc);
    if (isFlagSet(axisBitmapCache))
        storeRaster();
}

/// Draws into the raster what it would hide of frame and ticks. The pen stays as it is.
void A2DAxis::frameRaster(const PlotLayout& layout)
{
    if (!dib_)
        return;
    const AxisPenState state(*this);
    setLineStyle(PS_SOLID);
    setLineWidth(1);
    setColor(workColor(1));
    dib_->Rectangle(graphRect_);
    if (isFlagSet(axisTicksInside))
        strokeTicks(layout, [this](CPoint from, CPoint to) { line(from.x, from.y, to.x, to.y); });
}

void A2DAxis::storeRaster()
{
    if (tempFileName_.empty()) {
        tempFileName_ = GetTempFileNameA(getUserCachePath(), "axis");
        if (tempFileName_.empty())
            return;
        if (IsFileExists(tempFileName_)) {
            messages_.tell(overwritesFile + tempFileName_);
            tempFileName_ += "$";
        }
    } else {
        std::remove(tempFileName_.c_str());  // a raster of another size
    }
    AFile file;
    const int opened =
        file.open(tempFileName_, AFile::writeOnly | AFile::create | AFile::exclusive);
    if (opened && dib_->Store(file) && file.close())
        return;
    file.close();
    if (opened)
        std::remove(tempFileName_.c_str());
    tempFileName_.clear();
}

void A2DAxis::dropCache()
{
    if (!tempFileName_.empty())
        std::remove(tempFileName_.c_str());
    tempFileName_.clear();
}

}  // namespace pavane
