#pragma once

#include "platform/messages.h"

#include <QEvent>
#include <QObject>

namespace pavane
{

/// While it lives only this top-level window (0: everybody) is heard. Scopes nest.
class MessageScope
{
public:
    explicit MessageScope(HWND only);
    MessageScope(const MessageScope&) = delete;
    MessageScope& operator=(const MessageScope&) = delete;
    ~MessageScope();

private:
    HWND before_;
};

/// Whether this window may hear and paint now.
bool isHeard(HWND hwnd);
/// Whether a message may be taken now.
bool isHeard(const MSG& message);
/// Whether an event is kept from its receiver, now or for good.
bool isHeldBack(QObject* receiver, QEvent& event);

}  // namespace pavane
