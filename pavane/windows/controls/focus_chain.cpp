#include "pavane/windows/controls/focus_chain.h"

#include "platform/CWnd.h"

#include <algorithm>

namespace pavane
{

int passFocus(const CWnd& from, int back)
{
    const CWnd* const parent = from.GetParent();
    if (!parent || parent->IsDialog())
        return 0;
    std::vector<CWnd*> stops;
    for (CWnd* const child : parent->GetChildren())
        if (child == &from || (child->GetStyle() & WS_TABSTOP && child->IsWindowEnabled() &&
                               child->IsWindowVisible()))
            stops.push_back(child);
    const auto at = std::find(stops.begin(), stops.end(), &from) - stops.begin();
    const auto count = std::ssize(stops);
    if (count > 1)
        (void)stops[static_cast<std::size_t>((at + (back ? count - 1 : 1)) % count)]->SetFocus();
    return 1;
}

}  // namespace pavane
