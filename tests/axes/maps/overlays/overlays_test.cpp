// Contours of another map and vectors: where they lie on the map below.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/axes/maps/overlays/AOtherContours.h"
#include "pavane/axes/maps/overlays/AVectorGraph.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using namespace pavane;

namespace
{

constexpr double degree = std::numbers::pi / 180;
const SkyFrame icrs{SkyFrame::System::icrs, 2000};

MapHeader headerOf(const char* x, const char* y, double l, double b, double step, double turn,
                   int mirrored, int columns, int rows)
{
    MapHeader header;
    header.axes = {{columns, x, "deg", l, columns / 2.0, -step, 0},
                   {rows, y, "deg", b, rows / 2.0, step, turn}};
    header.hasCelestialAxes = 1;
    const double c = step * std::cos(turn * degree), s = step * std::sin(turn * degree);
    header.cd[0][0] = mirrored ? c : -c;
    header.cd[0][1] = -s;
    header.cd[1][0] = mirrored ? s : -s;
    header.cd[1][1] = c;
    return header;
}

/// A smooth function of the position near (83.6, 22).
double skyValue(double l, double b)
{
    const double x = (l - 83.6) * std::cos(b * degree), y = b - 22;
    return std::exp(-x * x / 8 - y * y / 3) + 0.4 * std::sin(x) * std::cos(1.3 * y);
}

}  // namespace

// A map has the contours of the sky that it shows, so those of one projection lie on the ones of
// another: the value there differs from the level by less than half a cell's slope.
TEST(Overlays, ContoursGoThroughBothPositions)
{
    const MapHeader shownHeader =
        headerOf("GLON-CAR", "GLAT-CAR", 184.5, -5.8, 0.05, 25, 0, 240, 200);
    const MapHeader others[] = {headerOf("RA---SIN", "DEC--SIN", 83.6, 22, 0.031, 0, 0, 400, 380),
                                headerOf("ELON-STG", "ELAT-STG", 84, -1, 0.08, 160, 1, 150, 160)};
    SkyCoordinates shown;
    std::string error;
    ASSERT_TRUE(shown.init(shownHeader, error)) << error;
    const auto valueAt = [&](double column, double row) {
        double l = 0, b = 0;
        return shown.toSky(column, row, icrs, l, b) ? skyValue(l, b)
                                                    : std::numeric_limits<double>::quiet_NaN();
    };
    for (const MapHeader& header : others) {
        SkyCoordinates own;
        ASSERT_TRUE(own.init(header, error)) << error;
        AMatrix<float> cells(header.axes[1].length, header.axes[0].length);
        for (int r = 0; r < cells.rows(); ++r)
            for (int c = 0; c < cells.columns(); ++c) {
                double l = 0, b = 0;
                ASSERT_TRUE(own.toSky(c, r, icrs, l, b));
                cells(r, c) = static_cast<float>(skyValue(l, b));
            }
        ContourLines lines;
        const std::vector<double> levels = {-0.2, 0.1, 0.3, 0.6, 0.9};
        ASSERT_TRUE(lines.trace(AFloatMatrixAccess(cells), levels));
        const std::int64_t points = lines.pointCount();
        const CellMapping mapping(own, shown);
        ASSERT_TRUE(lines.carry([&](CPointF& p) { return mapping.map(p.x, p.y, p.x, p.y); }, 50));
        std::int64_t kept = 0;
        for (const ContourLine& line : lines.lines())
            for (std::int64_t i = 0; i < line.count; ++i, ++kept) {
                const CPointF p = lines.points(line)[i];
                const double slope = std::hypot(valueAt(p.x + 1, p.y) - valueAt(p.x - 1, p.y),
                                                valueAt(p.x, p.y + 1) - valueAt(p.x, p.y - 1)) /
                                     2;
                const double off = valueAt(p.x, p.y) - levels[std::size_t(line.level)];
                // where the function is flat a contour lies anywhere
                ASSERT_LT(std::fabs(off), 0.5 * slope + 1e-4) << p.x << ' ' << p.y;
            }
        EXPECT_EQ(kept, points);
        EXPECT_GT(kept, 500);
    }
}

TEST(Overlays, LinesEndWhereThereIsNoPlace)
{
    AMatrix<float> cells(40, 40);
    for (int r = 0; r < 40; ++r)
        for (int c = 0; c < 40; ++c)
            cells(r, c) = static_cast<float>(std::hypot(r - 19.5, c - 19.5));
    const struct {
        double from, to, jump;
        int lines, closed;
    } cases[] = {{-1, -1, 0, 1, 1},     // nowhere
                 {18, 21, 0, 2, 0},     // a strip without a place cuts a ring in two
                 {-1, 12, 0, 1, 0},     // one side is gone
                 {-1, -1, 100, 2, 0}};  // the left half lies elsewhere
    for (const auto& c : cases) {
        ContourLines lines;
        ASSERT_TRUE(lines.trace(AFloatMatrixAccess(cells), {12.25}));
        ASSERT_EQ(lines.lines().size(), 1U);
        ASSERT_TRUE(lines.carry(
            [&](CPointF& p) {
                if (p.x > c.from && p.x < c.to)
                    return 0;
                p.x += p.x < 20 ? c.jump : 0;
                return 1;
            },
            10));
        ASSERT_EQ(int(lines.lines().size()), c.lines) << c.from;
        for (const ContourLine& line : lines.lines()) {
            EXPECT_EQ(line.closed, c.closed);
            for (std::int64_t i = 1; i < line.count; ++i) {
                const CPointF *const p = lines.points(line) + i, *const q = p - 1;
                EXPECT_LT(std::hypot(p->x - q->x, p->y - q->y), 1.5);
            }
        }
    }
}

// Strokes point from north through east on the sky, on turned and mirrored maps.
TEST(Overlays, VectorsPointFromNorthThroughEast)
{
    for (const auto& [turn, mirrored] :
         {std::pair(0.0, 0), std::pair(35.0, 0), std::pair(-120.0, 1)}) {
        const MapHeader header =
            headerOf("RA---TAN", "DEC--TAN", 200, 60, 0.02, turn, mirrored, 90, 60);
        SkyCoordinates sky;
        std::string error;
        ASSERT_TRUE(sky.init(header, error)) << error;
        AMatrix<float> cells(60, 90), angles(60, 90), lengths(60, 90);
        for (int i = 0; i < 60 * 90; ++i) {
            cells.data()[i] = 1;
            lengths.data()[i] = i % 7 ? 0.1f : 0.4f;
            angles.data()[i] = static_cast<float>(i % 180 - 90);
        }
        const AFloatMatrixAccess access(cells);
        const MapFrame frame = frameOf(header, 60, 90);
        A2DAxis axis(frame.xDirection, 1, nullptr, 0);
        auto* const map = new ALevelsColorGraph(&axis, access, frame.centres(), 0);
        auto* const vectors = new AVectorGraph(&axis, *map, lengths, angles, sky);
        vectors->setSpacing(12);
        CPicture picture(500, 360);
        CRect all(0, 0, 500, 360);
        axis.draw(*picture.dc(), all);
        const std::vector<AVectorGraph::Stroke> strokes = vectors->strokes(1);
        ASSERT_GT(strokes.size(), 200U);
        double longest = 0;
        for (const auto& s : strokes)
            longest = std::max(longest, 2 * std::hypot(s.dx, s.dy));
        EXPECT_GT(longest, 12);
        EXPECT_LT(longest, 60);
        // each stroke against the place of a point a little along its angle
        const double ax = axis.RPtoGPF(map->MPXtoRPX(1), 0).x - axis.RPtoGPF(map->MPXtoRPX(0), 0).x;
        const double zero = axis.RPtoGPF(map->MPXtoRPX(0), map->MPYtoRPY(0)).x;
        const double zeroY = axis.RPtoGPF(map->MPXtoRPX(0), map->MPYtoRPY(0)).y;
        const double ay = axis.RPtoGPF(0, map->MPYtoRPY(1)).y - axis.RPtoGPF(0, map->MPYtoRPY(0)).y;
        for (const auto& s : strokes) {
            const int c = static_cast<int>(std::lround((s.middle.x - zero) / ax));
            const int r = static_cast<int>(std::lround((s.middle.y - zeroY) / ay));
            double l = 0, b = 0, column = 0, row = 0;
            ASSERT_TRUE(sky.toSky(c, r, l, b));
            const double angle = double(angles(r, c)) * degree, step = 1e-3;
            ASSERT_TRUE(sky.toPixel(l + step * std::sin(angle) / std::cos(b * degree),
                                    b + step * std::cos(angle), column, row));
            const double x = (column - c) * ax, y = (row - r) * ay;
            const double size = std::hypot(x, y) * std::hypot(s.dx, s.dy);
            ASSERT_LT(std::fabs(x * s.dy - y * s.dx) / size, 1e-3) << c << ' ' << r;
            const double ratio = std::hypot(s.dx, s.dy) / static_cast<double>(lengths(r, c));
            ASSERT_NEAR(ratio, longest / 2 / 0.4, 1e-3);
        }
    }
}
