// The window for data files without a screen.
#include "apps/view/data_menu.h"
#include "apps/view/DataWindow.h"
#include "apps/view/ViewWindows.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tests/tessel/uvfits_text.h"

#include <chrono>
#include <filesystem>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::vector<std::string> said;
int answer = IDOK;
std::string fileAnswer;

int tell(const CString& text, unsigned)
{
    said.push_back(text);
    return answer;
}

int chooseFile(CString& name, const CString&, int)
{
    name = fileAnswer;
    return !name.empty();
}

class DataWindowTest : public testing::Test
{
protected:
    DataWindowTest()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(testing::TempDir()) / "data-window" / info->name();
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "profile");
        SetProfileFile(path("profile/pavane-view.ini"));
        SetMessageFunction(tell);
        SetFileDialogAnswer(chooseFile);
        said.clear();
        answer = IDOK;
        // one amplitude a time, on two baselines in turn, in two scans
        for (int i = 0; i < 20; ++i)
            groups_.push_back(
                {float(i < 10 ? i : 1000 + i), i % 2 ? 513.f : 258.f, 1, float(i + 1)});
        write("a.uvfits", groups_);
    }
    ~DataWindowTest() override
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        SetProfileFile("");
        PostQuitMessage(0);
        (void)RunMessages();
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void write(const std::string& name, const std::vector<TestGroup>& groups) const
    {
        std::ofstream(path(name), std::ios::binary) << groupsHdu(groups) << antennaHdu();
    }
    /// Runs the messages that wait until the test holds, for some seconds at most.
    template <class Test>
    static int waitFor(const Test& test)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!test() && std::chrono::steady_clock::now() < end)
            for (MSG message; PeekMessage(message);)
                DispatchMessage(message);
        return test();
    }
    void open(DataWindow& window, const std::string& name = "a.uvfits")
    {
        ASSERT_TRUE(window.Create(ViewOptions()));
        ASSERT_TRUE(window.OpenFile(path(name)));
        window.Show();
        ASSERT_TRUE(waitFor([&] {
            return !window.document()->isReading() && !window.document()->observation().isFilling();
        }));
    }
    static int isOffered(DataWindow& window, unsigned id)
    {
        CMenu popup;
        popup.AppendMenu("x", id);
        window.OnInitMenuPopup(popup);
        return popup.lines()[0].enabled;
    }
    static std::int64_t plotted(DataWindow& window)
    {
        EXPECT_TRUE(waitFor([&] { return !window.document()->isReading(); }));
        return window.document()->points()->plotted();
    }

    fs::path folder_;
    std::vector<TestGroup> groups_;
};

}  // namespace

TEST_F(DataWindowTest, PanelsAreThoseOfWhatIsMarked)
{
    DataWindow window;
    open(window);
    const auto command = [&](unsigned id) { window.SendMessage(WM_COMMAND, id, 0); };
    EXPECT_FALSE(window.panels());
    EXPECT_FALSE(isOffered(window, idNextPanels));
    for (const unsigned kind : {1u, 3u}) {
        command(idPlotOf + kind);
        ASSERT_TRUE(window.panels());
        ASSERT_TRUE(waitFor([&] { return !window.panels()->IsReading(); }));
        ASSERT_TRUE(window.panels()->GetAxis());
        EXPECT_EQ(window.panels()->GetAxis()->getPanelCount(), 1)
            << "one baseline, stored both ways";
    }
    EXPECT_TRUE(isOffered(window, idNextPanels));
    command(idMorePanels);
    EXPECT_GT(window.panels()->GetPanelsOfPage(), 12);
    // no three telescopes; another file; another plot
    command(idPlotOf + 2);
    EXPECT_FALSE(window.panels()->GetAxis());
    ASSERT_TRUE(window.OpenFile(path("a.uvfits")));
    command(idPlotOf);
    EXPECT_FALSE(window.panels());
    EXPECT_TRUE(said.empty());
}

TEST_F(DataWindowTest, ListsWhatARectangleOfAViewHolds)
{
    DataWindow window;
    open(window);
    const auto command = [&](unsigned id) { window.SendMessage(WM_COMMAND, id, 0); };
    command(idListShown);
    EXPECT_EQ(window.list().rows(), 20);
    EXPECT_EQ(window.tabs().GetItemPage(window.tabs().GetCurSel()), &window.list());
    window.plot().UpdateWindow();
    const ABAxis& axis = *window.plot().GetPlot();
    const auto at = [&](double x, double y) {
        const CPoint point(axis.RPXtoGPX(x), axis.RPYtoGPY(y));
        return MAKELPARAM(point.x, point.y);
    };
    // amplitudes from 5.5 to 10.5, the greatest beyond the plot
    const auto drag = [&](LPARAM from, LPARAM to) {
        window.plot().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON | MK_SHIFT, from);
        window.plot().SendMessage(WM_MOUSEMOVE, MK_LBUTTON | MK_SHIFT, to);
        window.plot().SendMessage(WM_LBUTTONUP, MK_SHIFT, to);
    };
    drag(at(8e6, 5.5), at(8.5e6, 10.5));
    ASSERT_EQ(window.list().rows(), 5);
    const char* const first[] = {
        "6", "0/00:00:05.0", "CD", "AB", "M87", "1", "1", "RR", "8.4000004", "0",
        "0", "8.4000004",    "6",  "0",  "1",   "1", "6"};
    EXPECT_FALSE(window.plot().IsRangeZoomed());
    for (int column = 1; column < static_cast<int>(std::size(first)); ++column)
        EXPECT_EQ(window.list().cellAsStr(1, column, nullptr), first[column]) << column;
    drag(at(8.6e6, 3), at(8.5e6, 10.5));
    EXPECT_EQ(window.list().rows(), 0);
    command(idPlotOf + 5);
    EXPECT_EQ(plotted(window), 20);
    EXPECT_EQ(window.shownPlot(), DataPlot::coverage);
    window.plot().UpdateWindow();
    EXPECT_EQ(window.plot().GetWholeRange().xMin, -window.plot().GetWholeRange().yMax);
    command(idListShown);
    EXPECT_EQ(window.list().rows(), 20) << "a mirror image is no other visibility";
    command(idPlotOf + 1);
    command(idPlotOf);
    EXPECT_EQ(plotted(window), 20);
    window.plot().UpdateWindow();
    EXPECT_EQ(window.plot().GetWholeRange().xMin, 0);
    EXPECT_TRUE(said.empty());
}

TEST_F(DataWindowTest, ShowsColoursAndMeansAndKeepsThem)
{
    const auto command = [](DataWindow& window, unsigned id) {
        window.SendMessage(WM_COMMAND, id, 0);
    };
    WriteProfileString("pavane-view-data", "MeansOver", "100");
    {
        DataWindow window;
        open(window);
        EXPECT_EQ(plotted(window), 4) << "two scans of two baselines";
        command(window, idListShown);
        ASSERT_EQ(window.list().rows(), 4);
        EXPECT_EQ(window.list().cellAsStr(1, 14, nullptr), "5");
        command(window, idColoursBy + 1);
        EXPECT_EQ(plotted(window), 4);
        EXPECT_EQ(window.document()->points()->classes().size(), 1u) << "stored both ways";
        command(window, idNextColours);
        EXPECT_EQ(plotted(window), 4);
        EXPECT_EQ(window.document()->points()->view().colour, UvColour::telescope);
        window.plot().UpdateWindow();
        // panels have means, but no such colours
        command(window, idPlotOf + 1);
        ASSERT_TRUE(waitFor([&] { return !window.panels()->IsReading(); }));
        EXPECT_NE(window.panels()->GetAxis(), nullptr);
        command(window, idPlotOf + 5);
        EXPECT_EQ(window.document()->points()->view().colour, UvColour::telescope);
        EXPECT_EQ(plotted(window), 4);
        window.SendMessage(WM_CLOSE, 0, 0);
    }
    DataWindow again;
    open(again);
    EXPECT_EQ(again.document()->points()->view().colour, UvColour::telescope);
    EXPECT_EQ(again.document()->points()->view().seconds, 100);
    EXPECT_TRUE(said.empty());
}

TEST_F(DataWindowTest, PanelsOfTheCommandLineStopAndGoOn)
{
    std::vector<TestGroup> groups;
    for (int i = 0; i < 4; ++i)
        for (const float baseline : {258.f, 259.f, 515.f})
            groups.push_back({float(i), baseline, 1, float(i + 1)});
    write("three.uvfits", groups);
    ViewOptions options;
    options.plot = {DataPlot::closure, 1, "1-2-3", 1};
    DataWindow window;
    ASSERT_TRUE(window.Create(options));
    ASSERT_TRUE(window.OpenFile(path("three.uvfits")));
    window.Show();
    const auto command = [&](unsigned id) { window.SendMessage(WM_COMMAND, id, 0); };
    const auto isRead = [&] {
        return waitFor([&] { return window.panels()->GetAxis() && !window.panels()->IsReading(); });
    };
    ASSERT_TRUE(isRead());
    EXPECT_EQ(window.panels()->GetAxis()->getPanelCount(), 1);
    command(idPlotOf + 1);
    ASSERT_TRUE(isRead()) << "the list was one of triangles";
    EXPECT_EQ(window.panels()->GetAxis()->getPages(), 3);
    command(idPlotOf + 3);
    ASSERT_TRUE(window.panels()->IsReading());
    command(idStopReading);
    EXPECT_TRUE(window.panels()->IsStopped());
    EXPECT_TRUE(isOffered(window, idGoOnReading));
    command(idGoOnReading);
    EXPECT_TRUE(window.panels()->IsReading());
    ASSERT_TRUE(isRead());
    EXPECT_FALSE(window.panels()->IsStopped() || isOffered(window, idGoOnReading));
    window.UpdateWindow();
    window.panels()->UpdateWindow();
    window.panels()->SetPlotFocus({MultiFocusKind::scale, 0, 1, -1, -1});
    const MultiRanges before = window.panels()->GetRanges();
    command(idZoomIn);
    EXPECT_EQ(window.panels()->GetRanges().x, before.x);
    EXPECT_LT(window.panels()->GetRanges().y[1].max, before.y[1].max);
    command(idPlotOf + 4);
    EXPECT_FALSE(window.panels()->GetAxis()) << "no amplitude of three telescopes";
    command(idPlotOf + 2);
    command(idPlotOf);  // what is not shown is not read
    EXPECT_FALSE(window.panels());
}

TEST_F(DataWindowTest, PlotsWhatIsMarkedInAllOfItsTables)
{
    DataWindow window;
    open(window);
    EXPECT_EQ(plotted(window), 20);
    const struct {
        UvTable table;
        unsigned command;  ///< at the first row
        int after;
    } steps[] = {{UvTable::baselines, ID_MARK_SELECTED, 10}, {UvTable::scans, ID_MARK_SELECTED, 5},
                 {UvTable::telescopes, ID_MARK_NONE, 0},     {UvTable::telescopes, idUndo, 5},
                 {UvTable::baselines, ID_MARK_INVERT, 5},    {UvTable::baselines, ID_MARK_ALL, 10},
                 {UvTable::stokes, ID_MARK_INVERT, 0},       {UvTable::stokes, ID_MARK_INVERT, 10},
                 {UvTable::sources, ID_MARK_SELECTED, 0},    {UvTable::sources, idUndo, 10},
                 {UvTable::frequencies, ID_MARK_NONE, 0},    {UvTable::frequencies, idUndo, 10},
                 {UvTable::scans, ID_MARK_ALL, 20}};
    for (const auto& step : steps) {
        window.tabs().SetCurSel(static_cast<int>(step.table));
        window.selector(step.table).table().SetSelectOneCell(1, 1);
        window.SendMessage(WM_COMMAND, step.command);
        EXPECT_EQ(plotted(window), step.after) << uvTableLook(step.table).name << step.command;
    }
}

TEST_F(DataWindowTest, AClickOnAPointFindsItsBaselineAndScan)
{
    DataWindow window;
    open(window);
    window.plot().UpdateWindow();
    const ABAxis& axis = *window.plot().GetPlot();
    const LPARAM at = MAKELPARAM(axis.RPXtoGPX(double{1e-3f} * 8.4e9) + 2, axis.RPYtoGPY(16.0) - 2);
    window.plot().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, at);
    window.plot().SendMessage(WM_LBUTTONUP, 0, at);
    EXPECT_EQ(window.selector(UvTable::baselines).table().getSelectRect().anchorRow, 2);
    EXPECT_EQ(window.selector(UvTable::scans).table().getSelectRect().anchorRow, 2);
    const std::string found = window.statusLine().GetTexts()[0];
    EXPECT_EQ(found.rfind("CD - AB, scan 2, 0/00:16:55.0, IF 1 RR: 16 Jy", 0), 0u) << found;
}

TEST_F(DataWindowTest, TellsOfAFileThatChangesWhileItIsReadAndKeepsWhatItHas)
{
    for (int i = 0; i < 300000; ++i)
        groups_.push_back({float(2000 + i), 258, 1, 1});
    for (const char* harm : {"cut", "gone"}) {
        write("big.uvfits", groups_);
        DataWindow window;
        ASSERT_TRUE(window.Create(ViewOptions()) && window.OpenFile(path("big.uvfits")));
        said.clear();
        if (harm == std::string("cut"))
            fs::resize_file(path("big.uvfits"), 60000);
        else
            fs::remove(path("big.uvfits"));
        EXPECT_TRUE(waitFor([] { return !said.empty(); })) << harm;
        ASSERT_EQ(said.size(), 1u) << harm;
        EXPECT_NE(said[0].find("big.uvfits"), std::string::npos) << said[0];
        EXPECT_TRUE(waitFor([&] { return !window.document()->isReading(); }));
        EXPECT_GT(window.document()->points()->plotted(), 0);
        EXPECT_EQ(said.size(), 1u) << harm;
    }
}

TEST_F(DataWindowTest, AsksAboutUnsavedGroupsAndReadsThemBack)
{
    DataWindow window;
    open(window);
    window.tabs().SetCurSel(uvTableCount + 1);
    EXPECT_EQ(window.MayLeaveGroups(), 1);
    EXPECT_TRUE(said.empty());
    EXPECT_FALSE(isOffered(window, idUndo));
    EXPECT_FALSE(isOffered(window, idStopReading));
    EXPECT_TRUE(isOffered(window, ID_FREQ_DELETE_GROUP));
    window.SendMessage(WM_COMMAND, ID_FREQ_DELETE_GROUP);
    EXPECT_TRUE(isOffered(window, idUndo));
    EXPECT_NE(window.GetWindowText().find('*'), std::string::npos);
    answer = IDCANCEL;
    window.SendMessage(WM_CLOSE);
    EXPECT_TRUE(window.GetSafeHwnd());
    EXPECT_EQ(said.size(), 1u);
    window.SendMessage(WM_COMMAND, idUndo);
    EXPECT_EQ(window.GetWindowText().find('*'), std::string::npos);
    fileAnswer = path("a.groups");
    window.SendMessage(WM_COMMAND, idSaveGroups);
    ASSERT_TRUE(fs::exists(path("a.groups")));
    said.clear();
    window.SendMessage(WM_COMMAND, idOpenGroups);
    EXPECT_TRUE(said.empty());
    std::ofstream(path("a.groups")) << "nothing of the kind";
    window.SendMessage(WM_COMMAND, idOpenGroups);
    EXPECT_EQ(said.size(), 1u);
    EXPECT_EQ(window.document()->groups().count(), 1);
    fileAnswer = path("a.uvfits");
    window.SendMessage(WM_COMMAND, idSaveGroupsAs);
    EXPECT_EQ(said.size(), 2u);  // it is the data file
    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(window.GetSafeHwnd());
}

TEST_F(DataWindowTest, AFileOfAnotherKindGetsItsOwnWindowAndTheLastOneEndsTheProgram)
{
    std::ofstream(path("map.fits"), std::ios::binary)
        << hdu(imageCards(-32, {2, 2}), std::string(16, '\0'));
    ViewWindows windows;
    ViewOptions options;
    options.map = path("map.fits");
    ASSERT_TRUE(windows.openFirst(options));
    EXPECT_TRUE(windows.openWindow(path("a.uvfits")));
    EXPECT_EQ(windows.count(), 2);
    ViewOptions several = options;  // maps go together
    several.more = {path("a.uvfits"), path("map.fits"), path("missing.fits")};
    ViewWindows others;
    said.clear();
    EXPECT_TRUE(others.openFirst(several));
    EXPECT_EQ(others.count(), 2);
    EXPECT_EQ(said.size(), 1u);
    said.clear();
    std::ofstream(path("map.fits")) << "no map";
    EXPECT_FALSE(windows.openWindow(path("map.fits")));
    EXPECT_EQ(said.size(), 1u);
    EXPECT_EQ(windows.count(), 2);
}

}  // namespace pavane
