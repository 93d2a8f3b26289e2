#include "platform/CWnd.h"

#include <algorithm>
#include <vector>

namespace pavane
{

namespace
{

/// Never destroyed: windows of static storage may outlive every other static.
std::vector<WNDCLASSA>& classes()
{
    static auto* const known = new std::vector<WNDCLASSA>;
    return *known;
}

auto found(const CString& name)
{
    return std::find_if(classes().begin(), classes().end(),
                        [&](const WNDCLASSA& wc) { return wc.className == name; });
}

}  // namespace

int GetClassInfo(const CString& name, WNDCLASSA& wc)
{
    const auto known = found(name);
    if (known == classes().end())
        return 0;
    wc = *known;
    return 1;
}

int AfxRegisterClass(const WNDCLASSA& wc)
{
    if (wc.className.empty())
        return 0;
    if (found(wc.className) == classes().end())
        classes().push_back(wc);
    return 1;
}

}  // namespace pavane
