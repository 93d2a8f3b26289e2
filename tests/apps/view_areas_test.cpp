// Area files as pavane-view opens and saves them, and the texts of its status line.
#include "apps/view/any_area_file.h"
#include "apps/view/status_text.h"
#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/collections/shape_trackers.h"
#include "pavane/trackers/masks/cell_area_file.h"
#include "pavane/trackers/regions/exchange_file.h"
#include "tests/tessel/sin_map.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr int rows = 40, columns = 60;

/// A map whose x falls with the column, 0.5 a cell, its cell (row 10, column 20) at (0, 0).
AreaPlace somewhere()
{
    AreaPlace place;
    place.range.xMin = 10;
    place.range.xMax = 10 - 0.5 * (columns - 1);
    place.range.yMin = -5;
    place.range.yMax = -5 + 0.5 * (rows - 1);
    place.rows = rows;
    place.columns = columns;
    return place;
}

void addFour(ARPTrackerArray& areas)
{
    auto* const rect = new ARPRectTracker;
    rect->SetRect({8, 3, 4, -2});
    auto* const turned = new ARPRotateRectTracker;
    turned->SetRect({2, 1, -4, 5});
    turned->SetAngle(0.4);
    auto* const ellipse = new ARPEllipseTracker;
    ellipse->SetRect({-8, 2, -15, 9});
    ellipse->SetAngle(-0.7);
    auto* const polygon = new ARPAreaTracker;
    for (const APoint<double> point : {APoint<double>{5, 8}, {-2.2, 13.9}, {9.4, 12}, {7, 10.1}})
        polygon->points().Add(point);
    polygon->SetStyle(polygon->GetStyle() | trackerReady);
    for (ABTracker* tracker : {static_cast<ABTracker*>(rect), static_cast<ABTracker*>(turned),
                               static_cast<ABTracker*>(ellipse), static_cast<ABTracker*>(polygon)})
        areas.Add(tracker);
}

ABitMatrix maskOf(ARPTrackerArray& areas)
{
    ABitMatrix mask(rows, columns);
    areas.FillMatrix(mask, columns, rows, somewhere().range);
    return mask;
}

int differing(const ABitMatrix& a, const ABitMatrix& b)
{
    int count = 0;
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            count += a.get(r, c) != b.get(r, c);
    return count;
}

std::string fileOf(const std::string& name) { return testing::TempDir() + "areas-" + name; }

std::string contents(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

}  // namespace

TEST(AreaFiles, EveryFormatBringsBackTheSameMask)
{
    ARPTrackerArray areas;
    addFour(areas);
    const ABitMatrix wanted = maskOf(areas);
    ASSERT_GT(wanted.count(), 300);
    const struct {
        const char* name;
        int loses;
    } cases[] = {{"a.areas", 0}, {"a.cma", 1}, {"a.reg", 0}, {"A.CRTF", 0}, {"plain", 0}};
    for (const auto& c : cases) {
        const std::string file = fileOf(c.name);
        std::string error;
        EXPECT_EQ(!lossesOfSaving(file, somewhere(), areas).lines.empty(), c.loses) << c.name;
        ASSERT_TRUE(saveAreas(file, somewhere(), areas, error)) << error;
        // other names are told by what is in the file
        fs::copy_file(file, fileOf("odd.name"), fs::copy_options::overwrite_existing);
        for (const std::string& from : {file, fileOf("odd.name")}) {
            ARPTrackerArray read;
            AreaNotes notes;
            ASSERT_TRUE(openAreas(from, somewhere(), read, notes, error)) << c.name << error;
            EXPECT_EQ(notes.read, 4) << c.name;
            EXPECT_EQ(notes.promised, 4) << c.name;
            EXPECT_TRUE(notes.lines.empty()) << c.name << notes.lines.front();
            EXPECT_EQ(differing(maskOf(read), wanted), 0) << c.name;
        }
    }
}

TEST(AreaFiles, KeepEveryCellOfEveryShapeTurnAndDirection)
{
    const MapHeader header = sinMap(187.7, 12.4, 2e-8);
    SkyCoordinates sky;
    std::string error;
    ASSERT_TRUE(sky.init(header, error)) << error;
    const struct {
        const char* name;
        double stepX, stepY;
        int onSky;
    } maps[] = {{"x falls", -0.5, 0.5, 0},
                {"x grows", 0.5, 0.5, 0},
                {"rows down", -0.5, -0.5, 0},
                {"oblong", -0.5, 0.2, 0},
                {"sky", -0.5, 0.5, 1}};
    for (const auto& m : maps)
        for (int turn = 0; turn < 48; ++turn) {
            AreaPlace place = somewhere();
            place.range.xMax = place.range.xMin + m.stepX * (columns - 1);
            place.range.yMax = place.range.yMin + m.stepY * (rows - 1);
            place.sky = &sky;
            place.skyRegions = m.onSky;
            // as drawn to any side: left is below right, top above bottom or not
            const double x = place.range.xMin + m.stepX * (28.13 + turn % 5 * 0.21);
            const double y = place.range.yMin + m.stepY * (19.38 + turn % 7 * 0.17);
            const double half = std::copysign(3.1, turn % 2 ? 1 : -1);
            auto* const box = new ARPRotateRectTracker;
            box->SetRect({x - 6.2, y - half, x + 6.2, y + half});
            box->SetAngle(turn * 0.1309);
            auto* const ellipse = new ARPEllipseTracker;
            ellipse->SetRect({x - 2.2, y - half, x + 2.2, y + half});
            ellipse->SetAngle(turn * 0.1309);
            for (ABTracker* shape :
                 {static_cast<ABTracker*>(box), static_cast<ABTracker*>(ellipse)}) {
                ARPTrackerArray areas;
                areas.Add(shape);
                ABitMatrix wanted(rows, columns);
                areas.FillMatrix(wanted, columns, rows, place.range);
                RegionNotes notes;
                const std::string byShapes = fileOf("shapes.cma");
                const auto shapes =
                    shapesOf(areas, AMnMxMCTransform(place.range, rows, columns), notes);
                ASSERT_TRUE(writeAreaShapes(byShapes, AreaFileFormat::cells, shapes,
                                            RegionSystem::image, nullptr, notes, error));
                for (const char* name : {"t.areas", "t.cma", "t.reg", "t.crtf", "shapes.cma"}) {
                    ARPTrackerArray read;
                    AreaNotes ignored;
                    ABitMatrix mask(rows, columns);
                    if (fileOf(name) == byShapes) {
                        if (std::fabs(m.stepX) != std::fabs(m.stepY) && shape == ellipse)
                            continue;  // its points go round evenly in values, not in cells
                    } else {
                        ASSERT_TRUE(saveAreas(fileOf(name), place, areas, error)) << error;
                    }
                    ASSERT_TRUE(openAreas(fileOf(name), place, read, ignored, error)) << error;
                    read.FillMatrix(mask, columns, rows, place.range);
                    EXPECT_EQ(differing(mask, wanted), 0)
                        << m.name << ' ' << name << (shape == box ? " box " : " ellipse ") << turn;
                }
            }
        }
}

TEST(AreaFiles, NoCutIsTakenForAWholeFile)
{
    ARPTrackerArray areas;
    addFour(areas);
    for (const char* name : {"cut.areas", "cut.cma", "cut.reg", "cut.crtf"}) {
        const std::string file = fileOf(name);
        std::string error;
        ASSERT_TRUE(saveAreas(file, somewhere(), areas, error)) << error;
        const std::string bytes = contents(file);
        const int isText = bytes[0] == '#';
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const std::string part = bytes.substr(0, size);
            std::ofstream(file, std::ios::binary) << part;
            ARPTrackerArray read;
            AreaNotes notes;
            if (!openAreas(file, somewhere(), read, notes, error)) {
                EXPECT_NE(error.find(name), std::string::npos) << error;
                EXPECT_EQ(read.count(), 0);
                continue;
            }
            EXPECT_EQ(read.count(), notes.read) << name << size;
            // the first line of a text alone is that of a text without areas; its last end is none
            const int isWhole =
                isText && (size == bytes.find('\n') + 1 || size + 1 == bytes.size());
            EXPECT_EQ(notes.loss.empty(), isWhole) << name << ' ' << size << ' ' << notes.loss;
            EXPECT_TRUE(isWhole || notes.read < notes.promised) << name << size;
        }
    }
}

TEST(AreaFiles, ContentDecidesNotTheName)
{
    ARPTrackerArray areas, none;
    addFour(areas);
    std::string error;
    const char* const endings[] = {"areas", "cma", "reg", "crtf", "txt"};
    for (const ARPTrackerArray* held : {&areas, &none})
        for (const std::string is : {"areas", "cma", "reg", "crtf"})
            for (const std::string named : endings) {
                const std::string file = fileOf("x." + named);
                ASSERT_TRUE(saveAreas(fileOf("y." + is), somewhere(), *held, error)) << error;
                fs::copy_file(fileOf("y." + is), file, fs::copy_options::overwrite_existing);
                if (is == "cma" && named == "areas" && !held->count())
                    continue;  // four zero bytes: the beginning of a collection as well
                ARPTrackerArray read;
                AreaNotes notes;
                const int opened = openAreas(file, somewhere(), read, notes, error);
                EXPECT_TRUE(opened && notes.loss.empty() && read.count() == held->count())
                    << is << " as " << named << ' ' << held->count() << error << notes.loss;
            }
}

TEST(AreaFiles, OnlyAFileThatSaysSoHoldsNone)
{
    using namespace std::string_literals;
    const struct {
        const char* name;
        std::string bytes;
        const char* told;  ///< of what is missing; "" where nothing is
    } cases[] = {
        {"n.reg", "", "is empty"},
        {"n.reg", "# Region file format: DS9 version 4.1\nglobal color=red\nfk5\n", ""},
        {"n.reg", "\xef\xbb\xbf# Region file format: DS9\r\n# a (note)\r\n", ""},
        {"n.reg", "# Region file format: DS9 version 4", "no area"},
        {"n.reg", "image\n", "no area"},
        {"n.reg", "image\ncircle(3,3,2)", ""},
        {"n.reg", "image\ncircle 3 3 2", "may be cut"},
        {"n.reg", "image\ncircle(3,3,2)\npoint(1,1)\n", "1 of 2 areas"},
        {"n.reg", "hello\n", "not a region file"},
        {"n.reg", "# Region file format: DS9\n# 3 areas\nimage\ncircle(3,3,2)\n", "1 of 3 areas"},
        {"n.reg", "# Region file format: DS9\n# 1 area\nimage\ncircle(3,3,2)\ncircle(9,9,2)\n", ""},
        {"n.reg", "# Region file format: DS9\nimage", "no area"},
        {"n.crtf", "", "#CRTF"},
        {"n.crtf", "#CRTFv0\n", ""},
        {"n.crtf", "#CRTFv0\ncircle[[3pix, 3pix], 2pix]", ""},
        {"n.crtf", "#CRTFv0\ncircle[[3deg, 3deg], 2deg], coo", "may be cut"},
        {"n.crtf", "circle[[3pix, 3pix], 2pix]\n", "#CRTF"},
        {"n.areas", "\xff\xff\xff\xff\0\0\0\0"s, ""},
        {"n.areas", "\xff\xff\xff\xff\0\0\0\0x"s, "0 of 0 areas can be used: 1 byte"},
        {"n.areas", "\xff\xff\xff\xff\xff\xff\xff\xff"s, "is -1"},
        {"n.areas", "\0\0\0\0"s, "before the number"},
        {"n.cma", "\0\0\0\0"s, ""},
        {"n.cma", "\2\0\0\0\0\0\0\0"s, "0 of 2 areas"},
    };
    for (const auto& c : cases) {
        std::ofstream(fileOf(c.name), std::ios::binary) << c.bytes;
        ARPTrackerArray read;
        AreaNotes notes;
        std::string error;
        const int opened = openAreas(fileOf(c.name), somewhere(), read, notes, error);
        const std::string told = !opened              ? error
                                 : notes.loss.empty() ? std::string()
                                                      : notes.lossText();
        EXPECT_TRUE(*c.told ? told.find(c.told) != std::string::npos : told.empty())
            << c.name << ' ' << c.bytes << ": " << told;
    }
}

TEST(AreaFiles, UnknownClassesAreNamed)
{
    ARPTrackerArray areas;
    addFour(areas);
    std::string error;
    const std::string damaged = fileOf("damaged.areas");
    ASSERT_TRUE(saveAreas(damaged, somewhere(), areas, error)) << error;
    std::string odd = contents(damaged);
    odd.replace(odd.find("ARPEllipseTracker"), 4, "Star");
    std::ofstream(damaged, std::ios::binary) << odd;
    ARPTrackerArray read;
    AreaNotes notes;
    ASSERT_TRUE(openAreas(damaged, somewhere(), read, notes, error)) << error;
    EXPECT_EQ(notes.read, 2);
    EXPECT_NE(notes.lossText().find("2 of 4 areas can be used: area 3"), std::string::npos);

    for (const char* name : {"no.areas", "no.cma", "no.reg", "no.crtf", "no"}) {
        ARPTrackerArray none;
        EXPECT_FALSE(openAreas(fileOf(name), somewhere(), none, notes, error)) << name;
        EXPECT_NE(error.find(name), std::string::npos) << error;
    }
    EXPECT_FALSE(saveAreas("/nowhere/a.areas", somewhere(), areas, error));
    EXPECT_NE(error.find("/nowhere/a.areas"), std::string::npos);
}

TEST(MaskSum, LeavesOutBlankCellsAndThoseOutside)
{
    AMatrix<float> cells(2, 70);  // more than a word of the mask
    ABitMatrix mask(2, 70);
    cells.fill(1000);
    const struct {
        int row, column, inside;
        float value;
    } marked[] = {{0, 0, 1, 1},   {0, 63, 1, 2},         {0, 64, 1, 4},  {1, 69, 1, 8},
                  {1, 3, 1, NAN}, {1, 65, 1, -INFINITY}, {0, 69, 0, 16}, {1, 4, 0, INFINITY}};
    for (const auto& m : marked) {
        cells(m.row, m.column) = m.value;
        if (m.inside)
            mask.set(m.row, m.column);
    }
    EXPECT_EQ(sumInside(AFloatMatrixAccess(cells), &mask), 15);
}

TEST(StatusText, GivesWayInWholePanes)
{
    const StatusWidths all = {110, 120, 230, 140, 170};
    EXPECT_EQ(fittingPanes(all, 770), all);
    EXPECT_EQ(fittingPanes(all, 769), (StatusWidths{110, 120, 230, 0, 170}));
    EXPECT_EQ(fittingPanes(all, 400), (StatusWidths{110, 120, 0, 0, 170}));
    EXPECT_EQ(fittingPanes(all, 170), (StatusWidths{0, 0, 0, 0, 170}));
    EXPECT_EQ(fittingPanes(all, 0), StatusWidths());
}

TEST(StatusText, HasDigitsForATenthOfACellAndPrefixes)
{
    MapHeader header;
    header.axes = {{512, "RA---SIN", "deg", 187.7059308, 256, -2e-9, 0},
                   {512, "DEC--SIN", "deg", -0.5, 257, 2e-9, 0}};
    header.hasCelestialAxes = 1;
    header.equinox = 2000;
    std::copy_n(&std::array<double, 4>{-2e-9, 0, 0, 2e-9}[0], 4, &header.cd[0][0]);
    header.bunit = "JY/BEAM";
    const MapFrame frame = frameOf(header, 512, 512);
    const StatusFormat format(header, frame, 512, 512);
    SkyCoordinates sky;
    std::string error;
    ASSERT_TRUE(sky.init(header, error)) << error;
    AxisStatus status;
    EXPECT_EQ(format.texts(status, sky), StatusTexts());
    status.inPlot = status.inMap = status.hasAreas = 1;
    status.row = 256;
    status.column = 255;
    status.value = 0.0123456f;
    status.cells = 1234567;
    status.sum = -2;
    const StatusTexts texts = format.texts(status, sky);
    EXPECT_EQ(texts[statusValue], "12.35 mJy/beam");
    EXPECT_EQ(texts[statusOffset], "0.0000, 0.0000 mas");
    EXPECT_EQ(texts[statusSky], "12:30:49.42339200  -00:30:00.0000000  J2000");
    EXPECT_EQ(texts[statusCell], "pixel 256, 257");
    EXPECT_EQ(texts[statusMask], "1\u202f234\u202f567 cells,  -2 JY/BEAM*cell");
    status.value = std::nanf("");
    EXPECT_EQ(format.texts(status, SkyCoordinates())[statusValue], "blank");
    EXPECT_EQ(format.texts(status, SkyCoordinates())[statusSky], "");
    const struct {
        const char *x, *y;
        double equinox;
        const char* text;
    } frames[] = {
        {"RA---SIN", "DEC--SIN", 1950, "12:30:49.42339200  -00:30:00.0000000  B1950"},
        {"RA---SIN", "DEC--SIN", 0, "12:30:49.42339200  -00:30:00.0000000  ICRS"},
        {"RA---SIN", "DEC--SIN", 2010.5, "12:30:49.42339200  -00:30:00.0000000  J2010.5"},
        {"GLON-SIN", "GLAT-SIN", 2000, "l 187.705930800\u00b0  b -0.500000000\u00b0  galactic"},
        {"ELON-SIN", "ELAT-SIN", 2000,
         "\u03bb 187.705930800\u00b0  \u03b2 -0.500000000\u00b0  ecliptic"},
    };
    for (const auto& f : frames) {
        header.axes[0].ctype = f.x;
        header.axes[1].ctype = f.y;
        header.equinox = f.equinox;
        ASSERT_TRUE(sky.init(header, error)) << error;
        EXPECT_EQ(format.texts(status, sky)[statusSky], f.text);
    }
}

}  // namespace pavane
