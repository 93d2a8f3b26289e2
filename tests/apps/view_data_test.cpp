// Runs the built pavane-view on files of visibilities.
#include "tests/tessel/uvfits_text.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

struct Outcome {
    int status;
    std::string out, err;
};

/// A folder of the test's own with a data file named as a map: amplitudes of 1, 2 and 3 Jy at 8.4
/// Mlambda, one flagged, one not finite.
class DataRun : public testing::Test
{
protected:
    DataRun()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(PAVANE_BINARY_DIR) / "data-run" / info->name();
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        std::vector<TestGroup> groups = {{0, 258}, {10, 258, 1, 0, 2}, {20, 258, 1, -3}};
        groups.push_back({30, 258, 1, 9, 0, 0});
        groups.push_back({40, 258, 1, 0.0f / 0.0f});
        bytes_ = groupsHdu(groups) + antennaHdu();
        write("map.fits", bytes_);
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }
    Outcome run(const std::string& arguments) const
    {
        const std::string command = "cd '" + folder_.string() + "' && '" PAVANE_VIEW "' " +
                                    arguments + " >out.txt 2>err.txt </dev/null";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(path("out.txt")),
                contents(path("err.txt"))};
    }

    fs::path folder_;
    std::string bytes_;
};

}  // namespace

TEST_F(DataRun, PanelsOfAllPagesAreDrawn)
{
    std::vector<TestGroup> groups;
    for (int i = 0; i < 3; ++i)
        for (const float baseline : {258.f, 259.f, 515.f})
            groups.push_back({float(i), baseline});
    write("three.uvfits", groupsHdu(groups) + antennaHdu());
    const struct {
        int panels, pages;
    } cases[] = {{1, 3}, {2, 2}, {3, 1}, {50, 1}};
    for (const auto& c : cases) {
        const std::string name = "n" + std::to_string(c.panels);
        const Outcome ran = run("three.uvfits --batch --plot time --panels " +
                                std::to_string(c.panels) + " --png " + name + ".png --svg " + name +
                                ".svg --pdf " + name + ".pdf --print " + name + "p.pdf");
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "");
        for (const std::string ending : {".png", ".svg"}) {
            EXPECT_EQ(fs::exists(path(name + ending)), c.pages == 1);
            for (int page = 1; page <= 4; ++page)
                EXPECT_EQ(fs::exists(path(name + "-" + std::to_string(page) + ending)),
                          c.pages > 1 && page <= c.pages);
        }
        for (const std::string end : {".pdf", "p.pdf"}) {
            const std::string pdf = contents(path(name + end));
            int pages = 0;
            for (std::size_t at = 0; (at = pdf.find("/MediaBox", at)) != pdf.npos; ++at)
                ++pages;
            EXPECT_EQ(pages, c.pages) << end;
        }
    }
}

TEST_F(DataRun, PrintsItsNumbersAndDrawsWhatTheContentSays)
{
    const char* stats = "groups 5 groups\nvisibilities 5 visibilities\nflagged 1 visibilities\n"
                        "not_finite 1 visibilities\nuv_min 8.4000004 Mlambda\n"
                        "uv_max 8.4000004 Mlambda\namp_min 1 Jy\namp_max 3 Jy\n";
    write("m.txt", "1\n1 2 0 1 0 0 0 0\n");
    write("none.uvfits", groupsHdu({}));
    const struct {
        const char* arguments;
        int status;
        std::string out;
        const char* err;
    } cases[] = {
        {"map.fits --batch", 0, stats, ""},
        {"map.fits --batch --stats --png p.png --pdf p.pdf --svg p.svg", 0, stats, ""},
        {"map.fits --batch --svg model.svg --model m.txt --size 400x300", 0, "", ""},
        {"map.fits --batch --table telescopes --tsv t.tsv --table stokes --tsv - --svg p.svg", 0,
         "\tCode\tName\n1\t-1\tRR\n", ""},
        {"map.fits --batch --table=baselines --tsv=- --stats", 0,
         "\tFirst\tSecond\tSubarray\tLength [km]\tVisibilities\tFirst No.\tSecond No.\n"
         "1\tAB\tCD\t1\t\t5\t1\t2\n" +
             std::string(stats),
         ""},
        {"map.fits --batch --table=baselines --tsv=- --stats --times 00:00:09.5,20.5", 0,
         "\tFirst\tSecond\tSubarray\tLength [km]\tVisibilities\tFirst No.\tSecond No.\n"
         "1\tAB\tCD\t1\t\t2\t1\t2\ngroups 2 groups\nvisibilities 2 visibilities\n"
         "flagged 0 visibilities\nnot_finite 0 visibilities\nuv_min 8.4000004 Mlambda\n"
         "uv_max 8.4000004 Mlambda\namp_min 2 Jy\namp_max 3 Jy\n",
         ""},
        {"map.fits --batch --table=visibilities --tsv=- --average 15 --colour-by source --svg "
         "p.svg",
         0,
         "Time\tFirst\tSecond\tSource\tIF\tChannel\tStokes\tu [M\u03bb]\tv [M\u03bb]\tw [M\u03bb]\t"
         "Distance [M\u03bb]\tAmplitude [Jy]\tPhase [deg]\tWeight\tNumber\tGroup\n"
         "0/00:00:05.0\tAB\tCD\tM87\t1\t1\tRR\t8.4000004\t0\t0\t8.4000004\t1.118034\t63.43495\t2\t"
         "2\t1\n"
         "0/00:00:20.0\tAB\tCD\tM87\t1\t1\tRR\t8.4000004\t0\t0\t8.4000004\t3\t180\t1\t1\t3\n",
         ""},
        {"map.fits --batch --table=scans --tsv=- --times ,15", 0,
         "\tSource\tSubarray\tSelection\tStart\tEnd\tLength [s]\tFirst visibility\t"
         "Last visibility\tSource No.\n"
         "1\tM87\t1\t1\t0/00:00:00.0\t0/00:00:10.0\t10\t1\t2\t1\n",
         ""},
        {"map.fits --batch --times 20,10", 1, "", "--times: '20,10' does not start before"},
        {"map.fits --batch --table components --tsv x.tsv", 0, "", "has no components"},
        {"none.uvfits --batch --table telescopes --tsv x.tsv", 0, "", "has no telescopes"},
        {"map.fits --batch --table tels --tsv -", 1, "", "telescopes, baselines, sources, stokes"},
        {"map.fits --batch --table scans", 1, "", "--table scans wants"},
        {"map.fits --batch --table scans --table stokes --tsv -", 1, "", "--table scans wants"},
        {"map.fits --batch --tsv a.tsv", 1, "", "--tsv goes behind"},
        {"map.fits --batch --table scans --tsv t.tsv --png t.tsv", 1, "", "would write over"},
        {"map.fits --batch --table scans --tsv no/t.tsv --png x.png", 2, "", "no/t.tsv"},
        {"map.fits --table scans --tsv -", 1, "", "--table goes with --batch"},
        {"map.fits --batch --areas a.cma --png x.png", 1, "", "--areas goes with a map"},
        {"map.fits --scale log", 1, "", "--scale goes with a map"},
        {"map.fits --batch --stats --png ./map.fits", 1, "", "write over the"},
        {"map.fits --batch --png x.png --model no.txt", 2, "", "no.txt"},
        {"none.uvfits --batch --stats --png none.png", 0,
         "groups 0 groups\nvisibilities 0 visibilities\nflagged 0 visibilities\n"
         "not_finite 0 visibilities\nuv_min nan Mlambda\nuv_max nan Mlambda\namp_min nan Jy\n"
         "amp_max nan Jy\n",
         ""},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.arguments);
        EXPECT_EQ(r.status, c.status) << c.arguments << r.err;
        EXPECT_EQ(r.out, c.out) << c.arguments;
        EXPECT_NE(r.err.find(c.err), std::string::npos) << c.arguments << r.err;
        EXPECT_EQ(r.err.empty(), !*c.err) << c.arguments << r.err;
    }
    const std::string svg = contents(path("model.svg"));
    EXPECT_NE(svg.find("uv distance [M\u03bb]"), std::string::npos);
    EXPECT_NE(svg.find("Amplitude [Jy]"), std::string::npos);
    EXPECT_NE(svg.find("M87"), std::string::npos);
    EXPECT_GT(fs::file_size(path("none.png")), 1000u);
    EXPECT_FALSE(fs::exists(path("x.png")));
    const std::string table = contents(path("t.tsv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 3) << table;
}

TEST_F(DataRun, ACutFileIsBadInputOrOneWithoutItsTables)
{
    const std::size_t groupsEnd = bytes_.find("END") / 2880 * 2880 + 2880 + 5 * 28;
    for (std::size_t size = 0; size < bytes_.size(); size += size % 2880 < 200 ? 41 : 571) {
        write("cut.fits", bytes_.substr(0, size));
        const Outcome r = run("cut.fits --batch --stats --png cut.png");
        EXPECT_EQ(r.status, size < groupsEnd ? 2 : 0) << size << r.err;
        EXPECT_EQ(fs::exists(path("cut.png")), size >= groupsEnd) << size;
        EXPECT_LE(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        fs::remove(path("cut.png"));
    }
}

}  // namespace pavane
