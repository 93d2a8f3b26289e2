#pragma once

#include "platform/gdi_objects.h"

#include <memory>

namespace pavane
{

class ABAxis;
class AColorsGraph;

/// The palette of an axis in bitmap mode whose map is played with: that of the graph, or the one
/// that the host gave the axis, with the colours of the graph in the places of the map colours.
class AxisPalette
{
public:
    /// `before` is the palette that a host gave the axis, null for that of the graph.
    AxisPalette(const AColorsGraph& graph, HPALETTE* before);
    AxisPalette(const AxisPalette&) = delete;
    AxisPalette& operator=(const AxisPalette&) = delete;
    ~AxisPalette();
    /// Puts the colours of the graph into it.
    void update();
    /// What the axis gets; null without memory.
    HPALETTE* handle() { return palette_ ? &palette_ : nullptr; }
    /// What the host gave; null for none.
    HPALETTE* before() const { return before_; }

private:
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
