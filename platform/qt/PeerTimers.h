#pragma once

#include "platform/messages.h"

#include <map>
#include <QObject>

namespace pavane
{

/// The timers of one window; hidden windows have them too.
class PeerTimers : public QObject
{
public:
    explicit PeerTimers(HWND hwnd) : hwnd_(hwnd) {}
    /// Starts timer `id` anew.
    bool start(unsigned id, unsigned milliseconds);
    bool stop(unsigned id);
    /// The window is gone.
    void stopAll();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    HWND hwnd_;
    std::map<unsigned, int> timers_;  ///< Qt's number of each identifier
};

}  // namespace pavane
