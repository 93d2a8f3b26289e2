// The colours of a map: which they are, how they are played with, and where they go.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/images/palettes.h"

#include <algorithm>

namespace pavane
{

namespace
{

int loadedPalette() { return *GetGlobalPalette() || LoadDefaultPalette() || LoadBuiltInPalette(); }

PALETTEENTRY entryOf(COLORREF c)
{
    return {static_cast<unsigned char>(GetRValue(c)), static_cast<unsigned char>(GetGValue(c)),
            static_cast<unsigned char>(GetBValue(c)), 0};
}

}  // namespace

AxisPalette::AxisPalette(const AColorsGraph& graph, HPALETTE* before)
    : graph_(graph), before_(before)
{
    update();
}

AxisPalette::~AxisPalette()
{
    if (palette_)
        DeletePalette(palette_);
}

void AxisPalette::update()
{
    PALETTEENTRY entries[256] = {};
    if (!before_ && !loadedPalette())
        return;
    const int known = GetPaletteEntries(before_ ? *before_ : *GetGlobalPalette(), 0, 256, entries);
    const AArray<COLORREF> colours = graph_.mapColors(graph_.GetColorPlay());
    const int first = graph_.getFirstColor();
    for (int i = 0; i < colours.count(); ++i)
        entries[first + i] = entryOf(colours(i));
    const int count = std::max(known, first + colours.count());
    if (palette_)
        (void)SetPaletteEntries(palette_, 0, count, entries);
    else
        palette_ = CreatePalette(entries, count);
}

AxisPaletteHolder::AxisPaletteHolder() = default;
AxisPaletteHolder::AxisPaletteHolder(const AxisPaletteHolder&) {}
AxisPaletteHolder& AxisPaletteHolder::operator=(const AxisPaletteHolder&) { return *this; }
AxisPaletteHolder::~AxisPaletteHolder() = default;

void AxisPaletteHolder::make(const AColorsGraph& graph, HPALETTE* before)
{
    palette_ = std::make_unique<AxisPalette>(graph, before);
}

/// Where colours that are not the graph's own come from: the palette that a host gave an axis in
/// bitmap mode, else that of the module; null for none.
HPALETTE AColorsGraph::unplayedPalette() const
{
    if (axisPalette_.get() && axisPalette_.get()->before())
        return *axisPalette_.get()->before();
    return loadedPalette() ? *GetGlobalPalette() : nullptr;
}

AArray<COLORREF> AColorsGraph::mapColors(const AColorPlay& playedWith) const
{
    const int count = getNColors();
    AArray<COLORREF> colours(count, count, 1);
    PALETTEENTRY entries[256];
    const HPALETTE palette = colors_.count() > 0 ? nullptr : unplayedPalette();
    const int known = palette ? GetPaletteEntries(palette, getFirstColor(), count, entries) : 0;
    for (int i = 0; i < colours.count(); ++i) {
        if (colors_.count() > 0) {
            colours(i) = colors_(i * std::min(colors_.count(), count) / count);
        } else if (i < known) {
            colours(i) = RGB(entries[i].peRed, entries[i].peGreen, entries[i].peBlue);
        } else {
            const int grey = i * 255 / (count - 1);
            colours(i) = RGB(grey, grey, grey);
        }
    }
    (void)playedWith.apply(colours);  // values that are none leave them as they are
    return colours;
}

COLORREF AColorsGraph::mapColor(int index) const { return mapColors(play_)(index); }

COLORREF AColorsGraph::contourGround(int index) const
{
    return mapColors(playGoes_ ? settledPlay_ : play_)(index);
}

void AColorsGraph::setColors(const AArray<COLORREF>& colors)
{
    colors_ = colors;
    if (axisPalette_.get())
        axisPalette_.get()->update();
}

int AColorsGraph::SetColorPlay(const AColorPlay& play)
{
    if (!play.isUsable())
        return 0;
    play_ = play;
    if (axisPalette_.get())
        axisPalette_.get()->update();
    else if (axis() && axis()->isFlagSet(axisBitmapMode))
        useAxisPalette();
    return 1;
}

void AColorsGraph::setPlayGoing(int on)
{
    if (on && !playGoes_)
        settledPlay_ = play_;
    playGoes_ = on != 0;
}

/// The axis shows the colours of this graph from the first play on, whichever axis draws it.
void AColorsGraph::useAxisPalette() const
{
    ABAxis& plot = *axis();
    if (!axisPalette_.get()) {
        if (play_.isNeutral() && !playGoes_)
            return;
        HPALETTE* const given = plot.getPalette();
        axisPalette_.make(*this, given == GetGlobalPalette() ? nullptr : given);
    }
    HPALETTE* const own = axisPalette_.get()->handle();
    if (!own || plot.getPalette() == own)
        return;
    plot.setPalette(own);
    (void)plot.BeginPalette();  // in the drawing that goes on; who began it puts the old one back
}

}  // namespace pavane
