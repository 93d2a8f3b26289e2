#include "platform/qt/painting.h"

#include "platform/core/DeviceBackend.h"
#include "platform/core/region_cover.h"
#include "platform/qt/message_scope.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>
#include <QCoreApplication>
#include <QRegion>
#include <QWindow>

namespace pavane
{

namespace
{

/// More rectangles than this cost more than the pixels between them.
constexpr std::size_t mostRects = 48;

std::vector<HWND>& waiting()
{
    static auto* const windows = new std::vector<HWND>;
    return *windows;
}

/// Draws on a window's pixels as long as there are any.
class WindowBackend : public DeviceBackend
{
public:
    WindowBackend(std::shared_ptr<WindowSurface> surface, std::shared_ptr<const CRgn::Data> limit)
        : surface_(std::move(surface)), limit_(std::move(limit))
    {
    }
    CSize size() const override { return {surface_->width(), surface_->height()}; }
    PixelSurface surface() const override
    {
        return limit_ ? surface_->pixels() : surface_->reportedPixels();
    }
    std::shared_ptr<const CRgn::Data> limit() const override { return limit_; }
    bool shifted(const CRect& rect, int dx, int dy) override
    {
        return !limit_ && surface_->onShifted && surface_->onShifted(rect, dx, dy);
    }

private:
    std::shared_ptr<WindowSurface> surface_;
    std::shared_ptr<const CRgn::Data> limit_;
};

std::unique_ptr<DeviceBackend> clientBackend(CWnd* window)
{
    const WindowPeer* const peer = peerOf(window);
    return peer && peer->surface ? std::make_unique<WindowBackend>(peer->surface, nullptr)
                                 : nullptr;
}

std::unique_ptr<DeviceBackend> paintBackend(CWnd* window, CRect& box)
{
    WindowPeer* const peer = peerOf(window);
    if (!peer || !peer->surface)
        return nullptr;
    const auto limit = std::make_shared<CRgn::Data>();
    limit->region = peer->surface->takeInvalid();
    box = limit->region.box();
    peer->tookInvalid = true;
    if (!peer->isPainting)
        schedulePaint(*peer);
    return std::make_unique<WindowBackend>(peer->surface, limit);
}

/// Hands the pixels that were painted to the toolkit.
void flush(WindowPeer& peer, bool atOnce)
{
    const Region painted = peer.surface->takePainted();
    if (painted.empty() || !peer.widget || !peer.widget->isVisible())
        return;
    // where pixels are reduced, those beside the painted ones change as well
    const double ratio = peer.widget->devicePixelRatioF();
    const int margin = std::fabs(ratio - std::round(ratio)) > 1e-3 ? 2 : 0;
    QRegion region;
    for (const CRect& r : coverOf(painted, mostRects))
        region +=
            QRect(r.left - margin, r.top - margin, r.Width() + 2 * margin, r.Height() + 2 * margin);
    if (atOnce)
        peer.widget->repaint(region);
    else
        peer.widget->update(region);
}

}  // namespace

QEvent::Type paintRequest()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

void schedulePaint(WindowPeer& peer)
{
    if (peer.isPaintDue || !peer.widget || peer.isDying)
        return;
    peer.isPaintDue = true;
    waiting().push_back(peer.hwnd);
    QCoreApplication::postEvent(peer.widget, new QEvent(paintRequest()), Qt::LowEventPriority);
}

void runPaint(HWND hwnd, bool atOnce)
{
    WindowPeer* peer = peerOf(hwnd);
    if (!peer || !peer->surface || !peer->widget || !isHeard(hwnd))
        return;
    if (peer->isPaintDue) {
        peer->isPaintDue = false;
        std::erase(waiting(), hwnd);
    }
    // a hidden window paints when it is shown
    if (peer->isPainting || !peer->widget->isVisible())
        return;
    if (peer->surface->hasInvalid()) {
        peer->isPainting = true;
        peer->tookInvalid = false;
        sendTo(hwnd, WM_PAINT, 0, 0);
        peer = peerOf(hwnd);
        if (!peer || !peer->widget)
            return;
        peer->isPainting = false;
        // a window that does not paint is not asked for ever
        if (!peer->tookInvalid)
            (void)peer->surface->takeInvalid();
    }
    flush(*peer, atOnce);
    peer = peerOf(hwnd);
    if (peer && peer->surface->hasInvalid())
        schedulePaint(*peer);
}

void postPendingPaints()
{
    for (const HWND hwnd : waiting())
        if (const WindowPeer* const peer = peerOf(hwnd); peer && peer->widget)
            QCoreApplication::postEvent(peer->widget, new QEvent(paintRequest()),
                                        Qt::LowEventPriority);
}

bool shiftShown(HWND hwnd, const CRect& rect, int dx, int dy)
{
    const WindowPeer* const peer = peerOf(hwnd);
    QWidget* const widget = peer ? peer->widget.data() : nullptr;
    const QWindow* const native = widget ? widget->window()->windowHandle() : nullptr;
    if (!native || !native->isExposed() || !widget->isVisible() ||
        std::fabs(widget->devicePixelRatioF() - peer->surface->ratio()) > 1e-3)
        return false;
    const QRect shifted(rect.left, rect.top, rect.Width(), rect.Height());
    // the pixels of a child on the screen would move, the child would not
    for (const QObject* const child : widget->children()) {
        const auto* const above = qobject_cast<const QWidget*>(child);
        if (above && !above->isWindow() && above->isVisible() &&
            above->geometry().intersects(shifted))
            return false;
    }
    peer->surface->shiftPainted(rect, dx, dy);
    widget->scroll(dx, dy, shifted);
    return true;
}

void runPendingPaints()
{
    if (waiting().empty())
        return;
    for (const HWND hwnd : std::vector<HWND>(waiting()))
        runPaint(hwnd);
}

CClientDC::CClientDC(CWnd* window) : CDC(clientBackend(window)) {}

CPaintDC::CPaintDC(CWnd* window) : CPaintDC(window, CRect()) {}

CPaintDC::CPaintDC(CWnd* window, CRect box) : CDC(paintBackend(window, box)), paintRect_(box) {}

void CWnd::Invalidate() { InvalidateRect({0, 0, 32767, 32767}); }

void CWnd::InvalidateRect(const CRect& rect)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer)
        return;
    if (peer->isNative()) {
        if (peer->widget)
            peer->widget->update(rect.left, rect.top, rect.Width(), rect.Height());
        return;
    }
    peer->surface->invalidate(rect);
    if (peer->surface->hasInvalid())
        schedulePaint(*peer);
}

void CWnd::InvalidateRgn(const CRgn& region)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative())
        return;
    peer->surface->invalidate(region.data()->region);
    if (peer->surface->hasInvalid())
        schedulePaint(*peer);
}

void CWnd::ValidateRect(const CRect& rect)
{
    WindowPeer* const peer = peerOf(this);
    if (peer && peer->surface)
        peer->surface->validate(Region(rect));
}

int CWnd::GetUpdateRect(CRect& rect) const
{
    const WindowPeer* const peer = peerOf(this);
    rect = peer && peer->surface ? peer->surface->invalid().box() : CRect();
    return !rect.IsRectEmpty();
}

void CWnd::UpdateWindow() { runPaint(hwnd_, true); }

void CWnd::ScrollWindow(int dx, int dy, const CRect& rect)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer || !peer->surface)
        return;
    // what is out of date moves with the picture
    Region stale = Region::combined(peer->surface->invalid(), Region(rect), RGN_AND);
    CClientDC dc(this);
    CRgn uncovered;
    dc.ScrollDC(dx, dy, &rect, &rect, &uncovered, nullptr);
    stale.offset(dx, dy);
    peer->surface->invalidate(Region::combined(stale, Region(rect), RGN_AND));
    InvalidateRgn(uncovered);
    schedulePaint(*peer);
}

int CWnd::GetPixelRatio() const
{
    const WindowPeer* const peer = peerOf(this);
    return peer && peer->surface ? peer->surface->ratio() : 1;
}

}  // namespace pavane
