#include "platform/CWnd.h"

#include "platform/core/dialog_units.h"
#include "platform/core/pixel_rounding.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/HostWidget.h"
#include "platform/qt/QtGraphics.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QApplication>

namespace pavane
{

namespace
{

QWidget* widgetOf(const CWnd* window)
{
    const WindowPeer* const peer = peerOf(window);
    return peer ? peer->widget.data() : nullptr;
}

QWidget* outerOf(const CWnd* window)
{
    const WindowPeer* const peer = peerOf(window);
    return peer ? peer->outer() : nullptr;
}

}  // namespace

QFont qtFontOf(const LOGFONT& font)
{
    const auto hook = dynamic_cast<QtGraphics*>(graphicsHook());
    return hook ? hook->fonts().face(font, false).font() : QFont();
}

CWnd* CWnd::GetParent() const
{
    const WindowPeer* const peer = peerOf(this);
    return peer ? FromHandle(peer->parent) : nullptr;
}

CWnd* CWnd::GetTopLevelParent() const
{
    const WindowPeer* peer = peerOf(this);
    while (peer && !peer->isTopLevel() && peerOf(peer->parent))
        peer = peerOf(peer->parent);
    return peer ? peer->window : nullptr;
}

CWnd* CWnd::GetDlgItem(unsigned id) const
{
    for (const HWND child : childrenOf(hwnd_)) {
        const WindowPeer* const peer = peerOf(child);
        if (hwnd_ && peer->id == id && !peer->isTopLevel())
            return peer->window;
    }
    return nullptr;
}

unsigned CWnd::GetDlgCtrlID() const
{
    const WindowPeer* const peer = peerOf(this);
    return peer ? peer->id : 0;
}

unsigned CWnd::SetDlgCtrlID(unsigned id)
{
    WindowPeer* const peer = peerOf(this);
    return peer ? std::exchange(peer->id, id) : 0;
}

unsigned CWnd::GetStyle() const
{
    const WindowPeer* const peer = peerOf(this);
    return peer ? peer->style : 0;
}

unsigned CWnd::GetExStyle() const
{
    const WindowPeer* const peer = peerOf(this);
    return peer ? peer->exStyle : 0;
}

std::vector<CWnd*> CWnd::GetChildren() const
{
    std::vector<CWnd*> children;
    const QWidget* const widget = widgetOf(this);
    if (!widget)
        return children;
    for (QObject* const object : widget->children()) {
        if (!object->isWidgetType() || static_cast<QWidget*>(object)->isWindow())
            continue;
        // Qt's own widgets answer with the peer of this window
        const WindowPeer* const peer = peerOf(static_cast<QWidget*>(object));
        if (peer && peer->hwnd != hwnd_ && peer->window)
            children.push_back(peer->window);
    }
    return children;
}

void CWnd::SetWindowText(const CString& text)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer)
        return;
    peer->title = text;
    if (peer->setText)
        return peer->setText(text);  // whoever hears of it may end the window
    if (QWidget* const outer = peer->outer())
        outer->setWindowTitle(textOf(text));
    // a drawing window inside another may show its title
    if (peer->surface && !peer->isTopLevel())
        Invalidate();
}

CString CWnd::GetWindowText() const
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer)
        return {};
    return peer->text ? peer->text() : peer->title;
}

int CWnd::GetClientRect(CRect& rect) const
{
    const QWidget* const widget = widgetOf(this);
    rect = widget ? CRect(0, 0, widget->width(), widget->height()) : CRect();
    return widget != nullptr;
}

int CWnd::GetWindowRect(CRect& rect) const
{
    const QWidget* const outer = outerOf(this);
    rect = CRect();
    if (!outer)
        return 0;
    rect = rectOf(QRect(outer->mapToGlobal(QPoint(0, 0)), outer->size()));
    return 1;
}

void CWnd::ClientToScreen(CPoint& point) const
{
    if (const QWidget* const widget = widgetOf(this)) {
        const QPoint p = widget->mapToGlobal(QPoint(point.x, point.y));
        point = {p.x(), p.y()};
    }
}

void CWnd::ScreenToClient(CPoint& point) const
{
    if (const QWidget* const widget = widgetOf(this)) {
        const QPoint p = widget->mapFromGlobal(QPoint(point.x, point.y));
        point = {p.x(), p.y()};
    }
}

void CWnd::ClientToScreen(CRect& rect) const
{
    CPoint origin;
    ClientToScreen(origin);
    rect.OffsetRect(origin.x, origin.y);
}

void CWnd::ScreenToClient(CRect& rect) const
{
    CPoint origin;
    ClientToScreen(origin);
    rect.OffsetRect(-origin.x, -origin.y);
}

int CWnd::MoveWindow(const CRect& rect, int repaint)
{
    const HWND hwnd = hwnd_;
    QWidget* const outer = outerOf(this);
    if (!outer)
        return 0;
    const WindowPeer* const before = peerOf(hwnd);
    const CRect place = before->covered ? before->covered(rect) : rect;
    outer->setGeometry(place.left, place.top, std::max(0, place.Width()),
                       std::max(0, place.Height()));
    // a hidden window is told of its size when it shows; it may be asked for it before
    if (const WindowPeer* const peer = peerOf(hwnd); peer && peer->frame)
        peer->frame->layOut();
    else if (peer && peer->surface)
        static_cast<HostWidget*>(peer->widget.data())->syncSize();
    if (CWnd* const window = FromHandle(hwnd); window && repaint)
        window->Invalidate();
    return 1;
}

int CWnd::IsWindowVisible() const
{
    const QWidget* const outer = outerOf(this);
    return outer && outer->isVisible();
}

int CWnd::EnableWindow(int on)
{
    const HWND hwnd = hwnd_;
    WindowPeer* const peer = peerOf(this);
    QWidget* const outer = outerOf(this);
    if (!outer)
        return 0;
    const bool was = !(peer->style & WS_DISABLED);
    peer->style = on ? peer->style & ~WS_DISABLED : peer->style | WS_DISABLED;
    if (was == (on != 0))
        return !was;
    if (!on)
        cancelCaptureWithin(hwnd);
    if (peerOf(hwnd))
        outer->setEnabled(on != 0);
    sendTo(hwnd, WM_ENABLE, on != 0, 0);
    return !was;
}

int CWnd::IsWindowEnabled() const
{
    const QWidget* const outer = outerOf(this);
    return outer && outer->isEnabled();
}

void CWnd::SetFont(const CFont& font)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer || !peer->widget)
        return;
    peer->font = font.logFont();
    if (peer->isNative())
        peer->widget->setFont(qtFontOf(peer->font));
}

CFont CWnd::GetFont() const
{
    const WindowPeer* const peer = peerOf(this);
    const bool isSet = peer && (peer->font.lfHeight != 0 || !peer->font.lfFaceName.empty());
    CFont font;
    font.CreateFontIndirect(isSet ? peer->font : dialogFont());
    return font;
}

}  // namespace pavane
