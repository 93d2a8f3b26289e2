// Cubes whose planes have a beam each.
#include "tessel/fits_map.h"
#include "tests/tessel/uvfits_text.h"

namespace pavane
{

namespace
{

/// Rows of major, minor and angle, channel and polarisation; planes are channels of two
/// polarisations.
std::string beams(const std::vector<std::array<int, 5>>& rows, const std::string& unit)
{
    std::string data;
    for (const auto& row : rows) {
        for (const int i : {0, 1, 2})
            data += bigEndian(static_cast<float>(row[static_cast<std::size_t>(i)]));
        for (const int i : {3, 4})
            data += bigEndian(static_cast<std::uint64_t>(row[static_cast<std::size_t>(i)]), 4);
    }
    std::string cards;
    for (std::string card : {"TUNIT1  = '" + unit + "'", "TUNIT2  = '" + unit + "'",
                             std::string("TUNIT3  = 'deg'"), std::string("END")}) {
        card.resize(80, ' ');
        cards += card;
    }
    const std::string table = tableHdu(
        "BEAMS", {{"BMAJ", "1E"}, {"BMIN", "1E"}, {"BPA", "1E"}, {"CHAN", "1J"}, {"POL", "1J"}}, 20,
        static_cast<int>(rows.size()), data);
    return replaced(table, "END" + std::string(cards.size() - 3, ' '), cards);
}

}  // namespace

TEST(BeamTable, GivesEachPlaneItsBeam)
{
    const std::string cube = hdu(
        imageCards(8, {2, 2, 2, 3},
                   {"CTYPE3  = 'STOKES'", "CTYPE4  = 'FREQ'", "CASAMBM =                    T"}),
        std::string(24, '\1'));
    const std::vector<std::array<int, 5>> rows = {
        {36, 18, 10, 0, 0}, {72, 36, 20, 1, 0}, {108, 54, 30, 2, 0}, {144, 72, 40, 2, 1}};
    const struct {
        const char* name;
        std::string bytes;
        int plane;
        double major, angle;  ///< 0 for no beam
    } cases[] = {
        {"first", cube + beams(rows, "arcsec"), 0, 0.01, 10},
        {"of a channel", cube + beams(rows, "arcsec"), 2, 0.02, 20},
        {"of a polarisation", cube + beams(rows, "arcsec"), 5, 0.04, 40},
        {"no row for it", cube + beams(rows, "arcsec"), 1, 0, 0},
        {"behind another table", cube + antennaHdu() + beams(rows, "deg"), 4, 108, 30},
        {"no size", cube + beams({{0, 18, 10, 0, 0}}, "arcsec"), 0, 0, 0},
        {"a unit that is none", cube + beams(rows, "furlong"), 0, 0, 0},
        {"without the word",
         replaced(cube, "CASAMBM =                    T", std::string(30, ' ')) +
             beams(rows, "arcsec"),
         0, 0, 0},
        {"cut short", (cube + beams(rows, "arcsec")).substr(0, cube.size() + 2880 + 40), 0, 0, 0},
    };
    for (const auto& c : cases) {
        FitsMap map;
        std::string error;
        ASSERT_TRUE(readFitsMap(saved("beams.fits", c.bytes), c.plane, map, error)) << error;
        EXPECT_EQ(map.header.hasBeam, c.major > 0) << c.name;
        EXPECT_NEAR(map.header.bmaj, c.major, 1e-12) << c.name;
        EXPECT_NEAR(map.header.bmin, c.major / 2, 1e-12) << c.name;
        EXPECT_EQ(map.header.bpa, c.angle) << c.name;
    }
}

}  // namespace pavane
