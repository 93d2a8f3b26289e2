#pragma once

#include "pavane/images/palette_followers.h"
#include "platform/gdi_objects.h"

#include <memory>

namespace pavane
{

class ABAxis;
class AColorsGraph;

/// The palette of an axis in bitmap mode whose map is played with: that of the module, or the one
/// that the host gave the axis, with the colours of the graph in the places of the map colours.
/// Follows the module's palette.
class AxisPalette : private PaletteFollower
{
public:
    /// `before` is the palette that the axis has now, null for the module's.
    AxisPalette(const AColorsGraph& graph, HPALETTE* before);
    ~AxisPalette() override;
    /// Puts the colours of the graph into it.
    void update();
    /// What the axis gets; null without memory.
    HPALETTE* handle() { return palette_ ? &palette_ : nullptr; }
    /// The map colour `index` before any play; what the host gave, else that of the module.
    HPALETTE* before() const { return before_; }

private:
    void paletteChanged() override { update(); }

    const AColorsGraph& graph_;
    HPALETTE* before_;
    HPALETTE palette_ = nullptr;
};

/// Owns such a palette for a graph; a copy of the graph has none.
class PAVANE_API AxisPaletteHolder
{
public:
    AxisPaletteHolder();
    AxisPaletteHolder(const AxisPaletteHolder&);
    AxisPaletteHolder& operator=(const AxisPaletteHolder&);
    ~AxisPaletteHolder();
    AxisPalette* get() const { return palette_.get(); }
    void make(const AColorsGraph& graph, HPALETTE* before);

private:
    std::unique_ptr<AxisPalette> palette_;
};

}  // namespace pavane
