#include "platform/qt/capture.h"

#include "platform/qt/WindowPeer.h"

#include <utility>

namespace pavane
{

namespace
{

HWND captured = 0;
unsigned changes = 0;

}  // namespace

HWND captureWindow() { return captured; }
unsigned captureChanges() { return changes; }

CWnd* CWnd::SetCapture()
{
    const HWND before = hwnd_ ? std::exchange(captured, hwnd_) : captured;
    if (!before || before == captured)
        return FromHandle(before);
    ++changes;
    sendTo(before, WM_CAPTURECHANGED, 0, static_cast<LPARAM>(captured));
    return FromHandle(before);
}

CWnd* CWnd::GetCapture() { return FromHandle(captured); }

void CWnd::ReleaseCapture()
{
    const HWND before = std::exchange(captured, 0);
    if (!before)
        return;
    ++changes;
    sendTo(before, WM_CAPTURECHANGED, 0, 0);
}

void cancelCapture()
{
    const HWND hwnd = captured;
    if (!hwnd)
        return;
    sendTo(hwnd, WM_CANCELMODE, 0, 0);
    if (captured == hwnd)
        CWnd::ReleaseCapture();
}

void cancelCaptureWithin(HWND hwnd)
{
    const WindowPeer* peer = peerOf(captured);
    while (peer && peer->hwnd != hwnd)
        peer = peerOf(peer->parent);
    if (peer)
        cancelCapture();
}

}  // namespace pavane
