#include "pavane/imaging/study_export.h"
#include "pavane/imaging/study_text.h"
#include "pavane/imaging/WscleanEngine.h"
#include "tessel/paths.h"
#include "tests/imaging/study_host.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>

namespace pavane
{
namespace
{

StudyRecord fullRecord()
{
    StudyRecord record;
    record.source = "/data/-a \"b\"\\n\tc\n.uvfits";
    record.uvfits = "work/data.uvfits";
    record.settings.parameters.ifs = {0, 3};
    record.settings.parameters.cell = 0.1 + 0.2;
    record.settings.parameters.unit = ThresholdUnit::sigma;
    record.settings.chain = {{2, 7, 0, "phase\t60 s", {1, 5}}, {1, 9, 1, "", {}}};
    record.settings.other = {"palette heat", "", "two\nlines"};
    record.model = {1, "round 3 ifs 0,3"};
    record.nextRound = 12;
    record.notes[3] = "wider area\nsee log";
    return record;
}

TEST(StudyText, ComesBack)
{
    const StudyRecord record = fullRecord();
    StudyRecord read;
    std::string fault;
    ASSERT_EQ(readStudyText(studyText(record), read, fault), StudyTextKind::good) << fault;
    EXPECT_EQ(read.source, record.source);
    EXPECT_EQ(read.settings, record.settings);
    EXPECT_EQ(read.model, record.model);
    EXPECT_EQ(read.corrected, DataTag());
    EXPECT_EQ(read.notes, record.notes);
    EXPECT_EQ(studyText(read), studyText(record));

    StudyRound round;
    round.id = 4;
    round.parent = 2;
    round.kind = RoundKind::residual;
    round.data.chain = {1, 2};
    round.mask = "mask-0a";
    round.numbers.restoredFlux = std::numeric_limits<double>::quiet_NaN();
    round.numbers.peakX = 7;
    round.course = {{0, 1.5}, {100, 0.25}};
    round.commands = {{"cp", "a b", "c\td"}, {"wsclean", "-name", "x"}};
    StudyRound back;
    ASSERT_EQ(readRoundText(roundText(round), back, fault), StudyTextKind::good) << fault;
    EXPECT_EQ(back.commands, round.commands);
    EXPECT_EQ(back.data, round.data);
    EXPECT_EQ(roundText(back), roundText(round));
}

TEST(StudyText, BadAndNewerOnes)
{
    const std::string good = studyText(fullRecord());
    const auto with = [&good](const std::string& line) {
        return good.substr(0, good.size() - 4) + line + "\nend\n";
    };
    const struct {
        std::string text;
        StudyTextKind kind;
    } cases[] = {
        {"", StudyTextKind::bad},
        {"# pavane study ", StudyTextKind::bad},
        {"# pavane study 0\nend\n", StudyTextKind::bad},
        {good.substr(0, good.size() / 2), StudyTextKind::bad},
        {good + "more", StudyTextKind::bad},
        {with("colour red"), StudyTextKind::bad},
        {with("width 1e9"), StudyTextKind::bad},
        {with("width 99999999999999999999"), StudyTextKind::bad},
        {with("cell nan"), StudyTextKind::bad},
        {with("ifs 1,-2"), StudyTextKind::bad},
        {with("link 1"), StudyTextKind::bad},
        {with("note x"), StudyTextKind::bad},
        {with("modelcolumn perhaps"), StudyTextKind::bad},
        {with("cell 0.5"), StudyTextKind::good},
        {"# pavane study 2\ncolour red\ncell 0.5\nend\n", StudyTextKind::newer},
    };
    for (const auto& c : cases) {
        StudyRecord record;
        std::string fault;
        EXPECT_EQ(readStudyText(c.text, record, fault), c.kind) << c.text.substr(0, 60) << fault;
        EXPECT_EQ(fault.empty(), c.kind != StudyTextKind::bad);
    }
    StudyRound round;
    std::string fault;
    EXPECT_EQ(readRoundText("# pavane round 1\nmask ../../x\nend\n", round, fault),
              StudyTextKind::bad);
    EXPECT_EQ(readRoundText("# pavane round 1\nkind best\nend\n", round, fault),
              StudyTextKind::bad);
}

class Scripted : public testing::Test
{
protected:
    void SetUp() override
    {
        parameters_.width = parameters_.height = 16;
        parameters_.cell = 0.2;
        parameters_.iterations = 5;
        std::ofstream(data_) << "data";
        ASSERT_TRUE(study_.create(folder_, data_)) << study_.fault();
        StudyJob job = newJob();
        job.import({});
        ASSERT_EQ(runScriptedJob(job), JobTurn::done) << job.fault();
    }
    StudyJob newJob() { return StudyJob(study_, programs()); }
    JobPrograms programs() const
    {
        JobPrograms all;
        all.engine = &engine_;
        all.data = {"scripted-ms"};
        return all;
    }
    int clean(int parent, const std::string& areas = "")
    {
        StudyJob job = newJob();
        job.clean(parent, parameters_, areas);
        EXPECT_EQ(runScriptedJob(job), JobTurn::done) << job.fault();
        return job.result();
    }
    TestFolder place_{"a study's"};
    std::string data_ = place_.path() + "/-it's \"data\".uvfits";
    std::string folder_ = place_.path() + "/-o'ne two.pavane";
    ScriptedEngine engine_;
    AStudy study_;
    CleanParameters parameters_;
};

TEST_F(Scripted, WhatAnEngineDoesWrongLeavesTheStudy)
{
    const int parent = clean(-1);
    const struct {
        Mischief mischief;
        const char* part;  // of the fault
    } cases[] = {{Mischief::killed, "signal"},
                 {Mischief::noFiles, "without a good map"},
                 {Mischief::cutMap, "without a good map"},
                 {Mischief::nanMap, "no cell with a value"},
                 {Mischief::wrongSize, "another size"},
                 {Mischief::fails, "the script says no"}};
    for (const auto& c : cases) {
        StudyJob job = newJob();
        job.clean(parent, parameters_, "");
        EXPECT_EQ(runScriptedJob(job, c.mischief, -1), JobTurn::failed);
        EXPECT_NE(job.fault().find(c.part), std::string::npos) << job.fault();
        EXPECT_FALSE(study_.modelTag().isKnown);
        EXPECT_EQ(study_.rounds().size(), 2U);
        EXPECT_FALSE(IsFolderExists(folder_ + "/work/new"));
        EXPECT_FALSE(IsFolderExists(folder_ + "/rounds/.new"));
    }
    StudyJob flooded = newJob();
    flooded.clean(parent, parameters_, "");
    EXPECT_EQ(runScriptedJob(flooded, Mischief::flood, -1), JobTurn::done) << flooded.fault();
    EXPECT_LT(flooded.log().size(), 1000U);
    EXPECT_LT(bytesOf(study_.logFile(flooded.result())), 2 << 20);
    parameters_.robust = 1;
    StudyJob job = newJob();
    job.firstMaps(parameters_);
    EXPECT_EQ(runScriptedJob(job, Mischief::noData, 0), JobTurn::failed);
    EXPECT_NE(job.fault().find("no visibility"), std::string::npos) << job.fault();
}

TEST_F(Scripted, OnlyNewStudiesWithoutDataAreDiscarded)
{
    EXPECT_FALSE(study_.discard());
    AStudy other;
    const std::string folder = place_.path() + "/new.pavane";
    ASSERT_TRUE(other.create(folder, data_));
    other.close();
    ASSERT_EQ(other.open(folder), StudyOpening::opened);
    EXPECT_FALSE(other.discard());
    EXPECT_TRUE(IsFolderExists(folder));
    other.close();
    ASSERT_TRUE(other.create(folder + '2', data_));
    EXPECT_TRUE(other.discard());
    EXPECT_FALSE(IsFolderExists(folder + '2') || other.isOpen());
}

TEST_F(Scripted, LocksAndCopies)
{
    const int round = clean(-1);
    AStudy other;
    EXPECT_EQ(other.open(folder_), StudyOpening::held);
    EXPECT_EQ(other.holder().process, getpid());
    // a copy of a folder that is open: its lock tells of a program that does not have it
    const std::string copy = place_.path() + "/copy.pavane";
    std::filesystem::copy(folder_, copy, std::filesystem::copy_options::recursive);
    EXPECT_EQ(other.open(copy), StudyOpening::dead);
    EXPECT_EQ(other.open(copy, 1), StudyOpening::opened);
    EXPECT_NE(other.round(round), nullptr);
    other.close();
    // half of it
    std::filesystem::remove(copy + "/rounds/0001/model.fits");
    EXPECT_EQ(other.open(copy), StudyOpening::opened);
    EXPECT_EQ(other.round(round), nullptr);
    EXPECT_EQ(other.notes().size(), 1U);
    EXPECT_GT(other.nextRoundId(), round);
    other.close();
    // of a newer version
    std::ofstream(copy + "/study.txt") << "# pavane study 2\nnews 1\nend\n";
    EXPECT_EQ(other.open(copy), StudyOpening::readOnly);
    EXPECT_FALSE(other.setSettings({}) && other.setNote(0, "x"));
    EXPECT_EQ(other.open(place_.path()), StudyOpening::failed);
    EXPECT_FALSE(other.create(folder_, data_));
}

TEST_F(Scripted, DataOfOthersAreWrittenAgain)
{
    const int round = clean(-1);
    ASSERT_TRUE(study_.correctedTag().isKnown && study_.modelTag().isKnown);
    std::ofstream(study_.dataFile() + "/CORRECTED") << "another program was here";
    StudyJob job = newJob();
    job.goTo(round);
    int children = 0;
    EXPECT_EQ(runScriptedJob(job, Mischief::none, 0, &children), JobTurn::done) << job.fault();
    EXPECT_EQ(children, 2) << "correct and predict";
    EXPECT_EQ(job.notes().size(), 1U);
    StudyJob again = newJob();
    again.goTo(round);
    EXPECT_EQ(runScriptedJob(again, Mischief::none, 0, &(children = 0)), JobTurn::done);
    EXPECT_EQ(children, 0);
    // and without data there is no round
    std::filesystem::remove_all(study_.dataFile());
    StudyJob without = newJob();
    without.clean(round, parameters_, "");
    EXPECT_EQ(runScriptedJob(without), JobTurn::failed);
    EXPECT_NE(without.fault().find("not been imported"), std::string::npos) << without.fault();
}

TEST_F(Scripted, NoRoomAtAnyWrite)
{
    const int parent = clean(-1);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
    int failed = 0;
    std::size_t rounds = study_.rounds().size();
    for (const rlim_t most : {0, 100, 600, 900, 1200, 3000, 5000, 5900}) {
        StudyJob job = newJob();
        job.clean(most % 200 ? parent : 0, parameters_, "");
        rlimit small = usual;
        small.rlim_cur = most;
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
        const JobTurn turn = runScriptedJob(job);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &usual), 0);
        failed += turn == JobTurn::failed;
        rounds += turn == JobTurn::done;
        EXPECT_EQ(job.fault().empty(), turn == JobTurn::done) << job.fault();
        // what is in memory is what is on the disk
        study_.close();
        const StudyOpening opening = study_.open(folder_);
        ASSERT_TRUE(
            opening == StudyOpening::opened ||
            (opening == StudyOpening::dead && study_.open(folder_, 1) == StudyOpening::opened));
        EXPECT_EQ(study_.rounds().size(), rounds) << most;
        EXPECT_TRUE(study_.notes().empty());
    }
    (void)std::signal(SIGXFSZ, ignored);
    EXPECT_GT(failed, 4);
    EXPECT_GE(clean(parent), 0);
}

TEST_F(Scripted, ExportsAreWhole)
{
    const int round = clean(clean(-1));
    StudyJob job = newJob();
    job.restore(round);
    ASSERT_EQ(runScriptedJob(job), JobTurn::done) << job.fault();
    std::vector<std::string> notes;
    std::string fault;
    const std::string to = place_.path() + "/out";
    ASSERT_TRUE(exportRound(study_, round, programs(), to, notes, fault)) << fault;
    for (const char* name : {"map.fits", "residual.fits", "model.fits", "components.txt",
                             "beam.fits", "dirty.fits", "make-maps.sh"})
        EXPECT_TRUE(IsFileExists(to + "/" + name)) << name;
    EXPECT_FALSE(exportRound(study_, round, programs(), to, notes, fault)) << "overwrites";
    EXPECT_FALSE(exportRound(study_, round, programs(), folder_ + "/x", notes, fault));
    // with another beam it is the map of that one, and the script makes that
    const MapBeam beam{0.002, 0.001, 30};
    notes.clear();
    ASSERT_TRUE(exportRound(study_, round, programs(), to + "2", notes, fault, beam)) << fault;
    EXPECT_FALSE(notes.empty() || IsFileExists(to + "2/map.fits")) << "not restored with it yet";
    StudyJob other = newJob();
    other.restore(round, beam);
    ASSERT_EQ(runScriptedJob(other), JobTurn::done) << other.fault();
    ASSERT_TRUE(exportRound(study_, round, programs(), to + "3", notes, fault, beam)) << fault;
    std::string made;
    ASSERT_TRUE(readWhole(study_.mapFile(round, RoundMap::restored, beam), 1 << 20, made, fault));
    std::string exported;
    ASSERT_TRUE(readWhole(to + "3/map.fits", 1 << 20, exported, fault)) << fault;
    EXPECT_EQ(exported, made);
    const WscleanEngine engine;
    JobPrograms named = programs();
    named.engine = &engine;
    std::vector<std::string> files;
    const std::string script = roundScript(study_, round, named, files, fault, beam);
    EXPECT_NE(script.find("-beam-shape 0.002asec 0.001asec 30deg"), std::string::npos) << script;
    EXPECT_EQ(shellWord("it's"), "'it'\\''s'");
}

}  // namespace
}  // namespace pavane
