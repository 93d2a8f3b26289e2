#include "platform/qt/WindowPeer.h"

#include "platform/qt/focus.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/PeerTimers.h"

#include <algorithm>
#include <unordered_map>

namespace pavane
{

namespace
{

/// Never destroyed: window objects of static storage ask for their peers at the very end.
struct Table {
    std::unordered_map<HWND, std::unique_ptr<WindowPeer>> peers;
    std::unordered_map<const QWidget*, HWND> widgets;
    HWND last = 0;
};

Table& table()
{
    static auto* const made = new Table;
    return *made;
}

/// Takes a peer out of the table and cuts it from its object.
std::unique_ptr<WindowPeer> takenOut(HWND hwnd)
{
    const auto at = table().peers.find(hwnd);
    if (at == table().peers.end())
        return nullptr;
    std::unique_ptr<WindowPeer> peer = std::move(at->second);
    table().peers.erase(at);
    std::erase_if(table().widgets, [&](const auto& entry) { return entry.second == hwnd; });
    if (peer->window)
        WindowPeer::setHandle(*peer->window, 0);
    if (peer->surface) {
        peer->surface->onTouched = nullptr;
        peer->surface->onShifted = nullptr;
        peer->surface->clear();
    }
    return peer;
}

/// This window and all below it, parents first.
void collect(HWND hwnd, std::vector<HWND>& all)
{
    all.push_back(hwnd);
    for (const HWND child : childrenOf(hwnd))
        collect(child, all);
}

/// Tells a window and its descendants of the end and cuts them off.
void dissolve(HWND hwnd, bool widgetLives)
{
    std::vector<HWND> all;
    collect(hwnd, all);
    for (const HWND h : all) {
        if (WindowPeer* const peer = peerOf(h)) {
            peer->isDying = true;
            sendTo(h, WM_DESTROY, 0, 0);
        }
    }
    // handlers may have made or destroyed others
    all.clear();
    collect(hwnd, all);
    std::reverse(all.begin(), all.end());
    for (const HWND h : all) {
        const std::unique_ptr<WindowPeer> peer = takenOut(h);
        if (!peer)
            continue;
        QWidget* const outer = peer->outer();
        if (outer && widgetLives && (h == hwnd || outer->isWindow())) {
            outer->hide();
            outer->deleteLater();
        }
        if (peer->window)
            peer->window->PostNcDestroy();  // may delete the object
    }
}

}  // namespace

WindowPeer::WindowPeer() = default;
WindowPeer::~WindowPeer() = default;

QWidget* WindowPeer::outer() const
{
    return frame ? static_cast<QWidget*>(frame.data()) : widget.data();
}

WindowPeer* peerOf(HWND hwnd)
{
    const auto at = table().peers.find(hwnd);
    return at == table().peers.end() ? nullptr : at->second.get();
}

WindowPeer* peerOf(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        const auto at = table().widgets.find(widget);
        if (at != table().widgets.end())
            return peerOf(at->second);
    }
    return nullptr;
}

std::vector<HWND> childrenOf(HWND parent)
{
    std::vector<HWND> children;
    for (const auto& [hwnd, peer] : table().peers) {
        if (peer->parent == parent)
            children.push_back(hwnd);
    }
    std::sort(children.begin(), children.end());
    return children;
}

std::vector<HWND> allWindows()
{
    std::vector<HWND> all;
    for (const auto& [hwnd, peer] : table().peers)
        all.push_back(hwnd);
    std::sort(all.begin(), all.end());
    return all;
}

WindowPeer* attach(CWnd& window, QWidget* widget, const CREATESTRUCT& cs)
{
    auto peer = std::make_unique<WindowPeer>();
    const HWND hwnd = ++table().last;
    peer->hwnd = hwnd;
    peer->window = &window;
    peer->widget = widget;
    peer->parent = cs.parent ? cs.parent->GetSafeHwnd() : 0;
    peer->id = cs.id;
    peer->style = cs.style;
    peer->exStyle = cs.exStyle;
    peer->title = cs.title;
    WNDCLASSA wc;
    if (GetClassInfo(cs.className, wc)) {
        peer->classCursor = wc.cursor;
        peer->wantsDoubleClicks = (wc.style & CS_DBLCLKS) != 0;
    }
    WindowPeer::setHandle(window, hwnd);
    table().widgets[widget] = hwnd;
    QObject::connect(widget, &QObject::destroyed, [hwnd] {
        // the toolkit deleted it, with a widget of the host that it was in
        if (WindowPeer* const dead = peerOf(hwnd); dead && !dead->isDying)
            dissolve(hwnd, false);
    });
    return (table().peers[hwnd] = std::move(peer)).get();
}

void registerFrame(WindowPeer& peer, FrameWidget* frame)
{
    peer.frame = frame;
    table().widgets[frame] = peer.hwnd;
}

HWND attachControl(CWnd& window, QWidget* widget, const CREATESTRUCT& cs)
{
    WindowPeer* peer = attach(window, widget, cs);
    const HWND hwnd = peer->hwnd;
    widget->setGeometry(cs.rect.left, cs.rect.top, cs.rect.Width(), cs.rect.Height());
    widget->setEnabled(!(cs.style & WS_DISABLED));
    applyTabStop(*peer);
    CREATESTRUCT created = cs;
    const LRESULT result = sendTo(hwnd, WM_CREATE, 0,
                                  reinterpret_cast<LPARAM>(&created));  // NOLINT: as in the message
    peer = peerOf(hwnd);
    if (!peer)
        return 0;
    if (result == -1) {
        destroyPeer(hwnd);
        return 0;
    }
    sendTo(hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(cs.rect.Width(), cs.rect.Height()));
    if (peerOf(hwnd) && cs.style & WS_VISIBLE)
        widget->show();
    return peerOf(hwnd) ? hwnd : 0;
}

QWidget* clientOf(const CWnd* window)
{
    WindowPeer* const peer = peerOf(window);
    return peer ? peer->widget.data() : nullptr;
}

void applyTabStop(WindowPeer& peer)
{
    if (!peer.widget)
        return;
    const bool stops = (peer.style & WS_TABSTOP) && !peer.isTopLevel();
    if (!peer.isNative())
        peer.widget->setFocusPolicy(stops ? Qt::TabFocus : Qt::NoFocus);
    else if (peer.widget->focusPolicy() != Qt::NoFocus)
        peer.widget->setFocusPolicy(stops ? Qt::StrongFocus : Qt::ClickFocus);
}

void notifyParent(HWND control, unsigned code)
{
    const WindowPeer* const peer = peerOf(control);
    if (peer && peer->parent)
        sendTo(peer->parent, WM_COMMAND, (peer->id & 0xFFFF) | WPARAM{code} << 16,
               static_cast<LPARAM>(control));
}

int destroyPeer(HWND hwnd)
{
    WindowPeer* peer = peerOf(hwnd);
    if (!peer || peer->isDying)
        return 0;
    peer->isDying = true;
    cancelCaptureWithin(hwnd);
    giveFocusAway(hwnd);
    if (peerOf(hwnd))
        dissolve(hwnd, true);
    return 1;
}

void forgetObject(HWND hwnd)
{
    if (WindowPeer* const peer = peerOf(hwnd)) {
        WindowPeer::setHandle(*peer->window, 0);
        peer->window = nullptr;
    }
}

}  // namespace pavane
