#include "platform/gdi_objects.h"

#include <new>

namespace pavane
{

int CPen::CreatePen(int style, int width, COLORREF color)
{
    *this = CPen(style, width, color);
    return style >= PS_SOLID && style <= PS_INSIDEFRAME;
}

int CBrush::CreateSolidBrush(COLORREF color)
{
    *this = CBrush(color);
    return 1;
}

int CBrush::CreateHatchBrush(int hatch, COLORREF color)
{
    *this = CBrush(hatch, color);
    return hatch >= HS_HORIZONTAL && hatch <= HS_DIAGCROSS;
}

int CBrush::CreateNullBrush()
{
    kind_ = Kind::hollow;
    return 1;
}

int CFont::CreateFontIndirect(const LOGFONT& font)
{
    font_ = font;
    return 1;
}

struct PaletteObject {
    std::vector<PALETTEENTRY> entries;
};

HPALETTE CreatePalette(const PALETTEENTRY* entries, int count)
{
    if (!entries || count < 1)
        return nullptr;
    const HPALETTE palette = new (std::nothrow) PaletteObject;
    if (palette)
        palette->entries.assign(entries, entries + count);
    return palette;
}

void DeletePalette(HPALETTE palette) { delete palette; }

namespace
{

/// Entries that a range of `count` from `first` on has in the palette.
int entriesInside(HPALETTE palette, int first, int count)
{
    const int size = palette ? static_cast<int>(palette->entries.size()) : 0;
    if (first < 0 || first >= size || count < 1)
        return 0;
    return count < size - first ? count : size - first;
}

}  // namespace

int GetPaletteEntries(HPALETTE palette, int first, int count, PALETTEENTRY* entries)
{
    const int inside = entriesInside(palette, first, count);
    for (int i = 0; i < inside; ++i)
        entries[i] = palette->entries[static_cast<std::size_t>(std::int64_t{first} + i)];
    return inside;
}

int SetPaletteEntries(HPALETTE palette, int first, int count, const PALETTEENTRY* entries)
{
    const int inside = entriesInside(palette, first, count);
    for (int i = 0; i < inside; ++i)
        palette->entries[static_cast<std::size_t>(std::int64_t{first} + i)] = entries[i];
    return inside;
}

}  // namespace pavane
