#pragma once

#include "axes/maps/test_maps.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFigure.h"
#include "pavane/images/palettes.h"
#include "platform/gdi_objects.h"
#include "platform/picture.h"
#include "platform/picture_bytes.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace pavane
{

/// What one thread makes, of size, palette, markers, fonts and mode of its own.
struct DrawnFigure {
    std::vector<std::uint32_t> pixels;
    std::vector<unsigned char> png;
    std::string page;
    bool operator==(const DrawnFigure&) const = default;
};

/// How often a test that takes as long as one likes does its work: PAVANE_TIMES, or `usual`.
inline int timesOf(int usual)
{
    const char* const asked = std::getenv("PAVANE_TIMES");
    return asked && std::atoi(asked) > 0 ? std::atoi(asked) : usual;
}

/// An allocator that other threads may hold when a process is copied; those of the C library and of
/// the thread sanitizer are let go of.
constexpr bool hasUnforkableMalloc()
{
#ifdef __SANITIZE_ADDRESS__
    return true;
#else
    return false;
#endif
}

inline void drawFigure(int kind, CDC& dc, const CRect& rect)
{
    const char* const palettes[] = {"heat", "grey", "diverging", "defpal"};
    const AMatrix<float> map = randomMap(60 + kind, 80 - kind, kind);
    const AFloatMatrixAccess cells(map);
    A2DAxis axis(-1, 1, nullptr, kind % 4 == 1 ? static_cast<int>(axisBitmapMode) : 0);
    TMinMax centres;
    centres.xMin = 40;
    centres.xMax = -40 + kind;
    centres.yMin = 0;
    centres.yMax = 30;
    auto* const graph = new ALevelsColorGraph(&axis, cells, centres, 0);
    graph->setShownOften(1);
    ContourLevels levels;
    (void)levels.read("sigma:-2,2,3");
    graph->contours().setLevels(levels);
    if (kind % 3 == 0)
        (void)graph->SetColorPlay({2, 0.3, 1, kind % 2});
    AAxisColorOP bar(*graph);
    SharedPalette palette;
    if (kind % 5 && ReadPalette(palettes[kind % 4], palette))
        axis.setPaletteColors(palette);
    axis.setParts({6, 20 + 2 * kind, 6});
    axis.setNameOX("Rel. R.A. (mas) \xCE\xB1" + std::to_string(kind));
    MapFigure figure;
    figure.setAxis(&axis);
    figure.setMap(graph);
    figure.setBar(&bar);
    figure.draw(dc, figure.layOut(dc, rect));
    // tall soft areas, which the toolkit fills with threads of its own, and turned text
    CFont font;
    LOGFONT shape;
    shape.lfHeight = 11 + 2 * kind;
    shape.lfFaceName = kind % 2 ? "Times New Roman" : "Arial";
    shape.lfEscapement = kind % 3 ? 450 : 0;
    font.CreateFontIndirect(shape);
    CFont* const before = dc.SelectObject(&font);
    dc.TextOut(rect.Width() / 3, rect.Height() / 2,
               "J1033+6051 \xE2\x88\x92 " + std::to_string(kind));
    dc.SelectObject(before);
    const int smooth = dc.SetSmooth(1);
    const CPointF corners[] = {{rect.Width() * 0.8, 1.5},
                               {rect.Width() - 3.0, rect.Height() - 2.5},
                               {rect.Width() * 0.7, rect.Height() * 0.6}};
    dc.PolygonF(corners, 3);
    dc.SetSmooth(smooth);
}

inline DrawnFigure drawnFigure(int kind)
{
    DrawnFigure drawn;
    const CSize size{320 + 24 * kind, 260 + 16 * kind};
    CPicture picture(size.cx, size.cy);
    drawFigure(kind, *picture.dc(), CRect(0, 0, size.cx, size.cy));
    for (int y = 0; y < size.cy; ++y)
        drawn.pixels.insert(drawn.pixels.end(), picture.row(y), picture.row(y) + size.cx);
    CString error;
    EXPECT_TRUE(PNGBytes(picture, drawn.png, error)) << error;
    CPageFile page(kind % 2 ? CPageFile::Format::pdf : CPageFile::Format::svg, size.cx, size.cy,
                   "figure");
    drawFigure(kind, page.dc(), CRect(0, 0, size.cx * 12, size.cy * 12));
    std::vector<unsigned char> bytes;
    EXPECT_TRUE(page.CloseBytes(bytes, error)) << error;
    drawn.page.assign(bytes.begin(), bytes.end());
    // when a page was made, which may be a second later
    for (std::size_t at = 0; (at = drawn.page.find("D:20", at)) != std::string::npos; at += 16)
        std::fill_n(drawn.page.begin() + static_cast<std::ptrdiff_t>(at) + 2,
                    std::min<std::size_t>(14, drawn.page.size() - at - 2), '0');
    return drawn;
}

}  // namespace pavane
