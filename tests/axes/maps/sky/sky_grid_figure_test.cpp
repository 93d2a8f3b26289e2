// What a grid of the sky draws: its labels, ticks and lines in pictures and on pages.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/sky/ASkyGrid.h"
#include "platform/picture.h"
#include "tessel/sky_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <numbers>
#include <random>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

constexpr int columns = 300;
constexpr int rows = 200;
constexpr int unit = 12;  // of pages, of a pixel

struct Field {
    const char* x = "RA---SIN";
    const char* y = "DEC--SIN";
    double longitude = 0, latitude = 0, step = 1e-3, turn = 0;
};

MapHeader headerOf(const Field& field)
{
    const double c = field.step * std::cos(field.turn * std::numbers::pi / 180);
    const double s = field.step * std::sin(field.turn * std::numbers::pi / 180);
    MapHeader header;
    header.axes = {{columns, field.x, "deg", field.longitude, 150.5, -field.step, 0},
                   {rows, field.y, "deg", field.latitude, 100.5, field.step, field.turn}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -c;
    header.cd[0][1] = header.cd[1][0] = -s;
    header.cd[1][1] = c;
    return header;
}

/// An axis over all cells of a field with a grid.
struct Plot {
    SkyCoordinates sky;
    MapFrame frame;
    A2DAxis axis{-1, 1, nullptr, 0};
    ASkyGrid* grid = nullptr;

    explicit Plot(const Field& field)
    {
        const MapHeader header = headerOf(field);
        std::string error;
        EXPECT_TRUE(sky.init(header, error)) << error;
        frame = frameOf(header, rows, columns);
        TMinMax range = frame.centres();
        if (range.xMin > range.xMax)
            std::swap(range.xMin, range.xMax);
        axis.setMinMax(range);
        axis.setNameOX("Own x");
        axis.setNameOY("Own y");
        grid = new ASkyGrid(&axis, sky, frame);
        axis.setSkyGrid(grid);
    }
    /// The lines of the page.
    std::vector<std::string> drawn(CSize size)
    {
        const CString file = ::testing::TempDir() + "grid.svg";
        CPageFile page(CPageFile::Format::svg, size.cx, size.cy, "");
        CRect all(0, 0, size.cx * unit, size.cy * unit);
        axis.draw(page.dc(), all);
        CString error;
        EXPECT_TRUE(page.Close(file, error)) << error;
        std::ifstream in(file);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
};

struct Box {
    double left = 0, top = 0, right = 0, bottom = 0;
    std::string text;
};

double numberOf(const std::string& line, const char* name)
{
    const auto at = line.find(name);
    return at == std::string::npos ? NAN : std::stod(line.substr(at + std::string(name).size()));
}

/// Where the letters of all texts stand.
std::vector<Box> textsOf(const std::vector<std::string>& lines)
{
    constexpr double above = 0.72, below = 0.05;
    std::vector<Box> boxes;
    for (const std::string& line : lines) {
        if (!line.starts_with("<text"))
            continue;
        const double x = numberOf(line, " x=\""), y = numberOf(line, " y=\"");
        const double length = numberOf(line, " textLength=\"");
        const double size = numberOf(line, " font-size=\"");
        const auto end = line.rfind("</text>");
        const auto start = line.rfind('>', end) + 1;
        const std::string text = line.substr(start, end - start);
        if (line.find("rotate(-90") == std::string::npos) {
            boxes.push_back({x, y - above * size, x + length, y + below * size, text});
            continue;
        }
        // turned about the top left corner of the first letter
        const auto corner = line.find("rotate(-90 ");
        const double turnX = std::stod(line.substr(corner + 11));
        const double turnY = std::stod(line.substr(line.find(' ', corner + 11)));
        const double down = y - turnY;
        boxes.push_back({turnX + down - above * size, turnY - length, turnX + down + below * size,
                         turnY, text});
    }
    return boxes;
}

int meet(const Box& a, const Box& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace

TEST(SkyGridFigure, LabelsOfRandomFieldsNeitherMeetNorAreCut)
{
    static constexpr const char* axes[][2] = {{"RA---SIN", "DEC--SIN"}, {"RA---TAN", "DEC--TAN"},
                                              {"GLON-CAR", "GLAT-CAR"}, {"RA---AIT", "DEC--AIT"},
                                              {"GLON-SFL", "GLAT-SFL"}, {"RA---ZEA", "DEC--ZEA"},
                                              {"ELON-HPX", "ELAT-HPX"}, {"RA---MER", "DEC--MER"}};
    static constexpr SkyFrame::System systems[] = {SkyFrame::System::icrs, SkyFrame::System::fk5,
                                                   SkyFrame::System::galactic,
                                                   SkyFrame::System::ecliptic};
    std::mt19937 random(5);
    const auto number = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    int labels = 0;
    for (int i = 0; i < 200; ++i) {
        Field field;
        const auto kind = static_cast<std::size_t>(i % 8);
        field.x = axes[kind][0];
        field.y = axes[kind][1];
        // every fifth looks at a pole, every seventh at all the sky
        const int isWhole = i % 7 == 0;
        const int isCylinder = kind == 2 || kind == 3 || kind == 4 || kind == 6 || kind == 7;
        field.longitude = isWhole ? 0 : number(0, 360);
        field.latitude = isCylinder ? 0 : i % 5 == 0 ? 90 : std::asin(number(-1, 1)) * 57.3;
        field.step = isWhole ? 1.25 : std::pow(10, number(-8.5, -0.3));
        field.turn = i % 3 ? 0 : number(0, 360);
        Plot plot(field);
        plot.grid->setFrame({systems[random() % 4], 2000});
        plot.grid->setLabels(static_cast<SkyLabels>(random() % 4));
        const CSize size(static_cast<int>(number(300, 1200)), static_cast<int>(number(250, 900)));
        const std::vector<Box> texts = textsOf(plot.drawn(size));
        const std::string which =
            "field " + std::to_string(i) + " " + field.x + " step " + std::to_string(field.step) +
            " at " + std::to_string(field.longitude) + " " + std::to_string(field.latitude);
        for (std::size_t a = 0; a < texts.size(); ++a) {
            EXPECT_TRUE(texts[a].left >= 0 && texts[a].top >= 0 &&
                        texts[a].right <= size.cx * unit && texts[a].bottom <= size.cy * unit)
                << which << texts[a].text << " is cut";
            for (std::size_t b = 0; b < a; ++b)
                EXPECT_FALSE(meet(texts[a], texts[b]))
                    << which << ": " << texts[a].text << " on " << texts[b].text;
        }
        labels += static_cast<int>(texts.size()) - 2;
    }
    EXPECT_GT(labels, 1200);
}

TEST(SkyGridFigure, LabelsSayWhereTheirTicksAre)
{
    for (const Field& field :
         {Field{"RA---SIN", "DEC--SIN", 123, 80, 0.01}, Field{"RA---TAN", "DEC--TAN", 0, -30, 1e-4},
          Field{"RA---SIN", "DEC--SIN", 187.7, 12.4, 1e-8}}) {
        Plot plot(field);
        (void)plot.drawn(CSize(900, 700));
        for (const int isY : {0, 1}) {
            const TickSet ticks = plot.grid->edgeTicks(isY, 5);
            ASSERT_GT(ticks.major.size(), 1U);
            // the first that is read has all its parts; right ascension grows to the left
            const TickSet::Tick& tick = isY ? ticks.major.front() : ticks.major.back();
            const TMinMax& range = plot.axis.getMinMax();
            const double x = isY ? range.xMax : tick.value;
            const double y = isY ? tick.value : range.yMin;
            double sky[2] = {};
            ASSERT_TRUE(plot.sky.toSky((x - plot.frame.xFirst) / plot.frame.xStep,
                                       (y - plot.frame.yFirst) / plot.frame.yStep, sky[0], sky[1]));
            SkyPosition read;
            CString error;
            ASSERT_TRUE(
                readSkyPosition(isY ? "0 " + tick.label : tick.label + " +0", {}, read, error))
                << tick.label;
            EXPECT_NEAR(isY ? read.latitude : std::remainder(read.longitude - sky[0], 360),
                        isY ? sky[1] : 0, field.step * 1e-4)
                << tick.label;
        }
    }
}

TEST(SkyGridFigure, MinorTicksDivideTheStepsEvenly)
{
    for (const Field& field :
         {Field{"RA---SIN", "DEC--SIN", 123, 80, 0.01}, Field{"RA---TAN", "DEC--TAN", 0, -30, 1e-4},
          Field{"GLON-CAR", "GLAT-CAR", 187.7, 2.4, 0.3}}) {
        Plot plot(field);
        (void)plot.drawn(CSize(900, 700));
        for (const int isY : {0, 1}) {
            const TickSet ticks = plot.grid->edgeTicks(isY, 5);
            std::vector<double> places = plot.grid->minorTicks(isY, 0);
            ASSERT_GE(places.size(), ticks.major.size()) << ticks.major[0].label;
            for (const TickSet::Tick& tick : ticks.major)
                places.push_back(tick.value);
            std::sort(places.begin(), places.end());
            const TMinMax& range = plot.axis.getMinMax();
            std::vector<double> sky;
            for (const double place : places) {
                double at[2] = {};
                const double x = isY ? range.xMax : place;
                const double y = isY ? place : range.yMin;
                ASSERT_TRUE(plot.sky.toSky((x - plot.frame.xFirst) / plot.frame.xStep,
                                           (y - plot.frame.yFirst) / plot.frame.yStep, at[0],
                                           at[1]));
                sky.push_back(at[isY]);
            }
            const double step = std::remainder(sky[1] - sky[0], 360);
            for (std::size_t i = 1; i < sky.size(); ++i)
                EXPECT_NEAR(std::remainder(sky[i] - sky[i - 1], 360), step, 1e-5 * std::fabs(step));
        }
    }
}

TEST(SkyGridFigure, TheAxisHasItsOwnTicksWhereTheGridHasNothing)
{
    const auto titles = [](Plot& plot) {
        std::string all;
        for (const Box& box : textsOf(plot.drawn(CSize(600, 500))))
            if (box.text.size() > 4 && std::isalpha(static_cast<unsigned char>(box.text[0])))
                all += box.text + "|";
        return all;
    };
    Plot plot(Field{});
    EXPECT_EQ(titles(plot), "Right ascension (ICRS)|Declination (ICRS)|");
    EXPECT_FALSE(plot.grid->lines(0).empty());
    const std::size_t lines = plot.drawn(CSize(600, 500)).size();
    plot.grid->setShown(SkyGridShown::ticks);
    EXPECT_EQ(titles(plot), "Right ascension (ICRS)|Declination (ICRS)|");
    EXPECT_LT(plot.drawn(CSize(600, 500)).size(), lines);
    plot.grid->setFrame({SkyFrame::System::galactic, 2000});
    EXPECT_EQ(titles(plot), "Galactic longitude|Galactic latitude|");
    plot.grid->setLabels(SkyLabels::offsets);
    EXPECT_EQ(titles(plot),
              "Relative galactic longitude [arcmin]|Relative galactic latitude [arcmin]|");
    plot.grid->setFrame({SkyFrame::System::fk4, 1960});  // no such
    EXPECT_EQ(titles(plot), "Own x|Own y|");
    plot.grid->setFrame({});
    plot.grid->setShown(SkyGridShown::none);
    EXPECT_EQ(titles(plot), "Own x|Own y|");
    plot.grid->setShown(SkyGridShown::lines);
    TMinMax beyond;
    beyond.xMin = beyond.yMin = 8e6;
    beyond.xMax = beyond.yMax = 9e6;
    plot.axis.setMinMax(beyond);  // of the projection
    EXPECT_TRUE(titles(plot).starts_with("Own x"));
}
