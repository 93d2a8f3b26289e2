// A user without patience: random presses, keys, commands, menus, numbers, files and sizes for the
// whole window, and what has to hold whatever they do.
//
// PAVANE_EVENTS and PAVANE_SEED say how many and which; PAVANE_TRACE writes each down.
#include "apps/view/any_area_file.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/images/palettes.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "platform/CDialog.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/ABitMatrix.h"
#include "tessel/fits_map.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <malloc.h>
#include <optional>
#include <random>
#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::size_t bytesInUse()
{
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

long number(const char* name, long usual)
{
    const char* const text = std::getenv(name);
    return text ? std::atol(text) : usual;
}

std::mt19937 dice;
std::string folder;

int below(int n) { return static_cast<int>(dice() % static_cast<unsigned>(n)); }
int oneOf(std::initializer_list<int> all)
{
    return all.begin()[below(static_cast<int>(all.size()))];
}

int answerBox(const CString&, unsigned type)
{
    switch (type & 0xF) {
    case MB_YESNO:
        return oneOf({IDYES, IDNO});
    case MB_YESNOCANCEL:
        return oneOf({IDYES, IDNO, IDCANCEL});
    default:
        return IDOK;
    }
}

int chooseFile(CString& name, const CString& filter, int)
{
    if (below(5) == 0)
        return 0;
    const char* const areaFiles[] = {"a.areas", "b.areas", "c.cma", "d.reg", "e.crtf", "bad.reg"};
    const char* const maps[] = {"map.fits", "other.fits", "flat.fits", "bad.fits"};
    const char* const models[] = {"m.txt", "m.txt", "bad.reg", "map.fits"};
    if (filter.starts_with("Components"))
        name = folder + models[below(4)];
    else if (filter.starts_with("FITS maps"))
        name = folder + maps[below(4)];
    else if (filter.find("areas") != filter.npos)
        name = folder + (below(9) ? areaFiles[below(6)] : "nowhere/x.areas");
    else
        name = folder + (filter.find("png") != filter.npos ? "p.png" : "m.fits");
    return 1;
}

int answerDialog(CDialog& dialog)
{
    const char* const texts[] = {"sigma:3,6", "peak:1,2,4,...", "abs:0", "", "none", "sigma:x"};
    dialog.SetDlgItemText(104, texts[below(6)]);  // the levels of contours
    if (below(2))
        dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(IDOK));
    return oneOf({IDOK, IDCANCEL});
}

unsigned chooseLine(const CMenu& menu, CPoint)
{
    const CMenu::Line& line =
        menu.lines()[static_cast<std::size_t>(below(menu.GetMenuItemCount()))];
    return below(4) ? line.id : 0;
}

void writeMap(const char* name, int rows, int columns, float scale)
{
    AMatrix<float> cells(rows, columns);
    for (int i = 0; i < rows * columns; ++i)
        cells.data()[i] = i % 97 == 5 ? NAN : scale * std::sin(static_cast<float>(i) * 0.01f);
    MapHeader header;
    header.axes = {{columns, "RA---SIN", "deg", 187.7, columns / 2.0, -1e-8, 0},
                   {rows, "DEC--SIN", "deg", 12.4, rows / 2.0, 1e-8, 0}};
    header.hasCelestialAxes = 1;
    std::string error;
    ASSERT_TRUE(writeFitsMap(folder + name, cells, header, error)) << error;
}

class RandomUser
{
public:
    RandomUser()
    {
        folder = (fs::path(testing::TempDir()) / "view-random/").string();
        fs::remove_all(folder);
        fs::create_directories(folder + "profile");
        SetProfileFile(folder + "profile/pavane-view.ini");
        SetMessageFunction(answerBox);
        SetFileDialogAnswer(chooseFile);
        SetDialogAnswer(answerDialog);
        SetMenuAnswer(chooseLine);
        LoadBuiltInPalette();
        writeMap("map.fits", 48, 64, 1);
        writeMap("other.fits", 90, 20, 1e-3f);
        writeMap("flat.fits", 5, 5, 0);
        std::ofstream(folder + "m.txt") << "2\n1 1 0 1 0 0 0 0.5\n2 1 1e-4 0.5 30 90 2e-4 0.5\n";
        std::ofstream(folder + "bad.fits") << "SIMPLE  =                    T";
        std::ofstream(folder + "bad.reg") << "image\ncircle(3,4,1)\nbox(nan,1,2\npolygon(1,1,2)\n";
    }
    ~RandomUser()
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        SetDialogAnswer(nullptr);
        SetMenuAnswer(nullptr);
        SetProfileFile("");
    }

    /// A window from its opening to its end, one way or the other; how many events it took.
    long session(long events)
    {
        MainWindow window;
        window_ = &window;
        ViewOptions options;
        if (below(4))
            options.map = folder + "map.fits";
        if (below(2))
            options.areas = folder + "a.areas";
        EXPECT_TRUE(window.Create(options));
        (void)window.OpenFirst(options);
        window.Show();
        window.MoveWindow(CRect(0, 0, 420, 360));
        of_.reset();
        long i = 0;
        for (; i < events && window.GetSafeHwnd() && !testing::Test::HasFailure(); ++i) {
            event();
            pump();
            if (window.GetSafeHwnd())
                check(i);
        }
        if (window.GetSafeHwnd() && below(2))
            window.PostMessage(WM_CLOSE);
        pump();
        window.DestroyWindow();             // after a Cancel, or in disorder
        EXPECT_TRUE(SetClipboardText(""));  // for the measure: no picture of a whole window
        rest();
        return i;
    }

private:
    /// The main loop for a moment: only there do windows that were closed free their memory.
    static void rest()
    {
        struct Clock : CWnd {
            void OnTimer(unsigned) override { PostQuitMessage(0); }
        } clock;
        PostQuitMessage(0);  // as the window asked: a loop that begins now ends at once
        (void)RunMessages();
        clock.Create("", "", WS_POPUP, CRect(0, 0, 9, 9), nullptr, 0);
        clock.SetTimer(1, 1);
        (void)RunMessages();
    }
    MapWindow& view() { return window_->view(); }
    ATrackerArrayInAxis& areas() { return *view().GetTrackers(); }
    static void pump()
    {
        MSG m;
        for (int i = 0; i < 2; ++i)
            while (PeekMessage(m))
                DispatchMessage(m);
    }

    // What the user does
    /// Mostly in the plot, often at an area.
    CPoint somewhere()
    {
        CRect client;
        view().GetClientRect(client);
        CPoint p(below(client.Width() + 20) - 10, below(client.Height() + 20) - 10);
        ShapeValues shape;
        const int count = areas().trackerCount();
        if (view().GetAxis() && count && below(2) && areas().GetShape(below(count), shape)) {
            const int handle = below(handleCount(shape) + 1);
            const APoint<double> at = handle ? handlePoint(shape, handle - 1) : shapeCentre(shape);
            p = {view().GetAxis()->RPXtoGPX(at.x) + below(5) - 2,
                 view().GetAxis()->RPYtoGPY(at.y) + below(5) - 2};
        }
        return {std::clamp(p.x, -20000, 20000), std::clamp(p.y, -20000, 20000)};
    }
    void post(unsigned message, CPoint p, unsigned keys)
    {
        view().PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    void drag()
    {
        const unsigned keys = below(6) ? 0 : static_cast<unsigned>(oneOf({MK_CONTROL, MK_SHIFT}));
        const unsigned held = keys | MK_LBUTTON;
        post(below(6) ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK, somewhere(), held);
        for (int i = below(4); i > 0; --i)
            post(WM_MOUSEMOVE, somewhere(), held);
        if (below(4) == 0)
            interrupt();
        post(WM_MOUSEMOVE, somewhere(), held);
        post(WM_LBUTTONUP, somewhere(), keys);
    }
    /// What may come while the button is held.
    void interrupt()
    {
        switch (below(8)) {
        case 0:
            return (void)view().PostMessage(WM_KEYDOWN, VK_ESCAPE);
        case 1:
            post(WM_RBUTTONDOWN, somewhere(), MK_LBUTTON | MK_RBUTTON);
            return post(WM_RBUTTONUP, somewhere(), MK_LBUTTON);
        case 2:
            return (void)window_->PostMessage(WM_TIMER, 1);  // the copy of the areas
        case 3:
            return (void)window_->PostMessage(WM_COMMAND, command());
        case 4:
            return (void)view().PostMessage(WM_CANCELMODE);
        case 5:
            return (void)window_->PostMessage(below(8) ? WM_TIMER : WM_CLOSE, 1);
        case 6:
            return wheel();
        default:
            return (void)view().PostMessage(WM_KEYDOWN, static_cast<WPARAM>(key()));
        }
    }
    void wheel()
    {
        const auto turn = static_cast<WPARAM>(static_cast<std::uint16_t>(below(480) - 240)) << 16;
        CPoint at = somewhere();
        view().ClientToScreen(at);
        view().PostMessage(below(8) ? WM_MOUSEWHEEL : WM_MOUSEHWHEEL,
                           turn | static_cast<WPARAM>(oneOf({0, MK_CONTROL, MK_CONTROL, MK_SHIFT})),
                           MAKELPARAM(at.x, at.y));
    }
    static int key()
    {
        return oneOf({VK_TAB,    VK_TAB,    VK_LEFT,   VK_RIGHT,  VK_UP,  VK_DOWN,     VK_DELETE,
                      VK_INSERT, VK_INSERT, VK_RETURN, VK_ESCAPE, VK_ADD, VK_SUBTRACT, VK_SPACE,
                      '0',       '1',       '2',       '3',       '4',    '5',         '6',
                      '7',       'A',       'D',       'M',       'Y',    'Z',         'Z'});
    }
    void press()
    {
        SetKeyStateOverride(oneOf({0, 0, 0, MK_SHIFT, MK_CONTROL, MK_CONTROL | MK_SHIFT}));
        CWnd* const focus = below(4) ? CWnd::GetFocus() : &view();
        const auto what = static_cast<WPARAM>(key());
        const HWND to = (focus ? focus : &view())->GetSafeHwnd();
        SendMessage(to, WM_KEYDOWN, what);
        SendMessage(to, WM_KEYUP, what);
        SetKeyStateOverride(-1);
    }
    static unsigned command()
    {
        const unsigned groups[][2] = {{idOpenMap, idExit},
                                      {idDelete, idValues + 1},
                                      {idScale, idScale + 4},
                                      {idContours, idZoomIn + 1},
                                      {idRecent, idRecent + 3},
                                      {idPalette, idPalette + 2},
                                      {ID_TRACK_ARROW, ID_VERTEX_TABLE + 1},
                                      {ID_TRACK_ARROW, ID_VERTEX_TABLE + 1},
                                      {ID_TRACK_UNDO, ID_TRACK_REDO + 1},
                                      {idOpenModel, idSaveModelAs + 1},
                                      {idModel, idPreviousMapPart + 1},
                                      {idKeys, idAbout + 1}};
        const auto& group = groups[below(12)];
        const unsigned id =
            group[0] + static_cast<unsigned>(below(static_cast<int>(group[1] - group[0])));
        const int isSlow = id == idSavePicture || id == idOpenMap || id == ID_CLEAR_AREAS;
        return isSlow && below(10) ? ID_TRACK_UNDO : id;
    }
    /// Numbers of the current area.
    void edit()
    {
        const bool isModel = window_->model().session().isOpen() && below(2);
        CWnd* const table =
            isModel ? static_cast<CWnd*>(&window_->model().table()) : &window_->numbers();
        if (!table->IsWindowVisible())
            return (void)window_->SendMessage(WM_COMMAND, isModel ? idModel : idValues);
        table->SetFocus();
        SendMessage(table->GetSafeHwnd(), WM_KEYDOWN, VK_F2, 1);
        const std::vector<CWnd*> fields = table->GetChildren();
        if (fields.empty())
            return;
        CWnd& field = *fields[static_cast<std::size_t>(below(static_cast<int>(fields.size())))];
        field.SetFocus();
        const char* const texts[] = {"0",     "-0.05", "0.1", "1e-3", "nan",
                                     "1e400", "",      "12x", "-1e9"};
        field.SetWindowText(texts[below(9)]);
        const HWND to = field.GetSafeHwnd();
        SendMessage(to, WM_KEYDOWN,
                    static_cast<WPARAM>(oneOf({VK_RETURN, VK_TAB, VK_UP, VK_DOWN, VK_ESCAPE})));
        if (below(2) && CWnd::FromHandle(view().GetSafeHwnd()))
            view().SetFocus();
        if (below(4) == 0)
            SendMessage(table->GetSafeHwnd(), WM_VSCROLL, static_cast<WPARAM>(below(4)));
    }
    void chooseArea()
    {
        auto* const list = view().GetComboBox();
        if (!list->GetCount())
            return;
        list->SetCurSel(below(list->GetCount()));
        window_->SendMessage(WM_COMMAND, ID_CHANGE_AREA | WPARAM{CBN_SELCHANGE} << 16,
                             static_cast<LPARAM>(list->GetSafeHwnd()));
    }
    void resize()
    {
        const int show = below(12);
        if (show < 3)
            window_->ShowWindow(oneOf({SW_MINIMIZE, SW_RESTORE, SW_SHOWMAXIMIZED}));
        if (show >= 1)
            window_->MoveWindow(CRect(0, 0, 1 + below(below(4) ? 500 : 40), 1 + below(450)));
    }
    void event()
    {
        const int what = below(100);
        if (std::getenv("PAVANE_TRACE"))
            std::fprintf(stderr, "event %d, %d areas, mode %d\n", what, areas().trackerCount(),
                         areas().mode());
        if (what < 34)
            return drag();
        if (what < 62)
            return press();
        if (what < 76)
            return (void)window_->SendMessage(WM_COMMAND, command());
        if (what < 80)
            return wheel();
        if (what < 84)
            return edit();
        if (what < 87)
            return chooseArea();
        if (what < 90)
            return post(WM_MOUSEMOVE, somewhere(), 0);
        if (what < 93) {
            CPoint at = somewhere();
            view().ClientToScreen(at);
            return (void)view().SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(at.x, at.y));
        }
        if (what < 95) {
            post(WM_MBUTTONDOWN, somewhere(), MK_MBUTTON);
            post(WM_MOUSEMOVE, somewhere(), MK_MBUTTON);
            return post(WM_MBUTTONUP, somewhere(), 0);
        }
        if (what < 97)
            return (void)window_->SendMessage(WM_TIMER, 1);
        if (what < 98)
            return resize();
        if (areas().trackerCount() > 40)
            areas().Clear(&view());
        if (below(40) == 0)
            window_->PostMessage(WM_CLOSE);
    }

    // What has to hold
    std::string kept()
    {
        MemoryFile file;
        EXPECT_TRUE(areas().StoreKept(file));
        return file.bytes();
    }
    /// Shapes in order, without what no user sees of them.
    std::string shapes()
    {
        std::string all;
        const int open = !areas().KeptState(-1).empty();
        for (int i = -open; i < areas().trackerCount(); ++i)
            all += areas().KeptState(i).substr(56) + '|';
        return all;
    }
    void check(long i)
    {
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        const int count = areas().trackerCount();
        const int current = areas().GetCurItemNo();
        EXPECT_TRUE(current >= -1 && current < count) << current;
        EXPECT_TRUE(areas().focusItem() < count);
        ShapeValues shape;
        EXPECT_TRUE(!areas().GetShape(areas().focusItem(), shape) ||
                    areas().focusHandle() < handleCount(shape));
        EXPECT_EQ(view().GetComboBox()->GetCount(), count);
        EXPECT_EQ(view().GetToolBar()->IsButtonEnabled(ID_TRACK_UNDO), areas().CanUndo());
        const std::string& title = window_->GetWindowText();
        EXPECT_EQ(title.find('*') != title.npos,
                  window_->session().isModified() || window_->model().session().isModified());
        if (below(8) == 0 && view().GetMap())
            checkCells();
        if (i % 50 == 0)
            checkCopy();
        if (i % 300 == 0)
            checkUndo();
    }
    /// The line at the foot shows the cells that the mask would set; of a polygon that is being
    /// drawn too.
    void checkCells()
    {
        const auto& cells = view().GetMap()->cells();
        ABitMatrix mask(cells.rows(), cells.columns());
        MemoryFile file(kept());
        ARPTrackerArray all;
        EXPECT_TRUE(all.Load(file));
        all.FillMatrix(mask, cells.columns(), cells.rows(), view().GetMap()->centres());
        const std::string shown = window_->statusLine().GetTexts()[statusMask];
        std::string digits;
        for (const char c : shown.substr(0, shown.find(" cell")))
            if (c >= '0' && c <= '9')
                digits += c;
        EXPECT_TRUE(!all.count() || digits == std::to_string(mask.count()))
            << shown << ", " << mask.count();
    }
    void checkCopy()
    {
        window_->SendMessage(WM_TIMER, 1);
        if (!window_->session().hasCopy())
            return;
        std::ifstream in(window_->session().autosave().file(), std::ios::binary);
        const std::string copy(std::istreambuf_iterator<char>(in), {});
        EXPECT_EQ(copy.size(), kept().size());
    }
    /// Undo of all gives the areas of the start, redo those of the end.
    void checkUndo()
    {
        const EditHistory& history = areas().history();
        if (of_ && of_->alive()) {
            const std::string end = shapes();
            const auto steps = history.undoSteps();
            std::size_t undone = 0;
            while (areas().Undo(&view()))
                ++undone;
            EXPECT_EQ(undone, steps);
            EXPECT_EQ(shapes(), start_);
            for (; undone && areas().Redo(&view()); --undone) {
            }
            EXPECT_EQ(shapes(), end);
        }
        areas().history().clear();
        view().FollowAreas();  // the toolbar
        start_ = shapes();
        of_.emplace(areas().life());
    }

    MainWindow* window_ = nullptr;
    std::string start_;
    std::optional<LifeWatch> of_;  ///< the collection that it is the start of
};

}  // namespace

TEST(ViewRandom, HoldsWhateverTheUserDoes)
{
    const long events = number("PAVANE_EVENTS", 20000);
    const long seed = number("PAVANE_SEED", 1);
    dice.seed(static_cast<unsigned>(seed));
    RandomUser user;
    constexpr long inSession = 1500;
    constexpr long warmUp = 5000;  // what is made once and kept
    std::size_t early = 0;
    for (long done = 0; done < events && !HasFailure();) {
        done += user.session(std::min(inSession, events - done)) + 1;
        if (std::getenv("PAVANE_EVENTS"))
            std::fprintf(stderr, "%ld events, %zu bytes\n", done, bytesInUse());
        if (!early && done >= warmUp)
            early = bytesInUse();
        // the style's pixmaps, 1 MB, and fonts of new sizes; the toolkit forgets no pixmap's name
        const auto growth = static_cast<std::size_t>(2000000 + 10 * done);
        EXPECT_TRUE(!early || bytesInUse() < early + growth)
            << done << " events: " << early << " bytes, now " << bytesInUse();
    }
    EXPECT_FALSE(HasFailure()) << "seed " << seed;
}

}  // namespace pavane
