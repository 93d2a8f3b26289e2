// Cubes in the window of pavane-view: planes by keys, number, slider and history.
#include "apps/view/CubeCells.h"
#include "apps/view/CubePlanes.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/images/palettes.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/value_text.h"

#include <bit>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

/// `planes` planes of 8 x 6 cells; cell k of plane p is 100 p + k.
std::string writeCube(const std::string& name, int planes)
{
    std::string bytes;
    for (const std::string& card :
         {std::string("SIMPLE  = T"), std::string("BITPIX  = -32"), std::string("NAXIS   = 3"),
          std::string("NAXIS1  = 8"), std::string("NAXIS2  = 6"),
          "NAXIS3  = " + std::to_string(planes), std::string("CTYPE3  = 'VRAD'"),
          std::string("CUNIT3  = 'm/s'"), std::string("CRVAL3  = -1500.0"),
          std::string("CRPIX3  = 1"), std::string("CDELT3  = 500.0"), std::string("END")}) {
        bytes += card;
        bytes.append(80 - bytes.size() % 80, ' ');
    }
    bytes.append(2880 - bytes.size() % 2880, ' ');
    for (int cell = 0; cell < planes * 48; ++cell) {
        const auto value = static_cast<float>(cell / 48 * 100 + cell % 48);
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(std::bit_cast<std::uint32_t>(value) >> shift & 0xFF);
    }
    bytes.append((2880 - bytes.size() % 2880) % 2880, '\0');
    const std::string file = testing::TempDir() + name;
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

std::vector<std::string> said;

int tell(const CString& text, unsigned) { return said.push_back(text), IDOK; }

}  // namespace

TEST(CubePlanes, KeepsTheLastOnesAndNeverMore)
{
    const std::string file = writeCube("kept.fits", 40);
    MapContent shown;
    std::string error;
    ASSERT_TRUE(readMapContent(file, 0, shown, error)) << error;
    CubePlanes planes;
    planes.begin(file, shown);
    for (int i = 1; i < 40; ++i) {
        ASSERT_TRUE(planes.exchange(i, shown, error)) << error;
        EXPECT_EQ(shown.map.cells(0, 3), 100.0f * static_cast<float>(i) + 3);
        EXPECT_EQ(shown.range.greatest, 100.0 * i + 47);
        EXPECT_LT(planes.kept(), CubePlanes::most);
    }
    // one that is read ahead takes the place of the oldest
    planes.fetch(5, shown);
    EXPECT_LT(planes.kept(), CubePlanes::most);
    std::filesystem::remove(file);  // those that are kept need no file
    ASSERT_TRUE(planes.exchange(5, shown, error)) << error;
    EXPECT_EQ(shown.map.cells(0, 3), 503.0f);
    ASSERT_TRUE(planes.exchange(39, shown, error)) << error;
    planes.fetch(77, shown);
    for (int i = 38; i > 40 - CubePlanes::most; --i)
        ASSERT_TRUE(planes.exchange(i, shown, error)) << i;
    const int last = shown.map.header.plane;
    for (const int none : {0, -1, 40, 1000000}) {
        EXPECT_FALSE(planes.exchange(none, shown, error)) << none;
        EXPECT_NE(error.find("kept.fits"), std::string::npos);
        EXPECT_EQ(shown.map.header.plane, last);
    }
    EXPECT_FALSE(planes.exchange(1, shown, error, [](int, MapContent&, std::string&) {
        return 0;  // the user gave up
    }));
    EXPECT_EQ(error, "");
    EXPECT_EQ(shown.map.header.plane, last);
    writeCube("kept.fits", 30);
    EXPECT_FALSE(planes.exchange(1, shown, error));  // another map by now
}

TEST(CubeCells, HearsOfAGivenUpPlaneWhileItIsRead)
{
    const std::string file = writeCube("cells.fits", 3);
    CubeCells cube(file, 3, 6, 8);
    const std::vector<const AMatrixAccess*> planes = cube.planes();
    ASSERT_EQ(planes.size(), 3u);
    int asked = 0;
    cube.setGoing([&] { return ++asked, 0; });
    EXPECT_FALSE(planes[1]->floatRow(0));
    EXPECT_EQ(asked, 1);
    cube.setGoing(nullptr);
    ASSERT_TRUE(planes[1]->floatRow(2));  // read again
    EXPECT_EQ(planes[1]->floatRow(2)[3], 119);
}

TEST(CubeWindow, ShowsPlanesByKeysNumberSliderAndHistory)
{
    SetProfileFile(testing::TempDir() + "cube-window/pavane-view.ini");
    std::filesystem::create_directories(testing::TempDir() + "cube-window");
    SetMessageFunction(tell);
    LoadBuiltInPalette();
    const std::string file = writeCube("cube.fits", 30);
    {
        MainWindow window;
        ASSERT_TRUE(window.Create(ViewOptions()));
        ASSERT_TRUE(window.OpenMap(file, -1));  // the first plane without a wish
        window.Show();
        CWnd* const field = window.planeBar().GetDlgItem(3);
        auto* const slider = static_cast<CSliderCtrl*>(window.planeBar().GetDlgItem(2));
        ASSERT_TRUE(field && slider && window.planeBar().IsWindowVisible());
        const auto key = [](CWnd& to, int code) {
            to.SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code));
        };
        enum class Do { key, command, number, slide, back };
        const struct {
            Do what;
            int value;
            const char* text;
            int plane;
        } rows[] = {{Do::key, VK_NEXT, "", 1},  {Do::key, VK_PRIOR, "", 0},
                    {Do::key, VK_PRIOR, "", 0}, {Do::command, idNextPlane, "", 1},
                    {Do::number, 0, "3", 3},    {Do::number, 0, "x", 3},
                    {Do::number, 0, "-7", 0},   {Do::number, 0, "99", 29},
                    {Do::slide, 2, "", 2},      {Do::back, 0, "", 0}};
        for (const auto& row : rows) {
            switch (row.what) {
            case Do::key:
                key(window.view(), row.value);
                break;
            case Do::command:
                window.SendMessage(WM_COMMAND, static_cast<WPARAM>(row.value));
                break;
            case Do::number:
                field->SetWindowText(row.text);
                key(*field, VK_RETURN);
                break;
            case Do::slide:
                slider->SetPos(row.value);
                window.planeBar().SendMessage(WM_COMMAND, 2 | WPARAM{SLN_MOVED} << 16,
                                              static_cast<LPARAM>(slider->GetSafeHwnd()));
                break;
            case Do::back:
                window.view().ViewBack();
                break;
            }
            EXPECT_EQ(slider->GetPos(), row.plane) << row.text << row.value;
            EXPECT_EQ(field->GetWindowText(), std::to_string(row.plane));
            const ABMapGraph* const graph = window.view().GetMap();
            ASSERT_NE(graph, nullptr);
            EXPECT_EQ(graph->cellRange().greatest, 100 * row.plane + 47) << row.text;
            if (row.what == Do::back)
                window.SendMessage(WM_COMMAND, idContours);  // which leaves the title
            const CString speed = valToStr(-1.5 + 0.5 * row.plane) + "\u00a0km/s";
            const CString title = graph->getHeaderText(0);
            EXPECT_EQ(title.find(speed), title.rfind("km/s") - speed.size() + 4) << title;
        }
        MSG tab;
        tab.message = WM_KEYDOWN;
        tab.wParam = VK_TAB;
        (void)field->SetFocus();
        for (const unsigned next : {1u, 2u, 3u}) {
            EXPECT_TRUE(window.PreTranslateMessage(tab));
            EXPECT_EQ(CWnd::GetFocus(), window.planeBar().GetDlgItem(next));
        }
        (void)window.view().SetFocus();
        EXPECT_FALSE(window.PreTranslateMessage(tab));  // there it goes round the areas
        StatusLine& status = const_cast<StatusLine&>(window.statusLine());
        AccessPart told;
        status.SetMessage("Saved");
        EXPECT_TRUE(status.GetAccessPart(0, told) && told.value == "Saved");
        EXPECT_TRUE(status.GetAccessChildren().empty());
        status.SetTexts({"1 Jy/beam", "", "", "row 3", ""});
        EXPECT_EQ(status.GetAccessChildren(), (std::vector<AccessId>{1, 4}));
        EXPECT_TRUE(status.GetAccessPart(4, told) && told.value == "row 3" && !told.name.empty());
        EXPECT_FALSE(status.GetAccessPart(2, told) || status.GetAccessPart(9, told));
        std::filesystem::remove(file);
        window.SendMessage(WM_COMMAND, idPlayPlanes);
        for (const int plane : {1, 2, 3, 3}) {
            window.planeBar().SendMessage(WM_TIMER, 1);
            EXPECT_EQ(slider->GetPos(), plane);
        }
        EXPECT_FALSE(window.planeBar().IsPlaying());  // the next one cannot be read
        writeCube("cube.fits", 1);
        ASSERT_TRUE(window.OpenMap(file, -1));
        EXPECT_FALSE(window.planeBar().IsWindowVisible());
        key(window.view(), VK_NEXT);
    }
    EXPECT_TRUE(said.empty());
    SetMessageFunction(nullptr);
    SetProfileFile("");
    PostQuitMessage(0);
    (void)RunMessages();
}

}  // namespace pavane
