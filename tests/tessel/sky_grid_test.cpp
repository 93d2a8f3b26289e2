#include "tessel/sky_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>

using namespace pavane;

namespace
{

struct Field {
    const char* code;
    double longitude, latitude;
    double step;          ///< degrees a cell
    double turn;          ///< degrees
    const char* pv = "";  ///< PV2_1
    const char* more = "";
};

constexpr int columns = 400;
constexpr int rows = 300;

/// A map of 400 x 300 cells whose reference is in its middle.
MapHeader headerOf(const Field& field, const char* x = "RA--", const char* y = "DEC-")
{
    const double c = field.step * std::cos(field.turn * std::numbers::pi / 180);
    const double s = field.step * std::sin(field.turn * std::numbers::pi / 180);
    MapHeader header;
    header.axes = {{columns, std::string(x) + "-" + field.code, "deg", field.longitude, 200.5, -c},
                   {rows, std::string(y) + "-" + field.code, "deg", field.latitude, 150.5, c}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -c;
    header.cd[0][1] = header.cd[1][0] = -s;
    header.cd[1][1] = c;
    for (std::string card : {std::string("CRVAL1  = 0"), std::string("CRVAL2  = 0"),
                             std::string(field.pv), std::string(field.more)}) {
        card.resize(80, ' ');
        header.coordinateCards.push_back(card);
    }
    return header;
}

constexpr CellRectangle whole = {-0.5, columns - 0.5, -0.5, rows - 0.5};
constexpr double tolerance = 0.02;

double awayFrom(const SkyGridLine& line, const CellPoint& p)
{
    double least = 1e9;
    for (const std::vector<CellPoint>& piece : line.pieces)
        for (std::size_t i = 1; i < piece.size(); ++i) {
            const CellPoint& a = piece[i - 1];
            const double dx = piece[i].column - a.column, dy = piece[i].row - a.row;
            const double t = std::clamp(((p.column - a.column) * dx + (p.row - a.row) * dy) /
                                            std::max(dx * dx + dy * dy, 1e-30),
                                        0.0, 1.0);
            least =
                std::min(least, std::hypot(a.column + t * dx - p.column, a.row + t * dy - p.row));
        }
    return least;
}

/// What is wrong with the lines of a field, beside the inverse at random points; "" for nothing.
/// Points of the lines lie on them, what crosses a line between two points near each other has it
/// there, and what leaves the rectangle has a crossing there.
std::string faultOf(const SkyCoordinates& sky, const SkyFrame& frame, unsigned seed)
{
    SkyGrid grid;
    if (!grid.init(sky, frame, whole, tolerance))
        return "no grid";
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> part(0, 1);
    int count = 0;
    for (const int isLatitude : {0, 1}) {
        const SkySteps steps = grid.steps(isLatitude, SkyLabels::usual, grid.spanOf(isLatitude), 8);
        const std::vector<SkyGridLine> lines = grid.lines(isLatitude, steps);
        count += static_cast<int>(lines.size());
        const auto inverse = [&](const CellPoint& p, double& value) {
            double at[2] = {};
            if (!sky.toSky(p.column, p.row, frame, at[0], at[1]))
                return 0;
            value = at[isLatitude];
            return static_cast<int>(std::abs(at[1]) < 89);  // every longitude is at the pole
        };
        const auto rest = [&](double a, double b) {
            return isLatitude ? a - b : std::remainder(a - b, 360.0);
        };
        for (const SkyGridLine& line : lines)
            for (const std::vector<CellPoint>& piece : line.pieces)
                for (int i = 0; i < 6; ++i) {
                    const auto at = static_cast<std::size_t>(part(random) *
                                                             static_cast<double>(piece.size() - 1));
                    const double t = part(random);
                    const CellPoint p = {piece[at].column * (1 - t) + piece[at + 1].column * t,
                                         piece[at].row * (1 - t) + piece[at + 1].row * t};
                    double value = 0, beside = 0, above = 0;
                    constexpr double step = 0.5;
                    if (!inverse(p, value) || !inverse({p.column + step, p.row}, beside) ||
                        !inverse({p.column, p.row + step}, above))
                        continue;
                    const double slope = std::hypot(rest(beside, value), rest(above, value)) / step;
                    if (std::abs(rest(value, line.value)) > 2.5 * tolerance * slope + 1e-12)
                        return "line " + std::to_string(line.value) + " at " +
                               std::to_string(p.column) + ", " + std::to_string(p.row) + " is " +
                               std::to_string(value);
                }
        for (int i = 0; i < 300; ++i) {
            const CellPoint a = {part(random) * columns, part(random) * (rows - 1)};
            const CellPoint b = {std::min(a.column + 2, columns - 0.6), a.row + 1};
            double va = 0, vb = 0;
            if (!inverse(a, va) || !inverse(b, vb) || std::abs(rest(va, vb)) > 0.3 * steps.step)
                continue;
            const double k = std::round((va - steps.origin) / steps.step);
            const double value = steps.value(k);
            if ((rest(va, value) < 0) == (rest(vb, value) < 0) ||
                (isLatitude && std::abs(value) > 89))
                continue;
            const auto line = std::find_if(lines.begin(), lines.end(), [&](const auto& l) {
                return std::abs(rest(l.value, value)) < 1e-3 * steps.step;
            });
            if (line == lines.end() || awayFrom(*line, a) > 3)
                return "no line " + std::to_string(value) + " at " + std::to_string(a.column) +
                       ", " + std::to_string(a.row);
        }
        for (const CellEdge edge :
             {CellEdge::bottom, CellEdge::top, CellEdge::left, CellEdge::right})
            for (const SkyCrossing& crossing : grid.crossings(isLatitude, steps, edge)) {
                double value = 0;
                if (inverse(crossing.at, value) &&
                    std::abs(rest(value, steps.value(crossing.k))) > 1e-6 * steps.step)
                    return "crossing of " + std::to_string(steps.value(crossing.k)) + " at " +
                           std::to_string(value);
                const int hasLine = std::any_of(lines.begin(), lines.end(), [&](const auto& l) {
                    return awayFrom(l, crossing.at) < 0.1;
                });
                if (!hasLine && std::abs(value) < 89)
                    return "no line ends at a crossing of " +
                           std::to_string(steps.value(crossing.k));
            }
    }
    return count > 2 ? "" : "only " + std::to_string(count) + " lines";
}

}  // namespace

TEST(SkyGrid, LinesLieWhereTheInverseOfEveryProjectionHasThem)
{
    constexpr Field fields[] = {
        {"AZP", 30, 40, 0.1, 20, "PV2_1   = 2.0"},
        {"SZP", 359.9, -30, 0.1, 0, "PV2_1   = 2.0", "PV2_2   = 180.0"},
        {"TAN", 0.01, 80, 0.05, 0},
        {"TAN", 100, 30, 1, 10},
        {"TAN", 187.70593, 12.39112, 1e-8, 0},
        {"STG", 10, -89, 0.2, 45},
        {"SIN", 123, 80, 0.03, 0},
        {"SIN", 200, 35, 0.45, 0},
        {"SIN", 187.70593, 12.39112, 2e-9, 30},
        {"ARC", 80, 60, 0.8, 0},
        {"ZPN", 80, 10, 0.1, 0, "PV2_1   = 1.0", "PV2_3   = 0.05"},
        {"ZEA", 0, 90, 0.3, 0},
        {"ZEA", 266, -29, 0.9, 0},
        {"AIR", 80, 60, 0.3, 0},
        {"CYP", 0, 0, 0.7, 0, "PV2_1   = 1.0"},
        {"CEA", 0, 0, 0.9, 0},
        {"CAR", 0, 0, 0.9, 0},
        {"CAR", 300, 0, 1.3, 15},
        {"MER", 20, 0, 0.7, 0},
        {"COP", 20, 45, 0.3, 0, "PV2_1   = 45.0"},
        {"COE", 20, 45, 0.3, 0, "PV2_1   = 45.0"},
        {"COD", 20, 45, 0.3, 0, "PV2_1   = 45.0"},
        {"COO", 20, 45, 0.3, 0, "PV2_1   = 45.0"},
        {"SFL", 0, 0, 1, 0},
        {"PAR", 180, 0, 1, 0},
        {"MOL", 0, 0, 1, 0},
        {"AIT", 0, 0, 0.95, 0},
        {"AIT", 266, -29, 0.95, 0},
        {"BON", 20, 0, 0.9, 0, "PV2_1   = 45.0"},
        {"PCO", 20, 0, 0.9, 0},
        {"TSC", 0, 0, 0.95, 0},
        {"CSC", 0, 0, 0.95, 0},
        {"QSC", 0, 0, 0.95, 0},
        {"HPX", 0, 0, 0.95, 0},
        {"XPH", 0, 90, 0.5, 0},
        {"NCP", 40, 60, 0.02, 0},
        {"GLS", 40, 30, 0.2, 0},
    };
    static constexpr SkyFrame frames[] = {{SkyFrame::System::icrs, 2000},
                                          {SkyFrame::System::galactic, 2000},
                                          {SkyFrame::System::ecliptic, 2000},
                                          {SkyFrame::System::fk5, 1975},
                                          {SkyFrame::System::fk4, 1950}};
    unsigned seed = 1;
    for (const Field& field : fields) {
        SkyCoordinates sky;
        std::string error;
        ASSERT_TRUE(sky.init(headerOf(field), error)) << field.code << error;
        // every frame for some, the map's own and one other for the rest: FK4 is slow
        const unsigned other = 1 + seed % 3;
        for (const unsigned i : {0U, other})
            EXPECT_EQ(faultOf(sky, frames[i], seed), "")
                << field.code << field.longitude << " in " << nameOf(frames[i]);
        ++seed;
    }
    for (const Field& field : {Field{"TAN", 350, 80, 0.01, 0}, Field{"SIN", 10, 20, 1e-8, 40}}) {
        SkyCoordinates sky;
        std::string error;
        ASSERT_TRUE(sky.init(headerOf(field, "GLON", "GLAT"), error)) << error;
        for (const SkyFrame& frame : frames)
            EXPECT_EQ(faultOf(sky, frame, seed++), "") << field.code << " in " << nameOf(frame);
    }
}

TEST(SkyGrid, RefusesWhatHasNoPlaceOnTheSky)
{
    SkyCoordinates sky;
    SkyGrid grid;
    const SkyFrame icrs;
    EXPECT_FALSE(grid.init(sky, icrs, whole, 0.1));  // not set
    std::string error;
    ASSERT_TRUE(sky.init(headerOf({"SIN", 0, 0, 0.1, 0}), error));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        CellRectangle rectangle;
        double tolerance;
        SkyFrame frame;
    } bad[] = {{{0, 0, 0, 1}, 0.1, icrs},
               {{0, nan, 0, 1}, 0.1, icrs},
               {{0, 1e300, 0, 1}, 0.1, icrs},
               {whole, 0, icrs},
               {whole, nan, icrs},
               {whole, 0.1, {SkyFrame::System::fk4, 1960}},
               {{90000, 90001, 90000, 90001}, 0.1, icrs}};
    for (const auto& b : bad) {
        EXPECT_FALSE(grid.init(sky, b.frame, b.rectangle, b.tolerance));
        EXPECT_TRUE(grid.lines(0, roundSteps(SkyNumbers::arc, 1, 5)).empty());
        EXPECT_TRUE(grid.limb().empty());
    }
}

TEST(SkyGrid, KnowsLimbsPolesAndTurns)
{
    // the limb of a SIN map is a circle of 180 / pi degrees
    SkyCoordinates sky;
    std::string error;
    ASSERT_TRUE(sky.init(headerOf({"SIN", 200, 35, 0.45, 0}), error));
    SkyGrid grid;
    ASSERT_TRUE(grid.init(sky, sky.skyFrame(), whole, tolerance));
    EXPECT_TRUE(grid.hasLimb() && grid.hasPole());
    const auto limb = grid.limb();
    ASSERT_EQ(limb.size(), 1U);
    EXPECT_GT(limb[0].size(), 300U);
    for (const CellPoint& p : limb[0])
        EXPECT_NEAR(std::hypot(p.column - 199.5, p.row - 149.5), 180 / std::numbers::pi / 0.45,
                    0.01);
    // meridians end at the limb and the pole, whose place the inverse knows
    double column = 0, row = 0;
    ASSERT_TRUE(sky.toPixel(0, 90, column, row));
    for (const SkyGridLine& line : grid.lines(0, roundSteps(SkyNumbers::hours, 360, 8)))
        EXPECT_LT(awayFrom(line, {column, row}), tolerance);

    // 520 degrees of a cylinder: each meridian of the first 160 is there twice
    ASSERT_TRUE(sky.init(headerOf({"CAR", 0, 0, 1.3, 0}), error));
    ASSERT_TRUE(grid.init(sky, sky.skyFrame(), whole, tolerance));
    const auto lines = grid.lines(0, roundSteps(SkyNumbers::hours, 360, 8));
    ASSERT_EQ(lines.size(), 8U);
    std::size_t pieces = 0;
    for (const SkyGridLine& line : lines)
        pieces += line.pieces.size();
    EXPECT_EQ(pieces, 11U);  // -225 ... 225 by 45: 520 / 45 and one
    EXPECT_EQ(grid.crossings(0, roundSteps(SkyNumbers::hours, 360, 8), CellEdge::bottom).size(),
              0U);
}

TEST(SkyGrid, WritesRoundStepsWithAsManyDigitsAsTheyNeed)
{
    using enum SkyNumbers;
    static constexpr struct {
        SkyNumbers numbers;
        double span;
        int most;
        double k;
        int isLatitude;
        const char *text, *after;
    } cases[] = {
        {hours, 360, 8, 1, 0, "03h", "03h"},
        {hours, 360, 8, 8, 0, "00h", "00h"},
        {hours, 360, 8, -1, 0, "21h", "21h"},
        {hours, 10, 5, 3, 0, "00h30m", "30m"},
        {hours, 0.5, 5, 121, 0, "01h00m30s", "30s"},
        {hours, 0.5, 5, 122, 0, "01h01m00s", "01m00s"},
        {hours, 0.01, 5, 3601, 0, "00h30m00.5s", "00.5s"},
        {hours, 3e-8, 5, 30000001, 0, "00h01m00.000002s", "00.000002s"},
        {arc, 10, 5, -1, 1, "\u221202\u00b0", "\u221202\u00b0"},
        {arc, 0.5, 5, -1, 1, "\u221200\u00b010\u2032", "10\u2032"},
        {arc, 0.5, 5, 7, 1, "+01\u00b010\u2032", "10\u2032"},
        {arc, 0.02, 5, 1, 1, "+00\u00b000\u203215\u2033", "15\u2033"},
        {arc, 360, 8, 7, 0, "315\u00b0", "315\u00b0"},
        {degrees, 0.7, 5, 1801, 0, "0.2\u00b0", "0.2\u00b0"},
        {degrees, 7, 5, -1, 1, "\u22122\u00b0", "\u22122\u00b0"},
    };
    for (const auto& c : cases) {
        const SkySteps steps = roundSteps(c.numbers, c.span, c.most);
        EXPECT_LE(c.span / steps.step, c.most + 1e-6);
        const SkyText text = skyText(steps, c.k, c.isLatitude);
        EXPECT_EQ(text.whole(), c.text) << c.span;
        EXPECT_EQ(text.after(skyText(steps, c.k - 1, c.isLatitude)), c.after) << c.span;
    }
    // half of a step in longitude at 60 degrees is one on the sky
    const SkySteps offsets = offsetSteps(30, 60, 0, 8e-6, 5);
    EXPECT_NEAR(offsets.step * 3600e3 / 2, 5, 1e-9);
    EXPECT_EQ(skyText(offsets, -2, 0).whole() + offsets.unit, "-10mas");
}
