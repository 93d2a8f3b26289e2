#include "platform/qt/fonts.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/HostWidget.h"
#include "platform/qt/painting.h"
#include "platform/qt/WindowPeer.h"
#include "platform/window_life.h"

#include <QApplication>
#include <unordered_map>

namespace pavane
{

namespace
{

/// The message that is being handled, innermost first; Default() belongs to it.
struct MessageFrame {
    HWND hwnd;
    const std::function<LRESULT()>* native;
    bool defaulted;
    MessageFrame* outer;
};
MessageFrame* innermost = nullptr;

/// The objects whose life was asked for. Never destroyed: windows may outlive it.
std::unordered_map<const CWnd*, std::shared_ptr<const void>>& lives()
{
    static auto& known = *new std::unordered_map<const CWnd*, std::shared_ptr<const void>>;
    return known;
}

Qt::WindowFlags flagsOf(unsigned style, unsigned exStyle)
{
    Qt::WindowFlags flags = Qt::Window;
    if (style & WS_POPUP && !(style & WS_CAPTION))
        flags |= Qt::FramelessWindowHint;
    if (exStyle & WS_EX_TOPMOST)
        flags |= Qt::WindowStaysOnTopHint;
    return flags;
}

bool needsFrame(unsigned style, unsigned exStyle)
{
    return !(style & WS_CHILD) || style & (WS_BORDER | WS_HSCROLL | WS_VSCROLL) ||
           exStyle & WS_EX_CLIENTEDGE;
}

/// Makes the client area and what is around it, and gives both their places.
WindowPeer* makeWidgets(CWnd& window, const CREATESTRUCT& cs)
{
    const bool isChild = cs.style & WS_CHILD;
    QWidget* parent = clientOf(cs.parent);
    if (parent && !isChild)
        parent = parent->window();
    FrameWidget* frame = nullptr;
    if (needsFrame(cs.style, cs.exStyle))
        frame = new FrameWidget(parent, isChild ? Qt::Widget : flagsOf(cs.style, cs.exStyle),
                                cs.style, cs.exStyle);
    auto* const client = new HostWidget(frame ? frame : parent);
    WindowPeer* const peer = attach(window, client, cs);
    const HWND hwnd = peer->hwnd;
    client->setHandle(hwnd);
    peer->surface = std::make_shared<WindowSurface>();
    peer->surface->onTouched = [hwnd] {
        if (WindowPeer* const touched = peerOf(hwnd))
            schedulePaint(*touched);
    };
    peer->surface->onShifted = [hwnd](const CRect& rect, int dx, int dy) {
        return shiftShown(hwnd, rect, dx, dy);
    };
    if (frame) {
        registerFrame(*peer, frame);
        frame->setClient(client, hwnd);
        frame->setWindowTitle(textOf(cs.title));
    }
    applyTabStop(*peer);
    QWidget* const outer = peer->outer();
    if (isChild || !cs.rect.IsRectEmpty())
        outer->setGeometry(cs.rect.left, cs.rect.top, cs.rect.Width(), cs.rect.Height());
    else
        outer->resize(640, 480);
    outer->setEnabled(!(cs.style & WS_DISABLED));
    return peer;
}

}  // namespace

LRESULT sendTo(HWND hwnd, unsigned message, WPARAM wParam, LPARAM lParam,
               const std::function<LRESULT()>& native, bool* defaulted)
{
    const WindowPeer* const peer = peerOf(hwnd);
    if (!peer || !peer->window)
        return 0;
    MessageFrame frame{hwnd, &native, false, innermost};
    innermost = &frame;
    const LRESULT result = peer->window->WindowProc(message, wParam, lParam);
    innermost = frame.outer;
    if (defaulted)
        *defaulted = frame.defaulted;
    return result;
}

LRESULT CWnd::Default()
{
    MessageFrame* const frame = innermost;
    if (!frame || frame->hwnd != hwnd_ || !*frame->native || frame->defaulted)
        return 0;
    frame->defaulted = true;
    return (*frame->native)();
}

LRESULT SendMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam)
{
    return sendTo(window, message, wParam, lParam);
}

LRESULT CWnd::SendMessage(unsigned message, WPARAM wParam, LPARAM lParam)
{
    return sendTo(hwnd_, message, wParam, lParam);
}

int CWnd::PostMessage(unsigned message, WPARAM wParam, LPARAM lParam)
{
    return pavane::PostMessage(hwnd_, message, wParam, lParam);
}

CWnd::~CWnd()
{
    // the handlers of heirs are gone already; one that is being destroyed only loses its object
    if (hwnd_ && !destroyPeer(hwnd_))
        forgetObject(hwnd_);
    if (!lives().empty())
        (void)lives().erase(this);
}

std::weak_ptr<const void> LifeOf(const CWnd& window)
{
    std::shared_ptr<const void>& life = lives()[&window];
    if (!life)
        life = std::make_shared<char>();
    return life;
}

CWnd* CWnd::FromHandle(HWND hwnd)
{
    const WindowPeer* const peer = peerOf(hwnd);
    return peer ? peer->window : nullptr;
}

namespace
{

/// Gives a new window its client area; only when it `tells` does WM_SIZE follow, so that handlers
/// of WM_CREATE find the area in place and the first WM_SIZE finds what they made.
void layOut(WindowPeer& peer, bool tells)
{
    auto* const host = static_cast<HostWidget*>(peer.widget.data());
    host->tellSize(tells);
    if (peer.frame)
        peer.frame->layOut();
    else
        host->syncSize();
}

}  // namespace

int CWnd::CreateEx(unsigned exStyle, const CString& className, const CString& title, unsigned style,
                   const CRect& rect, CWnd* parent, unsigned id)
{
    CREATESTRUCT cs{className, title, style, exStyle, rect, parent, id};
    if (hwnd_ || !qobject_cast<QApplication*>(QCoreApplication::instance()) || !PreCreateWindow(cs))
        return 0;
    if (cs.style & WS_CHILD && !clientOf(cs.parent))
        return 0;
    const HWND hwnd = makeWidgets(*this, cs)->hwnd;
    layOut(*peerOf(hwnd), false);
    PreSubclassWindow();
    // NOLINTNEXTLINE: the message carries a pointer
    const LRESULT result = sendTo(hwnd, WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs));
    // any handler may have ended the window, and the object with it
    if (result == -1)
        destroyPeer(hwnd);
    WindowPeer* const peer = peerOf(hwnd);
    if (!peer || !peer->widget)
        return 0;
    layOut(*peer, true);
    if (cs.style & WS_VISIBLE && FromHandle(hwnd))
        FromHandle(hwnd)->ShowWindow(SW_SHOW);
    return peerOf(hwnd) != nullptr;
}

int CWnd::DestroyWindow() { return destroyPeer(hwnd_); }

}  // namespace pavane
