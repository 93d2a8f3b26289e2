#pragma once

namespace pavane
{

/// Hears, for as long as it lives, that the module's palette has other colours: what holds a
/// palette made from it.
class PaletteFollower
{
public:
    PaletteFollower();
    PaletteFollower(const PaletteFollower&) = delete;
    PaletteFollower& operator=(const PaletteFollower&) = delete;
    virtual ~PaletteFollower();
    virtual void paletteChanged() = 0;
};

}  // namespace pavane
