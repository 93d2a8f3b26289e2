#pragma once

#include <thread>

namespace pavane
{

/// Hears, for as long as it lives, that the module's palette has other colours: windows, whose maps
/// follow it. It is told in its own thread alone: a palette that another thread loads shows at the
/// next painting.
class PaletteFollower
{
public:
    PaletteFollower();
    PaletteFollower(const PaletteFollower&) = delete;
    PaletteFollower& operator=(const PaletteFollower&) = delete;
    virtual ~PaletteFollower();
    virtual void paletteChanged() = 0;
    int isOfThisThread() const { return thread_ == std::this_thread::get_id(); }

private:
    std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace pavane
