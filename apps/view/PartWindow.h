#pragma once

#include "platform/CWnd.h"
#include "platform/messages.h"

#include <functional>

namespace pavane
{

/// Stores what is being typed in a table; 0 when it was refused and the user is to mend it.
inline int settleEditor(CWnd& table)
{
    const CWnd* const focus = CWnd::GetFocus();
    if (!focus || focus->GetParent() != &table)
        return 1;
    table.SetFocus();
    return CWnd::GetFocus() == &table;
}

/// A part of the main window that tells when the keyboard comes to it, and when Escape wants to
/// leave it.
template <typename Window>
class PartWindow : public Window
{
public:
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
