#include "platform/qt/capture.h"

#include "platform/capture_watch.h"
#include "platform/qt/WindowPeer.h"

#include <utility>

namespace pavane
{

namespace
{

HWND captured = 0;
unsigned changes = 0;
CaptureWatch* innermostWatch = nullptr;

}  // namespace

CaptureWatch::CaptureWatch(std::function<void()> lost)
    : lost_(std::move(lost)), outer_(std::exchange(innermostWatch, this))
{
}

CaptureWatch::~CaptureWatch() { innermostWatch = outer_; }

/// Outer watches have lost their capture before.
void CaptureWatch::tell()
{
    if (innermostWatch && innermostWatch->lost_)
        std::exchange(innermostWatch->lost_, nullptr)();
}

HWND captureWindow() { return captured; }
unsigned captureChanges() { return changes; }

CWnd* CWnd::SetCapture()
{
    const HWND before = hwnd_ ? std::exchange(captured, hwnd_) : captured;
    if (!before || before == captured)
        return FromHandle(before);
    ++changes;
    CaptureWatch::tell();
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
    CaptureWatch::tell();
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
