// The surface beside the map in the window of pavane-view: it has the map's look, planes go on
// under the user's hand, and its menu.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/images/palettes.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <bit>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

/// Cell k of plane p is 100 p + k.
std::string writeMap(const std::string& name, int columns, int rows, int planes)
{
    std::string bytes;
    for (const std::string& card :
         {std::string("SIMPLE  = T"), std::string("BITPIX  = -32"), std::string("NAXIS   = 3"),
          "NAXIS1  = " + std::to_string(columns), "NAXIS2  = " + std::to_string(rows),
          "NAXIS3  = " + std::to_string(planes), std::string("END")}) {
        bytes += card;
        bytes.append(80 - bytes.size() % 80, ' ');
    }
    bytes.append(2880 - bytes.size() % 2880, ' ');
    for (int cell = 0; cell < planes * columns * rows; ++cell) {
        const auto value =
            static_cast<float>(cell / (columns * rows) * 100 + cell % (columns * rows));
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(std::bit_cast<std::uint32_t>(value) >> shift & 0xFF);
    }
    bytes.append((2880 - bytes.size() % 2880) % 2880, '\0');
    const std::string file = testing::TempDir() + name;
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

std::unique_ptr<SideMap> sideOf(const std::string& file)
{
    auto side = std::make_unique<SideMap>();
    std::string error;
    EXPECT_TRUE(side->read(file, error)) << error;
    return side;
}

class SurfacePane : public testing::Test
{
protected:
    SurfacePane()
    {
        SetProfileFile(testing::TempDir() + "surface-pane/pavane-view.ini");
        std::filesystem::create_directories(testing::TempDir() + "surface-pane");
        LoadBuiltInPalette();
        window.Create(ViewOptions());
        EXPECT_TRUE(window.OpenMap(writeMap("surface.fits", 12, 8, 3), -1));
        window.Show();
        command(idSurface);
    }
    ~SurfacePane() override
    {
        window.DestroyWindow();
        SetProfileFile("");
        PostQuitMessage(0);  // as the window asked: the next loop shall run
        (void)RunMessages();
    }
    void command(unsigned id) { window.SendMessage(WM_COMMAND, id); }
    ASurfaceWnd& pane() { return window.surface().window(); }
    A2_3D2ZAxis& box() { return dynamic_cast<A2_3D2ZAxis&>(*pane().GetBox()); }
    ASurfaceGraph& graph(int i = 0) { return dynamic_cast<ASurfaceGraph&>(*box().childs()(i)); }
    void draw() { pane().UpdateWindow(); }

    MainWindow window;
};

}  // namespace

TEST_F(SurfacePane, HasThePaletteRangeAndScaleOfTheMap)
{
    ColorLook look(*window.view().GetColorsGraph());
    look.range = {10, 40};
    look.scale = MapScaleKind::squareRoot;
    look.colours = {RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255)};
    look.play.contrast = 2;
    window.surface().SetSecond(sideOf(writeMap("second.fits", 12, 8, 1)));
    window.view().BeginView();
    window.view().ShowColorLook(look);
    window.view().EndView();
    draw();
    EXPECT_EQ(ColorLook(graph()), look);
    EXPECT_EQ(box().getMinMax().zMin, 10);  // heights are those of the bar
    EXPECT_EQ(box().getMinMax().zMax, 40);
    EXPECT_EQ(box().getMinMaxZ2(), (TMnMx{0, 95}));
    look.range = TMnMx();
    EXPECT_EQ(ColorLook(graph(1)), look);
    command(idSurfaceSameRange);
    draw();
    EXPECT_EQ(box().getMinMaxZ2(), (TMnMx{10, 40}));
    EXPECT_EQ(graph(1).levels(), graph().levels());
    command(idContours);  // off
    EXPECT_TRUE(graph(1).levels().empty());
    window.view().ViewBack();
    EXPECT_FALSE(graph(1).levels().empty());
    window.view().ViewBack();
    draw();
    EXPECT_EQ(box().getMinMax().zMax, 95);
    EXPECT_EQ(box().getMinMaxZ2(), (TMnMx{0, 95}));
    command(idSurfaceNoSecond);
    draw();
    EXPECT_EQ(box().childs().count(), 1);
}

TEST_F(SurfacePane, GoesThroughPlanesUnderTheHandOfTheUser)
{
    const A2_3DAxis* const axis = &box();
    window.surface().SetSecond(sideOf(writeMap("second.fits", 5, 4, 2)));
    window.surface().SetColorMap(sideOf(writeMap("colours.fits", 12, 8, 3)));
    pane().TurnBy(20, 0);
    pane().SendMessage(WM_KEYDOWN, VK_NEXT);
    draw();
    EXPECT_EQ(graph(1).cellRange().greatest, 119);
    EXPECT_EQ(graph().ColorGraph().zRange().max, 195);
    EXPECT_EQ(pane().GetBox(), axis);
    EXPECT_EQ(graph().cellRange().greatest, 195);
    EXPECT_EQ(box().getMinMax().zMax, 195);
    pane().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50));
    pane().SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(60, 50));
    EXPECT_TRUE(window.planeWanted(2));  // as playing does
    pane().SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(70, 50));
    pane().SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(70, 50));
    EXPECT_EQ(box().GetAzimuth(), 40);
    pane().ViewBack();
    EXPECT_EQ(box().GetAzimuth(), 50);
    pane().ViewBack();
    EXPECT_EQ(box().GetAzimuth(), 30);
    pane().SendMessage(WM_KEYDOWN, VK_PRIOR);
    EXPECT_EQ(graph().cellRange().greatest, 195);
}

TEST_F(SurfacePane, AnotherMapHasItsOwnBaseAndNoMark)
{
    pane().SetLinkedCell(7, 11);
    pane().TurnBy(20, 0);
    const double height = box().GetBoxHeight();
    window.surface().SetSecond(sideOf(writeMap("second.fits", 5, 8, 1)));
    EXPECT_NEAR(box().GetBoxHeight(), 2 * height, 1e-9);
    ASSERT_TRUE(window.OpenMap(writeMap("as-large.fits", 12, 8, 1), -1));
    EXPECT_TRUE(window.surface().hasSecond());
    EXPECT_NEAR(box().GetBoxHeight(), 2 * height, 1e-9);
    ASSERT_TRUE(window.OpenMap(writeMap("flat.fits", 40, 4, 1), -1));
    draw();
    int row = 0, column = 0;
    EXPECT_FALSE(pane().GetLinkedCell(row, column));
    EXPECT_EQ(box().GetAzimuth(), 50);
    EXPECT_NEAR(box().GetBoxHeight(), height, 1e-9);
    EXPECT_NEAR(box().view().size().q, 0.1, 1e-9);
}

TEST_F(SurfacePane, IsAsItWasInTheLastRun)
{
    draw();
    pane().TurnBy(20, -5);
    command(idSurfaceStyle);
    command(idSurfaceFloor + 1);
    const std::string look = window.surface().LookText();
    const int style = graph().GetStyle();
    pane().ShowFirstView();
    window.surface().SetDisplay({});
    for (const char* const text : {look.c_str(), "", "1,2,3", "x,2,1,4,2,0", "9,9,1,64,0,0",
                                   "9,9,1,1,-1,0", "nan,9,1,1,1,0"}) {
        command(idSurface);
        window.surface().TakeLook(text);  // the first one holds
        command(idSurface);
        EXPECT_EQ(window.surface().LookText(), look) << text;
        EXPECT_EQ(graph().GetStyle(), style);
        EXPECT_EQ(box().GetAzimuth(), 50);
    }
    command(idSurfaceFirst);
    EXPECT_EQ(box().GetAzimuth(), 30);
}

TEST_F(SurfacePane, ItsMenuChangesWhatIsShown)
{
    draw();
    const BoxPoint middle{0, 0, -0.5};  // of the floor: what lies there is to be seen
    EXPECT_EQ(graph().GetFloor(), floorContours);
    EXPECT_TRUE(box().isSeen(middle));
    const double height = box().GetBoxHeight() * (1 - box().GetFloorGap());
    const struct {
        unsigned id;
        int style, floor;
    } rows[] = {
        {idSurfaceStyle, usualSurface | surfaceLinesX | surfaceLinesY, floorContours},
        {idSurfaceStyle + 1, usualSurface ^ surfaceColors, floorContours},
        {idSurfaceStyle + 2, usualSurface ^ surfaceLight, floorContours},
        {idSurfaceStyle + 3, usualSurface ^ surfaceContours, floorContours},
        {idSurfaceStyle + 4, usualSurface | surfaceSkirt, floorContours},
        {idSurfaceFloor, usualSurface, 0},
        {idSurfaceFloor + 1, usualSurface, floorColors},
        {idSurfaceFloor + 3, usualSurface, floorColors | floorContours},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        command(row.id);
        draw();
        EXPECT_EQ(graph().GetStyle(), row.style);
        EXPECT_EQ(graph().GetFloor(), row.floor);
        EXPECT_EQ(box().isSeen(middle), row.floor != 0 && !(row.style & surfaceSkirt));
        EXPECT_NEAR(box().GetBoxHeight() * (1 - box().GetFloorGap()), height, 1e-9);
        CMenu menu;
        menu.LoadMenu(MenuTemplate{1, surfaceItems, std::size(surfaceItems)});
        static_cast<CWnd&>(window).OnInitMenuPopup(menu);
        for (const CMenu::Line& line : menu.lines())
            if (line.id == row.id) {
                EXPECT_EQ(line.checked, (row.style & ~usualSurface) != 0);
            }
        window.surface().SetDisplay({});
    }
    command(idSurfaceHigher);
    EXPECT_NEAR(box().GetBoxHeight(), height * 2 * 1.1, 1e-9);
    command(idSurfaceFirst);
    EXPECT_NEAR(box().GetBoxHeight(), height * 2, 1e-9);
    EXPECT_FALSE(window.surface().SetColorMap(sideOf(writeMap("small.fits", 5, 8, 1))));
    EXPECT_TRUE(window.surface().SetColorMap(sideOf(writeMap("other.fits", 12, 8, 2))));
    draw();
    EXPECT_NE(&graph().ColorGraph(), &graph());
    command(idSurfaceOwnColors);
    draw();
    EXPECT_EQ(&graph().ColorGraph(), &graph());
}

}  // namespace pavane
