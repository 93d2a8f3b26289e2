// Draws maps in every way that the map graphs know: map_gallery OUTPUT_FOLDER [MAP.fits ...].
// Without a map it draws one of its own.

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/AAxisLevelOP.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/fits_map.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>

using namespace pavane;

namespace
{

/// One map and where its cells lie, in radians of arc as the axis titles want them: arc seconds.
struct Map {
    FitsMap fits;
    TMinMax centres;
    MapBeam beam;
};

/// One picture of the gallery.
struct Picture {
    const char* name;
    enum class Kind { colors, levels, both } kind;
    MapScaleKind scale;
    const char* levels;
    int options;
    int horizontal;
};

constexpr double arcSeconds = 3600;

Map syntheticMap(int columns, int rows, int blank)
{
    Map map;
    map.fits.cells = AMatrix<float>(rows, columns);
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
            map.fits.cells(r, c) =
                blank ? std::nanf("") : static_cast<float>(c < 12 && r < 9 ? std::nan("") : value);
        }
    MapHeader& header = map.fits.header;
    header.bunit = "JY/BEAM";
    header.object = "synthetic jet";
    header.axes.resize(2);
    for (int i = 0; i < 2; ++i) {
        header.axes[static_cast<std::size_t>(i)].crpix = (i ? rows : columns) / 2;
        header.axes[static_cast<std::size_t>(i)].cdelt = (i ? 1 : -1) * 1e-4 / arcSeconds;
    }
    header.hasBeam = 1;
    header.bmaj = 1.4e-3 / arcSeconds;
    header.bmin = 0.7e-3 / arcSeconds;
    header.bpa = 20;
    return map;
}

void placeCells(Map& map)
{
    const MapHeader& header = map.fits.header;
    const auto offset = [&](std::size_t axis, int pixel) {
        return (pixel - header.axes[axis].crpix) * header.axes[axis].cdelt * arcSeconds;
    };
    map.centres.xMin = offset(0, 1);
    map.centres.xMax = offset(0, map.fits.cells.columns());
    map.centres.yMin = offset(1, 1);
    map.centres.yMax = offset(1, map.fits.cells.rows());
    if (header.hasBeam)
        map.beam = {header.bmaj * arcSeconds, header.bmin * arcSeconds, header.bpa};
}

void setUp(ABMapGraph& graph, const Map& map)
{
    graph.setNames("Right ascension [%sas]", "Declination [%sas]",
                   map.fits.header.bunit == "JY/BEAM"
                       ? "Intensity [%sJy/beam]"
                       : "Intensity ~ [" + map.fits.header.bunit + "]");
    graph.setBeam(map.beam);
    CString text = map.fits.header.object;
    if (map.fits.header.frequency > 0)
        text += "   " + valToStr(map.fits.header.frequency * 1e-9, 4) + " GHz";
    if (!map.fits.header.dateObs.empty())
        text += "   " + map.fits.header.dateObs;
    graph.setHeaderText(0, text);
}

/// Lays the axis out with square cells and room for a bar, then draws both.
void compose(CDC& dc, CRect whole, A2DAxis& axis, AAxisScaleBar& bar, const TMinMax& range)
{
    CRect rect = whole;
    const int height = axis.calcFontHeight(dc, rect);
    axis.setFHeight(height);
    bar.setFHeight(height);
    const int breadth = bar.neededBreadth(dc, whole.Height() * 2 / 3) + height;
    if (bar.isHorizontal())
        rect.bottom -= breadth;
    else
        rect.right -= breadth;
    axis.layOut(dc, rect);
    const CRect graph = axis.getGraphRect();
    const double scale = std::min(graph.Width() / std::fabs(range.xMax - range.xMin),
                                  graph.Height() / std::fabs(range.yMax - range.yMin));
    const int width = static_cast<int>(std::fabs(range.xMax - range.xMin) * scale + 0.5);
    const int tall = static_cast<int>(std::fabs(range.yMax - range.yMin) * scale + 0.5);
    const int left = graph.left + (graph.Width() - width) / 2;
    const int top = graph.top + (graph.Height() - tall) / 2;
    axis.setBorderRect(CRect(left, top, rect.right - left - width, rect.bottom - top - tall));
    axis.draw(dc, rect);
    const CRect drawn = axis.getGraphRect();
    CRect place(drawn.right + height, drawn.top, whole.right, drawn.bottom);
    if (bar.isHorizontal())
        place = CRect(drawn.left, drawn.bottom + 4 * height, drawn.right, whole.bottom);
    bar.draw(dc, place);
}

void drawPicture(CDC& dc, const CRect& whole, const Map& map, const Picture& picture)
{
    const AFloatMatrixAccess cells(map.fits.cells);
    A2DAxis axis(-1, 1, nullptr, picture.options);
    ContourLevels levels;
    levels.read(picture.levels);
    std::unique_ptr<AAxisScaleBar> bar;
    ABMapGraph* graph = nullptr;
    if (picture.kind == Picture::Kind::levels) {
        auto* made = new ALevelsGraph(&axis, cells, map.centres, 0);
        made->contours().setLevels(levels);
        bar = std::make_unique<AAxisLevelOP>(*made, picture.horizontal);
        graph = made;
    } else if (picture.kind == Picture::Kind::both) {
        auto* made = new ALevelsColorGraph(&axis, cells, map.centres, 0);
        made->contours().setLevels(levels);
        made->setScale(picture.scale);
        bar = std::make_unique<AAxisColorOP>(*made, picture.horizontal);
        graph = made;
    } else {
        auto* made = new AColorsGraph(&axis, cells, map.centres, 0);
        made->setScale(picture.scale);
        bar = std::make_unique<AAxisColorOP>(*made, picture.horizontal);
        graph = made;
    }
    setUp(*graph, map);
    axis.setNameOX(graph->GetOXName());
    axis.setNameOY(graph->GetOYName());
    TMinMax range;
    graph->getMinMax(range);
    compose(dc, whole, axis, *bar, range);
}

int save(const CString& file, const Map& map, const Picture& picture, int smooth)
{
    CString error;
    CPicture pixels(900, 760);
    const std::unique_ptr<CDC> dc = pixels.dc();
    dc->SetSmooth(smooth);
    drawPicture(*dc, CRect(0, 0, 900, 760), map, picture);
    int saved = SavePNG(pixels, file + ".png", error);
    if (saved && smooth) {
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
    std::vector<Map> maps;
    for (int i = 2; i < argc; ++i) {
        Map map;
        CString error;
        if (readFitsMap(argv[i], -1, map.fits, error))
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
    for (std::size_t i = 0; i < maps.size(); ++i) {
        placeCells(maps[i]);
        for (const Picture& picture : pictures)
            good &= save(CString(argv[1]) + "/map" + std::to_string(i) + "-" + picture.name,
                         maps[i], picture, !(picture.options & axisBitmapMode));
    }
    ShutdownPlatform();
    return good ? 0 : 2;
}
