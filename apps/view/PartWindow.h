#pragma once

#include "platform/messages.h"

#include <functional>

namespace pavane
{

class CWnd;

/// A part of the main window that tells when the keyboard comes to it, and when Escape wants to
/// leave it.
template <typename Window>
class PartWindow : public Window
{
public:
    /// Stores what is being typed in a table; 0 when it was refused and the user is to mend it.
    int storeEditor() { return Window::hideEditors(); }
    std::function<void()> focused;
    std::function<void()> left;  ///< Escape is the window's own without it

protected:
    void OnSetFocus(CWnd* old) override
    {
        Window::OnSetFocus(old);
        if (focused)
            focused();
    }
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override
    {
        if (static_cast<int>(key) == VK_ESCAPE && left)
            return left();
        Window::OnKeyDown(key, repeat, flags);
    }
};

}  // namespace pavane
