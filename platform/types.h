#pragma once

#include "platform/api.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// Text, always UTF-8.
using CString = std::string;

/// A colour, 0x00BBGGRR; 0x0100nnnn is entry nnnn of the palette selected in the device context.
using COLORREF = std::uint32_t;

constexpr COLORREF RGB(int r, int g, int b)
{
    return static_cast<COLORREF>((r & 255) | (g & 255) << 8 | (b & 255) << 16);
}
constexpr COLORREF PALETTEINDEX(int i) { return 0x01000000u | static_cast<COLORREF>(i & 0xFFFF); }
constexpr int GetRValue(COLORREF c) { return static_cast<int>(c & 255); }
constexpr int GetGValue(COLORREF c) { return static_cast<int>(c >> 8 & 255); }
constexpr int GetBValue(COLORREF c) { return static_cast<int>(c >> 16 & 255); }
inline constexpr COLORREF CLR_INVALID = 0xFFFFFFFFu;

/// Opaque handle of a palette, null for none. The palette objects own what it stands for.
struct PaletteObject;
using HPALETTE = PaletteObject*;

}  // namespace pavane
