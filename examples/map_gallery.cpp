// Draws maps in every way that the map graphs know: map_gallery OUTPUT_FOLDER [MAP.fits ...].
// Without a map it draws one of its own.

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/AAxisLevelOP.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapFigure.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <cmath>
#include <iostream>
#include <memory>

using namespace pavane;

namespace
{

/// One picture of the gallery.
struct Picture {
    const char* name;
    enum class Kind { colors, levels, both } kind;
    MapScaleKind scale;
    const char* levels;
    int options;
    int horizontal;
};

constexpr double arcseconds = 3600;  // in a degree

MapContent syntheticMap(int columns, int rows, int blank)
{
    MapContent content;
    FitsMap& map = content.map;
    map.cells = AMatrix<float>(rows, columns);
    unsigned state = 1;
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            double value = 0;
            for (int i = 0; i < 12; ++i) {
                state = state * 1664525u + 1013904223u;
                value += (state >> 8) / 16777216.0 - 0.5;
            }
            value *= 0.001;
            for (int k = 0; k < 5; ++k) {
                const double x = (c - columns * (0.5 + 0.06 * k)) / (4 + 2 * k);
                const double y = (r - rows * (0.5 + 0.04 * k)) / (4 + 2 * k);
                value += std::exp(-0.5 * (x * x + y * y)) / (1 + 4 * k);
            }
            map.cells(r, c) =
                blank ? std::nanf("") : static_cast<float>(c < 12 && r < 9 ? std::nan("") : value);
        }
    MapHeader& header = map.header;
    header.bunit = "JY/BEAM";
    header.object = "synthetic jet";
    header.axes.resize(2);
    for (int i = 0; i < 2; ++i) {
        MapAxis& axis = header.axes[static_cast<std::size_t>(i)];
        axis.ctype = i ? "DEC--SIN" : "RA---SIN";
        axis.crpix = (i ? rows : columns) / 2;
        header.cd[i][i] = axis.cdelt = (i ? 1 : -1) * 1e-4 / arcseconds;
    }
    header.hasCelestialAxes = 1;
    header.hasBeam = 1;
    header.bmaj = 1.4e-3 / arcseconds;
    header.bmin = 0.7e-3 / arcseconds;
    header.bpa = 20;
    const AFloatMatrixAccess cells(map.cells);
    content.frame = frameOf(header, rows, columns);
    content.range = mapRange(cells);
    content.noise = mapNoise(cells);
    return content;
}

void drawPicture(CDC& dc, const CRect& whole, const MapContent& map, const Picture& picture)
{
    const AFloatMatrixAccess cells(map.map.cells);
    A2DAxis axis(-1, 1, nullptr, picture.options);
    ContourLevels levels;
    levels.read(picture.levels);
    std::unique_ptr<AAxisScaleBar> bar;
    ABMapGraph* graph = nullptr;
    if (picture.kind == Picture::Kind::levels) {
        auto* made = new ALevelsGraph(&axis, cells, map.frame.centres(), 0);
        made->contours().setLevels(levels);
        bar = std::make_unique<AAxisLevelOP>(*made, picture.horizontal);
        graph = made;
    } else if (picture.kind == Picture::Kind::both) {
        auto* made = new ALevelsColorGraph(&axis, cells, map.frame.centres(), 0);
        made->contours().setLevels(levels);
        made->setScale(picture.scale);
        bar = std::make_unique<AAxisColorOP>(*made, picture.horizontal);
        graph = made;
    } else {
        auto* made = new AColorsGraph(&axis, cells, map.frame.centres(), 0);
        made->setScale(picture.scale);
        bar = std::make_unique<AAxisColorOP>(*made, picture.horizontal);
        graph = made;
    }
    describeMap(axis, *graph, map.frame, mapHeaderLine(map.map.header, map.range, map.noise));
    MapFigure figure;
    figure.setAxis(&axis);
    figure.setMap(graph);
    figure.setBar(bar.get());
    figure.draw(dc, figure.layOut(dc, whole));
}

int save(const CString& file, const MapContent& map, const Picture& picture)
{
    CString error;
    CPicture pixels(900, 760);
    const std::unique_ptr<CDC> dc = pixels.dc();
    drawPicture(*dc, CRect(0, 0, 900, 760), map, picture);
    int saved = SavePNG(pixels, file + ".png", error);
    if (saved && !(picture.options & axisBitmapMode)) {
        constexpr int unit = 12;
        CPageFile page(CPageFile::Format::pdf, 900, 760, picture.name, unit);
        drawPicture(page.dc(), CRect(0, 0, 900 * unit, 760 * unit), map, picture);
        saved = page.Close(file + ".pdf", error);
    }
    if (!saved)
        std::cerr << error << "\n";
    return saved;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || !InitPlatform(argc, argv, PlatformUse::pictures)) {
        std::cerr << "usage: map_gallery OUTPUT_FOLDER [MAP.fits ...]\n";
        return 1;
    }
    using Kind = Picture::Kind;
    using Scale = MapScaleKind;
    const Picture pictures[] = {
        {"linear", Kind::colors, Scale::linear, "", 0, 0},
        {"sqrt", Kind::colors, Scale::squareRoot, "", 0, 0},
        {"log", Kind::both, Scale::logarithmic, "sigma:-3,3,12,48,192,768", 0, 0},
        {"equal", Kind::colors, Scale::equalized, "", 0, 0},
        {"levels", Kind::levels, Scale::linear, "", 0, 0},
        {"peak", Kind::both, Scale::squareRoot, "peak:-0.5,0.5,1,2,4,8,16,32,64", 0, 1},
        {"raster", Kind::both, Scale::squareRoot, "sigma:-3,3,9,27", axisBitmapMode, 0},
    };
    std::vector<MapContent> maps;
    for (int i = 2; i < argc; ++i) {
        MapContent map;
        CString error;
        if (readMapContent(argv[i], -1, map, error))
            maps.push_back(std::move(map));
        else
            std::cerr << argv[i] << ": " << error << "\n";
    }
    if (maps.empty()) {
        maps.push_back(syntheticMap(160, 120, 0));
        maps.push_back(syntheticMap(20, 1, 0));
        maps.push_back(syntheticMap(30, 20, 1));
    }
    int good = 1;
    for (std::size_t i = 0; i < maps.size(); ++i)
        for (const Picture& picture : pictures)
            good &= save(CString(argv[1]) + "/map" + std::to_string(i) + "-" + picture.name,
                         maps[i], picture);
    ShutdownPlatform();
    return good ? 0 : 2;
}
