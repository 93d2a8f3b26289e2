// The sheet of a map's display and the dialog of its beam.
#include "pavane/axes/dialogs/ABeamDlg.h"
#include "pavane/axes/dialogs/ABeamWnd.h"
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/resources/map_display_ids.h"
#include "pavane/resources/map_display_messages.h"
#include "platform/controls.h"
#include "platform/profile.h"
#include "tests/axes/windows/axis_window_fixture.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <numbers>

using namespace pavane;

namespace
{

/// Full widths of 12 cells up and 8 across.
AMatrix<float> dirtyBeam()
{
    AMatrix<float> dirty(64, 64);
    for (int r = 0; r < 64; ++r)
        for (int c = 0; c < 64; ++c) {
            const double x = (c - 32) / 8.0, y = (r - 32) / 12.0;
            dirty(r, c) = static_cast<float>(std::exp(-4 * std::numbers::ln2 * (x * x + y * y)));
        }
    return dirty;
}

/// A map with contours and a beam.
struct MapShown {
    std::unique_ptr<AxisWindow> window = std::make_unique<AxisWindow>();
    MapShown()
    {
        auto* const axis = new A2DAxis(-1, 1, nullptr, 0);
        auto* const graph = new ALevelsColorGraph(axis, window->access, window->centres, 0);
        graph->setBeam({4, 2, 30});
        graph->setNames("x", "y", "Flux [%sJy/beam]");
        window->SetAxis(axis, 1);
        window->SetMap(graph);
    }
    MapDisplay shown() const { return shownDisplay(*window); }
};

void typeInto(CDialog& dialog, unsigned id, const char* text)
{
    dialog.SetDlgItemText(id, text);
    dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(EN_CHANGE) << 16 | id);
}

void chooseIn(CDialog& dialog, unsigned id, int line)
{
    if (auto* const combo = dynamic_cast<CComboBox*>(dialog.GetDlgItem(id)))
        (void)combo->SetCurSel(line);
    if (auto* const list = dynamic_cast<CListBox*>(dialog.GetDlgItem(id)))
        (void)list->SetCurSel(line);
    dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(CBN_SELCHANGE) << 16 | id);
}

struct Sheet : testing::Test, MapShown {
    struct Told : AMapDisplayDlg {
        using AMapDisplayDlg::AMapDisplayDlg;
        int forAll = 0;
        void OnForAllMaps(const MapDisplay& /*display*/) override { ++forAll; }
    };
    std::string file = testing::TempDir() + "display.ini";
    std::unique_ptr<Told> sheet;
    MapDisplay before = shown();
    Sheet()
    {
        std::filesystem::remove(file);
        SetProfileFile(file);
        sheet = std::make_unique<Told>(*window, 1, &window->top);
        EXPECT_TRUE(sheet->CreateModeless());
        sheet->ShowWindow(SW_SHOW);
    }
    ~Sheet() override
    {
        sheet.reset();
        SetProfileFile("");
        std::filesystem::remove(file);
    }
    CDialog& page(int index)
    {
        EXPECT_TRUE(sheet->SetActivePage(index)) << index;
        return *sheet->GetActivePage();
    }
    void press(unsigned id) { sheet->SendMessage(WM_COMMAND, id); }
};

enum { colours, contours, beam, axes, presets };

}  // namespace

TEST_F(Sheet, ShowsAtOnceWhatIsTypedAndBringsBackWhatWas)
{
    const struct {
        int page;
        unsigned id;
        const char* text;
        int line;  ///< to choose, for lists
    } rows[] = {
        {colours, IDC_COLOURS_SCALE, nullptr, 1},
        {colours, IDC_COLOURS_GAMMA, "2", 0},
        {colours, IDC_COLOURS_PALETTE, nullptr, 1},
        {contours, IDC_CONTOURS_UNIT, nullptr, 4},
        {contours, IDC_CONTOURS_COLOUR, nullptr, 3},
        {contours, IDC_CONTOURS_WIDTH, "4", 0},
        {beam, IDC_BEAM_MAJOR, "9", 0},
        {beam, IDC_BEAM_FILL, nullptr, 1},
        {beam, IDC_BEAM_CORNER, nullptr, 3},
        {axes, IDC_AXES_HEADER, "New", 0},
        {axes, IDC_AXES_UNIT, "K", 0},
    };
    MapDisplay last = before;
    for (const auto& row : rows) {
        CDialog& shownPage = page(row.page);
        if (row.text)
            typeInto(shownPage, row.id, row.text);
        else
            chooseIn(shownPage, row.id, row.line);
        EXPECT_FALSE(sameDisplay(shown(), last)) << row.id;
        EXPECT_EQ(shownPage.GetDlgItemText(IDC_DISPLAY_NOTE), "") << row.id;
        last = shown();
    }
    EXPECT_EQ(window->GetMap()->GetOZName(), "Flux [%sK]");
    press(ID_APPLY_NOW);
    const MapDisplay applied = shown();
    typeInto(page(beam), IDC_BEAM_MINOR, "1");
    EXPECT_FALSE(sameDisplay(shown(), applied));
    press(IDCANCEL);
    EXPECT_TRUE(sameDisplay(shown(), applied));
}

TEST_F(Sheet, FollowsWhatOthersChangeAndIsAStepOfTheViews)
{
    typeInto(page(axes), IDC_AXES_X, "mine");
    window->BeginView();
    MapDisplay theirs = shown();
    theirs.titles.y = "theirs";
    theirs.contours.width = 5;
    (void)showDisplay(*window, theirs);
    window->EndView();
    window->GetMap()->setUsualHeader("another plane");
    sheet->DisplayChanged();
    EXPECT_EQ(sheet->GetActivePage()->GetDlgItemText(IDC_AXES_Y), "theirs");
    typeInto(*sheet->GetActivePage(), IDC_AXES_VALUE, "mine");
    EXPECT_FALSE(shown().titles.isOwnHeader);
    press(IDCANCEL);
    EXPECT_EQ(shown().titles.y, "theirs");
    EXPECT_EQ(shown().titles.x, before.titles.x);
    for (const CString& x : {CString("mine"), CString("mine"), before.titles.x}) {
        window->ViewBack();
        EXPECT_EQ(shown().titles.x, x);
    }
    EXPECT_TRUE(sameDisplay(shown(), before));
    window->ViewForward();
    window->ViewForward();
    EXPECT_TRUE(sameDisplay(shown(), [&] {
        MapDisplay both = before;
        both.titles.x = "mine";
        both.titles.y = "theirs";
        both.contours.width = 5;
        return both;
    }()));
}

TEST_F(Sheet, GivesTheUsualHeaderBack)
{
    window->GetMap()->setUsualHeader("usual");
    CDialog& shownPage = page(axes);
    const auto usual = [&] { return shownPage.GetDlgItem(IDC_AXES_USUAL)->IsWindowEnabled(); };
    EXPECT_FALSE(usual());
    typeInto(shownPage, IDC_AXES_HEADER, "mine");
    EXPECT_TRUE(usual());
    EXPECT_EQ(shown().titles.header, "mine");
    shownPage.SendMessage(WM_COMMAND, IDC_AXES_USUAL);
    EXPECT_FALSE(usual() || shown().titles.isOwnHeader);
    EXPECT_EQ(shownPage.GetDlgItemText(IDC_AXES_HEADER), "usual");
    window->GetMap()->setUsualHeader("another plane");
    EXPECT_EQ(shown().titles.header, "another plane");
}

TEST_F(Sheet, SaysWhatCannotBeShownAndStaysOnThatPage)
{
    const struct {
        int page;
        unsigned id;
        const char* text;
        const char* note;
    } rows[] = {
        {colours, IDC_COLOURS_LOW, "x", displayNoNumberText},
        {colours, IDC_COLOURS_GAMMA, "0", displayPlayText},
        {contours, IDC_CONTOURS_WIDTH, "99", displayWidthText},
        {beam, IDC_BEAM_MINOR, "5", displayBeamOrderText},
        {beam, IDC_BEAM_ANGLE, "north", displayNoNumberText},
    };
    for (const auto& row : rows) {
        CDialog& shownPage = page(row.page);
        const CString good = shownPage.GetDlgItemText(row.id);
        typeInto(shownPage, row.id, row.text);
        EXPECT_EQ(shownPage.GetDlgItemText(IDC_DISPLAY_NOTE), row.note) << row.text;
        EXPECT_TRUE(sameDisplay(shown(), before)) << row.text;
        EXPECT_FALSE(sheet->SetActivePage(presets)) << row.text;
        press(IDOK);
        ASSERT_TRUE(sheet->GetSafeHwnd()) << row.text;
        typeInto(shownPage, row.id, good.c_str());
        EXPECT_EQ(shownPage.GetDlgItemText(IDC_DISPLAY_NOTE), "");
    }
    press(IDOK);
    EXPECT_FALSE(sheet->GetSafeHwnd());
    EXPECT_TRUE(sameDisplay(shown(), before));
}

TEST_F(Sheet, KeepsPresetsThatLeaveToAMapWhatIsItsOwn)
{
    typeInto(page(contours), IDC_CONTOURS_WIDTH, "6");
    CDialog& list = page(presets);
    typeInto(list, IDC_PRESETS_NAME, "thick");
    list.SendMessage(WM_COMMAND, IDC_PRESETS_KEEP);
    typeInto(page(contours), IDC_CONTOURS_WIDTH, "1");
    typeInto(page(beam), IDC_BEAM_MAJOR, "7");
    CDialog& again = page(presets);
    chooseIn(again, IDC_PRESETS_LIST, 0);
    again.SendMessage(WM_COMMAND, IDC_PRESETS_USE);
    EXPECT_EQ(shown().contours.width, 6);
    EXPECT_EQ(shown().beam.major, 7);
    again.SendMessage(WM_COMMAND, IDC_PRESETS_FOR_ALL);
    EXPECT_EQ(sheet->forAll, 1);
    again.SendMessage(WM_COMMAND, IDC_PRESETS_REMOVE);
    EXPECT_EQ(dynamic_cast<CListBox&>(*again.GetDlgItem(IDC_PRESETS_LIST)).GetCount(), 0);
}

TEST_F(Sheet, OutlivesItsWindow)
{
    AxisWindow other;
    sheet = std::make_unique<Told>(*window, 1, &other.top);  // which does not take it along
    ASSERT_TRUE(sheet->CreateModeless());
    CDialog& shownPage = page(beam);
    window.reset();
    ASSERT_TRUE(sheet->GetSafeHwnd());
    typeInto(shownPage, IDC_BEAM_MAJOR, "9");
    press(ID_APPLY_NOW);
    press(IDCANCEL);
    EXPECT_FALSE(sheet->GetSafeHwnd());
}

TEST(BeamDlg, DrawsWhileTypedChangesUnitsFitsAndTakesBack)
{
    MapShown map;
    const AMatrix<float> dirty = dirtyBeam();
    const AFloatMatrixAccess cells(dirty);
    ABeamDlg dialog(*map.window, 60, &map.window->top);
    int found = 0;
    dialog.SetDirtyBeam([&](DirtyBeam& beam, CString& error) {
        beam = {&cells, {32, -31, -32, 31}, 1};
        error = "none";
        return found;
    });
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ShowWindow(SW_SHOW);
    EXPECT_EQ(dialog.GetDlgItemText(IDC_BEAM_MAJOR), "4");  // minutes of arc
    chooseIn(dialog, IDC_BEAM_UNIT, 1);
    EXPECT_EQ(dialog.GetDlgItemText(IDC_BEAM_MAJOR), "240");
    EXPECT_EQ(map.shown().beam.major, 4);
    const std::vector<std::uint32_t> before = map.window->pixels();
    typeInto(dialog, IDC_BEAM_MAJOR, "360");
    EXPECT_EQ(map.shown().beam.major, 6);
    EXPECT_EQ(dialog.beamView().beam().major, 6);
    EXPECT_NE(map.window->pixels(), before);
    dialog.SendMessage(WM_COMMAND, IDC_BEAM_FIT);
    EXPECT_EQ(dialog.GetDlgItemText(IDC_DISPLAY_NOTE), "none");
    found = 1;
    dialog.SendMessage(WM_COMMAND, IDC_BEAM_FIT);
    EXPECT_NEAR(map.shown().beam.major, 12.0 / 60, 1e-4);
    EXPECT_NEAR(map.shown().beam.minor, 8.0 / 60, 1e-4);
    EXPECT_NEAR(map.shown().beam.angle, 0, 0.1);
    dialog.SendMessage(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(map.shown().beam.major, 4);
    EXPECT_EQ(map.window->pixels(), before);
}

TEST(BeamWnd, ShowsMapCutsAndNumbersOfABeamAndRefusesOthers)
{
    MapContent content;
    content.map.cells = dirtyBeam();
    content.frame = frameOf(content.map.header, 64, 64);
    const AFloatMatrixAccess cells(content.map.cells);
    content.range = mapRange(cells);
    CString error;
    const CRect place(0, 0, 900, 600);
    ABeamWnd window;
    ASSERT_TRUE(window.CreateBeam(content, "beam", WS_POPUP | WS_VISIBLE, place, nullptr, error));
    window.UpdateWindow();
    EXPECT_NEAR(window.GetShape().fitted.major, 12, 0.01);
    EXPECT_NEAR(window.GetCut(0).halfWidth(), 12, 0.2);
    EXPECT_NEAR(window.GetCut(1).halfWidth(), 8, 0.2);
    EXPECT_EQ(window.cutsWindow().GetPlot()->childs().count(), 6);  // cut, Gaussian and marks each
    EXPECT_EQ(window.table().cellAsStr(2, 1, nullptr), "12");
    EXPECT_EQ(window.table().hdrCellAsStr(2, 0, nullptr), "Fitted major axis");
    window.DestroyWindow();
    content.map.cells.fill(-1);
    ABeamWnd none;
    EXPECT_FALSE(none.CreateBeam(content, "none", WS_POPUP, place, nullptr, error));
    EXPECT_EQ(error, noBeamShapeText);
    EXPECT_FALSE(none.GetSafeHwnd());
}
