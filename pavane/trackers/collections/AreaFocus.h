#pragma once

namespace pavane
{

/// The area or handle that keys act on.
struct AreaFocus {
    int item = -1;    ///< -1 for none
    int handle = -1;  ///< -1: the area itself
    int passed = -1;  ///< the current area when the focus went past the ends

    void clear() { item = handle = -1; }
    /// The places behind a new area are one more.
    void inserted(int i)
    {
        item += item >= i;
        passed += passed >= i;
    }
    void removed() { item = handle = passed = -1; }
};

}  // namespace pavane
