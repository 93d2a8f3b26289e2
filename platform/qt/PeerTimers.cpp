#include "platform/qt/PeerTimers.h"

#include "platform/qt/message_scope.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QTimerEvent>

namespace pavane
{

bool PeerTimers::start(unsigned id, unsigned milliseconds)
{
    stop(id);
    constexpr unsigned longest = 0x7FFFFFFF;
    const int timer =
        startTimer(static_cast<int>(std::clamp(milliseconds, 1u, longest)), Qt::PreciseTimer);
    if (timer)
        timers_[id] = timer;
    return timer != 0;
}

bool PeerTimers::stop(unsigned id)
{
    const auto at = timers_.find(id);
    if (at == timers_.end())
        return false;
    killTimer(at->second);
    timers_.erase(at);
    return true;
}

void PeerTimers::stopAll()
{
    while (!timers_.empty())
        stop(timers_.begin()->first);
}

void PeerTimers::timerEvent(QTimerEvent* event)
{
    const auto at = std::find_if(timers_.begin(), timers_.end(), [&](const auto& timer) {
        return timer.second == event->timerId();
    });
    if (at != timers_.end() && isHeard(hwnd_))
        sendTo(hwnd_, WM_TIMER, at->first, 0);
}

void LaterDeleter::operator()(PeerTimers* timers) const
{
    timers->stopAll();
    timers->deleteLater();
}

unsigned CWnd::SetTimer(unsigned id, unsigned milliseconds)
{
    WindowPeer* const peer = peerOf(this);
    if (!peer)
        return 0;
    if (!peer->timers)
        peer->timers.reset(new PeerTimers(hwnd_));
    return peer->timers->start(id, milliseconds) ? id : 0;
}

int CWnd::KillTimer(unsigned id)
{
    WindowPeer* const peer = peerOf(this);
    return peer && peer->timers && peer->timers->stop(id);
}

}  // namespace pavane
