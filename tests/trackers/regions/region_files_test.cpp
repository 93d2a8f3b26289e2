#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/exchange_file.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_values.h"
#include "tests/trackers/shapes/region_shapes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <unistd.h>

using namespace pavane;

namespace
{

struct Parsed {
    std::vector<AreaShape> shapes;
    RegionNotes notes;
};

Parsed ds9(const std::string& text)
{
    Parsed p;
    parseDs9Regions(text, nullptr, p.shapes, p.notes);
    return p;
}

Parsed crtf(const std::string& text)
{
    Parsed p;
    parseCrtfRegions(text, nullptr, p.shapes, p.notes);
    return p;
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

class RegionFiles : public testing::Test
{
protected:
    ~RegionFiles() override { std::remove(name_.c_str()); }
    void write(const std::string& text)
    {
        AFile out(name_, AFile::writeOnly | AFile::create);
        EXPECT_TRUE(out.write(text.data(), static_cast<std::int64_t>(text.size())) && out.close());
    }
    std::string name_ = testing::TempDir() + "regions-" + std::to_string(::getpid());
    std::string error_;
};

}  // namespace

TEST(Ds9Regions, CountImagePixelsFromOneAndTurnCounterClockwise)
{
    const char* const cases[][2] = {
        {"image\nbox(11,21,4,2,0)", "rect 10 20 4 2\n"},
        {"image; box(11,21,4,2)", "rect 10 20 4 2\n"},
        {"image\nbox 11 21 4 2 90", "rect 10 20 2 4\n"},
        {"image\nBOX( 11, 21, 4, 2, 30 ) # color=red", "box 10 20 4 2 30\n"},
        {"image\ncircle(1,1,2.5)", "ellipse 0 0 5 5 0\n"},
        {"image\nellipse(11,21,4,2,-45)", "ellipse 10 20 8 4 -45\n"},
        {"image\npolygon(1,1,5,1,5,6)\r\n", "poly 0 0 4 0 4 5\n"},
        {"image\n+circle(1,1,1);circle(2,2,2)\n", "ellipse 0 0 2 2 0\nellipse 1 1 4 4 0\n"},
        {"circle(3i,4i,5i)", "ellipse 2 3 10 10 0\n"},
        {"rotbox(11,21,4,2,30)", "box 10 20 4 2 30\n"},
        {"supergalactic\ncircle(9,9,1)\nimage;circle(1,1,1)\n", "ellipse 0 0 2 2 0\n"},
        {"circle(9,9,4)-circle(9,9,2)\ncircle(1,1,1) && box(1,1,2,2,0)", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(asText(ds9(c[0]).shapes), c[1]) << c[0];
}

TEST(Ds9Regions, ListWhatIsNotTaken)
{
    const Parsed p =
        ds9("# Region file format: DS9 version 4.1\nglobal color=green include=1\nimage\n"
            "-circle(5,5,2)\nannulus(5,5,1,2)\n# text(4,4) text={Region}\n"
            "ellipse(5,5,1,2,3,4,0)\ncircle(5,5,2) # include=0 color=red tag={a}\n"
            "detector\ncircle(5,5,2)\nfk5\ncircle(5,5,2\")\nblob(1,2)\nimage\n"
            "circle(5,nan,2)\nbox(1,2,3\ncircle(1,2,-3)\npolygon(1,2,3,4,5)\n"
            "# composite(5,5,0) || composite=1\ncircle(2,2,1) || # color=red\n"
            "image;box(2,2,1,1)\ncircle(1,1,1) || circle(2,2,2) || # composite=1\n"
            "!circle(3,3,1)\ntext(4,4) # text={a;b}\ncircle(9,9,1)\n");
    EXPECT_EQ(asText(p.shapes), "ellipse 4 4 4 4 0\nellipse 4 4 4 4 0\nellipse 2 2 2 2 0\n"
                                "ellipse 8 8 2 2 0\n");
    EXPECT_EQ(joined(p.notes.lines),
              "line 5: annulus is not a shape of areas; left out\n"
              "line 7: a ring of ellipse shape is not a shape of areas; left out\n"
              "tags, fonts, lines and other properties are not kept\n"
              "line 10: positions in detector are not supported; left out\n"
              "line 12: the map has no sky coordinates that can be used; left out\n"
              "line 13: \"blob(1,2)\" is not understood\n"
              "line 15: \"nan\" is not a position\n"
              "line 16: \"box(1,2,3\" has no closing parenthesis\n"
              "line 17: the shape has no size or lies too far away\n"
              "line 18: polygon with 5 numbers\n"
              "line 19: a composite of areas cannot be held; left out\n"
              "line 22: a composite of areas cannot be held; left out\n");
    EXPECT_EQ(neverOnes(p.shapes), "1110");
    EXPECT_EQ(p.notes.leftOut, 6);
    EXPECT_EQ(p.notes.damaged, 5);
    const Parsed excluded = ds9(
        "global include=0\nglobal color=red\nglobal coordsys image\ncircle(1,1,1)\n+circle(3,3,1)\n"
        "circle(4,4,1) # include=1\nglobal include=1\ncircle(5,5,1)\n");
    EXPECT_EQ(asText(excluded.shapes),
              "ellipse 0 0 2 2 0\nellipse 2 2 2 2 0\nellipse 3 3 2 2 0\nellipse 4 4 2 2 0\n");
    EXPECT_EQ(neverOnes(excluded.shapes), "1000");
    EXPECT_EQ(excluded.notes.leftOut, 0);
}

TEST(RegionLabels, AreTakenAndNothingElseIs)
{
    struct Case {
        int isCrtf;
        const char* tail;
        const char* name;
        std::int32_t colour;
    };
    for (const Case& c : std::initializer_list<Case>{
             {0, " # color=red text={knot A}", "knot A", 0xFF0000},
             {0, " # text={a} b} color=#0Af", "a", 0x00AAFF},
             {0, " # text=\"it's {A}\" color = Blue width=2", "it's {A}", 0x0000FF},
             {0, " # text='x' tag={color=red}", "x", -1},
             {0, " # text={never closed color=red", "never closed color=red", -1},
             {0, " # color=#12345 text={ }", "", -1},
             {0, " # text=", "", -1},
             {0, " # color", "", -1},
             {1, ", color=#2ee6d6, label=\"a, [b] = c\"", "a, [b] = c", 0x2EE6D6},
             {1, " label='it \"is\"', color=magenta", "it \"is\"", 0xFF00FF},
             {1, ", label=knot, range=[1GHz, 2GHz]", "knot", -1}}) {
        SCOPED_TRACE(c.tail);
        const Parsed p =
            c.isCrtf ? crtf(std::string("circle[[9pix, 9pix], 3pix]") + c.tail + "\n")
                     : ds9(std::string("image\ncircle(9,9,3)") + c.tail + "\ncircle(1,1,1)\n");
        ASSERT_EQ(p.shapes.size(), c.isCrtf ? 1u : 2u);
        EXPECT_EQ(p.shapes[0].label, (AreaLabel{c.name, c.colour}));
        EXPECT_TRUE(p.shapes.back().label.isEmpty() || c.isCrtf);
    }
}

TEST(CrtfRegions, CountPixelsFromZeroAndTurnEllipsesFromNorth)
{
    const char* const cases[][2] = {
        {"box[[1pix, 2pix], [5pix, 4pix]]", "rect 3 3 4 2\n"},
        {"box [[5pix,4pix],[1pix,2pix]], coord=J2000, label=\"a ] = b\"", "rect 3 3 4 2\n"},
        {"centerbox[[10pix, 20pix], [4pix, 2pix]]", "rect 10 20 4 2\n"},
        {"+rotbox[[10pix, 20pix], [4pix, 2pix], 30deg] color=red", "box 10 20 4 2 30\n"},
        {"circle[[10pix, 20pix], 3pix]", "ellipse 10 20 6 6 90\n"},
        {"ellipse[[10pix, 20pix], [4pix, 2pix], 0deg]", "ellipse 10 20 8 4 90\n"},
        {"ellipse[[10pix, 20pix], [4pix, 2pix], 0.5235987755982988rad]", "ellipse 10 20 8 4 120\n"},
        {"poly[[0pix, 0pix], [4pix, 0pix], [4pix, 5pix]]", "poly 0 0 4 0 4 5\n"},
        {"text[[1pix, 2pix], 'a'] coord=IMAGE", ""},
        {"rotbox[[40.1deg, 25.2], [14.0deg, 6.0arcsec], 33.0deg] coord=IMAGE",
         "box 40.1 25.2 14 6 33\n"},
        {"circle[[0.5pix, -2e0rad], 3deg] coord=Image", "ellipse 0.5 -2 6 6 90\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(asText(crtf(c[0]).shapes), c[1]) << c[0];
    const Parsed p = crtf("#CRTFv0\nglobal coord=AZEL, corr=[I, Q], color=blue\n"
                          "ann circle[[1pix, 2pix], 3pix]\n-circle[[1pix, 2pix], 3pix]\n"
                          "annulus[[1pix, 2pix], [3pix, 4pix]]\ncircle[[1deg, 2deg], 3arcsec]\n"
                          "circle[[1deg, 2deg], 3arcsec], coord='ICRS'\ncircle[[1, 2pix], 3pix]\n"
                          "circle[[[1pix], 2pix], 3pix]\npoly[[1pix, 2pix], [3pix\n"
                          "ellipse[[1pix, 2pix], [3pix, 4pix], 5pix]\n"
                          "circle[[1pix, 2pix], 3pix] range=[1GHz, 2GHz]\n");
    EXPECT_EQ(asText(p.shapes), "ellipse 1 2 6 6 90\nellipse 1 2 6 6 90\n");
    EXPECT_EQ(neverOnes(p.shapes), "10");
    EXPECT_EQ(joined(p.notes.lines),
              "ranges of channels and polarisations are not kept\n"
              "fonts, lines and other properties are not kept\n"
              "line 5: annulus is not a shape of areas; left out\n"
              "excluded regions are taken off all others, also off those that come after them\n"
              "line 6: positions in azel are not supported; left out\n"
              "line 7: the map has no sky coordinates that can be used; left out\n"
              "line 8: \"1\" is not a number with a unit\n"
              "line 9: \"circle[[[1pix], 2pix], 3pix]\" has brackets that do not close\n"
              "line 10: \"poly[[1pix, 2pix], [3pix\" has brackets that do not close\n"
              "line 11: \"5pix\" is not an angle\n");
}

TEST(RegionValues, ReadSexagesimalAnglesAndWriteNumbersWithoutExponents)
{
    const char* const texts[] = {"12:29:60.0", "12h30m",      "12h36s",   "12d30m36s",
                                 "12:30:36",   "-00:30:00.0", "-0d0m36s", "-001.54.24.5"};
    const double angles[] = {187.5, 187.5, 180.15, 12.51, 12.51, -0.5, -0.01, -1.90680555555555556};
    for (int i = 0; i < 8; ++i) {
        double degrees = 0;
        EXPECT_TRUE(readSexagesimal(texts[i], i < 4, degrees)) << texts[i];
        EXPECT_NEAR(degrees, angles[i], 1e-13) << texts[i];
    }
    for (const char* bad :
         {"", "-", "12", "1:60:0", "1:2:3:4", "1:-2:3", "h", "1m2s", "12h5", "1.2", "::"}) {
        double degrees = 0;
        EXPECT_FALSE(readSexagesimal(bad, 1, degrees)) << bad;
    }
    const double numbers[] = {1.5e-7, -2e20, 0, -1.25e-5, 0.1, 123456789012345678.0};
    const char* const written[] = {"0.00000015", "-200000000000000000000", "0", "-0.0000125",
                                   "0.1",        "123456789012345680"};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(plainNumber(numbers[i]), written[i]);
}

TEST_F(RegionFiles, BringAThousandRandomAreasBack)
{
    const std::vector<AreaShape> shapes = randomShapes(1000, 5);
    for (const AreaFileFormat format : {AreaFileFormat::ds9, AreaFileFormat::crtf}) {
        RegionNotes notes;
        std::vector<AreaShape> back;
        const std::string file = name_ + (format == AreaFileFormat::ds9 ? ".reg" : ".crtf");
        ASSERT_TRUE(
            writeAreaShapes(file, format, shapes, RegionSystem::image, nullptr, notes, error_));
        ASSERT_TRUE(readAreaShapes(file, nullptr, back, notes, error_)) << error_;
        std::filesystem::remove(file);
        EXPECT_TRUE(notes.lines.empty()) << notes.lines[0];
        ASSERT_EQ(back.size(), shapes.size());
        EXPECT_LT(worstOutline(shapes, back), 1e-9);
        for (std::size_t i = 0; i < shapes.size(); ++i)
            EXPECT_EQ(back[i].kind, shapes[i].kind);
    }
}

TEST_F(RegionFiles, HoldNeverCleanAreasAsExcludedOnesButPolygonsOfCellsDoNot)
{
    std::vector<AreaShape> shapes = randomShapes(40, 6);
    for (std::size_t i = 0; i < shapes.size(); i += 3)
        shapes[i].isNeverClean = 1;
    RegionNotes notes;
    std::vector<AreaShape> back;
    EXPECT_EQ(ds9RegionText({shapes[0]}, RegionSystem::image, nullptr, notes).find("\n-"), 52U);
    ASSERT_TRUE(writeAreaShapes(name_, AreaFileFormat::ds9, shapes, RegionSystem::image, nullptr,
                                notes, error_));
    ASSERT_TRUE(readDs9Regions(name_, nullptr, back, notes, error_));
    EXPECT_TRUE(notes.lines.empty());
    EXPECT_EQ(neverOnes(back), neverOnes(shapes));
    ASSERT_TRUE(writeAreaShapes(name_, AreaFileFormat::crtf, shapes, RegionSystem::image, nullptr,
                                notes, error_));
    ASSERT_TRUE(readAreaShapes(name_, nullptr, back, notes, error_));
    EXPECT_TRUE(notes.lines.empty());
    // last, since others take such files line by line
    EXPECT_EQ(neverOnes(back), std::string(26, '0') + std::string(14, '1'));
    ASSERT_TRUE(writeAreaShapes(name_, AreaFileFormat::cells, {shapes[0], shapes[1]},
                                RegionSystem::image, nullptr, notes, error_));
    EXPECT_EQ(notes.firstLoss, "area 1: is never cleaned, which the file cannot say; left out, so "
                               "that its cells are cleaned");
    ASSERT_TRUE(readAreaShapes(name_, nullptr, back, notes, error_));
    EXPECT_EQ(neverOnes(back), "0");
    // as DS9, CARTA and CASA write them
    const Parsed fromDs9 = ds9("# Region file format: DS9 version 4.1\nglobal color=green "
                               "dashlist=8 3 width=1 select=1 include=1 source=1\nimage\n"
                               "circle(101,101,20)\n-ellipse(101,101,5,3,30) # color=red\n"
                               "-polygon(1,1,9,1,9,9)\n-box(5,5,3,2,0) # background\n");
    EXPECT_EQ(neverOnes(fromDs9.shapes), "0111");
    const Parsed fromCrtf =
        crtf("#CRTFv0 CASA Region Text Format version 0\n"
             "-centerbox [[10pix, 10pix], [4pix, 4pix]] coord=IMAGE, color=red\n"
             "- poly [[1pix, 2pix], [3pix, 4pix], [5pix, 1pix]]\n+circle[[1pix, 2pix], 3pix]\n");
    EXPECT_EQ(neverOnes(fromCrtf.shapes), "110");
    EXPECT_EQ(fromCrtf.notes.lines.back(),
              "excluded regions are taken off all others, also off those that come after them");
}

TEST_F(RegionFiles, DrawOutlinesOfMasksAlongTheirCells)
{
    const MaskOutline outlines[] = {
        {{{3, 4}}, 0}, {{{2, 1}, {6, 1}}, 1}, {{{0, 0}, {4, 0}, {4, 3}, {0, 3}}, 0}};
    EXPECT_EQ(asText(shapeOf(outlines[0])), "poly 2.6 3.6 3.4 3.6 3.4 4.4 2.6 4.4");
    EXPECT_EQ(asText(shapeOf(outlines[1])), "poly 1.6 1.4 1.6 0.6 6.4 0.6 6.4 1.4");
    EXPECT_TRUE(shapeOf(outlines[1]).isNeverClean);
    EXPECT_EQ(asText(shapeOf(outlines[2])), "poly -0.4 -0.4 4.4 -0.4 4.4 3.4 -0.4 3.4");
    // through a file of cells, which keeps points and lines too
    RegionNotes notes;
    std::vector<AreaShape> back;
    const std::vector<AreaShape> shapes = shapesOf({outlines[0], outlines[2]});
    ASSERT_TRUE(writeAreaShapes(name_, AreaFileFormat::cells, shapes, RegionSystem::image, nullptr,
                                notes, error_));
    ASSERT_TRUE(readAreaShapes(name_, nullptr, back, notes, error_));
    EXPECT_EQ(asText(back), asText(shapeOf(outlines[0])) + "\npoly 0 0 4 0 4 3 0 3\n");
}

TEST_F(RegionFiles, RefuseWhatIsNoRegionFile)
{
    std::vector<AreaShape> shapes;
    RegionNotes notes;
    for (const std::string& junk :
         {std::string("SIMPLE  =  T\n\0", 14), std::string("no regions\nat all\n")}) {
        write(junk);
        EXPECT_FALSE(readDs9Regions(name_, nullptr, shapes, notes, error_));
        EXPECT_FALSE(readCrtfRegions(name_, nullptr, shapes, notes, error_));
        EXPECT_NE(error_.find(name_), std::string::npos);
    }
    EXPECT_FALSE(readDs9Regions(name_ + "-none", nullptr, shapes, notes, error_));
    EXPECT_FALSE(
        writeDs9Regions("/no/such/folder/a.reg", {}, RegionSystem::image, nullptr, notes, error_));
    EXPECT_FALSE(writeCrtfRegions(name_, {}, RegionSystem::sky, nullptr, notes, error_));
}

TEST(RegionTexts, ThatAreHugeOrNestedStayCheapAndSafe)
{
    const std::size_t million = 1 << 20;
    std::string many = "image\n";
    for (std::size_t i = 0; i < 20000; ++i)
        many += "blob\n";
    const Parsed p = ds9(many);
    EXPECT_EQ(p.notes.damaged, 20000);
    EXPECT_EQ(p.notes.lines.size(), 1000U);
    EXPECT_EQ(p.notes.more, 19000);
    for (const char* piece :
         {"(", "[", "-", "||", "circle(", "1,", "=", "a=\"x\"", "\x80", "\"", "12h", "poly["}) {
        std::string text;
        while (text.size() < million)
            text += piece;
        EXPECT_TRUE(ds9(text).shapes.empty() && crtf(text).shapes.empty()) << piece;
        EXPECT_TRUE(ds9("polygon(" + text).shapes.empty() && crtf("poly[" + text).shapes.empty());
        EXPECT_EQ(crtf("circle[[1pix, 2pix], 3pix]" + text).shapes.size(), 1U);
    }
    EXPECT_TRUE(
        ds9("circle(1e308,1e308,1e308)\nbox(1,1,1e-400,1)\ncircle(1e999,1,1)").shapes.empty());
}

TEST_F(RegionFiles, OfCellsHoldRoundedOutlines)
{
    AreaShape box;
    box.kind = AreaShape::Kind::rotatedRectangle;
    box.centre = {10, 20};
    box.width = box.height = std::sqrt(8.0);
    box.angle = 45 * degree;
    AreaShape tooFar = box;
    tooFar.width = 1e300;
    AreaShape square;
    square.centre = {5, 5};
    square.width = square.height = 3;
    RegionNotes notes;
    std::vector<AreaShape> back;
    ASSERT_TRUE(writeAreaShapes(name_, AreaFileFormat::cells, {box, tooFar, square},
                                RegionSystem::image, nullptr, notes, error_));
    EXPECT_EQ(joined(notes.lines),
              "area 2: has no size or lies too far away; left out\n"
              "the file holds whole cells: outlines were moved by up to half a cell\n");
    ASSERT_TRUE(readAreaShapes(name_, nullptr, back, notes, error_));
    EXPECT_EQ(asText(back), "poly 10 18 12 20 10 22 8 20\npoly 4 4 7 4 7 7 4 7\n");
    AreaShape ellipse = square;
    ellipse.kind = AreaShape::Kind::ellipse;
    AAreaArray areas;
    ASSERT_TRUE(polygonsOf({ellipse}, areas, notes));
    for (int i = 0; i < areas(0)->count; ++i) {
        const CPoint p = areas(0)->points[i];
        EXPECT_NEAR(std::hypot(p.x - 5, p.y - 5), 1.5, 0.75);
    }
}
