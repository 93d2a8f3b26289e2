#pragma once

#include "platform/CWnd.h"

namespace pavane
{

/// A control whose notices, and those of its children, go to another window.
template <class Control>
class Relay : public Control
{
public:
    explicit Relay(CWnd& to) : to_(to) {}

protected:
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        return to_.SendMessage(WM_COMMAND, (id & 0xFFFF) | WPARAM{code} << 16,
                               static_cast<LPARAM>(control ? control->GetSafeHwnd() : 0)) != 0;
    }

private:
    CWnd& to_;
};

}  // namespace pavane
