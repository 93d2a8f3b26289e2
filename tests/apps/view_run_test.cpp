// Runs the built pavane-view and looks at what it writes, prints and answers.
#include "pavane/trackers/masks/cell_area_file.h"
#include "tessel/fits_map.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::string contents(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

struct Outcome {
    int status;
    std::string out, err;
};

/// A folder of the test's own with a map of 7 columns and 5 rows in it, its peak at cell (5, 1).
class ViewRun : public testing::Test
{
protected:
    ViewRun()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(PAVANE_BINARY_DIR) / "view-run" / info->name();
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        writeMap("map.fits", -1e-6);
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void writeMap(const std::string& name, double cdelt1,
                  const std::string& object = "%n %s%s%s %1000d ~~", float peak = 1.5f)
    {
        AMatrix<float> cells(5, 7);
        for (int i = 0; i < 35; ++i)
            cells.data()[i] = static_cast<float>(i % 3) * 1e-3f;
        cells(1, 5) = peak;
        MapHeader header;
        header.axes = {{7, "RA---SIN", "deg", 187.7, 3, cdelt1, 0},
                       {5, "DEC--SIN", "deg", 12.4, 2, 1e-6, 0}};
        header.hasCelestialAxes = 1;
        header.bunit = "JY/BEAM";
        header.object = object;
        std::string error;
        ASSERT_TRUE(writeFitsMap(path(name), cells, header, error)) << error;
    }
    void writeAreas(const std::string& name, const std::vector<std::vector<CPoint>>& polygons)
    {
        AAreaArray areas;
        for (const auto& points : polygons)
            areas.Add(new APolyPoints(points.data(), static_cast<int>(points.size())));
        std::string error;
        ASSERT_TRUE(writeCellAreaFile(path(name), areas, error)) << error;
    }
    Outcome run(const std::string& arguments) const
    {
        const std::string command = "cd '" + folder_.string() + "' && '" PAVANE_VIEW "' " +
                                    arguments + " >out.txt 2>err.txt </dev/null";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(path("out.txt")),
                contents(path("err.txt"))};
    }
    std::string maskText(const std::string& name) const
    {
        FitsMap mask;
        std::string error;
        EXPECT_TRUE(readFitsMap(path(name), -1, mask, error)) << error;
        std::string text;
        for (int r = 0; r < mask.cells.rows(); ++r, text += '\n')
            for (int c = 0; c < mask.cells.columns(); ++c)
                text += mask.cells(r, c) == 1.0f ? '#' : mask.cells(r, c) == 0.0f ? '.' : '?';
        EXPECT_EQ(mask.header.axes.size(), 4u);
        return text;
    }

    fs::path folder_;
};

}  // namespace

TEST_F(ViewRun, SmallAreasTakeFewPoints)
{
    std::ofstream regions(path("small.reg"));
    regions << "# Region file format: DS9\nimage\n";
    for (int i = 0; i < 200; ++i)
        regions << "ellipse(" << 2 + i % 4 << ",3," << 0.2 + i % 7 * 0.1 << ",0.3," << i << ")\n";
    regions.close();
    const Outcome done = run("map.fits --batch --areas small.reg --svg o.svg --size 300x300");
    EXPECT_EQ(done.status, 0) << done.err;
    // two strokes of each: at most 5 KB an area, where all points of its outline take 15
    EXPECT_LT(fs::file_size(path("o.svg")), 1000000u);
    EXPECT_GT(fs::file_size(path("o.svg")), 20000u);
}

TEST_F(ViewRun, MaskKeepsThePixelOrderOfTheMapForBothSignsOfTheStep)
{
    writeMap("flipped.fits", 1e-6);
    writeAreas("area.cma", {{{0, 0}, {3, 0}, {0, 2}}, {{6, 4}, {9, 4}, {9, 9}}});
    for (const char* map : {"map.fits", "flipped.fits"}) {
        const Outcome r =
            run(std::string(map) + " --batch --areas area.cma --mask mask.fits --stats");
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(maskText("mask.fits"), "####...\n###....\n#......\n.......\n......#\n") << map;
        EXPECT_NE(r.out.find("mask_cells 9 cells\n"), std::string::npos) << r.out;
    }
    FitsMap flipped;
    std::string error;
    ASSERT_TRUE(readFitsMap(path("mask.fits"), -1, flipped, error));
    EXPECT_GT(flipped.header.axes[0].cdelt, 0);
    EXPECT_EQ(flipped.header.axes[0].crpix, 3);
}

TEST_F(ViewRun, StatisticsNameThePeakAndItsPlace)
{
    const Outcome r = run("map.fits --batch --stats");
    EXPECT_EQ(r.status, 0) << r.err;
    // column 5 is pixel 6, three steps of -3.6 mas from the reference pixel 3; row 1 is pixel 2
    EXPECT_EQ(r.out.substr(0, r.out.find("noise")),
              "peak 1.5 JY/BEAM\npeak_x -10.8 mas\npeak_y 0 mas\n");
}

TEST_F(ViewRun, DrawsEveryFormatOfOddMapsAndTexts)
{
    AMatrix<float> blank(3, 4), constant(1, 9), column(9, 1);
    blank.fill(std::nanf(""));
    constant.fill(2.0f);
    column.fill(-1e30f);
    std::string error;
    ASSERT_TRUE(writeFitsMap(path("blank.fits"), blank, {}, error));
    ASSERT_TRUE(writeFitsMap(path("row.fits"), constant, {}, error));
    ASSERT_TRUE(writeFitsMap(path("column[1].fits"), column, {}, error));
    writeAreas("far.cma", {{},
                           {{3, 3}},
                           {{1, 1}, {2, 2}},
                           {{-2147483647 - 1, -2147483647 - 1}, {2147483647, 0}, {0, 2147483647}}});
    for (const char* map : {"map.fits", "blank.fits", "row.fits", "'column[1].fits'"})
        for (const char* more :
             {"", " --scale log --levels abs:1,2", " --scale equal --aspect free",
              " --surface 200,35,map.fits --areas far.cma", " --surface 0,0 --scale log",
              " --scale sqrt --areas far.cma --size 64x64"}) {
            const Outcome r =
                run(std::string(map) + " --batch --png p.png --pdf p.pdf --svg p.svg" + more);
            EXPECT_EQ(r.status, 0) << map << more << r.err;
            EXPECT_EQ(contents(path("p.png")).substr(1, 3), "PNG");
            EXPECT_EQ(contents(path("p.pdf")).substr(0, 5), "%PDF-");
            EXPECT_NE(contents(path("p.svg")).find("<svg"), std::string::npos);
        }
    EXPECT_EQ(run("map.fits --batch --svg p.svg").status, 0);
    EXPECT_NE(contents(path("p.svg")).find("%n %s%s%s %1000d ~~"), std::string::npos);
}

TEST_F(ViewRun, VisibilitiesOfAPointAreItsFluxAtItsPhase)
{
    std::ofstream(path("m.txt")) << ";c\n1\n1 2 0 1 0 90 1 0.5\n";
    std::ofstream(path("uv.csv")) << "u,v\n# none\n0,0\n51566.20156177409,12345\n";
    const Outcome r = run("--batch --model m.txt --visibilities uv.csv");
    EXPECT_EQ(r.status, 0) << r.err;
    double u = 0, v = 0, re = 0, im = 0;
    char comma = 0;
    std::istringstream lines(r.out);
    lines >> u >> comma >> v >> comma >> re >> comma >> im;
    EXPECT_EQ(re, 2);
    EXPECT_EQ(im, 0);
    lines >> u >> comma >> v >> comma >> re >> comma >> im;  // a quarter turn east
    EXPECT_NEAR(re, 0, 1e-9);
    EXPECT_NEAR(im, 2, 1e-9);
}

TEST_F(ViewRun, BadInputEndsWithStatusTwoAndOneLineThatNamesTheFile)
{
    const std::string good = contents(path("map.fits"));
    std::ofstream(path("text.fits")) << "hello\n";
    std::ofstream(path("short.fits"), std::ios::binary) << good.substr(0, good.size() / 2);
    std::ofstream(path("long.cma"), std::ios::binary) << std::string(4, '\0') << 'x';
    std::ofstream(path("negative.cma"), std::ios::binary) << std::string(4, '\xff');
    std::ofstream(path("huge.cma"), std::ios::binary)
        << std::string("\x01\0\0\0\xff\xff\xff\x7f", 8);
    std::ofstream(path("words.txt")) << "1\n2 one 3 4 5 6 7 8\n";
    std::ofstream(path("few.txt")) << "2\n1 1 0 1 0 0 0 0.5\n";
    std::ofstream(path("bad.csv")) << "1,2\n3,x\n";
    std::ofstream(path("file")) << "";
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    writeAreas("ok.cma", {{{0, 0}, {2, 0}, {0, 2}}});
    const struct {
        const char* arguments;
        const char* blamed;
    } cases[] = {
        {"absent.fits --batch --png p.png", "absent.fits"},
        {"text.fits --batch --png p.png", "text.fits"},
        {"short.fits --batch --png p.png", "short.fits"},
        {". --batch --png p.png", "is a folder"},
        {"pipe --batch --stats", "is a pipe"},
        {"map.fits --batch --areas pipe", "is a pipe"},
        {"map.fits --batch --model pipe --stats", "is a pipe"},
        {"map.fits --batch --plane 1 --stats", "map.fits"},
        {"map.fits --batch --areas long.cma --mask o.fits", "long.cma"},
        {"map.fits --batch --areas negative.cma --mask o.fits", "negative.cma"},
        {"map.fits --batch --areas huge.cma --mask o.fits", "huge.cma"},
        {"map.fits --batch --model words.txt --png p.png", "words.txt"},
        {"map.fits --batch --model few.txt --png p.png", "few.txt"},
        {"map.fits --batch --model few.txt --visibilities bad.csv", "few.txt"},
        {"map.fits --batch --png file/p.png", "file/p.png"},
        {"map.fits --batch --pdf file/p.pdf", "file/p.pdf"},
        {"map.fits --batch --svg pipe", "pipe"},
        {"map.fits --batch --svg nowhere/p.svg", "No such file or directory"},
        {"map.fits --batch --areas ok.cma --mask nowhere/o.fits", "No such file or directory"},
        {"map.fits --batch --palette nosuch --png p.png", "nosuch"},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.arguments);
        EXPECT_EQ(r.status, 2) << c.arguments << r.err;
        EXPECT_NE(r.err.find(c.blamed), std::string::npos) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        EXPECT_FALSE(fs::exists(path("o.fits")) || fs::exists(path("p.png"))) << c.arguments;
    }
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
    const Outcome wrong = run("map.fits --mask o.fits");
    EXPECT_EQ(wrong.status, 1);
    EXPECT_NE(wrong.err.find("usage: pavane-view"), std::string::npos);
}

TEST_F(ViewRun, ALossOfAreasIsBadInputUnlessPartsWillDo)
{
    writeAreas("ok.cma", {{{0, 0}, {2, 0}, {0, 2}}, {{4, 0}, {6, 0}, {6, 2}}});
    const std::string whole = contents(path("ok.cma"));
    const auto write = [&](const char* name, const std::string& bytes) {
        std::ofstream(path(name), std::ios::binary) << bytes;
    };
    write("cut.cma", whole.substr(0, whole.size() - 3));
    write("long.cma", whole + "x");
    write("as.reg", whole);
    write("some.reg", "image\nbox(2,2,2,2,0)\nannulus(4,4,1,2)\n-box(2,2,1,1,0)\n");
    write("never.reg", "image\n-box(2,2,2,2,0)\n");
    write("out.reg", "image\nannulus(2,2,1,2)\n");
    write("empty.reg", "");
    write("none.reg", "# Region file format: DS9 version 4.1\nimage\n");
    write("negative.areas", std::string(8, '\xff'));
    write("far.reg", "image\nbox(200,200,2,2,0)\n");
    const struct {
        const char* file;
        const char* told;
        int cells;    ///< of the mask; -1: none is written
        int partial;  ///< the same with --partial
    } cases[] = {
        {"ok.cma", "", 12, 12},
        {"as.reg", "", 12, 12},
        {"none.reg", "", 35, 35},
        {"cut.cma", "cut.cma: 1 of 2 areas can be used: polygon 2", -1, 6},
        {"long.cma", "2 of 2 areas can be used: 1 bytes follow", -1, 12},
        {"some.reg", "some.reg: 2 of 3 areas can be used: line 3: ", -1, 5},
        {"never.reg", "", 26, 26},
        {"out.reg", "0 of 1 area can be used: line 2: ", -1, -1},
        {"empty.reg", "empty", -1, -1},
        {"negative.areas", "-1", -1, -1},
        {"far.reg", "no cell of the map", 0, 0},
    };
    for (const auto& c : cases)
        for (const int partial : {0, 1}) {
            const int cells = partial ? c.partial : c.cells;
            fs::remove(path("m.fits"));
            const Outcome r = run("map.fits --batch --mask m.fits --stats --areas " +
                                  std::string(c.file) + (partial ? " --partial" : ""));
            EXPECT_EQ(r.status, cells < 0 ? 2 : 0) << c.file << r.err;
            EXPECT_EQ(fs::exists(path("m.fits")), cells >= 0) << c.file;
            EXPECT_EQ(r.out.empty(), cells < 0) << c.file;
            EXPECT_EQ(r.err.empty(), !*c.told) << c.file << r.err;
            EXPECT_NE(r.err.find(c.told), std::string::npos) << r.err;
            const std::string count = "mask_cells " + std::to_string(cells) + ' ';
            EXPECT_TRUE(cells < 0 || r.out.find(count) != std::string::npos) << c.file << r.out;
        }
}

TEST_F(ViewRun, NoOutputIsAnInputOrAnotherOutput)
{
    writeAreas("a.cma", {{{0, 0}, {2, 0}, {0, 2}}});
    std::ofstream(path("m.txt")) << "1\n1 2 0 1 0 90 1 0.5\n";
    fs::create_directories(path("d"));
    fs::create_symlink("map.fits", path("soft.fits"));
    fs::create_hard_link(path("map.fits"), path("hard.fits"));
    fs::create_symlink("new.png", path("broken.png"));
    fs::create_symlink(".", path("here"));
    std::string before;
    for (const char* file : {"map.fits", "a.cma", "m.txt"})
        before += contents(path(file));
    for (const char* arguments :
         {"--areas a.cma --mask map.fits", "--areas a.cma --mask d/../map.fits",
          "--areas a.cma --mask soft.fits", "--areas a.cma --mask hard.fits",
          "--areas a.cma --mask a.cma", "--areas here/a.cma --png a.cma",
          "--model m.txt --svg m.txt", "--png new.png --pdf here/new.png",
          "--png broken.png --svg new.png", "--areas a.cma --mask x --pdf ./x",
          "--model m.txt --visibilities a.cma --png a.cma", "--stats --png out.txt"}) {
        const Outcome r = run(std::string("map.fits --batch ") + arguments);
        EXPECT_EQ(r.status, 1) << arguments << r.err;
        EXPECT_NE(r.err.find("would write over"), std::string::npos) << r.err;
        EXPECT_FALSE(fs::exists(path("new.png")) || fs::exists(path("x"))) << arguments;
    }
    std::string after;
    for (const char* file : {"map.fits", "a.cma", "m.txt"})
        after += contents(path(file));
    EXPECT_EQ(after, before);
    EXPECT_EQ(run("map.fits --batch --png broken.png --areas a.cma --mask d/map.fits").status, 0);
    EXPECT_TRUE(fs::exists(path("new.png")) && fs::is_symlink(path("broken.png")));
}

TEST_F(ViewRun, OddNamesAreKeptInFilesAndPlainOnTheTerminal)
{
    writeMap("raw.fits", -1e-6);
    std::string bytes = contents(path("raw.fits"));
    bytes.replace(bytes.find("JY/BEAM"), 7, "\x1b[31m\nJ");
    std::ofstream(path("unit.fits"), std::ios::binary) << bytes;
    const Outcome unit = run("unit.fits --batch --stats");
    EXPECT_EQ(unit.out.substr(0, 17), "peak 1.5 ?[31m?J\n");
    EXPECT_EQ(std::count(unit.out.begin(), unit.out.end(), '\n'), 6) << unit.out;
    for (const char* arguments :
         {"'no\x1b[31m\n\x80\xc2\x9b.fits' --batch --stats",
          "map.fits --batch --png 'no\x1b/p.png'", "map.fits --batch --areas 'no\x07.reg'",
          "'--\x1b"
          "bad'"}) {
        const Outcome r = run(arguments);
        EXPECT_NE(r.status, 0) << arguments;
        EXPECT_EQ(r.err.find_first_of("\x1b\x07\x80\x9b"), std::string::npos) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), r.status == 1 ? 2 : 1) << r.err;
    }
    writeAreas("ok.cma", {{{0, 0}, {2, 0}, {0, 2}}});
    for (const char* option : {"--png", "--pdf", "--svg", "--areas ok.cma --mask"}) {
        const std::string odd = "o\x80\xff\nd";
        const Outcome r = run(std::string("map.fits --batch ") + option + " '" + odd + "'");
        EXPECT_EQ(r.status, 0) << option << r.err;
        EXPECT_TRUE(fs::exists(path(odd))) << option;
        fs::remove(path(odd));
    }
}

TEST_F(ViewRun, TextIsOfOneSizeAndEndsInDotsWhereItDoesNotFit)
{
    writeMap("long.fits", -1e-6, std::string(66, 'W'));
    const struct {
        const char* size;
        const char* shown;
    } cases[] = {{"300x200", "WWW..."}, {"1000x900", "WWW..."}, {"1800x500", "WWW   peak"}};
    for (const auto& c : cases) {
        ASSERT_EQ(run(std::string("long.fits --batch --svg p.svg --size ") + c.size).status, 0);
        const std::string svg = contents(path("p.svg"));
        const std::regex sizes("<text[^>]*font-size=\"([^\"]*)\"");
        std::set<std::string> found;
        for (std::sregex_iterator at(svg.begin(), svg.end(), sizes), end; at != end; ++at)
            found.insert((*at)[1]);
        EXPECT_EQ(found.size(), 1u) << c.size;
        EXPECT_NE(svg.find(c.shown), std::string::npos) << c.size;
    }
}

TEST_F(ViewRun, SaysThatItsContoursLieAboveThePeak)
{
    writeMap("faint.fits", -1e-6, "x", 2e-3f);
    const char* note = "peak below 3 sigma";
    const Outcome faint = run("faint.fits --batch --svg p.svg --pdf p.pdf");
    EXPECT_NE(contents(path("p.svg")).find(note), std::string::npos);
    EXPECT_EQ(std::count(faint.err.begin(), faint.err.end(), '\n'), 1) << faint.err;
    EXPECT_NE(faint.err.find(note), std::string::npos) << faint.err;
    EXPECT_EQ(run("map.fits --batch --svg p.svg").err, "");
    EXPECT_EQ(run("faint.fits --batch --svg p.svg --levels peak:50").err, "");
}

TEST_F(ViewRun, AFullDiskLeavesNothingHalfWritten)
{
    writeAreas("ok.cma", {{{0, 0}, {2, 0}, {0, 2}}});
    for (const char* output :
         {"--png o.png", "--pdf o.pdf", "--svg o.svg", "--areas ok.cma --mask o.fits"}) {
        const std::string command = std::string("map.fits --batch ") + output;
        const Outcome r = run(command + " ; exit 0");
        ASSERT_EQ(r.status, 0);
        const std::string limited = "cd '" + folder_.string() +
                                    "' && rm -f o.* && (trap '' XFSZ; ulimit -f 1; '" PAVANE_VIEW
                                    "' " +
                                    command + " 2>/dev/null >/dev/null)";
        const int status = std::system(limited.c_str());
        EXPECT_EQ(WEXITSTATUS(status), 2) << output;
        for (const auto& entry : fs::directory_iterator(folder_))
            EXPECT_NE(entry.path().stem(), "o") << entry.path();
    }
}

}  // namespace pavane
