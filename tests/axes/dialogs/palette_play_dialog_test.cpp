// The dialog that plays with the colours of a map.
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/images/palettes.h"
#include "pavane/resources/play_dialog.h"
#include "pavane/resources/play_messages.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "tessel/value_text.h"
#include "tests/axes/windows/axis_window_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

/// A map of 0 to 59079 (column + 1000 * row) and the dialog that plays with it.
struct Played {
    struct Told : APalettePlayDlg {
        using APalettePlayDlg::APalettePlayDlg;
        int forAll = 0;
        void OnPaletteForAll() override { ++forAll; }
    };
    std::unique_ptr<AxisWindow> window = std::make_unique<AxisWindow>();
    std::unique_ptr<Told> dialog;
    std::vector<std::uint32_t> before = window->pixels();
    Played()
    {
        dialog = std::make_unique<Told>(*window, &window->top);
        EXPECT_TRUE(dialog->CreateModeless());
        dialog->ShowWindow(SW_SHOW);
    }
    ~Played()
    {
        if (dialog->GetSafeHwnd())
            dialog->DestroyWindow();
    }
    AColorsGraph& graph() { return *window->GetColorsGraph(); }
    double low() { return graph().scale().low(); }
    double high() { return graph().scale().high(); }
    void press(unsigned id) { dialog->SendMessage(WM_COMMAND, id); }
    void type(unsigned id, const char* text)
    {
        dialog->SetDlgItemText(id, text);
        dialog->SendMessage(WM_COMMAND, static_cast<WPARAM>(EN_CHANGE) << 16 | id);
    }
    void choose(unsigned id, int line)
    {
        if (auto* const combo = dynamic_cast<CComboBox*>(dialog->GetDlgItem(id)))
            (void)combo->SetCurSel(line);
        if (auto* const list = dynamic_cast<CListBox*>(dialog->GetDlgItem(id)))
            (void)list->SetCurSel(line);
        dialog->SendMessage(WM_COMMAND, static_cast<WPARAM>(CBN_SELCHANGE) << 16 | id);
    }
    CString note() { return dialog->GetDlgItemText(IDC_PLAY_NOTE); }
    AHistogramWnd& histogram() { return dialog->histogramWindow(); }
    void mouse(unsigned message, CPoint p, unsigned keys = MK_LBUTTON)
    {
        histogram().SendMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    CPoint onHandle(double value) const
    {
        const HistogramPlot& plot = dialog->histogramWindow().plot();
        return {static_cast<int>(std::lround(plot.xOf(value))), plot.rect().bottom + 15};
    }
};

}  // namespace

TEST(PalettePlayDlg, ChoosesRangesAndBringsBackWhatWas)
{
    Played p;
    EXPECT_EQ(p.dialog->GetHistogram().count(), 4800);
    struct Case {
        unsigned id;
        double low, high;
    };
    std::vector<double> sorted;
    for (int r = 0; r < 60; ++r)
        for (int c = 0; c < 80; ++c)
            sorted.push_back(1000 * r + c);
    const MapNoise noise = mapNoise(p.window->access);
    const double wide = p.dialog->GetHistogram().zscale().max;
    const Case cases[] = {
        {IDC_PLAY_90, sorted[239], sorted[4559]},
        {IDC_PLAY_999, sorted[2], sorted[4797]},
        {IDC_PLAY_NOISE, noise.median - 3 * noise.sigma, noise.median + 30 * noise.sigma},
        {IDC_PLAY_ZSCALE, p.dialog->GetHistogram().zscale().min, wide},
        {IDC_PLAY_ALL_CELLS, 0, 59079}};
    for (const Case& c : cases) {
        p.press(c.id);
        EXPECT_EQ(p.low(), c.low) << c.id;
        EXPECT_EQ(p.high(), c.high) << c.id;
    }
    for (int i = 0; i < 5; ++i)
        p.window->ViewBack();
    EXPECT_FALSE(p.window->CanViewBack());
    EXPECT_EQ(p.window->pixels(), p.before);
    for (int i = 0; i < 2; ++i)
        p.window->ViewForward();
    EXPECT_EQ(p.low(), sorted[2]);
    EXPECT_EQ(p.dialog->GetDlgItemText(IDC_PLAY_LOW), "2");
    p.choose(IDC_PLAY_SCALE, 1);
    EXPECT_EQ(p.graph().scaleKind(), MapScaleKind::squareRoot);
    p.press(IDC_PLAY_INVERT);
    p.choose(IDC_PLAY_PALETTES, 2);
    EXPECT_EQ(p.graph().colors().count(), 226);
    EXPECT_NE(p.window->pixels(), p.before);
    p.dialog->SendMessage(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(p.window->pixels(), p.before);
    EXPECT_EQ(ColorLook(p.graph()), ColorLook());
    EXPECT_EQ(p.dialog->GetSafeHwnd(), 0u);
    p.window->ViewBack();  // Cancel is a step too
    EXPECT_EQ(p.graph().colors().count(), 226);
}

TEST(PalettePlayDlg, FieldsSayWhatTheyCannotTake)
{
    Played p;
    const struct {
        unsigned id;
        const char* text;
        const char* note;
    } cases[] = {{IDC_PLAY_LOW, "x", noNumberText},     {IDC_PLAY_LOW, "60000", rangeOrderText},
                 {IDC_PLAY_HIGH, "-1", rangeOrderText}, {IDC_PLAY_HIGH, "nan", rangeOrderText},
                 {IDC_PLAY_GAMMA, "0", gammaText},      {IDC_PLAY_GAMMA, "inf", gammaText},
                 {IDC_PLAY_CONTRAST, "", noNumberText}, {IDC_PLAY_CONTRAST, "nan", noNumberText},
                 {IDC_PLAY_BIAS, "inf", noNumberText}};
    for (const auto& c : cases) {
        p.type(c.id, c.text);
        EXPECT_EQ(p.note(), c.note) << c.id << ' ' << c.text;
        EXPECT_EQ(p.window->pixels(), p.before);
    }
    p.type(IDC_PLAY_LOW, "100");
    p.type(IDC_PLAY_HIGH, "2e4");
    p.type(IDC_PLAY_CONTRAST, "-2");
    EXPECT_EQ(p.note(), "");
    EXPECT_EQ(p.low(), 100);
    EXPECT_EQ(p.high(), 20000);
    EXPECT_EQ(p.graph().GetColorPlay().contrast, -2);
    EXPECT_EQ(p.histogram().plot().low(), 100);
    p.press(IDC_PLAY_RESET);
    EXPECT_EQ(p.window->pixels(), p.before);
    EXPECT_EQ(p.dialog->GetDlgItemText(IDC_PLAY_CONTRAST), "1");
}

TEST(PalettePlayDlg, HandlesAndCurveFollowPointerAndKeys)
{
    Played p;
    p.type(IDC_PLAY_LOW, "10000");
    p.type(IDC_PLAY_HIGH, "30000");
    const auto start = p.window->pixels();
    const CPoint from = p.onHandle(10000), to = p.onHandle(15000);
    p.mouse(WM_LBUTTONDOWN, from);
    p.mouse(WM_MOUSEMOVE, {(from.x + to.x) / 2, from.y});
    EXPECT_NE(p.window->pixels(), start);
    p.mouse(WM_MOUSEMOVE, to);
    EXPECT_NEAR(p.low(), 15000, 200);
    p.histogram().SendMessage(WM_KEYDOWN, VK_ESCAPE);
    EXPECT_EQ(p.window->pixels(), start);
    p.mouse(WM_LBUTTONDOWN, p.onHandle(30000));
    p.mouse(WM_MOUSEMOVE, {from.x - 300, from.y});  // not past the other
    p.mouse(WM_LBUTTONUP, from);
    EXPECT_GT(p.high(), p.low());
    EXPECT_NEAR(p.high(), 10000, 1);
    p.window->ViewBack();
    EXPECT_EQ(p.window->pixels(), start);
    const HistogramPlot& plot = p.histogram().plot();
    const int x = static_cast<int>(plot.xOf(20000));
    p.mouse(WM_LBUTTONDOWN, {x, plot.curveAt(x)});
    p.mouse(WM_MOUSEMOVE, {x + 20, plot.curveAt(x) - 20});
    p.mouse(WM_LBUTTONUP, {x + 20, plot.curveAt(x) - 20});
    EXPECT_GT(p.graph().GetColorPlay().bias, 0.5);
    EXPECT_GT(p.graph().GetColorPlay().contrast, 1);
    EXPECT_EQ(p.low(), 10000);
    p.histogram().SetFocus();
    const AColorPlay play = p.graph().GetColorPlay();
    p.histogram().SendMessage(WM_KEYDOWN, VK_RIGHT);  // the curve has the focus
    EXPECT_NEAR(p.graph().GetColorPlay().bias, play.bias + 0.01, 1e-12);
    p.histogram().SendMessage(WM_KEYDOWN, VK_UP);
    EXPECT_NEAR(p.graph().GetColorPlay().contrast, play.contrast * 1.05, 1e-12);
    SetKeyStateOverride(MK_SHIFT);
    p.histogram().SendMessage(WM_KEYDOWN, VK_TAB);
    SetKeyStateOverride(-1);
    p.histogram().SendMessage(WM_KEYDOWN, VK_LEFT);
    EXPECT_LT(p.high(), 30000);
    const AccessSource& access = *p.histogram().GetAccess();
    AccessPart part;
    ASSERT_TRUE(access.GetAccessPart(access.GetAccessFocus(), part));
    EXPECT_EQ(part.name, highEndName);
    EXPECT_EQ(part.value, valToStr(p.high(), 4));
    EXPECT_EQ(access.GetAccessChildren().size(), 3u);
    p.mouse(WM_LBUTTONDOWN, p.onHandle(p.low()));
    p.mouse(WM_MOUSEMOVE, {from.x + 30, from.y});
    p.window.reset();  // in a drag; the dialog has nothing to show
    p.mouse(WM_LBUTTONUP, from);
    p.press(IDC_PLAY_95);
    p.press(IDC_PLAY_INVERT);
    p.type(IDC_PLAY_LOW, "3");
}

TEST(PalettePlayDlg, CountsTheCellsInViewOfAreasAndOfAllPlanes)
{
    Played p;
    p.choose(IDC_PLAY_CELLS, 3);  // no cube
    EXPECT_EQ(p.dialog->GetHistogram().count(), 4800);
    AMatrix<float> other(60, 80);
    other.fill(-500);
    struct Read : AFloatMatrixAccess {
        using AFloatMatrixAccess::AFloatMatrixAccess;
        mutable int rowsRead = 0;
        const float* floatRow(int row) const override
        {
            return ++rowsRead, AFloatMatrixAccess::floatRow(row);
        }
    };
    const Read plane(other);
    p.dialog->SetPlanes({&p.window->access, &plane});
    p.choose(IDC_PLAY_CELLS, 3);
    EXPECT_EQ(p.dialog->GetHistogram().count(), 9600);
    EXPECT_EQ(p.dialog->GetHistogram().least(), -500);
    p.press(IDC_PLAY_ALL_CELLS);
    EXPECT_EQ(p.low(), -500);
    EXPECT_EQ(p.high(), 59079);
    const int once = plane.rowsRead;
    p.type(IDC_PLAY_HIGH, "300");  // other bars
    p.press(IDC_PLAY_ALL_CELLS);
    EXPECT_EQ(plane.rowsRead, once);
    p.choose(IDC_PLAY_CELLS, 2);
    EXPECT_EQ(p.dialog->GetHistogram().count(), 4800);  // no area stands for all cells
    p.window->ChooseTool(toolRect);
    p.window->drag({p.window->at(10, 20), p.window->at(20, 40)});
    p.dialog->SendMessage(WM_TIMER, 1);
    EXPECT_EQ(p.dialog->GetHistogram().count(), p.window->mask().count());
    p.press(IDC_PLAY_ALL_CELLS);
    EXPECT_EQ(p.high(), p.dialog->GetHistogram().greatest());
    EXPECT_LT(p.high(), 59079);
    p.choose(IDC_PLAY_CELLS, 1);
    p.window->ZoomAbout(p.window->at(30, 40), 2);
    p.dialog->SendMessage(WM_TIMER, 1);
    EXPECT_LT(p.dialog->GetHistogram().count(), 2000);
    p.choose(IDC_PLAY_CELLS, 0);
    // a range for each plane: the same way to choose it, in the step that changes the plane
    p.press(IDC_PLAY_BY_PLANE);
    p.press(IDC_PLAY_90);
    const double low = p.low();
    for (int r = 0; r < 60; ++r)
        for (int c = 0; c < 80; ++c)
            p.window->map(r, c) += 7;
    p.graph().cellsChanged();
    p.dialog->MapChanged();
    EXPECT_EQ(p.low(), low + 7);
    p.type(IDC_PLAY_BIAS, valToStr(p.low()).c_str());  // the same number, and no end of the range
    EXPECT_EQ(p.dialog->GetRule().kind, RangeRule::Kind::percentiles);
    p.type(IDC_PLAY_LOW, "3");
    p.dialog->MapChanged();
    EXPECT_EQ(p.low(), 3);
    p.dialog->SetPlanes({});
    AMatrix<float> blank(0, 0);
    p.window->SetMap(nullptr);
    p.dialog->MapChanged();
    p.press(IDC_PLAY_98);
    EXPECT_EQ(p.dialog->GetHistogram().count(), 0);
}

TEST(PalettePlayDlg, SaysWhetherEachPlaneHasARangeOfItsOwn)
{
    enum Do { byPlane, perCent, type, drag, back, reset, allPlanes, close };
    const struct {
        std::vector<Do> done;
        int isByPlane;
        double moved;  ///< the low end, by a plane of values 7 greater
    } rows[] = {{{}, 1, 7},
                {{byPlane}, 0, 0},
                {{byPlane, byPlane}, 1, 7},
                {{perCent}, 1, 7},
                {{perCent, byPlane}, 0, 0},
                {{perCent, drag}, 1, 7},  // taken back
                {{perCent, type}, 0, 0},
                {{perCent, back}, 1, 7},
                {{perCent, close}, 1, 7},
                {{type, byPlane}, 1, 7},
                {{type, reset}, 1, 7},
                {{allPlanes}, 0, 0}};
    for (const auto& row : rows) {
        Played p;
        AMatrix<float> other(60, 80);
        other.fill(-500);
        const AFloatMatrixAccess plane(other);
        p.dialog->SetPlanes({&p.window->access, &plane});
        for (const Do what : row.done) {
            if (what == byPlane || what == perCent || what == reset || what == close)
                p.press(what == byPlane   ? IDC_PLAY_BY_PLANE
                        : what == perCent ? IDC_PLAY_90
                        : what == reset   ? IDC_PLAY_RESET
                                          : IDOK);
            else if (what == type)
                p.type(IDC_PLAY_LOW, "100");
            else if (what == drag) {
                p.mouse(WM_LBUTTONDOWN, p.onHandle(p.high()));
                p.mouse(WM_MOUSEMOVE, p.onHandle(p.low()));
                p.histogram().SendMessage(WM_KEYDOWN, VK_ESCAPE);
            } else if (what == back)
                p.window->ViewBack();
            else
                p.choose(IDC_PLAY_CELLS, 3);
        }
        const double low = p.low();
        for (int i = 0; i < 4800; ++i)
            p.window->map.data()[i] += 7;
        p.graph().cellsChanged();
        p.dialog->MapChanged();
        const testing::Message name = testing::Message() << testing::PrintToString(row.done);
        EXPECT_EQ(p.dialog->IsByPlane(), row.isByPlane) << name;
        EXPECT_EQ(p.low(), low + row.moved) << name;
        const auto* const box = dynamic_cast<CButton*>(p.dialog->GetDlgItem(IDC_PLAY_BY_PLANE));
        EXPECT_TRUE(!box || box->GetCheck() == row.isByPlane) << name;
    }
}

TEST(PalettePlayDlg, SavesPalettesAndUsesOneForAllMaps)
{
    const std::string home = testing::TempDir() + "play_dialog_home";
    std::filesystem::remove_all(home);
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    LoadBuiltInPalette();
    {
        Played p;
        auto& list = *dynamic_cast<AListBox*>(p.dialog->GetDlgItem(IDC_PLAY_PALETTES));
        EXPECT_EQ(list.GetCurSel(), 0);
        const int lines = list.GetCount();
        p.press(IDC_PLAY_INVERT);
        SetFileDialogAnswer([](CString& name, const CString&, int) {
            name += "turned.pal";
            return 1;
        });
        p.press(IDC_PLAY_SAVE);
        SetFileDialogAnswer([](CString& name, const CString&, int) {
            name = "/proc/no/such.pal";
            return 1;
        });
        p.press(IDC_PLAY_SAVE);
        EXPECT_EQ(p.note().find("/proc/no/such.pal: "), 0u);
        SetFileDialogAnswer(nullptr);
        ASSERT_EQ(list.GetCount(), lines + 1);
        const auto turned = p.window->pixels();
        p.press(IDC_PLAY_INVERT);
        EXPECT_EQ(p.window->pixels(), p.before);
        p.choose(IDC_PLAY_PALETTES, lines);  // the last in the alphabet
        EXPECT_EQ(p.window->pixels(), turned);
        AxisWindow another;
        EXPECT_EQ(another.pixels(), p.before);
        p.press(IDC_PLAY_FOR_ALL);
        EXPECT_EQ(list.GetCurSel(), 0);
        EXPECT_EQ(p.window->pixels(), turned);
        another.ContentChanged();
        EXPECT_EQ(another.pixels(), turned);
        SetFileDialogAnswer([](CString& name, const CString&, int) {
            name += "heat.pal";  // a name of the program's
            return 1;
        });
        p.press(IDC_PLAY_SAVE);
        SetFileDialogAnswer(nullptr);
        AArray<COLORREF> heat, turnedColours;
        ASSERT_TRUE(GetPaletteColors("heat", heat) && GetPaletteColors("turned", turnedColours));
        EXPECT_EQ(heat(0), turnedColours(0));
        p.dialog->SendMessage(WM_COMMAND, IDCANCEL);
        EXPECT_EQ(GetGlobalPaletteName(), "");
        EXPECT_EQ(p.dialog->forAll, 2);
        EXPECT_EQ(p.window->pixels(), p.before);
    }
    LoadBuiltInPalette();
    unsetenv("XDG_DATA_HOME");
    std::filesystem::remove_all(home);
}
