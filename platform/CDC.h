#pragma once

#include "platform/gdi_objects.h"

#include <memory>

namespace pavane
{

class CBitmap;
class DeviceBackend;
class StopFlag;
struct DIBSource;

/// A device context: draws into a memory picture, a page of a PDF or SVG file, or a window.
///
/// Coordinates are logical; the mapping mode turns them into device pixels (y downwards). On a
/// pixel device every primitive follows the pixel rules of the classic drawing interface exactly
/// (ends of lines excluded, rectangles half-open, ties to the smaller coordinate); on a page the
/// same calls give vectors, and text stays text. Drawing never fails loudly: what cannot be drawn
/// is left out.
///
/// Selected objects are copied, so that they may die before the context; the pointers that the
/// SelectObject members return are the ones that were selected before, for selecting them again.
class PAVANE_API CDC
{
public:
    /// A context without a device; drawing into it does nothing.
    CDC();
    /// Draws on `backend`, which the context owns.
    explicit CDC(std::unique_ptr<DeviceBackend> backend);
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC();

    // Objects
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CFont* SelectObject(CFont* font);
    /// Makes the region the clip region; null removes it. Returns the kind of the region.
    int SelectObject(CRgn* region);
    /// Selects one of the stock objects (WHITE_BRUSH ... DEFAULT_GUI_FONT); non-zero if it exists.
    int SelectStockObject(int index);
    HPALETTE SelectPalette(HPALETTE palette, int forceBackground);
    int RealizePalette();

    // State
    int SetROP2(int mode);
    int GetROP2() const;
    int SetBkMode(int mode);
    int GetBkMode() const;
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const;
    COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const;
    int SetPolyFillMode(int mode);
    int SaveDC();
    int RestoreDC(int saved);
    /// Smooth strokes: with a non-zero value lines that are not along an axis, polygons and
    /// ellipses are drawn with soft edges where the device can (pictures with a backend; pages
    /// always are). Off at first: then the pixel rules hold. Returns the value in force before.
    int SetSmooth(int on);
    /// Non-zero when the device draws vectors (a page), so that a caller may send finer curves.
    int IsVector() const;
    /// Non-zero when nothing lies behind what is drawn: a figure then paints no ground.
    int IsTransparent() const;
    /// Pixels across one device unit: above 1 in windows on fine screens and in bitmaps made for
    /// them, where pictures and text are finer than the units.
    int GetPixelRatio() const;

    // Mapping
    int SetMapMode(int mode);
    int GetMapMode() const;
    CPoint SetWindowOrg(int x, int y);
    CPoint SetViewportOrg(int x, int y);
    CSize SetWindowExt(int cx, int cy);
    CSize SetViewportExt(int cx, int cy);
    void LPtoDP(CPoint* points, int count = 1) const;
    void DPtoLP(CPoint* points, int count = 1) const;

    // Clipping
    int SelectClipRgn(const CRgn* region);
    int IntersectClipRect(const CRect& rect);
    int ExcludeClipRect(const CRect& rect);
    int GetClipBox(CRect& box) const;
    int PtVisible(int x, int y) const;
    int RectVisible(const CRect& rect) const;

    // Lines and shapes
    CPoint MoveTo(int x, int y);
    CPoint GetCurrentPosition() const;
    int LineTo(int x, int y);
    int Polyline(const CPoint* points, int count);
    /// A curve with fractional coordinates: rounded to pixels on a plain pixel device, exact on a
    /// page and on a smooth picture.
    int PolylineF(const CPointF* points, int count);
    int Polygon(const CPoint* points, int count);
    /// A closed figure with fractional coordinates, filled and outlined like Polygon.
    int PolygonF(const CPointF* points, int count);
    int Rectangle(int left, int top, int right, int bottom);
    int Rectangle(const CRect& r) { return Rectangle(r.left, r.top, r.right, r.bottom); }
    int Ellipse(int left, int top, int right, int bottom);
    void FillRect(const CRect& rect, const CBrush* brush);
    void FillSolidRect(const CRect& rect, COLORREF color);
    void FrameRect(const CRect& rect, const CBrush* brush);
    void InvertRect(const CRect& rect);
    void DrawFocusRect(const CRect& rect);
    int PatBlt(int x, int y, int width, int height, unsigned rop);
    COLORREF SetPixel(int x, int y, COLORREF color);
    int SetPixelV(int x, int y, COLORREF color);
    COLORREF GetPixel(int x, int y) const;

    // Pictures
    int BitBlt(int x, int y, int width, int height, const CDC* source, int sx, int sy,
               unsigned rop);
    int StretchBlt(int x, int y, int width, int height, const CDC* source, int sx, int sy,
                   int sWidth, int sHeight, unsigned rop);
    /// Draws a part of a device-independent bitmap; `header` is a bitmap-info block (size 40 or
    /// more, little-endian, colour table behind it, read as `usage` says), `bits` its scan lines
    /// padded to 4 bytes. 8 and 32 bits per pixel. Source y counts from the bottom row of a
    /// bottom-up bitmap.
    int StretchDIBits(int x, int y, int width, int height, int sx, int sy, int sWidth, int sHeight,
                      const void* bits, const void* header, unsigned usage, unsigned rop);
    /// Shifts what is in `scroll` (all when null) by dx, dy inside `clip`; `update` gets the box
    /// and `region` the pixels that were uncovered (both may be null).
    int ScrollDC(int dx, int dy, const CRect* scroll, const CRect* clip, CRgn* region,
                 CRect* update);

    // Text: (x, y) is the top left corner of the first character cell, turned by the font's angle
    int TextOut(int x, int y, const CString& text);
    int DrawText(const CString& text, CRect& rect, unsigned format);
    /// Width and height of a line of text, not turned, in logical units.
    CSize GetTextExtent(const CString& text) const;
    int GetTextMetrics(TEXTMETRIC& metrics) const;

    /// Looks at `stop`, which has to outlive the drawing, before each primitive: once it is up
    /// nothing more is drawn, and what was drawn is a part of a picture. Null, as at first, for
    /// none.
    void setStop(const StopFlag* stop);
    /// The flag, or that of a page (CPageFile::AskBefore); null for none.
    const StopFlag* stopFlag() const;
    /// Non-zero when nothing that is still to come will be drawn.
    int isStopped() const;

    int GetDeviceCaps(int index) const;
    DeviceBackend* backend() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace pavane
