#include "tessel/sky_marks.h"

#include "tests/tessel/fits_text.h"

namespace pavane
{

TEST(SkyMarks, AreReadAsTablesOfSourcesHaveThem)
{
    // each list names the same place, M87, in another way
    const struct {
        const char* text;
        const char* frame = "ICRS";
    } lists[] = {
        {"M87,12:30:49.42,+12:23:28.0\n"},
        {"M87;187.70592;12.39111\r\n\r\n# more\r\n"},
        {"M87,12h30m49.42s +12d23m28.0s\n"},
        {"M87 12:30:49.42 +12:23:28.0\n"},
        {"M87\t12 30 49.42 +12 23 28.0\n"},
        {"187.70592,12.39111,M87\n"},
        {"\xef\xbb\xbfid,dec,ra,flux\nM87,12.39111,187.70592,3\n"},
        {"RA [hours], Name, Dec\n12.513728, \"M87\", 12.39111\n"},
        {"_RAJ2000;_DEJ2000;Source\n187.70592;12.39111;M87\n", "FK5"},
        {"name\tglon\tglat\nM87\t283.77784\t74.49115\n", "galactic"},
        {"name,ra_deg,dec_deg,frame\nM87,186.0,12.0,x\nM87,187.70592,12.39111,fk5\n", "FK5"},
        {"\"M87\",\"12:30:49.42\",\"+12:23:28.0\"\n"},
        {"position,label\n\"12:30:49.42, +12:23:28.0\",M87\n"},
    };
    for (const auto& list : lists) {
        SkyMarks marks;
        std::string error;
        ASSERT_TRUE(readSkyMarks(saved("marks.csv", list.text), {}, marks, error))
            << list.text << error;
        ASSERT_EQ(marks.marks.size(), 1u) << list.text;
        const SkyMark& mark = marks.marks[0];
        EXPECT_EQ(mark.name, "M87") << list.text;
        EXPECT_EQ(nameOf(mark.position.frame), list.frame) << list.text;
        double ra = 0, dec = 0;
        ASSERT_TRUE(convertSky(mark.position.frame, {}, mark.position.longitude,
                               mark.position.latitude, ra, dec));
        EXPECT_NEAR(ra, 187.70592, 5e-5) << list.text;
        EXPECT_NEAR(dec, 12.39111, 2e-5) << list.text;
    }
    SkyMarks pixels;
    std::string error;
    ASSERT_TRUE(readSkyMarks(saved("marks.csv", "pixel_x,pixel_y,name\n1,2.5,\"a \"\"b\"\"\"\n"),
                             {}, pixels, error));
    EXPECT_EQ(pixels.marks[0].isPixel, 1);
    EXPECT_EQ(pixels.marks[0].y, 2.5);
    EXPECT_EQ(pixels.marks[0].name, "a \"b\"");
}

TEST(SkyMarks, TellWhatIsLost)
{
    const struct {
        std::string text;
        const char* why;  // of the first loss, or of the refusal
        std::size_t taken = 0;
        std::int64_t lost = 0;
    } lists[] = {
        {"a,1,2\nb,nan,2\nc,12h,\nd,361,91\n", "line 2: holds no position", 1, 3},
        {"name,ra,dec\na,1,2\nb,-0d00m01s\nc,1,inf\n", "line 3: '-0d00m01s' is no position", 1, 2},
        {"name,ra,dec,frame\na,1,2,moon\nb,1,2,\n", "line 2: 'moon' is no frame", 1, 1},
        {"x,y\n1,2\n3\n", "line 3: '3', '' are no pixels", 1, 1},
        {"", "holds no names and positions"},
        {"name,ra,dec\n", "holds no names and positions"},
        {"hello\n", "holds no mark: line 1: holds no position"},
        {std::string(100000, 'a'), "more than 64 KiB"},
    };
    for (const auto& list : lists) {
        SkyMarks marks;
        std::string error;
        EXPECT_EQ(readSkyMarks(saved("marks.csv", list.text), {}, marks, error), list.taken > 0);
        EXPECT_EQ(marks.marks.size(), list.taken) << list.text;
        EXPECT_EQ(marks.lostCount, list.lost) << list.text;
        const std::string told = list.taken ? lostMarksText(marks) : error;
        EXPECT_NE(told.find(list.why), std::string::npos) << told;
    }
    SkyMarks none;
    std::string error;
    EXPECT_FALSE(readSkyMarks("/nowhere/marks.csv", {}, none, error));
    EXPECT_NE(error, "");
}

}  // namespace pavane
