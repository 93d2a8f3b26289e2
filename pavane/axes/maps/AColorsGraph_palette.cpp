// The colours of a map: which they are, how they are played with, and where they go.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/images/palettes.h"

#include <algorithm>

namespace pavane
{

namespace
{

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
    int known = 0;
    if (before_) {
        known = GetPaletteEntries(*before_, 0, 256, entries);
    } else if (const SharedPalette& shared = graph_.paletteColors()) {
        known = shared->count;
        std::copy(shared->entries, shared->entries + known, entries);
    } else {
        return;
    }
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

const SharedPalette& AColorsGraph::paletteColors() const
{
    if (!palette_)
        palette_ = ModulePalette();  // none was loaded when the graph was made
    return palette_;
}

void AColorsGraph::setPaletteColors(const SharedPalette& palette)
{
    hasOwnPalette_ = palette != nullptr;
    palette_ = palette ? palette : ModulePalette();
    if (axisPalette_.get())
        axisPalette_.get()->update();
}

void AColorsGraph::followModule()
{
    if (const SharedPalette now = ModulePalette(0); !hasOwnPalette_ && now != palette_) {
        palette_ = now;
        if (axisPalette_.get())
            axisPalette_.get()->update();
    }
}

/// Colours that are not the graph's own: of the palette that a host gave an axis in bitmap mode,
/// else of the graph's; how many there are.
int AColorsGraph::unplayedEntries(int first, int count, PALETTEENTRY* entries) const
{
    if (axisPalette_.get() && axisPalette_.get()->before())
        return GetPaletteEntries(*axisPalette_.get()->before(), first, count, entries);
    const SharedPalette& shared = paletteColors();
    const int known = shared ? std::clamp(shared->count - first, 0, count) : 0;
    if (known > 0)
        std::copy_n(shared->entries + first, known, entries);
    return known;
}

AArray<COLORREF> AColorsGraph::mapColors(const AColorPlay& playedWith) const
{
    const int count = getNColors();
    AArray<COLORREF> colours(count, count, 1);
    PALETTEENTRY entries[256];
    const int known = colors_.count() > 0 ? 0 : unplayedEntries(getFirstColor(), count, entries);
    for (int i = 0; i < colours.count(); ++i) {
        if (colors_.count() > 0) {
            colours(i) = colors_(i * std::min(colors_.count(), count) / count);
        } else if (i < known) {
            colours(i) = RGB(entries[i].peRed, entries[i].peGreen, entries[i].peBlue);
        } else {
            const int grey = i * 255 / std::max(count - 1, 1);
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
        const int isGiven = given != GetGlobalPalette() && !plot.hasPaletteOfColors();
        axisPalette_.make(*this, isGiven ? given : nullptr);
    }
    HPALETTE* const own = axisPalette_.get()->handle();
    if (!own || plot.getPalette() == own)
        return;
    plot.setPalette(own);
    (void)plot.BeginPalette();  // in the drawing that goes on; who began it puts the old one back
}

}  // namespace pavane
