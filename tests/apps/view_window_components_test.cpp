// Components in the window of pavane-view, and which part of it has the keyboard.
#include "pavane/axes/A2DAxis.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/tables/components/component_table.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

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
