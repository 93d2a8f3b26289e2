#include "containers/stored_file.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/tables/components/component_outline.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace pavane
{

namespace
{

const std::string head = ";Column 1 - Type\n;Column 2 - Peak_Flux\n;Column 3 - Large_Axis\n"
                         ";Column 4 - Axis_Ratio\n;Column 5 - Inclination\n"
                         ";Column 6 - Position_Angle\n;Column 7 - Distance\n"
                         ";Column 8 - Spectral_Index\n";
const std::string defaults = "1 1 0 1 0 0 0 0.5\n";

std::string storedAgain(const std::string& text)
{
    std::istringstream in(text);
    AComponents model;
    model.Load(in);
    std::ostringstream out;
    model.Store(out);
    return out.str().substr(head.size());
}

std::string faultOf(const std::string& text)
{
    const std::string name = testing::TempDir() + "pavane-components.txt";
    std::ofstream(name, std::ios::binary) << text;
    AComponents model;
    std::string error;
    const int read = readComponentFile(name, model, error);
    EXPECT_EQ(read == 0, model.count() == 0 && !error.empty()) << text;
    std::remove(name.c_str());
    return error;
}

}  // namespace

TEST(ComponentText, IsWrittenWithColumnCommentsAndSixDigits)
{
    AComponents model;
    model.Add(ACompItem("2 0.682763 0.00019 1 -45 -124.53 0.000434351 0.5"));
    model.Add(ACompItem("7 -1234567 1e-9 1 0 0 0 1"));
    std::ostringstream out;
    model.Store(out);
    EXPECT_EQ(out.str(), head + "2\n2 0.682763 0.00019 1 -45 -124.53 0.000434351 0.5\n"
                                "7 -1.23457e+06 1e-09 1 0 0 0 1\n");
    EXPECT_EQ(head + storedAgain(out.str()), out.str());
}

TEST(ComponentText, ReadsWhatItCanAndEnds)
{
    const std::string wide = "2 3" + std::string(200, ' ') + "4\n";
    const struct {
        const char* name;
        std::string text, stored;
    } cases[] = {
        {"nothing", "", "0\n"},
        {"comments and a count of 0", ";a\n;b\n0\n1 1 0 1 0 0 0 0.5\n", "0\n"},
        {"a negative count", "-4\n" + defaults, "0\n"},
        {"a word for the count", "two\n" + defaults, "0\n"},
        {"a count above the lines", "2000000000\n" + defaults + defaults,
         "2\n" + defaults + defaults},
        {"more lines than the count", "1\n" + defaults + defaults, "1\n" + defaults},
        {"no line end", "1\n3 +2 1 1 1 1 1 1", "1\n3 2 1 1 1 1 1 1\n"},
        {"blank lines, comments between, other line ends", "\r\n2\r\n\r\n;x\n2 5\r\n \n4\n",
         "2\n2 5 0 1 0 0 0 0.5\n4 1 0 1 0 0 0 0.5\n"},
        {"a word keeps the defaults from there", "1\n2 7 x 3 4 5 6 7\n", "1\n2 7 0 1 0 0 0 0.5\n"},
        {"more than 128 characters", "1\n" + wide, "1\n2 3 0 1 0 0 0 0.5\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(storedAgain(c.text), c.stored) << c.name;
}

TEST(ComponentFile, NamesTheLineThatIsWrong)
{
    EXPECT_EQ(faultOf(head + "1\n" + defaults), "");
    EXPECT_EQ(faultOf("0"), "") << "an empty model is one";
    const struct {
        std::string text, fault;
    } cases[] = {
        {"", "is empty"},
        {";only\n", "holds no number of components"},
        {"2 3\n", "line 1: the number of components is expected"},
        {";\n-1\n", "line 2: the number of components is -1"},
        {"1\n\n1 1 0 1\n", "line 3: it has 4 of 8 numbers"},
        {"1\n1 1 big 1 0 0 0 0.5\n", "line 2: field 3 is not a number"},
        {"1\n1 1 0 1 0 0 0 nan\n", "line 2: it has a number that is not finite"},
        {"1\n1 1 0 1 0 0 0 0.5 9\n", "line 2: more follows its 8 numbers"},
        {"1\n1 1 0 1 0 0 0" + std::string(112, ' ') + "0.512345\n",
         "line 2: its last number runs beyond 128 characters"},
        {"3\n" + defaults, "line 3: the file ends after 1 of 3 components"},
        {"1\n" + defaults + defaults, "line 3: more lines than the 1 components"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(faultOf(c.text), c.fault) << c.text;
    AComponents model;
    std::string error;
    EXPECT_FALSE(readComponentFile("/", model, error));
    EXPECT_EQ(error, "is a folder");
}

TEST(ComponentRecord, IsSixtyBytesAndRefusesShortFiles)
{
    AComponents model;
    model.Add(ACompItem("5 2 0 0 0 0 0 0.25"));
    StoredFile file;
    ASSERT_TRUE(model.Store(file));
    const std::string bytes = file.bytes();
    const std::string expected = std::string("\1\0\0\0\5\0\0\0", 8) + std::string(7, '\0') +
                                 '\x40' + std::string(46, '\0') + "\xd0\x3f";
    EXPECT_EQ(bytes, expected);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        StoredFile cut(bytes.substr(0, length));
        AComponents back;
        EXPECT_FALSE(back.Load(cut)) << length;
        EXPECT_EQ(back.count(), 0);
    }
    StoredFile whole(bytes);
    AComponents back;
    ASSERT_TRUE(back.Load(whole));
    EXPECT_EQ(back(0).PeakFlux(), 2);
    EXPECT_EQ(back(0).Width(), 0.25);
    for (int n = 0; n < 9; ++n) {
        StoredFile failing;
        failing.failAfter(n);
        EXPECT_FALSE(model.Store(failing)) << n;
    }
}

TEST(ComponentOutline, LiesOnTheSkyAsTheComponentDoes)
{
    AArray<APoint<double>> points;
    // position angle 90 degrees: the large axis points east
    const APoint<double> centre = componentOutline(ACompItem("2 1 4 0.5 90 0 10 0.5"), points);
    EXPECT_NEAR(centre.x, 0, 1e-12);
    EXPECT_NEAR(centre.y, 10, 1e-12);
    double east = 0, north = 0;
    for (int i = 0; i < points.count(); ++i) {
        east = std::max(east, points(i).x);
        north = std::max(north, points(i).y - 10);
    }
    EXPECT_NEAR(east, 2, 1e-12);
    EXPECT_NEAR(north, 1, 1e-12);
    EXPECT_EQ(points(0), points(points.count() - 1));
    (void)componentOutline(ACompItem("6 1 4 0.5 0 0 0 0.5"), points);
    EXPECT_NEAR(points(0).x, 2, 1e-12) << "a strip lies across";
    (void)componentOutline(ACompItem("1 1 4 0.5 0 0 0 0.5"), points);
    EXPECT_EQ(points.count(), 0);
}

}  // namespace pavane
