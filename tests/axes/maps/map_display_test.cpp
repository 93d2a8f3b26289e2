// The display of a map as a value, its presets, and beams as they are typed and drawn.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/beam_form.h"
#include "pavane/axes/maps/beam_mark.h"
#include "pavane/axes/maps/MapPresets.h"
#include "pavane/images/ADIBase.h"
#include "platform/picture.h"
#include "platform/profile.h"
#include "tessel/AMatrix.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <limits>

using namespace pavane;

namespace
{

constexpr double notNumber = std::numeric_limits<double>::quiet_NaN();

struct Shown {
    AMatrix<float> map{4, 4};
    AFloatMatrixAccess cells{map};
    A2DAxis axis{-1, 1, nullptr, 0};
    ALevelsColorGraph& graph = *new ALevelsColorGraph(&axis, cells, {3, 0, 0, 3}, 0);
    MapDisplay display() const { return {axis, graph}; }
};

const std::function<void(MapDisplay&)> changes[] = {
    [](MapDisplay& d) {
        d.colours.range = {-1, 2};
    },
    [](MapDisplay& d) { d.colours.scale = MapScaleKind::logarithmic; },
    [](MapDisplay& d) {
        d.colours.play = {2, 0.25, 0.5, 1};
    },
    [](MapDisplay& d) {
        d.colours.colours = {RGB(1, 2, 3), RGB(250, 160, 7)};
    },
    [](MapDisplay& d) {
        d.contours.levels = {LevelUnit::noise, {-3, 3, 6.5}};
    },
    [](MapDisplay& d) {
        d.contours.levels = {LevelUnit::absolute, {}};
    },
    [](MapDisplay& d) { d.contours.color = RGB(255, 0, 10); },
    [](MapDisplay& d) { d.contours.width = 3; },
    [](MapDisplay& d) {
        d.beamLook = {BeamFill::filled, BeamCorner::upperRight};
    },
    [](MapDisplay& d) {
        d.beam = {2, 1, -30};
    },
    [](MapDisplay& d) {
        d.axes = {1, 0, 1, 0};
    },
    [](MapDisplay& d) { d.titles.x = "Offset [%sarcsec]"; },
    [](MapDisplay& d) {
        d.titles.header = "M 87 100%";
        d.titles.isOwnHeader = 1;
    },
};

/// The profile in a file of its own.
struct Presets : testing::Test {
    std::string file = testing::TempDir() + "presets.ini";
    Presets()
    {
        std::filesystem::remove(file);
        SetProfileFile(file);
    }
    ~Presets() override
    {
        SetProfileFile("");
        std::filesystem::remove(file);
    }
};

}  // namespace

TEST(MapDisplay, IsGivenAndTakenBackPartByPart)
{
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        Shown shown;
        const MapDisplay first = shown.display();
        MapDisplay wanted = first;
        changes[i](wanted);
        EXPECT_FALSE(sameDisplay(first, wanted)) << i;
        EXPECT_TRUE(wanted.give(shown.axis, shown.graph)) << i;
        EXPECT_TRUE(sameDisplay(shown.display(), wanted)) << i;
        EXPECT_FALSE(wanted.give(shown.axis, shown.graph)) << i;
        EXPECT_TRUE(first.give(shown.axis, shown.graph)) << i;
        EXPECT_TRUE(sameDisplay(shown.display(), first)) << i;
        // a style as text is that style, and leaves to a map what is its own
        MapDisplay read;
        EXPECT_TRUE(read.readStyle(wanted.styleText())) << i;
        EXPECT_TRUE(sameDisplay(read.styleFor(wanted), wanted)) << i;
        EXPECT_TRUE(sameDisplay(wanted.styleFor(first).styleFor(wanted), wanted)) << i;
        EXPECT_TRUE(sameDisplay(MapDisplay::of(wanted.values()), wanted)) << i;
        // what others change goes into what is kept, and nothing else
        MapDisplay kept = first;
        takeChanges(wanted, wanted, kept);
        EXPECT_TRUE(sameDisplay(kept, first)) << i;
        takeChanges(first, wanted, kept);
        EXPECT_TRUE(sameDisplay(kept, wanted)) << i;
    }
}

TEST(MapDisplay, TakesTheTitleOfValuesApart)
{
    const struct {
        const char *title, *value, *unit;
        int plain;
    } rows[] = {
        {"Flux density [%sJy/beam]", "Flux density", "Jy/beam", 0},
        {"~ [km/s]", "", "km/s", 0},
        {" [%sK]", "", "K", 0},
        {"Flux [a] [%sJy]", "Flux [a]", "Jy", 0},
        {"Jy/beam", "Jy/beam", "", 1},
        {"[%sJy/beam]", "[%sJy/beam]", "", 1},  // not as these titles are written
        {"Speed [%skm/s]", "Speed [%skm/s]", "", 1},
        {"", "", "", 1},
    };
    for (const auto& row : rows) {
        MapTitles titles;
        titles.setValueTitle(row.title);
        EXPECT_EQ(titles.value, row.value) << row.title;
        EXPECT_EQ(titles.unit, row.unit) << row.title;
        EXPECT_EQ(titles.isPlainValue, row.plain) << row.title;
        EXPECT_EQ(titles.valueTitle(), row.title);
    }
}

TEST(MapDisplay, SaysWhatCannotBeShown)
{
    const struct {
        DisplayPart part;
        std::function<void(MapDisplay&)> change;
        int good;
    } rows[] = {
        {DisplayPart::colours, [](MapDisplay&) {}, 1},
        {DisplayPart::colours,
         [](MapDisplay& d) {
             d.colours.range = {1, 1};
         },
         0},
        {DisplayPart::colours,
         [](MapDisplay& d) {
             d.colours.range = {2, 1};
         },
         0},
        {DisplayPart::colours,
         [](MapDisplay& d) {
             d.colours.range = {notNumber, 1};
         },
         0},
        {DisplayPart::colours, [](MapDisplay& d) { d.colours.play.gamma = 0; }, 0},
        {DisplayPart::contours, [](MapDisplay& d) { d.contours.width = 20; }, 1},
        {DisplayPart::contours, [](MapDisplay& d) { d.contours.width = 21; }, 0},
        {DisplayPart::contours, [](MapDisplay& d) { d.contours.width = -1; }, 0},
        {DisplayPart::beam,
         [](MapDisplay& d) {
             d.beam = {1, 1, 700};
         },
         1},
        {DisplayPart::beam,
         [](MapDisplay& d) {
             d.beam = {1, 2, 0};
         },
         0},
        {DisplayPart::beam,
         [](MapDisplay& d) {
             d.beam = {1, 0, 0};
         },
         0},
        {DisplayPart::beam,
         [](MapDisplay& d) {
             d.beam = {1, 1, notNumber};
         },
         0},
        {DisplayPart::axes, [](MapDisplay& d) { d.titles.x = CString(400, 'x'); }, 1},
        {DisplayPart::axes, [](MapDisplay& d) { d.titles.unit = CString(401, 'x'); }, 0},
    };
    for (const auto& row : rows) {
        MapDisplay display;
        row.change(display);
        CString error;
        const auto line = &row - rows;
        EXPECT_EQ(display.check(row.part, error), row.good) << line;
        EXPECT_EQ(error.empty(), row.good != 0) << line;
    }
}

TEST(MapDisplay, TakesOfAStyleOnlyWhatItUnderstands)
{
    const struct {
        const char* text;
        const char* field;  ///< that was taken; null for none
    } rows[] = {
        {"", nullptr},
        {"scale=4", nullptr},
        {"scale=-1;;=;play", nullptr},
        {"play=1,0.5,1", nullptr},
        {"play=1,0.5,1,0,7", nullptr},
        {"play=nan,0.5,1,0", nullptr},
        {"play=1,0.5,0,0", nullptr},
        {"colours=00ff0", nullptr},
        {"colours=00ff0g", nullptr},
        {"colours=-0ff00", nullptr},
        {"levels=sigma:", nullptr},
        {"levels=sigma:1,x", nullptr},
        {"line=red;width=21;beam=4;corner=9;gridx=2;minor=", nullptr},
        {"what=1;width=5;scale=99", "width=5"},
        {"levels=none", "levels=none"},
        {"levels=peak:-1,1,2", "levels=peak:-1,1,2"},
        {"colours=00ff0A", "colours=00ff0a"},
        {"play=3,0.25,2,1", "play=3,0.25,2,1"},
    };
    const CString first = MapDisplay().styleText();
    for (const auto& row : rows) {
        MapDisplay display;
        EXPECT_EQ(display.readStyle(row.text) != 0, row.field != nullptr) << row.text;
        const CString after = display.styleText();
        EXPECT_EQ(after == first, row.field == nullptr) << row.text;
        EXPECT_NE(after.find(row.field ? row.field : "scale=0"), CString::npos) << after;
    }
    MapDisplay display;
    EXPECT_FALSE(display.readStyle("colours=" + CString(6 * 227, '0')));
    EXPECT_TRUE(display.readStyle("colours=" + CString(6 * 226, '0')));
}

TEST_F(Presets, AreKeptReplacedAndRemoved)
{
    MapPresets presets;
    CString error;
    MapDisplay wide, fine;
    wide.contours.width = 7;
    fine.contours.width = 1;
    const struct {
        const char* name;
        int good;
    } names[] = {{"", 0},      {"   ", 0},         {"a|b", 0},   {"a\nb", 0},
                 {"Paper", 1}, {" for  talk ", 1}, {"[x]=;#", 1}};
    for (const auto& each : names)
        EXPECT_EQ(presets.keep(each.name, wide, error), each.good) << each.name;
    EXPECT_FALSE(presets.keep(CString(61, 'a'), wide, error));
    EXPECT_TRUE(presets.keep("PAPER", fine, error));
    MapPresets read;
    ASSERT_EQ(read.load(), 3);
    EXPECT_EQ(read.find("for  talk"), 1);
    EXPECT_EQ(read.find("[X]=;#"), 2);
    EXPECT_EQ(read[0].name, "PAPER");
    EXPECT_EQ(read[0].display.contours.width, 1);
    EXPECT_EQ(read[1].display.contours.width, 7);
    EXPECT_FALSE(read.remove(3, error) || read.remove(-1, error));
    EXPECT_TRUE(read.remove(0, error));
    EXPECT_EQ(presets.load(), 2);
    EXPECT_EQ(presets.find("paper"), -1);
    while (presets.count() < MapPresets::most)
        ASSERT_TRUE(presets.keep(std::to_string(presets.count()), wide, error));
    EXPECT_FALSE(presets.keep("one more", wide, error));
    EXPECT_TRUE(presets.keep("for  talk", fine, error));  // in the place of one
}

TEST_F(Presets, PassOverWhatIsNoPresetAndSayWhenNothingCanBeWritten)
{
    const char* const entries[] = {"no bar", "|width=3", "x|nothing", "good|width=3",
                                   "GOOD|width=4"};
    for (int i = 0; i < 5; ++i)
        WriteProfileString("MapPresets", "Preset" + std::to_string(i + 1), entries[i]);
    MapPresets presets;
    ASSERT_EQ(presets.load(), 1);
    EXPECT_EQ(presets[0].display.contours.width, 3);
    SetProfileFile("/proc/nothing/presets.ini");
    CString error;
    EXPECT_FALSE(presets.keep("new", {}, error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(presets.count(), 1);
}

TEST(BeamForm, ReadsWhatIsTypedInAnyUnit)
{
    const struct {
        BeamForm form;
        double arcseconds;
        int good, faulty;
        MapBeam beam;
    } rows[] = {
        {{"2", "1", "30", 1}, 1, 1, 0, {2, 1, 30}},
        {{"2", "1", "", 1}, 60, 1, 0, {2.0 / 60, 1.0 / 60, 0}},
        {{" 500 ", "250", "-90", 0}, 1, 1, 0, {0.5, 0.25, -90}},
        {{"1", "1", "0", 3}, 60, 1, 0, {60, 60, 0}},
        {{"2", "1", "5", beamAxisUnit}, 0, 1, 0, {2, 1, 5}},
        {{"2", "1", "5", 3}, 0, 1, 0, {2, 1, 5}},  // not on the sky
        {{"", " ", "5", 1}, 1, 1, 0, {}},
        {{"x", "1", "5", 1}, 1, 0, 0, {}},
        {{"2", "", "5", 1}, 1, 0, 1, {}},
        {{"2", "-1", "5", 1}, 1, 0, 1, {}},
        {{"1", "2", "5", 1}, 1, 0, 1, {}},
        {{"2", "1", "inf", 1}, 1, 0, 2, {}},
        {{"1e308", "1e308", "0", 3}, 1, 0, 0, {}},
    };
    for (const auto& row : rows) {
        MapBeam beam{9, 9, 9};
        CString error;
        int faulty = 0;
        const auto line = &row - rows;
        ASSERT_EQ(row.form.beam(row.arcseconds, beam, error, faulty), row.good) << line;
        if (!row.good) {
            EXPECT_EQ(faulty, row.faulty) << line;
            continue;
        }
        EXPECT_DOUBLE_EQ(beam.major, row.beam.major) << line;
        EXPECT_DOUBLE_EQ(beam.minor, row.beam.minor) << line;
        EXPECT_EQ(beam.angle, row.beam.angle) << line;
        const int unit = BeamForm::handyUnit(beam, row.arcseconds);
        const BeamForm shown = BeamForm::of(beam, row.arcseconds, unit);
        MapBeam again;
        ASSERT_TRUE(shown.beam(row.arcseconds, again, error, faulty)) << line;
        EXPECT_NEAR(again.major, beam.major, 1e-5 * beam.major) << line;
    }
}

TEST(BeamMark, StandsInItsCornerAndIsFilledAsItSays)
{
    int inks[2][beamFills] = {};
    for (const int raster : {0, 1})
        for (int fill = 0; fill < beamFills; ++fill)
            for (int corner = 0; corner < beamCorners; ++corner) {
                CPicture picture(200, 200);
                ABAxis axis(-1, 1, nullptr, raster ? axisBitmapMode : 0);
                axis.setGraphRect({20, 20, 180, 180});
                axis.setFHeight(12);
                axis.setMinMax({0, 40, 0, 40});
                auto* const dib = new ADIBase(CRect(0, 0, 199, 199));
                *dib = 226;
                axis.SetDib(dib);
                drawBeam(*picture.dc(), axis, {8, 4, 30},
                         {static_cast<BeamFill>(fill), static_cast<BeamCorner>(corner)});
                int elsewhere = 0, dark = 0;
                for (int y = 0; y < 200; ++y)
                    for (int x = 0; x < 200; ++x) {
                        const int drawn =
                            raster ? dib->GetPixel(x, y) != 226 : picture.row(y)[x] != 0xFFFFFF;
                        const int there =
                            (x > 100) == (corner % 2 == 1) && (y < 100) == (corner / 2 == 1);
                        elsewhere += drawn && !there;
                        dark += raster ? dib->GetPixel(x, y) == axis.paletteIndex(0)
                                       : picture.row(y)[x] == 0;
                    }
                EXPECT_EQ(elsewhere, 0) << fill << ' ' << corner;
                if (corner == 0)
                    inks[raster][fill] = dark;
                else
                    EXPECT_EQ(inks[raster][fill], dark) << fill << ' ' << corner;
            }
    for (const auto& ink : inks) {
        EXPECT_EQ(ink[3], 0);
        EXPECT_GT(ink[2], 40);
        EXPECT_GT(ink[0], ink[2] + 20);
        EXPECT_GT(ink[1], ink[0] + 100);
    }
}
