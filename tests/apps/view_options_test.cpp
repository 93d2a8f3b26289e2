#include "apps/simulate/options.h"
#include "apps/view/options.h"
#include "apps/view/status_text.h"
#include "apps/view/uv_points.h"
#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/maps/MapFrame.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

namespace pavane
{

namespace
{

std::vector<std::string> words(const std::string& line)
{
    std::vector<std::string> result(1);
    for (const char c : line) {
        if (c == ' ')
            result.emplace_back();
        else
            result.back() += c;
    }
    return result;
}

}  // namespace

TEST(ViewOptions, RefusesWrongUseAndNamesIt)
{
    const struct {
        const char* line;
        const char* blamed;
    } cases[] = {
        {"--batch", "no map"},
        {"m.fits --png p.png", "--png goes with --batch"},
        {"m.fits --size 200x200", "--size goes with --batch"},
        {"--areas a.cma", "go with a map"},
        {"--model m.txt", "go with a map"},
        {"m.fits --batch --size 63x100", "64 to 16384"},
        {"m.fits --batch --size 100x16385", "64 to 16384"},
        {"m.fits --batch --size 100", "WIDTHxHEIGHT"},
        {"u.uvf --colour-by red", "--colour-by knows"},
        {"u.uvf --plot time --colour-by baseline", "panels of its own"},
        {"u.uvf --plot closure --colour-by source", "mark one source"},
        {"u.uvf --average 0", "--average wants seconds"},
        {"u.uvf --average nan", "--average wants seconds"},
        {"u.uvf --plot bandpass --average 60", "mean over all times"},
        {"u.uvf --batch --table visibilities", "wants a --tsv"},
        {"m.fits --batch --range 2,1", "--range"},
        {"m.fits --batch --range 1,nan", "--range"},
        {"m.fits --batch --range p:-1,99", "--range"},
        {"m.fits --batch --range p:1,100.5", "--range"},
        {"m.fits --batch --range p:5", "--range"},
        {"m.fits --contrast 1", "--contrast wants CONTRAST,BIAS"},
        {"m.fits --contrast 1,x", "'1,x'"},
        {"m.fits --contrast 1,0.5,0", "--contrast"},
        {"m.fits --contrast nan,0.5", "--contrast"},
        {"m.fits --contrast 1,0.5,1,1", "--contrast"},
        {"m.fits --batch --scale cubic", "'cubic'"},
        {"m.fits --batch --mask o.fits", "--areas"},
        {"m.fits --batch --visibilities uv.csv", "--model"},
        {"m.fits --batch --plane -1", "--plane"},
        {"m.fits --batch --png", "wants a value"},
        {"m.fits n.fits --batch", "n.fits"},
        {"m.fits --batch --frobnicate", "--frobnicate"},
        {"m.fits --batch --levels peak:", "'' as number 1"},
        {"m.fits --batch --levels loud:1", "'loud:1'"},
        {"m.fits --batch --levels peak:1,2,4x,8", "'4x' as number 3"},
        {"m.fits --batch --levels peak:1,...", "two numbers"},
        {"m.fits --batch --levels peak:4,2,...", "from 4 to 2"},
        {"m.fits --batch --levels peak:1,2,...,4", "'...' as number 3"},
        {"m.fits --batch --batch", "--batch is given twice"},
        {"m.fits --batch --png a.png --png=b.png", "--png is given twice"},
        {"m.fits --batch --png --stats", "--png wants a value"},
        {"m.fits --batch=1", "takes no value"},
        {"m.fits --batch --partial", "--areas"},
        {"m.fits --areas a.cma --partial", "--partial goes with --batch"},
        {"--batch --model m.txt --visibilities uv.csv --stats", "no map"},
        {"m.fits --print p.pdf", "--print goes with --batch"},
        {"m.fits --batch --pages 2", "--pages goes with --print"},
        {"m.fits --batch --print p.pdf --printer q", "one of them"},
        {"m.fits --batch --print p.pdf --pages 3-2", "--pages: '3-2'"},
        {"m.fits --batch --print p.pdf --paper B9", "--paper: there is no paper 'B9'"},
        {"m.fits --batch --print p.pdf --margins 1,2,3", "--margins: '1,2,3'"},
        {"m.fits --batch --print p.pdf --dpi 35", "--dpi wants a number from 36"},
        {"m.fits --batch --print p.pdf --number -1", "--number wants a number from 0"},
        {"m.fits --batch --print p.pdf --copies 0", "--copies wants a number from 1"},
        {"m.fits --batch --print p.pdf --caption", "--caption wants a value"},
        {"m.fits --batch --print p.pdf --planes 5-3", "--planes wants FIRST-LAST"},
        {"m.fits --batch --print p.pdf --planes 0-3 --grid 3", "--grid wants ROWSxCOLUMNS"},
        {"--batch --print p.pdf", "no map"},
        {"m.fits --batch --png p.png --surface 30", "--surface wants"},
        {"m.fits --batch --png p.png --surface 30,91", "--surface wants"},
        {"m.fits --batch --png p.png --surface 30,nan", "--surface wants"},
        {"m.fits --batch --png p.png --surface 30,35,", "--surface wants"},
        {"m.fits --surface 30,35", "--batch"},
        {"m.fits --sky-grid line", "--sky-grid wants"},
        {"m.fits --batch --png p.png --surface 30,35 --sky-grid lines", "no --sky-grid"},
        {"m.fits --batch --stats --surface 30,35", "picture"},
        {"m.fits --batch --print p.pdf --surface 30,35 --planes 0-3", "one plane"},
        {"m.fits --batch --print p.pdf --surface 30,35 --planes 0-3 --grid 2x2", "one plane"},
        {"m.fits --batch --print p.pdf --surface 30,35 --model m --table components", "table"},
        {"m.fits --batch --png p.png --surface 30,35 --model m", "--model"},
        {"--batch --rgb a b --png p.png", "three maps"},
        {"--rgb a b c", "--rgb goes with --batch"},
        {"--batch --rgb a b c --range 0,1", "--red-range"},
        {"--batch --rgb a b c --green-range 1,1", "--green-range wants"},
        {"--batch --rgb a b c --shift 1,1 --shift 1,1 --shift 1,1", "three times"},
        {"a --batch --difference b --out o --shift 1,1 --shift 1,1", "given twice"},
        {"a --batch --rgb --difference b --out o", "--rgb does not go"},
        {"-x", "'-x'"},
    };
    for (const auto& c : cases) {
        ViewOptions options;
        std::string error;
        EXPECT_FALSE(parseOptions(words(c.line), options, error)) << c.line;
        EXPECT_NE(error.find(c.blamed), std::string::npos) << c.line << ": " << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
}

TEST(ViewOptions, ReadsWhatItIsGiven)
{
    ViewOptions o;
    std::string error;
    ASSERT_TRUE(parseOptions(words("m[1].fits --batch --png a.png --size 640x16384 --scale equal "
                                   "--range -1e-3,.5 --plane 2 --stats --aspect free "
                                   "--surface=-30,35,o,p.fits"),
                             o, error))
        << error;
    EXPECT_EQ(o.map, "m[1].fits");
    EXPECT_EQ(o.width, 640);
    EXPECT_EQ(o.height, 16384);
    EXPECT_EQ(o.scale, MapScaleKind::equalized);
    EXPECT_EQ(o.low, -1e-3);
    EXPECT_EQ(o.high, 0.5);
    EXPECT_EQ(o.plane, 2);
    EXPECT_TRUE(o.surface.wanted && o.surface.azimuth == -30 && o.surface.elevation == 35);
    EXPECT_EQ(o.surface.other, "o,p.fits");
    EXPECT_FALSE(o.inPerCent);
    EXPECT_TRUE(o.play.isNeutral());
    ASSERT_TRUE(parseOptions(words("m.fits --range p:0.5,99.5 --contrast -2,.4,1.5"), o, error));
    EXPECT_TRUE(o.inPerCent && o.low == 0.5 && o.high == 99.5);
    EXPECT_EQ(o.play, (AColorPlay{-2, 0.4, 1.5, 0}));
    ASSERT_TRUE(
        parseOptions(words("m[1].fits --batch --png a.png --stats --aspect free"), o, error));
    EXPECT_TRUE(o.stats && o.freeAspect && o.wantsPicture());
    for (const char* line : {"-h", "--version", "--batch --model m --visibilities uv",
                             "--batch --png=-p.png -- --map.fits"})
        EXPECT_TRUE(parseOptions(words(line), o, error)) << line << error;
    EXPECT_TRUE(o.map == "--map.fits" && o.png == "-p.png");
}

TEST(ProgramText, TellsEveryOptionInHelpAndManPage)
{
    for (const ProgramText& program : {viewProgram(), simulateProgram()}) {
        const std::string help = helpText(program), page = manPage(program);
        int options = 0;
        for (const OptionGroup& group : program.groups)
            for (const OptionText& option : group.options) {
                const std::string sign =
                    "  " + (option.letter.empty() ? "" : std::string(option.letter) + ", ") +
                    std::string(option.name);
                std::string escaped;
                for (const char c : option.name)
                    escaped += c == '-' ? "\\-" : std::string(1, c);
                EXPECT_NE(help.find(sign), std::string::npos) << sign;
                EXPECT_NE(page.find("\\fB" + escaped + "\\fR"), std::string::npos) << escaped;
                ++options;
            }
        EXPECT_GE(options, 9);
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 100u) << line;
    }
}

TEST(LevelList, GoesOnInItsRatioUpToThePeak)
{
    const struct {
        const char* text;
        double peak, noise;
        std::vector<double> wanted;
    } cases[] = {
        {"peak:-1,1,2,4,...", 4.0, 0.1, {-0.04, 0.04, 0.08, 0.16, 0.32, 0.64, 1.28, 2.56}},
        {"sigma:3,-3", 1.0, 0.5, {-1.5, 1.5}},
        {"abs:2,1,2", 9.0, 0.0, {1, 2}},
        {"abs:1,2,...", 5e-324, 0.0, {1, 2}},
        {"none", 1.0, 1.0, {}},
        {"sigma:-3,3", 1.0, 0.0, {}},
    };
    for (const auto& c : cases) {
        LevelChoice choice;
        std::string error;
        ASSERT_TRUE(parseLevels(c.text, choice, error)) << c.text << error;
        const std::vector<double> got = levelValues(choice, c.peak, c.noise);
        ASSERT_EQ(got.size(), c.wanted.size()) << c.text;
        for (std::size_t i = 0; i < got.size(); ++i)
            EXPECT_NEAR(got[i], c.wanted[i], 1e-12) << c.text;
    }
}

TEST(MapFrame, CountsOffsetsFromTheReferencePixelInArcseconds)
{
    MapHeader header;
    header.axes.resize(2);
    header.axes[0] = {512, "RA---SIN", "", 123.0, 256, -0.001 / 3600, 0};
    header.axes[1] = {512, "DEC--SIN", "", 45.0, 257, 0.001 / 3600, 0};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -0.001 / 3600;
    header.cd[1][1] = 0.001 / 3600;
    const MapFrame frame = frameOf(header, 512, 512);
    EXPECT_NEAR(frame.xFirst, 0.255, 1e-12);
    EXPECT_NEAR(frame.xLast, -0.256, 1e-12);
    EXPECT_NEAR(frame.yFirst, -0.256, 1e-12);
    EXPECT_NEAR(frame.yLast, 0.255, 1e-12);
    EXPECT_EQ(frame.xDirection, -1);
    EXPECT_EQ(frame.xTitle, "Relative right ascension [%sas]");

    header.cd[0][0] = 1.0;
    EXPECT_EQ(frameOf(header, 512, 512).xTitle, "Relative right ascension~ [deg]");
    EXPECT_NEAR(frameOf(header, 512, 512).onAxes(7200, 3600).x, 2, 1e-12);
    header.cd[0][0] = std::nan("");
    EXPECT_TRUE(std::isfinite(frameOf(header, 512, 512).xLast));
}

TEST(MapFrame, TurnsTheSkyIntoTheDirectionsOfTurnedPixels)
{
    constexpr double cell = 1e-3 / 3600;
    const struct {
        const char* name;
        double cd[2][2];
        MapPlace offset;  // of the cell one column and two rows from the reference, in cells
        MapPlace onAxes;  // where that cell is drawn
    } cases[] = {
        {"east is down, north is left", {{0, -cell}, {-cell, 0}}, {-2, -1}, {-1, 2}},
        {"upside down", {{cell, 0}, {0, -cell}}, {1, -2}, {1, -2}},
        {"mirrored", {{cell, 0}, {0, cell}}, {1, 2}, {1, 2}},
        {"mirrored and turned", {{0, cell}, {-cell, 0}}, {2, -1}, {1, 2}},
        {"scales that differ", {{0, -3 * cell}, {-cell, 0}}, {-6, -1}, {-1, 6}},
    };
    for (const auto& c : cases) {
        MapHeader header;
        header.axes = {{9, "RA---SIN", "deg", 0, 5, 7, 0}, {9, "DEC--SIN", "deg", 0, 5, 7, 90}};
        header.hasCelestialAxes = 1;
        std::copy_n(&c.cd[0][0], 4, &header.cd[0][0]);
        const MapFrame frame = frameOf(header, 9, 9);
        const MapPlace offset = frame.offsetOf(5, 6);
        const MapPlace place = frame.onAxes(offset.x, offset.y);
        EXPECT_NEAR(offset.x, c.offset.x * 1e-3, 1e-12) << c.name;
        EXPECT_NEAR(offset.y, c.offset.y * 1e-3, 1e-12) << c.name;
        EXPECT_NEAR(place.x, c.onAxes.x * 1e-3, 1e-12) << c.name;
        EXPECT_NEAR(place.y, c.onAxes.y * 1e-3, 1e-12) << c.name;
        EXPECT_NEAR(frame.xFirst + 5 * frame.xStep, place.x, 1e-12) << c.name;
        EXPECT_NEAR(frame.yFirst + 6 * frame.yStep, place.y, 1e-12) << c.name;
    }
}

TEST(MapUnit, KeepsAPrefixApart)
{
    const struct {
        const char* bunit;
        double factor;
        const char* name;
        int isFlux, perPixel;
    } cases[] = {
        {"JY/BEAM", 1, "Jy/beam", 1, 0},
        {"mJy/beam", 1e-3, "Jy/beam", 1, 0},
        {"Jy beam-1", 1, "Jy/beam", 1, 0},
        {"mJy beam^-1", 1e-3, "Jy/beam", 1, 0},
        {"uJy.beam**-1", 1e-6, "Jy/beam", 1, 0},
        {"\u00b5Jy / BEAM", 1e-6, "Jy/beam", 1, 0},
        {"beam-1 mJy", 1e-3, "Jy/beam", 1, 0},
        {"Jy beam\u207b\u00b9", 1, "Jy/beam", 1, 0},
        {"Jy", 1, "Jy", 1, 0},
        {"Jy/Pixel", 1, "Jy/pixel", 1, 1},
        {"Jy pix-1", 1, "Jy/pixel", 1, 1},
        {"MJy/sr", 1e6, "Jy/sr", 0, 0},
        {"JY/BEAM.km/s", 1, "Jy/beam km/s", 1, 0},
        {"mJy/pixel Hz", 1e-3, "Jy/pixel Hz", 1, 1},
        {"Jy/sr.km/s", 1, "Jy/sr.km/s", 0, 0},
        {"K.km/s", 1, "K.km/s", 0, 0},
        {"Jy^2/beam", 1, "Jy^2/beam", 0, 0},
        {"mK", 1e-3, "K", 0, 0},
        {"m/s", 1, "m/s", 0, 0},
        {"km/s", 1e3, "m/s", 0, 0},
        {"mag", 1, "mag", 0, 0},
        {"Kelvin", 1, "Kelvin", 0, 0},
        {"", 1, "", 0, 0},
    };
    for (const auto& c : cases) {
        const MapUnit unit = mapUnit(c.bunit);
        EXPECT_EQ(unit.name, c.name);
        EXPECT_EQ(unit.factor, c.factor) << c.bunit;
        EXPECT_TRUE(unit.isFlux == c.isFlux && unit.perPixel == c.perPixel) << c.bunit;
    }
}

TEST(MapUnit, ChoosesThePrefixOfWhatIsShown)
{
    const struct {
        double value;
        int digits;
        const char* text;
    } cases[] = {{0.99994, 4, "999.9 mJy"},  {0.99996, 4, "1 Jy"}, {0.99996, 5, "999.96 mJy"},
                 {-999.96, 4, "-1 KJy"},     {9.996, 3, "10 Jy"},  {1e-3, 4, "1 mJy"},
                 {9.9999e14, 4, "1e+15 Jy"}, {0, 4, "0 Jy"}};
    for (const auto& c : cases)
        EXPECT_EQ(prefixedText(c.value, "Jy", c.digits), c.text) << c.value;
}

TEST(MapUnit, PutsAPrefixOnlyBeforeAUnitThatTakesOne)
{
    const struct {
        const char* unit;
        const char* value;  ///< 0.0032 of it
        const char* title;
    } cases[] = {
        {"Jy/beam", "3.2 mJy/beam", " [%sJy/beam]"},
        {"m/s", "3.2 mm/s", " [%sm/s]"},
        {"km/s", "0.0032 km/s", "~ [km/s]"},
        {"mas", "0.0032 mas", "~ [mas]"},
        {"10^-15 erg/s", "0.0032 10^-15 erg/s", "~ [10^-15 erg/s]"},
        {"m^2", "0.0032 m^2", "~ [m^2]"},
        {"deg", "0.0032 deg", "~ [deg]"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(prefixedText(0.0032, c.unit, 4), c.value);
        EXPECT_EQ(titleUnit(c.unit), c.title);
    }
}

TEST(UvPoints, SkipsCommentsAndAHeadingAndNamesTheBadLine)
{
    const struct {
        const char* text;
        std::size_t points;
        const char* error;
    } cases[] = {
        {"u,v\n# x\n1,2\r\n\n 3e6 , -4 ,9\n5,6", 3, ""},
        {"", 0, ""},
        {"\xef\xbb\xbf"
         "1,2\n",
         1, ""},
        {"u,v\nw,x\n", 0, "line 2"},
        {"1,2\nu,v\n", 0, "line 2"},
        {"1;2\n", 0, "line 1"},
        {"1,inf\n", 0, "line 1"},
    };
    const std::string file = testing::TempDir() + "uv_points_test.csv";
    for (const auto& c : cases) {
        std::ofstream(file, std::ios::binary) << c.text;
        UvPoints points;
        std::string error;
        EXPECT_EQ(readUvPoints(file, points, error), !*c.error) << c.text;
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
        EXPECT_TRUE(*c.error || points.v.size() == c.points) << c.text;
    }
    UvPoints points;
    std::string error;
    EXPECT_FALSE(readUvPoints(testing::TempDir(), points, error));
    EXPECT_FALSE(readUvPoints(file + ".no", points, error));
}

}  // namespace pavane
