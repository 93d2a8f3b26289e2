#include "axes/maps/sky_map.h"
#include "axis_window_fixture.h"
#include "pavane/axes/windows/show_map.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "platform/picture.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace pavane
{

namespace
{

constexpr CRect all{0, 0, 640, 480};

struct Window : AxisWindow {
    using APlotWnd::contentPixels;
};

/// A map of the sky, with contours.
struct Sky {
    MapContent content = skyMap();
    MapPicture picture;

    Sky()
    {
        complete(content);
        picture.show(content);
        ContourLevels levels;
        levels.read("sigma:-1,1,2");
        picture.graph().contours().setLevels(levels);
    }
};

int differences(const CPicture& a, const std::uint32_t* b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y, b += a.width())
        for (int x = 0; x < a.width(); ++x)
            count += (a.row(y)[x] ^ b[x]) << 8 != 0;
    return count;
}

/// A grey picture of the first page of a PDF file, `fine` pixels for each of 96 per inch.
struct Page {
    int width = 0, height = 0;
    std::string grey;

    Page(const CString& file, int fine)
    {
        const std::string command = "pdftoppm -r " + std::to_string(96 * fine) +
                                    " -gray -singlefile '" + file + "' '" + file + "'";
        std::ifstream in(std::system(command.c_str()) == 0 ? file + ".pgm" : "");
        std::string magic;
        int most = 0;
        in >> magic >> width >> height >> most;
        in.get();
        grey.assign(std::istreambuf_iterator<char>(in), {});
    }
    int isDark(int x, int y) const
    {
        return static_cast<unsigned char>(grey[static_cast<std::size_t>(y * width + x)]) < 128;
    }
    /// The middle of the dark line, nearest to `near`, that goes from `first` to `last`.
    double lineNear(double near, int first, int last, int isColumn) const
    {
        double sum = 0;
        int lines = 0;
        for (int at = static_cast<int>(near) - 12; at < near + 12; ++at) {
            int dark = 0;
            for (int along = first; along < last; ++along)
                dark += isColumn ? isDark(at, along) : isDark(along, at);
            if (dark < (last - first) * 9 / 10)
                continue;
            sum += at + 0.5;
            ++lines;
        }
        return lines ? sum / lines : -1;
    }
};

}  // namespace

TEST(WindowFigure, IsThatOfCopiesAndFilesPixelByPixel)
{
    Sky shown, alone;
    Window window;
    showMap(window, shown.picture);
    window.UpdateWindow();
    window.ChooseTool(toolRect);
    window.drag({window.at(8, 10), window.at(30, 40)});
    CRect margins;
    for (const int zoomed : {0, 1}) {
        if (zoomed)
            window.ZoomAbout(window.at(8, 10), 3.7);
        window.UpdateWindow();
        ASSERT_EQ(window.contentPixels().size(), all.Size());
        CPicture picture(640, 480), file(640, 480);
        window.SetAreasInPicture(0);
        window.DrawPicture(*picture.dc(), all);
        EXPECT_EQ(differences(picture, window.contentPixels().bits()), 0) << zoomed;
        // a program without a window
        alone.picture.axis().setMinMax(shown.picture.axis().getMinMax());
        const auto dc = file.dc();
        MapFigure& figure = alone.picture.figure();
        const FigureLayout layout = figure.layOut(*dc, all, zoomed ? &margins : nullptr);
        margins = layout.margins;
        figure.draw(*dc, layout);
        EXPECT_EQ(differences(file, picture.row(0)), 0) << zoomed;
        // with areas
        window.SetAreasInPicture(1);
        window.DrawPicture(*picture.dc(), all);
        AreaLayer areas(outlinesOf(*window.GetTrackers()));
        EXPECT_GT(differences(file, picture.row(0)), 500) << zoomed;
        figure.addLayer(&areas);
        figure.draw(*dc, layout);
        EXPECT_EQ(differences(file, picture.row(0)), 0) << zoomed;
        figure.clearLayers();
    }
    window.SetAxis(nullptr, 0);
}

TEST(WindowFigure, StandsOnPagesWhereTheWindowHasIt)
{
    Sky sky;
    AArray<COLORREF> white;
    white.Add(RGB(255, 255, 255));
    sky.picture.graph().setColors(white);  // so that only frames are dark
    Window window;
    showMap(window, sky.picture);
    for (const int zoomed : {0, 1}) {
        if (zoomed)
            window.ZoomAbout(window.at(8, 10), 3.7);
        window.UpdateWindow();
        const CRect plot = window.GetAxis()->getGraphRect();
        constexpr int unit = 12, fine = 4;
        CPageFile made(CPageFile::Format::pdf, 640, 480, "", unit);
        window.DrawPicture(made.dc(), CRect(0, 0, 640 * unit, 480 * unit));
        const CString file = ::testing::TempDir() + "figure.pdf";
        CString error;
        ASSERT_TRUE(made.Close(file, error)) << error;
        const Page page(file, fine);
        ASSERT_EQ(page.width, 640 * fine);
        const double near = 0.2 / 25.4 * 96 * fine;
        for (const int x : {plot.left, plot.right, plot.right + 14}) {
            const double wanted = (x + 0.5) * fine;
            EXPECT_NEAR(page.lineNear(wanted, plot.top * fine, plot.bottom * fine, 1), wanted,
                        near);
        }
        const int bar = (plot.right + 14) * fine;
        for (const int y : {plot.top, plot.bottom}) {
            const double wanted = (y + 0.5) * fine;
            EXPECT_NEAR(page.lineNear(wanted, plot.left * fine, plot.right * fine, 0), wanted,
                        near);
            EXPECT_NEAR(page.lineNear(wanted, bar, bar + 10 * fine, 0), wanted, near);
        }
        EXPECT_EQ(window.GetAxis()->getGraphRect(), plot);
    }
    window.SetAxis(nullptr, 0);
}

}  // namespace pavane
