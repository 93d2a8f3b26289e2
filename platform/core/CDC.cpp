#include "platform/CDC.h"

#include "platform/core/CDC_state.h"
#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <utility>

namespace pavane
{

CDC::CDC() : state_(std::make_unique<State>()) {}

CDC::CDC(std::unique_ptr<DeviceBackend> backend) : state_(std::make_unique<State>())
{
    state_->backend = std::move(backend);
    if (state_->backend)
        state_->limit = state_->backend->limit();
    SelectStockObject(BLACK_PEN);
    SelectStockObject(WHITE_BRUSH);
    SelectStockObject(DEVICE_DEFAULT_FONT);
}

CDC::~CDC() = default;

DeviceBackend* CDC::backend() const { return state_->backend.get(); }

void CDC::setStop(const StopFlag* stop) { state_->stop = stop; }

const StopFlag* CDC::stopFlag() const { return state_->flag(); }

int CDC::isStopped() const
{
    return pavane::isStopped(state_->flag()) || (state_->backend && state_->backend->isStopped());
}

CPen* CDC::SelectObject(CPen* pen)
{
    if (!pen)
        return nullptr;
    state_->now.pen = *pen;
    return std::exchange(state_->now.penObject, pen);
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    if (!brush)
        return nullptr;
    state_->now.brush = *brush;
    return std::exchange(state_->now.brushObject, brush);
}

CFont* CDC::SelectObject(CFont* font)
{
    if (!font)
        return nullptr;
    state_->now.font = font->logFont();
    // stock fonts have the same height in pixels on every device
    const bool isStock =
        font == stockFont(DEVICE_DEFAULT_FONT) || font == stockFont(DEFAULT_GUI_FONT);
    if (isStock && state_->backend)
        state_->now.font.lfHeight =
            nearestInt(state_->now.font.lfHeight * state_->backend->scale());
    return std::exchange(state_->now.fontObject, font);
}

int CDC::SelectObject(CRgn* region) { return SelectClipRgn(region); }

int CDC::SelectStockObject(int index)
{
    CPen* const pen = stockPen(index);
    CBrush* const brush = stockBrush(index);
    CFont* const font = stockFont(index);
    SelectObject(pen);
    SelectObject(brush);
    SelectObject(font);
    return pen || brush || font;
}

HPALETTE CDC::SelectPalette(HPALETTE palette, int)
{
    return std::exchange(state_->now.palette, palette);
}

int CDC::RealizePalette()
{
    // pixels hold colours here, so nothing has to be mapped: the count says that all are there
    PALETTEENTRY entry;
    int count = 0;
    while (GetPaletteEntries(state_->now.palette, count, 1, &entry) == 1)
        ++count;
    return count;
}

int CDC::SetROP2(int mode)
{
    return mode >= R2_BLACK && mode <= R2_WHITE ? std::exchange(state_->now.rop2, mode) : 0;
}

int CDC::GetROP2() const { return state_->now.rop2; }

int CDC::SetBkMode(int mode)
{
    return mode == TRANSPARENT || mode == OPAQUE ? std::exchange(state_->now.bkMode, mode) : 0;
}

int CDC::GetBkMode() const { return state_->now.bkMode; }
COLORREF CDC::SetBkColor(COLORREF color) { return std::exchange(state_->now.bkColor, color); }
COLORREF CDC::GetBkColor() const { return state_->now.bkColor; }
COLORREF CDC::SetTextColor(COLORREF color) { return std::exchange(state_->now.textColor, color); }
COLORREF CDC::GetTextColor() const { return state_->now.textColor; }

int CDC::SetPolyFillMode(int mode)
{
    return mode == ALTERNATE || mode == WINDING ? std::exchange(state_->now.polyFillMode, mode) : 0;
}

int CDC::SaveDC()
{
    state_->saved.push_back(state_->now);
    return static_cast<int>(state_->saved.size());
}

int CDC::RestoreDC(int saved)
{
    const int depth = static_cast<int>(state_->saved.size());
    const int index = saved < 0 ? depth + saved : saved - 1;
    if (saved == 0 || index < 0 || index >= depth)
        return 0;
    state_->now = std::move(state_->saved[static_cast<std::size_t>(index)]);
    state_->saved.resize(static_cast<std::size_t>(index));
    state_->clipChanged = true;
    return 1;
}

int CDC::SetSmooth(int on) { return std::exchange(state_->now.smooth, on != 0 ? 1 : 0); }

int CDC::IsVector() const { return state_->backend && state_->backend->page(); }

int CDC::IsTransparent() const { return state_->backend && state_->backend->isTransparent(); }

int CDC::GetPixelRatio() const { return std::max(1, state_->surface().ratio); }

int CDC::SetMapMode(int mode)
{
    const int before = state_->now.mapping.mode;
    if (mode != MM_TEXT && mode != MM_ISOTROPIC && mode != MM_ANISOTROPIC)
        return 0;
    state_->now.mapping.setMode(mode);
    return before;
}

int CDC::GetMapMode() const { return state_->now.mapping.mode; }

CPoint CDC::SetWindowOrg(int x, int y)
{
    return std::exchange(state_->now.mapping.windowOrg, CPoint(x, y));
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    return std::exchange(state_->now.mapping.viewportOrg, CPoint(x, y));
}

CSize CDC::SetWindowExt(int cx, int cy)
{
    const CSize before = state_->now.mapping.windowExt;
    (void)state_->now.mapping.setWindowExt({cx, cy});  // a refusal keeps the extent
    return before;
}

CSize CDC::SetViewportExt(int cx, int cy)
{
    const CSize before = state_->now.mapping.viewportExt;
    (void)state_->now.mapping.setViewportExt({cx, cy});  // a refusal keeps the extent
    return before;
}

void CDC::LPtoDP(CPoint* points, int count) const
{
    for (int i = 0; i < count; ++i)
        points[i] = state_->now.mapping.toDevice(points[i]);
}

void CDC::DPtoLP(CPoint* points, int count) const
{
    for (int i = 0; i < count; ++i)
        points[i] = state_->now.mapping.toLogical(points[i]);
}

int CDC::GetDeviceCaps(int index) const
{
    if (!state_->backend)
        return 0;
    const CSize size = state_->backend->size();
    const int dpi = nearestInt(96 * state_->backend->scale());
    switch (index) {
    case HORZRES:
    case PHYSICALWIDTH:
        return size.cx;
    case VERTRES:
    case PHYSICALHEIGHT:
        return size.cy;
    case HORZSIZE:
        return MulDiv(size.cx, 254, dpi * 10);
    case VERTSIZE:
        return MulDiv(size.cy, 254, dpi * 10);
    case BITSPIXEL:
        return 32;
    case LOGPIXELSX:
    case LOGPIXELSY:
        return dpi;
    default:
        return 0;
    }
}

}  // namespace pavane
