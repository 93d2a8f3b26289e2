#pragma once

#include "platform/gdi_constants.h"
#include "platform/geometry.h"
#include "platform/types.h"

#include <memory>
#include <vector>

namespace pavane
{

/// A pen: style (PS_*), width in logical units (0 and 1: one pixel) and colour. Above one pixel
/// every style but PS_NULL and PS_INSIDEFRAME draws solid on pixel devices.
class PAVANE_API CPen
{
public:
    CPen() = default;
    CPen(int style, int width, COLORREF color) : style_(style), width_(width), color_(color) {}
    int CreatePen(int style, int width, COLORREF color);
    int style() const { return style_; }
    int width() const { return width_; }
    COLORREF color() const { return color_; }

private:
    int style_ = PS_SOLID;
    int width_ = 0;
    COLORREF color_ = 0;
};

/// A brush: solid, hatched (HS_*) or hollow.
class PAVANE_API CBrush
{
public:
    CBrush() = default;
    explicit CBrush(COLORREF color) : color_(color) {}
    CBrush(int hatch, COLORREF color) : kind_(Kind::hatched), hatch_(hatch), color_(color) {}
    int CreateSolidBrush(COLORREF color);
    int CreateHatchBrush(int hatch, COLORREF color);
    /// Makes the brush hollow: it paints nothing.
    int CreateNullBrush();
    enum class Kind { solid, hatched, hollow };
    Kind kind() const { return kind_; }
    int hatch() const { return hatch_; }
    COLORREF color() const { return color_; }

private:
    Kind kind_ = Kind::solid;
    int hatch_ = 0;
    COLORREF color_ = 0xFFFFFF;
};

/// A font as it is asked for. Height: positive = height of the character cell, negative = em
/// height, 0 = the default, all in logical units. Angles in tenths of a degree, counter-clockwise.
struct LOGFONT {
    int lfHeight = 0;
    int lfWidth = 0;
    int lfEscapement = 0;
    int lfOrientation = 0;
    int lfWeight = 0;
    unsigned char lfItalic = 0;
    unsigned char lfUnderline = 0;
    unsigned char lfStrikeOut = 0;
    unsigned char lfCharSet = 0;
    unsigned char lfOutPrecision = 0;
    unsigned char lfClipPrecision = 0;
    unsigned char lfQuality = 0;
    unsigned char lfPitchAndFamily = 0;
    CString lfFaceName;
};

/// A font. The face is matched by the backend; an unknown one falls back to a sans-serif face of
/// the same metrics as the common one.
class PAVANE_API CFont
{
public:
    CFont() = default;
    int CreateFontIndirect(const LOGFONT& font);
    const LOGFONT& logFont() const { return font_; }

private:
    LOGFONT font_;
};

/// Measures of a font in logical units.
struct TEXTMETRIC {
    int tmHeight = 0;
    int tmAscent = 0;
    int tmDescent = 0;
    int tmAveCharWidth = 0;
    int tmMaxCharWidth = 0;
    int tmExternalLeading = 0;
    int tmWeight = 0;
};

/// One colour of a palette.
struct PALETTEENTRY {
    unsigned char peRed = 0;
    unsigned char peGreen = 0;
    unsigned char peBlue = 0;
    unsigned char peFlags = 0;
};

/// Makes a palette of the given colours; the caller releases it with DeletePalette. Null for none.
PAVANE_API HPALETTE CreatePalette(const PALETTEENTRY* entries, int count);
PAVANE_API void DeletePalette(HPALETTE palette);
/// Copies up to `count` entries from `first` on; returns how many there were.
PAVANE_API int GetPaletteEntries(HPALETTE palette, int first, int count, PALETTEENTRY* entries);
/// Overwrites entries; returns how many were set.
PAVANE_API int SetPaletteEntries(HPALETTE palette, int first, int count,
                                 const PALETTEENTRY* entries);

/// A set of pixels, in device units.
class PAVANE_API CRgn
{
public:
    CRgn();
    CRgn(const CRgn&);
    CRgn& operator=(const CRgn&);
    ~CRgn();
    int CreateRectRgn(int left, int top, int right, int bottom);
    int CreatePolygonRgn(const CPoint* points, int count, int fillMode);
    /// Makes this the combination (RGN_*) of a and b; returns its kind (NULLREGION ...).
    int CombineRgn(const CRgn& a, const CRgn& b, int mode);
    int PtInRegion(int x, int y) const;
    int GetRgnBox(CRect& box) const;
    int OffsetRgn(int dx, int dy);
    struct Data;
    const Data* data() const { return data_.get(); }

private:
    std::unique_ptr<Data> data_;
};

}  // namespace pavane
