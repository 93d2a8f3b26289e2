#include "dialogs/template_checks.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/clean/AAreaSetsDlg.h"
#include "pavane/dialogs/clean/ABeamShapePage.h"
#include "pavane/resources/area_sets_dialog.h"
#include "pavane/resources/beam_shape_dialog.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/qt/press_keys.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <numbers>

namespace pavane
{

namespace
{

CString messages, fileName;
int answer = IDNO;

constexpr AreaMap map{TMinMax{0, 63, 0, 63}, 64, 64};

void fill(AreaCollection& areas, int count)
{
    for (int i = 0; i < count; ++i) {
        AreaShape shape;
        shape.centre = {10.0 + 8 * i, 20};
        shape.width = shape.height = 6;
        if (i == 2)
            shape.kind = AreaShape::Kind::ellipse;
        ASSERT_GE(areas.add(shape, AMnMxMCTransform(map.range, map.rows, map.columns)), 0);
    }
}

std::string asText(const AAreaSets& sets)
{
    std::string text;
    for (int i = 0; i < sets.count(); ++i)
        text += sets.name(i) + ":" + std::to_string(sets.areas(i)) + " ";
    return text;
}

struct CleanDialogs : testing::Test {
    CleanDialogs()
    {
        messages.clear();
        std::filesystem::create_directory(folder);
        SetMessageFunction([](const CString& text, unsigned type) {
            messages += text;
            return type & MB_YESNO ? answer : IDOK;
        });
        SetFileDialogAnswer([](CString& name, const CString&, int) { return name = fileName, 1; });
    }
    ~CleanDialogs() override
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        std::filesystem::remove_all(folder);
    }
    std::string folder = testing::TempDir() + "clean dialogs";
};

std::string asText(const ABeamShapePM& pm)
{
    std::string text;
    for (const RecordEntry& entry : pm.entries())
        text += (text.empty() ? "" : " ") + entry.text;
    return text;
}

}  // namespace

TEST_F(CleanDialogs, AreasAreWorkedByKeysAlone)
{
    EXPECT_EQ(doubleMnemonics(areaSetsDialog), "");
    EXPECT_EQ(collisionsWhenGrown(areaSetsDialog, areaSetsResize), "");
    const std::string file = folder + "/jet.cma";
    {
        AreaCollection one;
        CString error;
        fill(one, 1);
        ASSERT_TRUE(writeAreas(file, map, one, error));
    }
    const struct {
        const char *name, *keys, *file;
        int answer, result;
        const char* sets;
        int areas;
        const char* message;
    } rows[] = {
        {"accepts", "Return", "", IDNO, IDOK, "core:1 wide:3 ", 2, ""},
        {"uses a set", "Down Down Alt+U Return", "", IDNO, IDOK, "core:1 wide:3 ", 3, ""},
        {"uses one, gives up", "Down Alt+U Esc", "", IDNO, IDCANCEL, "core:1 wide:3 ", 2, ""},
        {"keeps", "Alt+N 'both' Alt+K Return", "", IDNO, IDOK, "core:1 wide:3 both:2 ", 2, ""},
        {"keeps, not replacing", "Alt+N 'Core' Alt+K Return", "", IDNO, IDOK, "core:1 wide:3 ", 2,
         "There is a set 'core' of 1 area already. Replace it by the 2 areas on the map?"},
        {"keeps, replacing", "Alt+N 'core' Alt+K Return", "", IDYES, IDOK, "core:2 wide:3 ", 2,
         "There is a set 'core' of 1 area already. Replace it by the 2 areas on the map?"},
        {"keeps under no name", "Alt+K Esc", "", IDNO, IDCANCEL, "core:1 wide:3 ", 2,
         "A set of areas needs a name of 1 to 64 characters, without blanks at its ends."},
        {"renames", "Down Alt+N 'narrow' Alt+E Return", "", IDNO, IDOK, "narrow:1 wide:3 ", 2, ""},
        {"removes", "Down Alt+V Return", "", IDNO, IDOK, "wide:3 ", 2, ""},
        {"reads, uses", "Alt+R Alt+U Return", file.c_str(), IDYES, IDOK, "core:1 wide:3 jet:1 ", 1,
         ""},
        {"reads what is not there", "Alt+R Return", "/no/such.reg", IDYES, IDOK, "core:1 wide:3 ",
         2, "/no/such.reg: "},
        {"is told of losses", "Down Down Alt+W Return", "never.cma", IDNO, IDOK, "core:1 wide:3 ",
         2, "Write it all the same?"},
    };
    for (const auto& row : rows) {
        AAreaSets sets;
        AreaCollection areas, one, three;
        CString error;
        fill(areas, 2);
        fill(one, 1);
        fill(three, 3);
        (void)sets.keep("core", one, error);
        (void)sets.keep("wide", three, error);
        messages.clear();
        answer = row.answer;
        fileName = row.file;
        AAreaSetsDlg dialog(sets, areas, map);
        pressKeys(row.keys);
        EXPECT_EQ(dialog.DoModal(), row.result) << row.name;
        EXPECT_EQ(asText(sets), row.sets) << row.name;
        EXPECT_EQ(areas.count(), row.areas) << row.name;
        EXPECT_EQ(messages.empty(), !*row.message) << row.name << messages;
        EXPECT_NE(messages.find(row.message), CString::npos) << row.name << messages;
        // what the dialog took is one step for the user
        if (areas.count() != 2) {
            EXPECT_TRUE(areas.undo());
            EXPECT_EQ(areas.count(), 2);
        }
    }
    EXPECT_FALSE(std::filesystem::exists("never.cma"));
}

TEST_F(CleanDialogs, BeamIsAskedByKeysAlone)
{
    EXPECT_EQ(doubleMnemonics(beamShapePage, "a"), "");
    EXPECT_EQ(collisionsWhenGrown(beamShapePage, beamShapeResize), "");
    const struct {
        const char *name, *keys;
        int isTaken;
        const char *record, *message;
    } rows[] = {
        {"accepts", "Return", 1, "fitted 0 0 0 0", ""},
        {"gives up", "Down Esc", 0, "fitted 0 0 0 0", ""},
        {"a round one of the same area", "Down Return", 1, "circular 2 0 0 0", ""},
        {"a round one", "Down Tab '1.5' Return", 1, "circular 1.5 0 0 0", ""},
        {"typed", "Down Down Alt+M '3' Tab '2' Alt+G '-10' Return", 1, "typed 2 3 2 -10", ""},
        {"typed in arcsec", "Down Down Alt+U Down Alt+M '0.003' Return", 1, "typed 2 3 1 30", ""},
        {"minor above major", "Down Down Alt+I '5' Return '1' Return", 1, "typed 2 4 1 30",
         "The minor axis is longer than the major one"},
        {"letters", "Down Alt+M 'x' Return '1' Return", 1, "circular 1 0 0 0", "*"},
        {"none", "Down Alt+M Del Return '1' Return", 1, "circular 1 0 0 0", "*"},
    };
    for (const auto& row : rows) {
        ABeamShapePM pm;
        pm.fitted = {4, 1, 30};
        messages.clear();
        pressKeys(row.keys);
        EXPECT_EQ(AskBeamShape(nullptr, pm), row.isTaken) << row.name;
        EXPECT_EQ(asText(pm), row.record) << row.name;
        if (*row.message == '*') {
            EXPECT_NE(messages, "") << row.name;
        } else {
            EXPECT_EQ(messages, row.message) << row.name;
        }
    }
}

TEST_F(CleanDialogs, BeamIsFittedAnew)
{
    ABeamShapePM pm;
    pm.kind = BeamKind::typed;
    pm.typed = {3, 2, 0};
    const DirtyBeamFinder none = [](DirtyBeam&, CString& error) {
        return error = "the dirty beam is gone", 0;
    };
    pressKeys("Alt+F Return");
    EXPECT_TRUE(AskBeamShape(nullptr, pm, none));
    EXPECT_EQ(asText(pm), "typed 0 3 2 0");
    EXPECT_EQ(messages, "");
    // a lobe of 4 by 2 mas to the north, in cells of half a mas, on axes in degrees
    constexpr int side = 64;
    constexpr double cell = 0.5 / 3600e3;
    AMatrix<float> cells(side, side);
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c) {
            const double x = (c - 32) * 0.5 / 2, y = (r - 32) * 0.5 / 4;
            cells(r, c) = static_cast<float>(std::exp(-4 * std::numbers::ln2 * (x * x + y * y)));
        }
    const AFloatMatrixAccess access(cells);
    const DirtyBeamFinder finder = [&](DirtyBeam& beam, CString&) {
        beam = {&access, TMinMax{32 * cell, -31 * cell, -32 * cell, 31 * cell}, 3600};
        return 1;
    };
    pressKeys("Alt+F Return");
    EXPECT_TRUE(AskBeamShape(nullptr, pm, finder));
    EXPECT_EQ(pm.kind, BeamKind::fitted);
    EXPECT_NEAR(pm.GetBeam().major, 4, 1e-3);
    EXPECT_NEAR(pm.GetBeam().minor, 2, 1e-3);
    EXPECT_NEAR(pm.GetBeam().angle, 0, 0.01);
    EXPECT_EQ(pm.typed, (MapBeam{3, 2, 0}));
}

}  // namespace pavane
