#include "platform/core/CDC_state.h"

#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

CRect CDC::State::deviceRect() const
{
    const CSize size = backend ? backend->size() : CSize{};
    return {0, 0, size.cx, size.cy};
}

const CRgn::Data* CDC::State::clip() const
{
    if (!limit || !now.clip)
        return limit ? limit.get() : now.clip.get();
    if (limitedFrom != now.clip) {
        const auto both = std::make_shared<CRgn::Data>();
        both->region = Region::combined(limit->region, now.clip->region, RGN_AND);
        limitedFrom = now.clip;
        limitedClip = both;
    }
    return limitedClip.get();
}

Region CDC::State::visibleRegion() const
{
    const Region whole(deviceRect());
    const Region* const clip = clipRegion();
    return clip ? Region::combined(whole, *clip, RGN_AND) : whole;
}

void CDC::State::setClip(Region region)
{
    const auto clip = std::make_shared<CRgn::Data>();
    clip->region = std::move(region);
    now.clip = clip;
    clipChanged = true;
}

std::uint32_t CDC::State::pixel(COLORREF color) const
{
    if (color >> 24 != 1)
        return pixelOf(color);
    PALETTEENTRY entry;
    (void)GetPaletteEntries(now.palette, static_cast<int>(color & 0xFFFF), 1,
                            &entry);  // none: black
    return pixelOf(RGB(entry.peRed, entry.peGreen, entry.peBlue));
}

CRect CDC::State::deviceBox(const CRect& logical) const
{
    const CPoint a = now.mapping.toDevice(logical.TopLeft());
    const CPoint b = now.mapping.toDevice(logical.BottomRight());
    CRect box(a.x, a.y, b.x, b.y);
    box.NormalizeRect();
    return box;
}

CRect CDC::State::filledBox(const CRect& logical) const
{
    const CPoint a = now.mapping.toDevice(logical.TopLeft());
    const CPoint b = now.mapping.toDevice(logical.BottomRight());
    CRect box(a.x, a.y, b.x, b.y);
    if (a.x > b.x) {
        box.left = saturated(Wide{b.x} + 1);
        box.right = saturated(Wide{a.x} + 1);
    }
    if (a.y > b.y) {
        box.top = saturated(Wide{b.y} + 1);
        box.bottom = saturated(Wide{a.y} + 1);
    }
    return box;
}

int CDC::State::penWidth() const
{
    const int width = now.pen.width();
    return std::max(1, now.mapping.isPlain() ? width : now.mapping.lengthX(width));
}

Ink CDC::State::inkOf(const CBrush& brush, int rop2) const
{
    Ink ink;
    ink.operation = PixelOperation::of(rop2, pixel(brush.color()));
    if (brush.kind() == CBrush::Kind::hatched) {
        ink.hatch = brush.hatch();
        ink.fillsGaps = now.bkMode == OPAQUE;
        ink.gaps = PixelOperation::of(rop2, pixel(now.bkColor));
    }
    return ink;
}

WideLine& CDC::State::wideLineOf(int width)
{
    if (!wideLine || wideLineWidth != width) {
        wideLine.emplace(width);
        wideLineWidth = width;
    }
    return *wideLine;
}

VectorDevice* CDC::State::vector()
{
    if (!backend)
        return nullptr;
    VectorDevice* device = backend->page();
    if (!device) {
        // a window's pixels move when it is resized
        const PixelSurface pixels = surface();
        if (softMaker != graphicsHook() || softSurface != pixels) {
            softMaker = graphicsHook();
            softSurface = pixels;
            soft = nullptr;  // before the next one begins
            if (softMaker && pixels.bits && pixels.width > 0)
                soft = softMaker->softDevice(pixels);
            clipChanged = true;
        }
        device = soft.get();
    }
    if (device && clipChanged) {
        device->setClip(clip());
        clipChanged = false;
        isTold = true;
        toldClip = now.clip;
    }
    if (device)
        device->setStop(flag());
    return device;
}

VectorDevice* CDC::State::pageFor(const CRect& painted)
{
    const auto holds = [&](const CRgn::Data* clip) {
        if (!clip)
            return true;
        const CRect box = clip->region.box();
        return clip->polygon.empty() && clip->region.kind() == SIMPLEREGION &&
               painted.left >= box.left && painted.top >= box.top && painted.right <= box.right &&
               painted.bottom <= box.bottom;
    };
    VectorDevice* const device = backend ? backend->page() : nullptr;
    if (device && clipChanged && isTold && !limit && holds(toldClip.get()) && holds(now.clip.get()))
        return device;
    return page();
}

bool CDC::State::drawsVectors()
{
    if (!backend)
        return false;
    if (backend->page())
        return true;
    return now.smooth && now.rop2 == R2_COPYPEN && vector() != nullptr;
}

StrokeStyle CDC::State::strokeStyle() const
{
    if (!backend->page())
        return {now.pen.style(), static_cast<double>(penWidth()), pixel(now.pen.color())};
    // a pen of no width, or of less than a fine page shows, is a hairline of half a pixel; a page
    // has widths between its units
    const double scale = backend->scale();
    const Mapping& mapping = now.mapping;
    const double unit =
        mapping.isPlain() ? 1 : std::fabs(double(mapping.viewportExt.cx) / mapping.windowExt.cx);
    const double width = now.pen.width() * unit;
    const bool hairline = width <= 0 || (scale > 1 && width <= 1 && unit >= 1);
    return {now.pen.style(), hairline ? 0.5 * scale : width, pixel(now.pen.color())};
}

FillStyle CDC::State::fillStyle(const CBrush& brush) const
{
    return {brush.kind(), brush.hatch(), pixel(brush.color()), now.bkMode == OPAQUE,
            pixel(now.bkColor)};
}

}  // namespace pavane
