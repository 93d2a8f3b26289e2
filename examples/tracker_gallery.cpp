// Draws every selection shape on dark, light and coloured ground: tracker_gallery OUTPUT_FOLDER.

#include "pavane/images/palettes.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/rounding.h"

#include <cmath>
#include <iostream>

using namespace pavane;

namespace
{

constexpr int tileWidth = 330;
constexpr int tileHeight = 230;

AAreaTracker polygon(std::initializer_list<CPoint> points)
{
    AAreaTracker area;
    for (const CPoint& p : points)
        area.points().Add(p);
    return area;
}

template <typename Turned>
Turned turned(const CRect& rect, double degrees)
{
    Turned shape;
    shape.SetRect(rect);
    shape.SetAngle(degrees * 3.141592653589793 / 180);
    return shape;
}

void draw(CDC& dc, ATracker& shape, CPoint at, bool active)
{
    shape.SetActive(active);
    const CPoint old = dc.SetViewportOrg(at.x, at.y);
    shape.DrawShape(dc);
    dc.SetViewportOrg(old.x, old.y);
}

void drawTile(CDC& dc, CPoint at)
{
    ARectTracker rect({15, 15, 85, 60}, trackerNew);
    auto box = turned<ARotateRectTracker>({110, 20, 180, 60}, 25);
    auto ellipse = turned<AEllipseTracker>({210, 15, 310, 65}, -20);
    AAreaTracker area = polygon({{20, 180}, {40, 130}, {90, 122}, {70, 150}, {95, 185}, {55, 200}});
    area.SetStyle(trackerNew | trackerReady);
    AAreaTracker open = polygon({{125, 190}, {130, 145}, {165, 125}, {190, 160}, {175, 205}});
    draw(dc, rect, at, true);
    draw(dc, box, at, true);
    draw(dc, ellipse, at, true);
    draw(dc, area, at, true);
    draw(dc, open, at, true);
    const CPoint right(at.x + 200, at.y + 72);
    ARectTracker small({15, 8, 60, 33}, trackerNew);
    auto smallBox = turned<ARotateRectTracker>({75, 8, 120, 33}, 25);
    auto smallEllipse = turned<AEllipseTracker>({10, 50, 62, 80}, -20);
    AAreaTracker smallArea = polygon({{75, 90}, {85, 52}, {110, 48}, {100, 65}, {118, 88}});
    smallArea.SetStyle(trackerNew | trackerReady);
    for (ATracker* shape :
         {static_cast<ATracker*>(&small), static_cast<ATracker*>(&smallBox),
          static_cast<ATracker*>(&smallEllipse), static_cast<ATracker*>(&smallArea)})
        draw(dc, *shape, right, false);
    for (int i = 0; i < 12; ++i) {
        ARectTracker tiny({10 + 9 * i, 110 + 3 * (i % 4), 16 + 9 * i, 116 + 3 * (i % 4)},
                          trackerNew);
        draw(dc, tiny, right, false);
        auto dot = turned<AEllipseTracker>({10 + 9 * i, 130, 17 + 9 * i, 137}, 0);
        draw(dc, dot, right, false);
    }
}

/// A source on noise in the colours of the palette.
void fillMap(CPicture& picture, CPoint at, const AArray<COLORREF>& colors)
{
    unsigned state = 7;
    for (int y = 0; y < tileHeight; ++y)
        for (int x = 0; x < tileWidth; ++x) {
            state = state * 1664525u + 1013904223u;
            const double u = (x - 150) / 90.0;
            const double v = (y - 110 + 0.25 * x) / 60.0 - 0.6;
            const double level = std::exp(-u * u - v * v) + 0.06 * ((state >> 8) / 16777216.0);
            const COLORREF c = colors(std::min(truncated(level * 225), 225));
            picture.row(at.y + y)[at.x + x] =
                static_cast<std::uint32_t>(GetRValue(c) << 16 | GetGValue(c) << 8 | GetBValue(c));
        }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || !InitPlatform(argc, argv, PlatformUse::pictures)) {
        std::cerr << "usage: tracker_gallery OUTPUT_FOLDER\n";
        return 1;
    }
    CPicture picture(3 * tileWidth, 2 * tileHeight);
    const auto dc = picture.dc();
    const COLORREF plain[] = {RGB(0, 0, 0), RGB(255, 255, 255), RGB(128, 128, 128)};
    const char* const palettes[] = {"defpal", "heat", "diverging"};
    for (int i = 0; i < 6; ++i) {
        const CPoint at(i % 3 * tileWidth, i / 3 * tileHeight);
        AArray<COLORREF> colors;
        if (i >= 3 && (LoadPalette(palettes[i - 3]) || LoadBuiltInPalette()) &&
            GetGlobalPaletteColors(0, 226, colors) == 226)
            fillMap(picture, at, colors);
        else
            dc->FillSolidRect({at.x, at.y, at.x + tileWidth, at.y + tileHeight}, plain[i % 3]);
        drawTile(*dc, at);
    }
    CString error;
    const int saved = SavePNG(picture, CString(argv[1]) + "/trackers.png", error);
    if (!saved)
        std::cerr << error << '\n';
    ShutdownPlatform();
    return saved ? 0 : 1;
}
