#include "pavane/trackers/regions/exchange_file.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "tessel/fits_map.h"
#include "tessel/paths.h"
#include "tests/trackers/shapes/region_shapes.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

std::string readShapes(const MapHeader& header, const std::string& text,
                       RegionNotes* notes = nullptr)
{
    SkyCoordinates sky;
    std::string error;
    std::vector<AreaShape> shapes;
    RegionNotes local;
    EXPECT_TRUE(sky.init(header, error)) << error;
    const auto parse = text.find('[') == std::string::npos ? parseDs9Regions : parseCrtfRegions;
    parse(text, &sky, shapes, notes ? *notes : local);
    return asText(shapes);
}

/// The farthest that a random area moves on its way through a text on the sky and back, cells.
double worstThroughSky(const MapHeader& header, AreaFileFormat format, RegionNotes& notes)
{
    SkyCoordinates sky;
    std::string error;
    EXPECT_TRUE(sky.init(header, error)) << error;
    const std::vector<AreaShape> shapes = randomShapes(1000, 8);
    std::vector<AreaShape> back;
    if (format == AreaFileFormat::ds9)
        parseDs9Regions(ds9RegionText(shapes, RegionSystem::sky, &sky, notes), &sky, back, notes);
    else
        parseCrtfRegions(crtfRegionText(shapes, RegionSystem::sky, &sky, notes), &sky, back, notes);
    return worstOutline(shapes, back);
}

}  // namespace

TEST(SkyRegions, LieWhereTheTangentPlaneSays)
{
    const double step = 1e-3 / 3600;  // 1 mas cells at (180, 0)
    const MapHeader map = sinMap(180, 0, step);
    const char* const cases[][2] = {
        // the first size of a box lies along the angle, counted from west towards north
        {"fk5\nbox(180.00000555555555556,0.00000277777777778,0.03\",0.01\",30)",
         "box 480 511 30 10 30\n"},
        {"fk5\nellipse(180,0,0.03\",0.01\",30)", "ellipse 500 501 60 20 30\n"},
        {"j2000;circle(12:00:00,+0:0:0.01,0.002')", "ellipse 500 511 240 240 0\n"},
        {"fk5\npolygon(180d,0d,12h0m0s,0d0m0.05s,179.9999861111111111,0)",
         "poly 500 501 500 551 550 501\n"},
        {"fk5\ncircle(180,0,3i)", "ellipse 500 501 6 6 0\n"},
        // position angles run from north through east, which is counter-clockwise here
        {"ellipse[[180deg, 0deg], [30mas, 10mas], 20deg]", "ellipse 500 501 60 20 110\n"},
        {"rotbox[[12h0m0s, 0.0.0.01], [30mas, 0.01arcsec], 30deg] coord=J2000",
         "box 500 511 30 10 30\n"},
        {"centerbox[[12:00:00, 0d0m0s], [40pix, 20pix]]", "rect 500 501 40 20\n"},
        {"box[[180.00000277777777778deg, 0deg], [180deg, 0.00000555555555556deg]]",
         "rect 495 511 10 20\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(readShapes(map, c[0]), c[1]) << c[0];
    // a map turned by 30 degrees, and one whose east is to the right
    EXPECT_EQ(readShapes(sinMap(180, 0, step, 30), "fk5\nellipse(180,0,0.03\",0.01\",30)"),
              "ellipse 500 501 60 20 60\n");
    MapHeader mirrored = map;
    mirrored.cd[0][0] = step;
    EXPECT_EQ(readShapes(mirrored, "fk5\nellipse(180,0,0.03\",0.01\",30)"),
              "ellipse 500 501 60 20 150\n");
}

TEST(SkyRegions, OfOblongCellsBecomePolygonsWhenTheyMust)
{
    MapHeader oblong = sinMap(180, 0, 1e-3 / 3600);
    oblong.cd[0][0] *= 2;
    RegionNotes notes;
    EXPECT_EQ(readShapes(oblong, "fk5\nbox(180,0,0.04\",0.02\",0)\n", &notes),
              "rect 500 501 20 20\n");
    EXPECT_TRUE(notes.lines.empty());
    EXPECT_EQ(readShapes(oblong, "fk5\ncircle(180,0,0.04\")"), "ellipse 500 501 40 80 0\n");
    EXPECT_EQ(readShapes(oblong, "fk5\nbox(180,0,0.04\",0.04\",45)", &notes).substr(0, 5), "poly ");
    EXPECT_EQ(notes.lines.back(),
              "line 2: the box is not a rectangle on the map; taken as a polygon");
    EXPECT_LT(worstThroughSky(oblong, AreaFileFormat::crtf, notes), 1e-6);
}

TEST(SkyRegions, AreReadAndWrittenInTheFrameThatIsNamed)
{
    // SkyCoord(ra=180, dec=0, frame="fk5") in Astropy 5.2
    const MapHeader map = sinMap(180, 0, 1e-2 / 3600);
    const struct {
        const char *ds9, *crtf;
        double longitude, latitude;
    } cases[] = {
        {"fk5", "J2000", 180.0000000000000, -0.0000000000000},
        {"ICRS", "icrs", 179.9999936388889, 0.0000025277778},
        {"galactic", "GALACTIC", 276.3372696080825, 60.1885517309620},
        {"ecliptic", "ECLIPTIC", 179.9999950431619, 0.0000056370931},
    };
    for (const auto& c : cases) {
        const std::string at = valToStr(c.longitude) + ',' + valToStr(c.latitude);
        EXPECT_EQ(readShapes(map, c.ds9 + std::string("\ncircle(") + at + ",3i)"),
                  "ellipse 500 501 6 6 0\n")
            << c.ds9;
        EXPECT_EQ(readShapes(map, "circle[[" + valToStr(c.longitude) + "deg, " +
                                      valToStr(c.latitude) + "deg], 3pix] coord=" + c.crtf),
                  "ellipse 500 501 6 6 90\n")
            << c.crtf;
    }
    // galactic north is 23.48 degrees east of north here, by Astropy's position_angle
    EXPECT_EQ(readShapes(map, "galactic\nbox(276.3372696080825,60.1885517309620,0.3\",0.1\",10)"),
              "box 500 501 30 10 33.479812\n");
    // a position without a frame, in a file of pixels, is in FK5 there
    MapHeader icrs = map;
    icrs.coordinateCards = {"CRVAL1  = 180.0", "CRVAL2  = 0.0", "RADESYS = 'ICRS'"};
    EXPECT_EQ(readShapes(icrs, "galactic;image;circle(12:00:00,-0:0:0,3i)"),
              readShapes(icrs, "fk5;circle(180,0,3i)"));
    EXPECT_NE(readShapes(icrs, "icrs;circle(180,0,3i)"), readShapes(icrs, "fk5;circle(180,0,3i)"));
    // (10.5, 5.5) with the digits that another program wrote: half a cell is what it meant
    const MapHeader fine = sinMap(180, 0, 1e-6 / 3);
    EXPECT_EQ(readShapes(fine, "fk5\ncircle(180.000163166667,-0.000165166667,3i)"),
              "ellipse 10.5 5.5 6 6 0\n");
    EXPECT_EQ(readShapes(fine, "poly[[180.0001631667deg, -0.0001651667deg], [180deg, 0deg], "
                               "[180.00016316deg, 0deg]] coord=J2000"),
              "poly 10.5 5.5 500 501 10.52 501\n");
    for (const char* name : {"GLON-SIN", "ELON-SIN", "1950", "1975"}) {
        MapHeader other = map;
        if (name[0] == '1') {
            other.equinox = name[2] == '5' ? 1950 : 1975;
        } else {
            other.axes[0].ctype = name;
            other.axes[1].ctype = name[0] == 'G' ? "GLAT-SIN" : "ELAT-SIN";
        }
        if (other.equinox == 1975)
            other.coordinateCards = {"CRVAL1  = 180", "CRVAL2  = 0.0", "RADESYS = 'FK5'"};
        for (const AreaFileFormat format : {AreaFileFormat::ds9, AreaFileFormat::crtf}) {
            RegionNotes notes;
            // 1975 has no name in these files: by way of ICRS
            EXPECT_LT(worstThroughSky(other, format, notes), name[2] == '7' ? 1e-5 : 1e-6) << name;
            EXPECT_EQ(notes.leftOut + notes.damaged, 0) << name;
        }
    }
}

TEST(SkyRegions, BringAThousandRandomAreasBack)
{
    struct {
        const char* name;
        MapHeader map;
    } const cases[] = {{"1 mas", sinMap(83.6, 22, 2.8e-7)},
                       {"turned across 0 h", sinMap(359.99999, -60, 1e-5, 77)},
                       {"wide field", sinMap(200, 40, 3e-3)}};
    for (const auto& c : cases)
        for (const AreaFileFormat format : {AreaFileFormat::ds9, AreaFileFormat::crtf}) {
            RegionNotes notes;
            EXPECT_LT(worstThroughSky(c.map, format, notes), 1e-6)
                << c.name << (format == AreaFileFormat::ds9 ? " ds9" : " crtf");
            EXPECT_EQ(notes.leftOut + notes.damaged, 0) << notes.lines[0];
        }
}

TEST(SkyRegions, ReadOtherProgramsFilesOnRealMaps)
{
    const std::string folder = PAVANE_SOURCE_DIR "/../shared/data/";
    if (!IsFolderExists(folder + "regions"))
        GTEST_SKIP() << "no real files here";
    std::vector<AreaShape> shapes;
    RegionNotes notes;
    std::string error;
    ASSERT_TRUE(
        readAreaShapes(folder + "regions/astropy_ds9.image.reg", nullptr, shapes, notes, error));
    EXPECT_EQ(asText(shapes), "ellipse 165 545 40 40 0\n"
                              "ellipse 247 528 80 40 45\n"
                              "box 337 526 80 40 45\n"
                              "poly 406.24723 537 444 574.75275 481.75277 537 444 499.24723\n");
    EXPECT_EQ(neverOnes(shapes), "0110");
    EXPECT_EQ(notes.leftOut, 11);
    SkyCoordinates m51;
    ASSERT_TRUE(m51.init(sinMap(202.48, 47.2, 1.0 / 3600), error));
    ASSERT_TRUE(readAreaShapes(folder + "regions/astropy_ds9.fk5.reg", &m51, shapes, notes, error));
    EXPECT_EQ(neverOnes(shapes), "0110");
    EXPECT_NEAR(shapes[0].width, 2 * 3.9640007, 1e-6);
    ASSERT_TRUE(
        readAreaShapes(folder + "regions/astropy_CRTFgeneral.crtf", &m51, shapes, notes, error));
    EXPECT_EQ(neverOnes(shapes), "01");  // in B1950
    EXPECT_EQ(notes.leftOut, 3);
    for (const char* name :
         {"J0000+0248_2016_01_03_VLBA_4GHz.fits", "J0738+17_stacked_VLBA_15GHz.fits"}) {
        FitsMap map;
        ASSERT_TRUE(readFitsMap(folder + "maps/" + name, -1, map, error)) << error;
        EXPECT_LT(worstThroughSky(map.header, AreaFileFormat::ds9, notes), 1e-6) << name;
    }
}
