// The window of pavane-view without a screen: what the user could lose is asked about.
#include "apps/view/any_area_file.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/images/palettes.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/tables/components/component_table.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDialog.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/fits_map.h"
#include "tessel/paths.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

// What boxes said, and what the user answers to them.
std::vector<std::string> said;
int answer = IDOK;
std::string fileAnswer;
int dialogAnswer = IDCANCEL;

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

int answerDialog(CDialog&) { return dialogAnswer; }

class ViewWindow : public testing::Test
{
protected:
    ViewWindow()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(testing::TempDir()) / "view-window" / info->name();
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        SetProfileFile(path("profile/pavane-view.ini"));
        fs::create_directories(folder_ / "profile");
        SetMessageFunction(tell);
        SetFileDialogAnswer(chooseFile);
        SetDialogAnswer(answerDialog);
        said.clear();
        LoadBuiltInPalette();
        writeMap("map.fits");
    }
    ~ViewWindow() override
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        SetDialogAnswer(nullptr);
        SetProfileFile("");
        forgetQuit();
    }
    /// A closed window has asked for the end: the next loop shall run.
    static void forgetQuit()
    {
        PostQuitMessage(0);
        (void)RunMessages();
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void writeMap(const std::string& name)
    {
        AMatrix<float> cells(48, 64);
        for (int i = 0; i < 48 * 64; ++i)
            cells.data()[i] = std::sin(static_cast<float>(i) * 0.01f);
        MapHeader header;
        header.axes = {{64, "RA---SIN", "deg", 187.7, 32, -1e-8, 0},
                       {48, "DEC--SIN", "deg", 12.4, 24, 1e-8, 0}};
        header.hasCelestialAxes = 1;
        std::string error;
        ASSERT_TRUE(writeFitsMap(path(name), cells, header, error)) << error;
    }
    void open(MainWindow& window)
    {
        ASSERT_TRUE(window.Create(ViewOptions()));
        ASSERT_TRUE(window.OpenMap(path("map.fits"), -1));
        window.Show();
        window.view().UpdateWindow();
    }
    static CRect clientOf(const CWnd& window)
    {
        CRect client;
        window.GetClientRect(client);
        return client;
    }
    static ATrackerArrayInAxis& areas(MainWindow& window) { return *window.view().GetTrackers(); }
    static void addArea(MainWindow& window, double size)
    {
        auto* const rect = new ARPRectTracker;
        rect->SetRect({size * 1e-5, size * 1e-5, -size * 1e-5, -size * 1e-5});
        areas(window).ChangeActiveTrack(&window.view(), areas(window).Add(rect));
    }
    std::size_t copies() const
    {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(folder_ / "profile"))
            count += entry.path().extension() == ".areas";
        return count;
    }

    fs::path folder_;
};

}  // namespace

TEST_F(ViewWindow, AFailedSaveLeavesAreasUnsavedAndSaysWhy)
{
    MainWindow window;
    open(window);
    addArea(window, 20);
    EXPECT_EQ(copies(), 1u);
    fileAnswer = path("nowhere/a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("nowhere/a.areas"), std::string::npos);
    EXPECT_TRUE(window.session().isModified());
    EXPECT_EQ(window.GetWindowText().substr(0, 9), "map.fits*");

    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    EXPECT_FALSE(window.session().isModified());
    EXPECT_EQ(copies(), 0u);
    addArea(window, 10);
    fileAnswer.clear();  // Save knows the name now
    window.SendMessage(WM_COMMAND, idSaveAreas);
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(window.session().isModified());
    window.SendMessage(WM_COMMAND, ID_TRACK_REDO);
    EXPECT_FALSE(window.session().isModified());
    EXPECT_EQ(said.size(), 1u);

    fileAnswer = path("nowhere/m.fits");
    window.SendMessage(WM_COMMAND, idSaveMask);
    fileAnswer = path("nowhere/m.png");
    window.SendMessage(WM_COMMAND, idSavePicture);
    EXPECT_EQ(said.size(), 3u);
    for (const char* name : {"m.png", "m.pdf", "m.svg"}) {
        fileAnswer = path(name);
        window.SendMessage(WM_COMMAND, idSavePicture);
        EXPECT_TRUE(IsFileExists(fileAnswer));
    }
    EXPECT_EQ(said.size(), 3u);
}

TEST_F(ViewWindow, WritesNothingOverWhatIsOpen)
{
    MainWindow window;
    open(window);
    addArea(window, 20);
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    fs::create_hard_link(path("map.fits"), path("map.png"));
    fs::create_symlink("a.areas", path("areas.png"));
    const auto size = fs::file_size(path("map.fits"));
    const struct {
        unsigned command;
        const char* name;
    } cases[] = {{idSaveMask, "map.fits"},
                 {idSaveMask, "a.areas"},
                 {idSavePicture, "map.png"},
                 {idSavePicture, "areas.png"},
                 {idSaveAreasAs, "./map.fits"}};
    for (const auto& c : cases) {
        said.clear();
        fileAnswer = path(c.name);
        window.SendMessage(WM_COMMAND, c.command);
        ASSERT_EQ(said.size(), 1u) << c.name;
        EXPECT_NE(said[0].find("Choose another name"), std::string::npos) << said[0];
    }
    said.clear();
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreasAs);
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(fs::file_size(path("map.fits")), size);
    EXPECT_TRUE(window.OpenAreas(path("a.areas")));
}

TEST_F(ViewWindow, AsksBeforeUnsavedAreasAreLeft)
{
    writeMap("other.fits");
    MainWindow window;
    open(window);
    const struct {
        const char* name;
        int answer;
        const char* file;  ///< where they are saved, empty when the user cancels there
        int leaves;
    } cases[] = {{"no", IDNO, "", 1},
                 {"cancel", IDCANCEL, "", 0},
                 {"yes, then no name", IDYES, "", 0},
                 {"yes", IDYES, "left.areas", 1}};
    for (const auto& c : cases) {
        areas(window).Clear(nullptr);
        areas(window).SetSaved();
        addArea(window, 8);
        answer = c.answer;
        fileAnswer = *c.file ? path(c.file) : "";
        said.clear();
        EXPECT_EQ(window.OpenMap(path("other.fits"), -1), c.leaves) << c.name;
        EXPECT_EQ(said.size(), 1u) << c.name;
        EXPECT_EQ(areas(window).count(), !c.leaves) << c.name;
        EXPECT_EQ(*c.file != 0, IsFileExists(path("left.areas"))) << c.name;
    }
    // an open polygon is work too
    window.view().UpdateWindow();
    const CRect plot = window.view().GetAxis()->getGraphRect();
    areas(window).BeginMode(&window.view(), toolArea);
    for (const CPoint at : {plot.CenterPoint(), plot.TopLeft() + CPoint(9, 9)}) {
        const LPARAM place = MAKELPARAM(at.x, at.y);
        window.view().PostMessage(WM_LBUTTONUP, 0, place);
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, place);
    }
    ASSERT_TRUE(areas(window).workingTracker());
    answer = IDCANCEL;
    said.clear();
    window.SendMessage(WM_CLOSE);
    EXPECT_EQ(said.size(), 1u);
    EXPECT_TRUE(window.GetSafeHwnd());
    answer = IDNO;
    EXPECT_TRUE(window.OpenMap(path("map.fits"), -1));
    EXPECT_FALSE(areas(window).workingTracker());
    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_EQ(copies(), 0u);
}

TEST_F(ViewWindow, ABadMapLeavesTheShownOneAndItsAreas)
{
    MainWindow window;
    open(window);
    addArea(window, 8);
    areas(window).SetSaved();
    std::ofstream(path("bad.fits")) << "SIMPLE  = no";
    EXPECT_FALSE(window.OpenMap(path("bad.fits"), -1));
    EXPECT_FALSE(window.OpenMap(path("gone.fits"), -1));
    ASSERT_EQ(said.size(), 2u);
    EXPECT_NE(said[0].find("bad.fits"), std::string::npos);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_EQ(window.GetWindowText().substr(0, 8), "map.fits");
}

TEST_F(ViewWindow, ReplacesAreasByADamagedFileOnlyWhenTheUserAgrees)
{
    MainWindow window;
    open(window);
    for (const int size : {20, 15, 10})
        addArea(window, size);
    fileAnswer = path("a.areas");
    window.SendMessage(WM_COMMAND, idSaveAreas);
    fs::resize_file(path("a.areas"), fs::file_size(path("a.areas")) - 10);
    areas(window).Clear(nullptr);
    addArea(window, 5);

    dialogAnswer = IDCANCEL;
    EXPECT_FALSE(window.OpenAreas(path("a.areas")));
    EXPECT_EQ(areas(window).count(), 1);
    dialogAnswer = IDOK;
    EXPECT_TRUE(window.OpenAreas(path("a.areas")));
    EXPECT_EQ(areas(window).count(), 2);
    EXPECT_EQ(window.session().file(), "");  // Save would lose the third
    EXPECT_TRUE(window.session().isModified());
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, OffersTheAreasOfAKilledSession)
{
    const std::string left = path("profile/left");
    {
        MainWindow window;
        open(window);
        addArea(window, 8);
        fs::copy_file(window.session().autosave().file(), left);
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
    }
    const std::string name = Autosave(path("profile/"), path("map.fits")).file();
    for (const int choice : {IDCANCEL, IDYES, IDNO}) {
        if (!copies())
            fs::copy_file(left, name);
        said.clear();
        answer = choice;
        MainWindow window;
        open(window);
        ASSERT_EQ(said.size(), 1u) << choice;
        EXPECT_NE(said[0].find("1 area,"), std::string::npos) << said[0];
        EXPECT_EQ(areas(window).count(), choice == IDYES);
        EXPECT_EQ(window.session().isModified(), choice == IDYES);
        EXPECT_EQ(copies(), choice == IDNO ? 0u : 1u);
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
        EXPECT_EQ(copies(), choice == IDCANCEL ? 1u : 0u);
    }
}

TEST_F(ViewWindow, EndsADragThatItsOwnClosingInterrupts)
{
    MainWindow window;
    open(window);
    const CRect plot = window.view().GetAxis()->getGraphRect();
    const CPoint from = plot.CenterPoint();
    areas(window).BeginMode(&window.view(), toolRect);
    window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + 30, from.y + 40));
    fileAnswer = path("map.fits");
    window.PostMessage(WM_COMMAND, idOpenMap);  // a drag lets no command in
    window.PostMessage(WM_CLOSE);
    window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(copies(), 0u);
}

TEST_F(ViewWindow, KeepsAndSavesNothingThatADragHasHalfDone)
{
    const std::string copy = Autosave(path("profile/"), path("map.fits")).file();
    const auto edge = [](const std::string& file) {
        ARPTrackerArray read;
        AreaNotes notes;
        std::string error;
        EXPECT_TRUE(openAreas(file, AreaPlace(), read, notes, error)) << error;
        return read.count() == 2 ? static_cast<ARPRectTracker*>(read(1))->rect().left : 0;
    };
    for (const int closes : {0, 1}) {
        MainWindow window;
        open(window);
        addArea(window, 20);
        addArea(window, 15);  // within the pace: the copy is to be written later
        const CPoint from = window.view().GetAxis()->getGraphRect().CenterPoint();
        window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + 30, from.y + 40));
        if (closes)
            window.PostMessage(WM_CLOSE);
        else
            window.PostMessage(WM_TIMER, 1);
        window.view().PostMessage(WM_KEYDOWN, VK_ESCAPE);
        answer = closes ? IDYES : IDNO;
        fileAnswer = path("closed.areas");
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        EXPECT_DOUBLE_EQ(edge(closes ? fileAnswer : copy), 15e-5);
        EXPECT_NE(window.GetSafeHwnd() != 0, closes != 0);
        window.SendMessage(WM_CLOSE);
        forgetQuit();
    }
}

TEST_F(ViewWindow, BringsAnOpenPolygonBackAsOneThatIsBeingDrawn)
{
    const auto click = [](MainWindow& window, CPoint at) {
        window.view().PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
    };
    for (const int corners : {1, 2, 3}) {
        SCOPED_TRACE(corners);
        CPoint at;
        {
            MainWindow window;
            open(window);
            at = window.view().GetAxis()->getGraphRect().CenterPoint();
            addArea(window, 8);
            window.view().ChooseTool(toolArea);
            for (int i = 0; i < corners; ++i)
                click(window, {at.x + 40 * (i == 1), at.y + 40 * (i == 2)});
            window.DestroyWindow();
            forgetQuit();
        }
        said.clear();
        answer = IDYES;
        MainWindow window;
        open(window);
        ASSERT_EQ(said.size(), 1u);
        EXPECT_NE(said[0].find("1 area and an open polygon"), std::string::npos) << said[0];
        ASSERT_TRUE(areas(window).workingTracker());
        EXPECT_EQ(areas(window).count(), 1);
        click(window, {at.x - 60, at.y - 60});
        EXPECT_EQ(areas(window).CloseArea(&window.view()), corners > 1);
        while (areas(window).Undo(&window.view())) {
        }
        EXPECT_TRUE(areas(window).count() == 0 && !areas(window).workingTracker());
        answer = IDNO;
        window.SendMessage(WM_CLOSE);
        forgetQuit();
    }
}

TEST_F(ViewWindow, PicturesShowTheZoomAndAreasOnlyWhenAsked)
{
    MainWindow window;
    open(window);
    const auto picture = [&](const char* name) {
        fileAnswer = path(name);
        window.SendMessage(WM_COMMAND, idSavePicture);
        std::ifstream in(fileAnswer, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string plain = picture("plain.svg");
    ASSERT_FALSE(plain.empty());
    addArea(window, 20);
    EXPECT_EQ(picture("hidden.svg"), plain);
    window.SendMessage(WM_COMMAND, idAreasInPictures);
    EXPECT_GT(picture("areas.svg").size(), plain.size());
    window.SendMessage(WM_COMMAND, idAreasInPictures);
    window.SendMessage(WM_COMMAND, idContours);
    EXPECT_LT(picture("bare.svg").size(), plain.size());
    window.SendMessage(WM_COMMAND, idContours);
    window.SendMessage(WM_COMMAND, idZoomIn);
    EXPECT_NE(picture("zoomed.svg"), plain);
    window.SendMessage(WM_COMMAND, ID_WHOLE_MAP);
    EXPECT_EQ(picture("whole.svg"), plain);
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, CopiesItsPictureByCommandMenuAndKeyUnderOneName)
{
    MainWindow window;
    open(window);
    const CRect whole = clientOf(window.view());
    const std::function<void()> ways[] = {
        [&] { window.SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD); },
        [&] { window.view().SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD); },
        [&] {
            SetKeyStateOverride(MK_CONTROL);
            window.view().SendMessage(WM_KEYDOWN, 'C');
            SetKeyStateOverride(-1);
        }};
    for (const auto& way : ways) {
        ASSERT_TRUE(SetClipboardText("before"));
        way();
        EXPECT_EQ(GetClipboardBitmapSize().cx, whole.Width());
        EXPECT_EQ(GetClipboardBitmapSize().cy, whole.Height());
    }
    CMenu library;
    ASSERT_TRUE(library.LoadMenu(window.view().GetMenuID()));
    CMenu* const popup = library.GetSubMenu(0);
    window.view().amMenuParse(popup);
    std::string texts;
    for (const CMenu::Line& line : popup->lines())
        texts += line.text + "|";
    EXPECT_NE(texts.find("|Copy &picture\tCtrl+C|Save p&icture...\tCtrl+Shift+P|"),
              std::string::npos)
        << texts;
    // both ways to save ask for the same kinds of pictures
    for (const char* name : {"context.pdf", "context.svg"}) {
        fileAnswer = path(name);
        window.view().SendMessage(WM_COMMAND, ID_COPY_TO_BMP);
        EXPECT_TRUE(IsFileExists(fileAnswer)) << name;
    }
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, ShowsItselfWhereAHiddenOneWasKept)
{
    for (const char* kept : {"0,0,-1,-1,-1,-1,90,80,690,480", "0,6,-1,-1,-1,-1,90,80,690,480",
                             "0,1,-1,-1,-1,-1,90,80,190,120"}) {
        WriteProfileString("pavane-view", "WindowPos", kept);
        MainWindow window;
        open(window);
        EXPECT_TRUE(window.IsWindowVisible() && !window.IsIconic()) << kept;
        EXPECT_GE(clientOf(window).Width(), 200) << kept;
        window.SendMessage(WM_CLOSE);
    }
}

TEST_F(ViewWindow, ForgetsARecentMapThatIsGone)
{
    writeMap("other.fits");
    MainWindow window;
    open(window);
    ASSERT_TRUE(window.OpenMap(path("other.fits"), -1));
    fs::remove(path("map.fits"));
    window.SendMessage(WM_COMMAND, idRecent + 1);
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("map.fits"), std::string::npos);
    EXPECT_EQ(window.session().map(), path("other.fits"));
    window.SendMessage(WM_COMMAND, idRecent + 1);  // nothing there any more
    EXPECT_EQ(said.size(), 1u);
}

TEST_F(ViewWindow, EndsInDisorderWithACopyLeft)
{
    {
        MainWindow window;
        open(window);
        addArea(window, 8);
        addArea(window, 9);  // within the pace: not written yet
        areas(window).BeginMode(&window.view(), toolArea);
        const CPoint at = window.view().GetAxis()->getGraphRect().CenterPoint();
        for (const CPoint step : {CPoint(0, 0), CPoint(40, 0), CPoint(0, 40)}) {
            const LPARAM there = MAKELPARAM(at.x + step.x, at.y + step.y);
            window.view().PostMessage(WM_LBUTTONUP, 0, there);
            window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, there);
        }
        window.DestroyWindow();
    }
    ASSERT_EQ(copies(), 1u);
    ARPTrackerArray read;
    AreaNotes notes;
    std::string error;
    const std::string file = Autosave(path("profile/"), path("map.fits")).file();
    ASSERT_TRUE(openAreas(file, AreaPlace(), read, notes, error)) << error;
    ASSERT_EQ(read.count(), 3);
    EXPECT_FALSE(read(2)->IsReady());  // the polygon that was still open
}

TEST_F(ViewWindow, StartsWithAreasThatUndoDoesNotTakeAway)
{
    ARPTrackerArray one;
    one.Add(new ARPRectTracker);
    std::string error;
    ASSERT_TRUE(saveAreas(path("start.areas"), AreaPlace(), one, error)) << error;
    ViewOptions options;
    options.map = path("map.fits");
    options.areas = path("start.areas");
    MainWindow window;
    ASSERT_TRUE(window.Create(options) && window.OpenFirst(options));
    EXPECT_FALSE(window.view().GetToolBar()->IsButtonEnabled(ID_TRACK_UNDO));
    window.SendMessage(WM_COMMAND, ID_TRACK_UNDO);
    EXPECT_EQ(areas(window).count(), 1);
    EXPECT_FALSE(window.session().isModified());
}

TEST_F(ViewWindow, OpensAndClosesManyTimesWithoutGrowing)
{
    for (const char* garbage : {"", "8,1,-1", "%s%s", "8,9,9,9,9,9,99999999999,0,0,-5"})
        WriteProfileString("pavane-view", "WindowPos", garbage);
    std::size_t early = 0;
    for (int i = 0; i < 200; ++i) {
        {
            MainWindow window;
            open(window);
            window.PostMessage(WM_CLOSE);
            (void)RunMessages();
        }
#if defined(__SANITIZE_ADDRESS__)
        if (i == 40)
            early = __sanitizer_get_current_allocated_bytes();
#endif
    }
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(__sanitizer_get_current_allocated_bytes(), early + 100000);
#endif
    (void)early;
}

TEST_F(ViewWindow, ShowsComponentsOnTheMapAndBesideIt)
{
    std::ofstream(path("m.txt")) << "3\n1 1 0 1 0 0 0 0.5\n2 0.5 2e-4 0.5 30 90 1e-4 0.5\n"
                                    "3 0.1 1e-4 1 0 -90 4e-4 0.5\n";
    ViewOptions options;
    options.map = path("map.fits");
    options.model = path("m.txt");
    MainWindow window;
    ASSERT_TRUE(window.Create(options) && window.OpenFirst(options));
    window.Show();
    window.view().UpdateWindow();
    EXPECT_TRUE(said.empty());
    AComponentsTbl& table = window.model().table();
    EXPECT_EQ(table.rows(), 3);
    EXPECT_GT(clientOf(table).Width(), 100);
    // the right end of the disk, 0.4 mas to the west; and beside it
    const MapFrame& frame = *window.model().frame();
    const auto press = [&](double east, double north) {
        const MapPlace at = frame.onAxes(east, north);
        const CPointF p = window.view().GetAxis()->RPtoGPF(at.x, at.y);
        const LPARAM place = MAKELPARAM(static_cast<int>(p.x + 0.5), static_cast<int>(p.y + 0.5));
        window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, place);
        window.view().SendMessage(WM_LBUTTONUP, 0, place);
    };
    press(-4.5e-4, 0);
    EXPECT_EQ(table.selectedComponent(), 2);
    press(-3e-4, 3e-4);
    EXPECT_EQ(table.selectedComponent(), 2);
    press(0, 0);
    EXPECT_EQ(table.selectedComponent(), 0);
    window.view().UpdateWindow();
    const int drawings = window.view().contentDrawings();
    EXPECT_TRUE(table.setCellStr(1, componentFluxColumn, "0.25"));
    window.view().UpdateWindow();
    EXPECT_EQ(window.view().contentDrawings(), drawings) << "only what lies over the picture";
    EXPECT_EQ(window.GetWindowText().substr(0, 9), "map.fits*");
}

TEST_F(ViewWindow, ActsOnThePartThatHasTheKeyboard)
{
    std::ofstream(path("m.txt")) << "1\n1 1 0 1 0 0 0 0.5\n";
    MainWindow window;
    open(window);
    addArea(window, 20);
    ASSERT_TRUE(window.model().Open(path("m.txt")));
    window.SendMessage(WM_COMMAND, idValues);
    const auto command = [&](unsigned id) { window.SendMessage(WM_COMMAND, id); };
    const auto menu = [&] {
        CMenu edit;
        edit.LoadMenu({0, editItems, std::size(editItems)});
        static_cast<CWnd&>(window).OnInitMenuPopup(edit);
        CString all;
        for (const CMenu::Line& line : edit.lines())
            if (line.id == ID_TRACK_UNDO || line.id == idDelete || line.id == ID_SELECT_ALL)
                all += (line.enabled ? "+" : "-") + line.text.substr(0, line.text.find('\t'));
        return all;
    };
    EXPECT_EQ(CWnd::GetFocus(), &window.numbers());
    EXPECT_NE(menu().find("&Delete numbers+Select &all cells"), CString::npos);
    command(idNextMapPart);
    EXPECT_EQ(CWnd::GetFocus(), &window.model().table());
    EXPECT_EQ(menu(), "-&Undo+&Delete components+Select &all cells");
    command(ID_TRACK_COPY);
    command(ID_VERTEX_INSERT);
    EXPECT_EQ(window.model().table().rows(), 3);
    EXPECT_EQ(menu(), "+&Undo addition of a component+&Delete components+Select &all cells");
    command(ID_SELECT_ALL);
    command(ID_COPY_TO_CLIPBOARD);
    CString copied;
    EXPECT_TRUE(GetClipboardText(copied));
    EXPECT_EQ(copied, componentTsv(window.model().table().components()));
    command(idDelete);
    EXPECT_EQ(window.model().table().rows(), 0);
    command(ID_TRACK_UNDO);
    command(ID_TRACK_UNDO);
    EXPECT_EQ(window.model().table().rows(), 2);
    EXPECT_EQ(areas(window).count(), 1);
    command(idNextMapPart);
    EXPECT_EQ(CWnd::GetFocus(), &window.view());
    EXPECT_EQ(menu(), "+&Undo addition of Area 1+&Delete areas+Select &all areas");
    command(idDelete);
    EXPECT_EQ(areas(window).count(), 0);
    EXPECT_EQ(window.model().table().rows(), 2);
    command(idPreviousMapPart);
    EXPECT_EQ(CWnd::GetFocus(), &window.model().table());
    window.model().table().SendMessage(WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_EQ(CWnd::GetFocus(), &window.view());
    // a value that is being typed is work too
    areas(window).SetSaved();
    addArea(window, 20);
    areas(window).SetSaved();
    window.model().session().components().history().markSaved();
    window.numbers().SetFocus();
    for (const char* const text : {"word", "1e-4"}) {
        if (!window.numbers().GetDlgItem(1001))
            window.numbers().SendMessage(WM_KEYDOWN, VK_F2, 1);
        auto& field = *static_cast<CEdit*>(window.numbers().GetDlgItem(1001));
        field.SetWindowText(text);
        field.SetModify(1);
        answer = IDCANCEL;
        said.clear();
        EXPECT_FALSE(window.MayLeave());
        EXPECT_EQ(said.size(), 1u) << "that it is no number; that areas are not saved";
    }
    EXPECT_TRUE(window.session().isModified());
    areas(window).SetSaved();
}

TEST_F(ViewWindow, PlaysWithColoursAndKeepsWhatIsNoMatterOfOneMap)
{
    ViewOptions options;
    std::string error;
    ASSERT_TRUE(parseOptions({"--range", "p:10,90", "--contrast", "2,0.4", path("map.fits")},
                             options, error));
    {
        MainWindow window;
        ASSERT_TRUE(window.Create(options));
        ASSERT_TRUE(window.OpenFirst(options));
        window.Show();
        AAxisWnd& view = window.view();
        view.UpdateWindow();
        const auto graph = [&]() -> AColorsGraph& { return *view.GetColorsGraph(); };
        EXPECT_GT(graph().scale().low(), -0.999);
        EXPECT_EQ(graph().GetColorPlay().contrast, 2);
        window.SendMessage(WM_COMMAND, idScale + 1);
        window.SendMessage(WM_COMMAND, idContours);  // changes nothing of the colours
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::squareRoot);
        EXPECT_GT(graph().scale().low(), -0.999);
        view.ViewBack();  // the contours
        view.ViewBack();
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::linear);
        view.ViewForward();
        view.ViewForward();
        const CPoint middle = view.GetPlot()->getGraphRect().CenterPoint();
        const auto send = [&](unsigned message, int right) {
            view.SendMessage(message, MK_RBUTTON, MAKELPARAM(middle.x + right, middle.y));
        };
        send(WM_RBUTTONDOWN, 0);
        send(WM_MOUSEMOVE, 40);
        send(WM_RBUTTONUP, 40);
        EXPECT_GT(graph().GetColorPlay().bias, 0.4);
        view.SendMessage(WM_KEYDOWN, 'P');
        writeMap("next.fits");
        ASSERT_TRUE(window.OpenMap(path("next.fits"), -1));
        EXPECT_LT(graph().scale().low(), -0.999);
        EXPECT_TRUE(graph().GetColorPlay().isNeutral());
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::squareRoot);
        ASSERT_TRUE(LoadPalette("heat"));
        window.SendMessage(WM_CLOSE);
    }
    forgetQuit();
    LoadBuiltInPalette();
    MainWindow again;
    open(again);
    EXPECT_EQ(again.view().GetColorsGraph()->scaleKind(), MapScaleKind::squareRoot);
    EXPECT_EQ(baseNameOf(GetGlobalPaletteName()), "heat.pal");
    again.SendMessage(WM_CLOSE);
}

TEST_F(ViewWindow, AsksBeforeUnsavedComponentsAreLeft)
{
    std::ofstream(path("m.txt")) << "1\n1 1 0 1 0 0 0 0.5\n";
    MainWindow window;
    open(window);
    ASSERT_TRUE(window.model().Open(path("m.txt")));
    AComponentsTbl& table = window.model().table();
    const auto leaves = [&](int says, int saysToLosses) {
        answer = says;
        dialogAnswer = saysToLosses;
        said.clear();
        return window.MayLeave();
    };
    EXPECT_TRUE(leaves(IDCANCEL, 0));
    EXPECT_TRUE(said.empty()) << "nothing is lost";
    table.setCellStr(1, componentFluxColumn, "0.12345678");
    EXPECT_FALSE(leaves(IDCANCEL, IDOK));
    EXPECT_FALSE(leaves(IDYES, IDCANCEL)) << "six digits are not what the user wants";
    EXPECT_TRUE(leaves(IDNO, IDCANCEL));
    EXPECT_TRUE(window.model().session().isModified());
    EXPECT_TRUE(leaves(IDYES, IDOK));
    EXPECT_FALSE(window.model().session().isModified());
    table.setCellStr(1, componentAngleColumn, "3");
    EXPECT_TRUE(leaves(IDYES, IDCANCEL)) << "told once";
    fileAnswer = path("map.fits");
    window.SendMessage(WM_COMMAND, idSaveModelAs);
    ASSERT_EQ(said.size(), 2u) << "the map is open";
    table.setCellStr(1, componentAngleColumn, "4");
    said.clear();
    answer = IDNO;
    window.SendMessage(WM_COMMAND, idMapModel);
    ASSERT_EQ(said.size(), 2u) << "the question, and that this map has none";
    EXPECT_EQ(table.rows(), 1);
    window.SendMessage(WM_CLOSE);
    EXPECT_FALSE(window.GetSafeHwnd());
    AComponents saved;
    std::string error;
    ASSERT_TRUE(readComponentFile(path("m.txt"), saved, error)) << error;
    EXPECT_EQ(saved(0).PeakFlux(), 0.123457);
    EXPECT_EQ(saved(0).Angle(), 3);
}

}  // namespace pavane
