#pragma once

#include "platform/CWnd.h"
#include "platform/messages.h"

#include <functional>

namespace pavane
{

class CWnd;

/// Whether a window is a part or stands in it; null is nowhere.
inline int isWithin(const CWnd* window, const CWnd* part)
{
    while (window && window != part)
        window = window->GetParent();
    return window != nullptr;
}

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
