#include "pavane/printing/APrnPreviewWnd.h"

#include "pavane/printing/page_drawing.h"
#include "platform/flat_scroll_bars.h"
#include "platform/preview_dc.h"
#include "platform/system_colors.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace pavane
{

namespace
{

constexpr COLORREF paleYellow = RGB(255, 255, 232);
constexpr int shadow = 3;
constexpr int line = 40;  ///< what an arrow scrolls
constexpr double mostPixels = 64e6;
constexpr double millimetresPerInch = 25.4;

/// The sheet of a printer at so many dots per inch.
CSize sheetAt(const CDC& printer, double xDpi, double yDpi)
{
    const PageCaps caps = pageCaps(printer);
    const auto scaled = [](int pixels, double dpi, int own) {
        return std::max(truncated(pixels * dpi / std::max(own, 1) + 0.5), 1);
    };
    return {scaled(caps.xPixels, xDpi, printer.GetDeviceCaps(LOGPIXELSX)),
            scaled(caps.yPixels, yDpi, printer.GetDeviceCaps(LOGPIXELSY))};
}

}  // namespace

APrnPreviewWnd::APrnPreviewWnd(APrintOut& out, CPrintInfo& info, const CDC& printer)
    : out_(out), info_(info), printer_(printer)
{
}

void APrnPreviewWnd::SetUpWindow()
{
    (void)InitializeFlatSB(GetSafeHwnd());
    SetWheelUnit(WHEEL_DELTA);
    const CClientDC screen(this);
    view_.setSheet(
        sheetAt(printer_, screen.GetDeviceCaps(LOGPIXELSX), screen.GetDeviceCaps(LOGPIXELSY)));
    fitWindow();
}

void APrnPreviewWnd::setPage(int page)
{
    info_.currentPage = page;
    Invalidate();
}

CPoint APrnPreviewWnd::middle() const
{
    CRect client;
    (void)GetClientRect(client);
    return client.CenterPoint();
}

void APrnPreviewWnd::viewChanged()
{
    fitWindow();
    Invalidate();
    if (onView)
        onView();
}

/// Bars take room, and room decides about bars: twice is enough to settle it.
void APrnPreviewWnd::fitWindow()
{
    if (laysOut_)
        return;
    laysOut_ = true;
    constexpr int rounds = 2;
    for (int i = 0; i < rounds; ++i) {
        CRect client;
        (void)GetClientRect(client);
        view_.setWindow(client.Size());
        showBars();
    }
    laysOut_ = false;
}

void APrnPreviewWnd::showBars()
{
    CRect client;
    (void)GetClientRect(client);
    const CPoint most = view_.farthest();
    const CPoint at = view_.scrolled();
    const auto show = [&](int bar, int farthest, int page, int position) {
        SCROLLINFO info;
        info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
        info.nMax = farthest;  // of positions: the page comes on top of it
        info.nPage = static_cast<unsigned>(farthest > 0 ? page : 1);
        info.nPos = position;
        (void)FlatSB_SetScrollInfo(GetSafeHwnd(), bar, info, 1);
    };
    show(SB_HORZ, most.x, client.Width(), at.x);
    show(SB_VERT, most.y, client.Height(), at.y);
}

void APrnPreviewWnd::scrollTo(CPoint place)
{
    if (!view_.scrollTo(place))
        return;
    showBars();
    Invalidate();
}

void APrnPreviewWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    if (laysOut_)
        return;
    fitWindow();
    Invalidate();
    if (onView)
        onView();
}

int APrnPreviewWnd::barTarget(int bar, unsigned code, unsigned position, int now, int page) const
{
    switch (code) {
    case SB_LINEUP:
        return now - line;
    case SB_LINEDOWN:
        return now + line;
    case SB_PAGEUP:
        return now - page;
    case SB_PAGEDOWN:
        return now + page;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        return static_cast<int>(position);
    case SB_TOP:
        return 0;
    case SB_BOTTOM:
        return bar == SB_HORZ ? view_.farthest().x : view_.farthest().y;
    default:
        return now;
    }
}

void APrnPreviewWnd::OnHScroll(unsigned code, unsigned position)
{
    const CPoint at = view_.scrolled();
    CRect client;
    (void)GetClientRect(client);
    scrollTo({barTarget(SB_HORZ, code, position, at.x, client.Width()), at.y});
}

void APrnPreviewWnd::OnVScroll(unsigned code, unsigned position)
{
    const CPoint at = view_.scrolled();
    CRect client;
    (void)GetClientRect(client);
    scrollTo({at.x, barTarget(SB_VERT, code, position, at.y, client.Height())});
}

int APrnPreviewWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    const int notches = delta / WHEEL_DELTA;
    if (flags & MK_CONTROL) {
        ScreenToClient(screen);
        view_.zoom(notches, screen);
        viewChanged();
        return 1;
    }
    const CPoint before = view_.scrolled();
    const int page = info_.currentPage;
    const int turn = view_.wheel(-notches);
    if (turn && onTurn)
        onTurn(turn > 0 ? Turn::next : Turn::previous);
    // behind the last page there is no top of another
    if (turn && info_.currentPage == page)
        (void)view_.scrollTo(before);
    showBars();
    Invalidate();
    return 1;
}

int APrnPreviewWnd::OnMouseHWheel(unsigned, int delta, CPoint)
{
    const CPoint at = view_.scrolled();
    scrollTo({at.x + delta * line / WHEEL_DELTA, at.y});
    return 1;
}

int APrnPreviewWnd::useKey(unsigned key, int)
{
    const auto turn = [&](Turn to) {
        if (onTurn)
            onTurn(to);
        return 1;
    };
    const auto zoom = [&](int steps) {
        view_.zoom(steps, middle());
        viewChanged();
        return 1;
    };
    const CPoint at = view_.scrolled();
    switch (static_cast<int>(key)) {
    case VK_PRIOR:
        return turn(Turn::previous);
    case VK_NEXT:
        return turn(Turn::next);
    case VK_HOME:
        return turn(Turn::first);
    case VK_END:
        return turn(Turn::last);
    case VK_ADD:
    case VK_OEM_PLUS:
        return zoom(1);
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        return zoom(-1);
    case VK_LEFT:
        return scrollTo({at.x - line, at.y}), 1;
    case VK_RIGHT:
        return scrollTo({at.x + line, at.y}), 1;
    case VK_UP:
        return scrollTo({at.x, at.y - line}), 1;
    case VK_DOWN:
        return scrollTo({at.x, at.y + line}), 1;
    case VK_ESCAPE:
    case VK_RETURN:
        if (onClose)
            onClose();
        return 1;
    default:
        return 0;
    }
}

void APrnPreviewWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    if (!useKey(key, GetKeyState(VK_CONTROL) < 0))
        ABWindow::OnKeyDown(key, repeat, flags);
}

/// Draws the shown page with the whole sheet at `sheet` of the bitmap.
int APrnPreviewWnd::drawSheet(CBitmap& bitmap, const CRect& sheet, COLORREF paper)
{
    {
        CMemoryDC memory(bitmap);
        memory.FillSolidRect(sheet, paper);
    }
    const std::unique_ptr<CDC> dc = CreatePreviewDC(bitmap, printer_, sheet);
    info_.preview = 1;
    out_.OnPrepareDC(dc.get(), &info_);
    const int isDrawn = out_.OnPrintPage(dc.get(), &info_);
    info_.preview = 0;
    return isDrawn;
}

void APrnPreviewWnd::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    const CRect sheet = view_.sheet();
    const bool isNew = drawnPage_ != info_.currentPage || !(drawn_ == sheet) ||
                       !(picture_.size() == client.Size());
    if (isNew) {
        drawnPage_ = 0;
        if (!picture_.CreateCompatibleBitmap(dc, client.Width(), client.Height()))
            return;
        {
            CMemoryDC memory(picture_);
            memory.FillSolidRect({0, 0, client.Width(), client.Height()},
                                 GetSysColor(COLOR_BTNSHADOW));
            CRect below = sheet;
            below.OffsetRect(shadow, shadow);
            memory.FillSolidRect(below, RGB(64, 64, 64));
        }
        (void)drawSheet(picture_, sheet, paleYellow);
        drawnPage_ = info_.currentPage;
        drawn_ = sheet;
    }
    CMemoryDC memory(picture_);
    (void)dc.BitBlt(client.left, client.top, client.Width(), client.Height(), &memory, 0, 0,
                    SRCCOPY);
}

int APrnPreviewWnd::printPercent()
{
    CBitmap nothing;
    if (percent_ == 0 && nothing.CreateBitmap(1, 1, 1))
        percent_ = out_.printPercent(*CreatePreviewDC(nothing, printer_, {0, 0, 1, 1}));
    return percent_ > 0 ? percent_ : 100;
}

int APrnPreviewWnd::renderPage(CBitmap& bitmap, int dpi)
{
    const PageCaps caps = pageCaps(printer_);
    const double pixels =
        caps.width / millimetresPerInch * dpi * (caps.height / millimetresPerInch) * dpi;
    if (pixels > mostPixels)
        dpi = std::max(truncated(std::floor(dpi * std::sqrt(mostPixels / pixels))), 1);
    const CSize size = sheetAt(printer_, dpi, dpi);
    if (!bitmap.CreateBitmap(size.cx, size.cy, 1) ||
        !drawSheet(bitmap, {0, 0, size.cx, size.cy}, RGB(255, 255, 255)))
        return 0;
    return dpi;
}

}  // namespace pavane
