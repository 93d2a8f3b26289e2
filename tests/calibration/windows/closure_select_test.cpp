#include "pavane/calibration/windows/AClosureSelectDlg.h"
#include "pavane/resources/closure_dialog.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tests/calibration/made_data.h"

namespace pavane
{

namespace
{

std::vector<UvBaseline> baselinesOf(const std::vector<MadeGroup>& groups)
{
    std::vector<UvBaseline> baselines;
    for (const MadeGroup& g : groups)
        baselines.push_back({g.subarray, g.a, g.b, 1});
    return baselines;
}

CString namesOf(AClosureTbl& table)
{
    CString names;
    for (int row = 1; row <= table.rows(); ++row)
        names += (names.empty() ? "" : " ") + table.cellAsStr(row, 1, nullptr);
    return names;
}

}  // namespace

TEST(ClosureSelect, ListsWhatIsAskedForAndKeepsMarks)
{
    // telescope 5 sees less: its triangles come last into a set
    std::vector<MadeGroup> groups = madeGroups(4, {0, 2, 4});
    for (const MadeGroup& g : madeGroups(5, {0}))
        if (g.a == 5 || g.b == 5)
            groups.push_back(g);
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("select.uvfits", groups), error)) << error;
    AClosureSelectDlg dialog(file, baselinesOf(groups));
    EXPECT_EQ(dialog.GetChosen().size(), 6u);
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ReadAll();
    EXPECT_EQ(dialog.triangles().rows(), 10);
    EXPECT_EQ(dialog.triangles().cellAsStr(1, 2, nullptr), "3");
    EXPECT_EQ(dialog.triangles().cellAsStr(3, 2, nullptr), "1");

    using Shown = AClosureSelectDlg::Shown;
    const struct {
        Shown shown;
        int reference;
        CString search, names;
    } cases[] = {{Shown::all, 1, "3-4", "1-3-4 2-3-4 3-4-5"},
                 {Shown::withReference, 5, "", "1-2-5 1-3-5 1-4-5 2-3-5 2-4-5 3-4-5"},
                 {Shown::withReference, 5, "2-", "1-2-5 2-3-5 2-4-5"},
                 {Shown::independent, 1, "", "1-2-3 1-2-4 1-2-5 1-3-4 1-3-5 1-4-5"},
                 {Shown::all, 1, "no such name", ""}};
    for (const auto& c : cases) {
        if (c.shown == Shown::withReference)
            dialog.SetReference(c.reference - 1);
        else
            dialog.ShowTriangles(c.shown);
        dialog.SetDlgItemText(IDC_CLOSURE_SEARCH, c.search);
        dialog.Search(c.search);
        EXPECT_EQ(namesOf(dialog.triangles()), c.names);
        EXPECT_EQ(dialog.GetChosen().size(), 6u) << "what is not listed keeps its marks";
    }
    dialog.Search("");
    const auto press = [&](unsigned id) { dialog.SendMessage(WM_COMMAND, id, 0); };
    press(IDC_CLOSURE_INVERT);
    EXPECT_EQ(dialog.GetChosen().size(), 4u);
    press(IDC_CLOSURE_ALL);
    EXPECT_EQ(dialog.GetChosen().size(), 10u);
    EXPECT_EQ(dialog.GetDlgItemText(IDC_CLOSURE_COUNT), "10 of 10 marked");
    (void)dialog.telescopes().ToggleMark(4);
    EXPECT_EQ(namesOf(dialog.triangles()), "1-2-3 1-2-4 1-3-4 2-3-4");
    EXPECT_EQ(dialog.GetChosen().size(), 4u) << "those of telescopes that are left out go";
    press(IDC_CLOSURE_NONE);
    EXPECT_TRUE(dialog.GetChosen().empty());
    dialog.SetChosen({{1, {1, 2, 4}, 0}});
    EXPECT_EQ(dialog.GetChosen().size(), 1u);
    dialog.EndDialog(IDOK);
}

TEST(ClosureSelect, DataWithoutTrianglesLeavesNothingToChoose)
{
    const std::vector<MadeGroup> groups = {MadeGroup{}, MadeGroup{2, 2, 3}};
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("no_triangles.uvfits", groups), error)) << error;
    for (const auto& baselines : {baselinesOf(groups), std::vector<UvBaseline>()}) {
        AClosureSelectDlg dialog(file, baselines);
        ASSERT_TRUE(dialog.CreateModeless());
        dialog.ReadAll();
        EXPECT_EQ(dialog.triangles().rows(), 0);
        EXPECT_TRUE(dialog.GetChosen().empty());
        dialog.EndDialog(IDCANCEL);
    }
}

TEST(ClosureSelect, WithoutAMarkedPolarisationTrianglesHaveNoPoints)
{
    const std::vector<MadeGroup> groups = madeGroups(4, {0, 2, 4});
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("unmarked.uvfits", groups), error)) << error;
    UvMarks marks;
    marks.stokes = ABitArray(static_cast<int>(file.header().stokes.size()));
    AClosureSelectDlg dialog(file, baselinesOf(groups), marks);
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ReadAll();
    EXPECT_GT(dialog.triangles().rows(), 0);
    for (const ClosureTriangle& triangle : dialog.GetChosen())
        EXPECT_EQ(triangle.points, 0);
    dialog.EndDialog(IDCANCEL);
}

TEST(ClosureSelect, CountedPointsChooseTheSetUntilTheUserDoes)
{
    // of the baselines to telescope 1 nothing is good, and the groups do not tell
    std::vector<MadeGroup> groups = madeGroups(5, {0, 2, 4});
    for (MadeGroup& g : groups)
        g.weight = g.a == 1 || g.b == 1 ? -1 : 4;
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("counted.uvfits", groups), error)) << error;
    for (const int isMarked : {0, 1}) {
        AClosureSelectDlg dialog(file, baselinesOf(groups));
        ASSERT_TRUE(dialog.CreateModeless());
        if (isMarked)
            (void)dialog.triangles().ToggleMark(9);
        const std::size_t before = dialog.GetChosen().size();
        dialog.ReadAll();
        dialog.ShowTriangles(AClosureSelectDlg::Shown::independent);
        EXPECT_EQ(namesOf(dialog.triangles()), "2-3-4 2-3-5 2-4-5");
        EXPECT_EQ(dialog.GetChosen().size(), isMarked ? before : 3u);
        for (const ClosureTriangle& t : dialog.GetChosen())
            EXPECT_TRUE(isMarked || t.points == 3);
        dialog.EndDialog(IDCANCEL);
    }
}

TEST(ClosureSelect, TakesAveragingFromItsFields)
{
    const std::vector<MadeGroup> groups = madeGroups(4, {0, 2});
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("fields.uvfits", groups), error)) << error;
    const struct {
        const char* text;
        int isTaken;
        double seconds;
    } cases[] = {{"", 1, 0}, {" 30 ", 1, 30}, {"0", 1, 0}, {"-1", 0, 7}, {"x", 0, 7}};
    const MessageFunction before =
        SetMessageFunction([](const CString&, unsigned) { return IDOK; });
    for (const auto& c : cases) {
        AClosureSelectDlg dialog(file, baselinesOf(groups));
        dialog.SetAveraging({{1, 0}, 7});
        ASSERT_TRUE(dialog.CreateModeless());
        EXPECT_EQ(dialog.GetDlgItemText(IDC_CLOSURE_SECONDS), "7");
        dialog.SetDlgItemText(IDC_CLOSURE_SECONDS, c.text);
        dialog.SendMessage(WM_COMMAND, IDOK, 0);
        EXPECT_EQ(dialog.GetAveraging().seconds, c.seconds) << c.text;
        EXPECT_EQ(dialog.GetAveraging().split.ifs, 1);
        EXPECT_EQ(!dialog.GetSafeHwnd(), c.isTaken) << c.text;
        if (!c.isTaken)
            dialog.EndDialog(IDCANCEL);
    }
    (void)SetMessageFunction(before);
}

}  // namespace pavane
