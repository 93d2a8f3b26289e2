#include "apps/view/work/WorkCopy.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

std::string saved(const std::string& name, const std::string& text)
{
    const fs::path file = fs::path(testing::TempDir()) / "work" / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file.string();
}

}  // namespace

TEST(WorkFile, ComesBackAsItWasAndMovesWithItsFolder)
{
    const fs::path folder = fs::path(testing::TempDir()) / "work";
    Work work;
    work.current = 1;
    work.shown = MapsShown::sideBySide;
    work.linkBy = LinkBy::cell;
    work.linked = linkColours | linkAreas;
    work.grid.shown = SkyGridShown::lines;
    work.grid.labels = SkyLabels::degrees;
    work.marks = (folder / "lists/marks.csv").string();
    work.areaNumbers = work.areaNames = 1;
    work.surface = 1;
    work.curves = WorkCurves::histogram;
    work.line = {{{-0.5, 1.0 / 3}, {7, 8}, {1e5, 2}}, 2.5, AcrossLine::sum};
    work.kept = {{"kept 1: a, b=c", "mas", "mJy", {0, 0.1, 1}, {1, std::nan(""), 1e-300}}, {}};
    work.savedAs = (folder / "saved.work").string();
    work.maps.resize(2);
    work.maps[0].contours = (folder.parent_path() / "up.fits").string();
    work.maps[0].unsavedAreas = (folder / "autosave-1.areas").string();
    work.maps[0].unsavedModel = (folder / "autosave-2").string();
    work.maps[0].file = (folder / "a \\ b\nc .fits ").string();
    work.maps[0].plane = 7;
    work.maps[0].areas = "/elsewhere/a.areas";
    work.maps[0].hasView = work.maps[0].hasRange = 1;
    work.maps[0].view.xMin = -0.1;
    work.maps[0].view.xMax = 1.0 / 3;
    work.maps[0].view.yMin = 1e-300;
    work.maps[0].view.yMax = 2e-300;
    work.maps[0].low = -1;
    work.maps[0].high = 0.1;
    work.maps[1].file = (folder.parent_path() / "up.fits").string();
    work.maps[1].shift = {1e-9, -2.5e-7};
    work.maps[1].display = "scale=1;levels=peak:1,2";
    const std::string file = saved("all.work", "");
    std::string error;
    ASSERT_TRUE(writeWork(file, work, error)) << error;
    EXPECT_TRUE(isWorkFile(file));
    Work again;
    std::vector<std::string> notes;
    ASSERT_TRUE(readWork(file, again, notes, error)) << error;
    EXPECT_TRUE(notes.empty()) << notes[0];
    EXPECT_EQ(workText(file, again), workText(file, work));
    EXPECT_EQ(again.maps[0].file, work.maps[0].file);
    EXPECT_EQ(again.maps[0].view, work.maps[0].view);
    EXPECT_EQ(again.maps[0].high, 0.1);
    EXPECT_EQ(again.maps[1].shift.north, -2.5e-7);
    EXPECT_EQ(again.linked, work.linked);
    EXPECT_EQ(again.curves, WorkCurves::histogram);
    ASSERT_EQ(again.line.corners.size(), 3U);
    EXPECT_NEAR(again.line.corners[0].y, 1.0 / 3, 1e-15);
    EXPECT_EQ(again.line.width, 2.5);
    ASSERT_EQ(again.kept.size(), 2U);
    EXPECT_EQ(again.kept[0].name, work.kept[0].name);
    EXPECT_TRUE(std::isnan(again.kept[0].y[1]));
    EXPECT_EQ(again.kept[0].y[2], 1e-300);
    EXPECT_EQ(again.shown, work.shown);
    EXPECT_EQ(again.grid.labels, SkyLabels::degrees);
    // in another folder its files are beside it there; those of other folders are where they were
    const fs::path other = fs::path(testing::TempDir()) / "moved" / "deep";
    fs::create_directories(other);
    fs::copy_file(file, other / "all.work", fs::copy_options::overwrite_existing);
    ASSERT_TRUE(readWork((other / "all.work").string(), again, notes, error));
    EXPECT_EQ(again.marks, (other / "lists/marks.csv").string());
    EXPECT_EQ(again.maps[1].file, (other.parent_path() / "up.fits").string());
}

TEST(WorkFile, TellsWhatItDoesNotUnderstand)
{
    const std::string good = "# pavane work 1\n[map]\nfile=a.fits\n";  // of an old version
    std::string curves;
    for (int i = 0; i < 13; ++i)
        curves += "[curve]\nname=a\n";
    const struct {
        std::string text, error;
        std::size_t notes = 0;
    } cases[] = {
        {good, ""},
        {"", "is no work file"},
        {"SIMPLE  =                    T", "is no work file"},
        {"# pavane work x\n", "is no work file"},
        {"# pavane work 3\n[map]\nfile=a.fits\n", "newer version (3; this program knows 2)"},
        {"# pavane work 2\ncurve=wave\ncorner=1\ncorner=1,inf\nwidth=-1\nwidth=nan\nacross=\n"
         "[map]\nfile=a.fits\n[curve]\nat=nan,1\nat=1\nat=1,2,3\nname=a\n",
         "", 9},
        {good + curves, "more than 12 kept curves"},
        {"# pavane work 1\nshown=tabs\n", "names no map"},
        {"# pavane work 1\n[map]\nplane=1\n", "names no map", 0},
        {good + "plane=-1\nview=1,0,0,1\nview=0,nan,0,1\nrange=1,1\nview=1,2,3\nshift=200,1\nnew="
                "1\nword\n",
         "", 8},
        {"# pavane work 1\nlink=wire\nlinked=zoom,wire\nshown=all\ncurrent=-1\nnumbers=2\n[map]\n"
         "file=a.fits\n",
         "", 5},
        {"# pavane work 1\ncurrent=99\n[map]\nfile=a.fits\n", ""},
        {"# pavane work 1\n" + std::string(100000, 'x'), "64 KiB"},
    };
    for (const auto& c : cases) {
        Work work;
        std::vector<std::string> notes;
        std::string error;
        EXPECT_EQ(readWork(saved("bad.work", c.text), work, notes, error), c.error.empty());
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
        EXPECT_EQ(notes.size(), c.notes) << c.text;
        EXPECT_EQ(work.maps.size(), c.error.empty() ? 1u : 0u);
        EXPECT_EQ(work.current, 0);
    }
    std::string many = "# pavane work 1\n";
    for (int i = 0; i < 101; ++i)
        many += "[map]\nfile=a\n";
    Work work;
    std::vector<std::string> notes;
    std::string error;
    EXPECT_FALSE(readWork(saved("many.work", many), work, notes, error));
    EXPECT_NE(error.find("more than 100 maps"), std::string::npos);
}

TEST(WorkCopy, IsThereWhileSomethingIsInNoFileAndIsFoundWhenItsProcessIsGone)
{
    const fs::path home = fs::path(testing::TempDir()) / "work-copy";
    fs::remove_all(home);
    const std::string folder = home.string() + "/";
    Work work;
    work.maps.resize(1);
    work.maps[0].file = "/data/a.fits";
    work.maps[0].unsavedAreas = folder + "autosave-1-2.areas";
    WorkCopy copy(folder);
    WorkCopy other(folder);
    EXPECT_NE(copy.file(), other.file());
    copy.begin(work);
    EXPECT_TRUE(copy.keep(work, 0));
    EXPECT_FALSE(fs::exists(copy.file()));
    EXPECT_TRUE(copy.keep(work, 1));  // areas are not saved
    EXPECT_TRUE(fs::exists(copy.file()));
    EXPECT_TRUE(copy.keep(work, 0));
    EXPECT_FALSE(fs::exists(copy.file()));
    work.current = 0;
    work.maps[0].plane = 3;
    EXPECT_TRUE(copy.keep(work, 0));
    EXPECT_TRUE(leftWork(folder).empty());  // of a process that lives
    // of this process's number, but from before it
    setLeftWorkAside(folder);
    saved("areas", "x");
    fs::copy_file(fs::path(testing::TempDir()) / "work" / "areas", work.maps[0].unsavedAreas);
    std::ofstream(folder + "autosave-work-1073741900-2.work") << "# pavane work 9\n";
    std::vector<LeftWork> left = leftWork(folder);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].work.maps[0].plane, 3);
    EXPECT_TRUE(isPartOf(left, work.maps[0].unsavedAreas));
    const std::string question = questionAbout(left, left[0].time + 600);
    EXPECT_NE(question.find("a.fits, changed 10 minutes ago"), std::string::npos) << question;
    EXPECT_NE(question.find("areas or components that are not saved"), std::string::npos);
    // nothing goes but copies
    const std::string precious = saved("precious", "x");
    left[0].work.maps[0].unsavedModel = precious;
    removeLeftWork(left[0], 1);
    EXPECT_TRUE(fs::exists(precious));
    EXPECT_FALSE(fs::exists(work.maps[0].unsavedAreas));
    EXPECT_TRUE(leftWork(folder).empty());
}

}  // namespace pavane
