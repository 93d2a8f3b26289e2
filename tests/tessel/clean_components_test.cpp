#include "tessel/clean_components.h"
#include "tests/tessel/uvfits_text.h"

namespace pavane
{

namespace
{

using Columns = std::vector<std::pair<std::string, std::string>>;
const Columns three = {{"FLUX", "1E"}, {"DELTAX", "1E"}, {"DELTAY", "1E"}};

std::string numbers(const std::vector<float>& values)
{
    std::string bytes;
    for (const float value : values)
        bytes += bigEndian(value);
    return bytes;
}

std::string mapWith(const std::string& tables)
{
    return hdu(imageCards(8, {2, 2}), std::string(4, '\1')) + tables;
}

/// "3 rows; note; note", or the error.
std::string readFrom(const std::string& bytes)
{
    CleanComponents read;
    std::string error;
    if (!readCleanComponents(saved("clean.fits", bytes), read, error)) {
        EXPECT_TRUE(read.rows.empty() && !read.hasTable && !error.empty());
        return error;
    }
    std::string text =
        read.hasTable ? std::to_string(read.rows.size()) + " rows" : std::string("no table");
    for (const std::string& note : read.notes)
        text += "; " + note;
    return text;
}

}  // namespace

TEST(CleanComponents, AreReadOrRefusedWithTheReason)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::string two = tableHdu("AIPS CC", three, 12, 2, numbers({1, 2, 3, 4, 5, 6}));
    const struct {
        const char* name;
        std::string tables, answer;
    } cases[] = {
        {"none", "", "no table"},
        {"other tables", antennaHdu(), "no table"},
        {"the least", antennaHdu() + two, "2 rows"},
        {"the old word for binary tables", replaced(two, "BINTABLE", "A3DTABLE"), "2 rows"},
        {"no rows", tableHdu("AIPS CC", three, 12, 0, ""), "0 rows"},
        {"two", two + two, "2 rows; has 2 tables of components; these are of the first"},
        {"rows without a place", tableHdu("AIPS CC", three, 12, 2, numbers({1, nan, 3, 4, 5, 6})),
         "1 rows; has 1 components without a finite flux and place, left out"},
        {"junk behind", two + std::string(2880, 'x'),
         "2 rows; has something behind its map that cannot be read"},
        {"no flux", replaced(two, "'FLUX'", "'FLOX'"),
         "has a table of components without a column FLUX"},
        {"a column of nothing", replaced(two, "'1E'", "'0E'"),
         "has a table of components without a column FLUX"},
        {"a text table", replaced(two, "BINTABLE", "TABLE   "),
         "has a table of components of a kind that is not read: TABLE"},
        {"columns wider than rows", replaced(two, "= 12", "= 11"),
         "has columns that are wider than its rows"},
        {"more rows than bytes", replaced(two, "NAXIS2  = 2      ", "NAXIS2  = 9999999"),
         "ends before its table of components does"},
        {"rows without bytes",
         replaced(replaced(two, "= 12", "= 0 "), "NAXIS2  = 2", "NAXIS2  = 9"),
         "has columns that are wider than its rows"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(readFrom(mapWith(c.tables)), c.answer) << c.name;
    EXPECT_EQ(readFrom("x"), "is not a FITS file");
}

TEST(CleanComponents, EndWhereTheFileEnds)
{
    const std::string whole =
        mapWith(tableHdu("AIPS CC", three, 12, 2, numbers({1, 2, 3, 4, 5, 6})));
    const std::size_t data = whole.size() - 2880;
    for (std::size_t size = 0; size < whole.size(); size += 61) {
        const std::string answer = readFrom(whole.substr(0, size));
        // of the data itself only the padding may be missing
        EXPECT_EQ(answer == "2 rows", size >= data + 24) << size << ": " << answer;
    }
}

TEST(CleanComponents, TakeUnitsAndScalesOfTheFile)
{
    const std::string row = tableHdu(
        "AIPS CC",
        {{"dec", "1E"},
         {"deltay", "1E"},
         {"Delta_X", "1J"},
         {"Flux", "1E"},
         {"Type Obj", "1E"},
         {"Major Ax", "1E"}},
        24, 1, numbers({9, 36}) + bigEndian(std::uint64_t{5}, 4) + numbers({250, 1, 3.6e6f}));
    const auto withCards = [&](const std::string& cards) {
        return mapWith(replaced(row, "END" + std::string(cards.size() - 3, ' '), cards));
    };
    const auto card = [](std::string text) {
        text.resize(80, ' ');
        return text;
    };
    const std::string units = card("TUNIT2  = 'ARCSEC'") + card("TSCAL3  = 0.5") +
                              card("TZERO3  = -1.0") + card("TUNIT4  = 'mJy / beam'") +
                              card("TUNIT6  = 'mas'") + card("END");
    CleanComponents read;
    std::string error;
    ASSERT_TRUE(readCleanComponents(saved("clean.fits", withCards(units)), read, error)) << error;
    ASSERT_EQ(read.rows.size(), 1u);
    EXPECT_DOUBLE_EQ(read.rows[0].flux, 0.25);
    EXPECT_DOUBLE_EQ(read.rows[0].east, 1.5);
    EXPECT_DOUBLE_EQ(read.rows[0].north, 0.01);
    EXPECT_DOUBLE_EQ(read.rows[0].major, 1);
    EXPECT_EQ(read.rows[0].code, 1);
    EXPECT_FALSE(read.rows[0].isSingle);  // a whole number, scaled
    EXPECT_EQ(readFrom(withCards(card("TUNIT4  = 'MJY'") + card("END"))),
              "has components with FLUX in a unit that is not known: MJY");
}

}  // namespace pavane
