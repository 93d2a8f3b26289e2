#include "pavane/containers/MemoryFile.h"
#include "pavane/imaging/round_maps.h"
#include "pavane/imaging/study_export.h"
#include "pavane/imaging/WscleanEngine.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "tessel/paths.h"
#include "tests/imaging/study_host.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace pavane
{
namespace
{

const std::string programs = PAVANE_BINARY_DIR "/bin/";

/// Whether the engine and our two programs are there.
std::string missing()
{
    if (programFile("wsclean").empty())
        return "wsclean is not installed";
    for (const char* name : {"pavane-ms", "pavane-simulate"})
        if (!IsFileExists(programs + name))
            return std::string(name) + " has not been built";
    return {};
}

int run(const std::vector<std::string>& words, std::string& output)
{
    ChildProcess child;
    std::string error;
    if (!child.start(words, error))
        return -1;
    (void)child.wait(120000);
    output = child.output() + child.errors();
    return child.exitStatus();
}

/// An ellipse of so many cells around the cell (x, y) of a 128-cell map of 0.2 mas, as areas are
/// stored; coordinates are arcseconds from the centre.
std::string areaAround(double x, double y, double cells)
{
    constexpr double cell = 0.2e-3;
    AreaCollection areas;
    const double cx = -(x - 64) * cell, cy = (y - 64) * cell, r = cells * cell;
    ShapeValues shape;
    shape.kind = ShapeValues::Kind::ellipse;
    shape.rect = {cx - r, cy - r, cx + r, cy + r};
    (void)areas.add(shape);
    MemoryFile file;
    (void)areas.Store(file);
    return file.bytes();
}

class RealEngine : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (!missing().empty())
            return;
        shared_ = std::make_unique<TestFolder>("real data");
        std::string output;
        ASSERT_EQ(run({programs + "pavane-simulate", "--out", shared_->path(), "--size", "64",
                       "--hours", "1", "--clean", "0"},
                      output),
                  0)
            << output;
        AStudy study;
        // blanks, quotes and brackets in the name
        ASSERT_TRUE(study.create(folder(), data())) << study.fault();
        WscleanEngine engine;
        StudyJob job(study, with(engine));
        job.import({});
        ASSERT_EQ(runJob(job), JobTurn::done) << job.fault();
    }
    static void TearDownTestSuite() { shared_.reset(); }
    void SetUp() override
    {
        if (!missing().empty())
            GTEST_SKIP() << missing();
        ASSERT_EQ(study_.open(folder()), StudyOpening::opened) << study_.fault();
        parameters_.width = parameters_.height = 128;
        parameters_.cell = 0.2;
        parameters_.iterations = 60;
    }
    static std::string folder() { return shared_->path() + "/it's [a] \"study\".pavane"; }
    static std::string data() { return shared_->path() + "/observation.uvfits"; }
    static JobPrograms with(const AImagingEngine& engine)
    {
        JobPrograms all;
        all.engine = &engine;
        all.data = {programs + "pavane-ms"};
        return all;
    }
    template <typename Begin>
    int make(Begin begin, int stopAfter = -1)
    {
        StudyJob job(study_, with(engine_));
        begin(job);
        turn_ = runJob(job, stopAfter);
        fault_ = job.fault();
        return job.result();
    }
    FitsMap map(int round, RoundMap which) const
    {
        FitsMap found;
        std::string error;
        EXPECT_TRUE(readFitsMap(study_.mapFile(round, which), 0, found, error)) << error;
        return found;
    }
    static std::unique_ptr<TestFolder> shared_;
    WscleanEngine engine_;
    AStudy study_;
    CleanParameters parameters_;
    JobTurn turn_ = JobTurn::done;
    std::string fault_;
};
std::unique_ptr<TestFolder> RealEngine::shared_;

double greatestDifference(const FitsMap& a, const FitsMap& b)
{
    double greatest = 0;
    for (std::int64_t i = 0; i < a.cells.cells(); ++i)
        greatest = std::max(greatest,
                            static_cast<double>(std::fabs(a.cells.data()[i] - b.cells.data()[i])));
    return greatest;
}

TEST_F(RealEngine, TwoRoundsAreOneAndBackIsBack)
{
    const int first = make([&](StudyJob& job) { job.clean(-1, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const int second = make([&](StudyJob& job) { job.clean(first, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    CleanParameters both = parameters_;
    both.iterations = 120;
    const int once = make([&](StudyJob& job) { job.clean(0, both, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const double peak = study_.round(0)->numbers.peak;
    // the second begins with a residual of the visibilities, which the one does at its next cycle
    EXPECT_LT(greatestDifference(map(second, RoundMap::residual), map(once, RoundMap::residual)),
              2e-2 * peak);
    EXPECT_NEAR(study_.round(second)->numbers.modelFlux, study_.round(once)->numbers.modelFlux,
                1e-2 * study_.round(once)->numbers.modelFlux);
    // from the first again: the column holds another model and is written first
    const int again = make([&](StudyJob& job) { job.clean(first, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    EXPECT_LT(greatestDifference(map(second, RoundMap::residual), map(again, RoundMap::residual)),
              1e-4 * peak);
    EXPECT_EQ(study_.modelTag().what, AStudy::tagOf(*study_.round(again)));
    (void)make([&](StudyJob& job) { job.restore(second); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    EXPECT_TRUE(study_.hasMap(second, RoundMap::restored));
    EXPECT_NEAR(study_.round(second)->numbers.modelFlux, study_.round(again)->numbers.modelFlux,
                1e-3 * peak);
}

TEST_F(RealEngine, BackWithShiftedCentreAndOneIf)
{
    parameters_.shiftX = 3;
    parameters_.shiftY = -2;
    parameters_.ifs = {0};
    const int first = make([&](StudyJob& job) { job.clean(-1, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const int second = make([&](StudyJob& job) { job.clean(first, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const int again = make([&](StudyJob& job) { job.clean(first, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const StudyRound dirty = *study_.round(study_.round(first)->parent);
    EXPECT_LT(greatestDifference(map(second, RoundMap::residual), map(again, RoundMap::residual)),
              1e-4 * std::abs(dirty.numbers.peak));
    // the jet's core is where the phase centre was: 15 cells to the west, 10 to the north
    EXPECT_NEAR(dirty.numbers.peakX, 64 + 15, 2);
    EXPECT_NEAR(dirty.numbers.peakY, 64 + 10, 2);
}

TEST_F(RealEngine, ExportedScriptMakesTheSameMap)
{
    parameters_.majorGain = 0.7;
    const int first =
        make([&](StudyJob& job) { job.clean(-1, parameters_, areaAround(64, 64, 9)); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    // other flags, and only a part of the time: the second round begins with a residual on them
    StudySettings settings = study_.settings();
    std::string day = study_.facts();
    day = day.substr(day.find("referenceday ") + 13);
    day = day.substr(0, day.find('\n'));
    settings.flags = study_.addFlags("# pavane flags 1\n# referenceday " + day +
                                     "\nflag\t0\t1\t2\t*\t*\t-1\t100\t0\n");
    ASSERT_TRUE(settings.flags && study_.setSettings(settings)) << study_.fault();
    CleanParameters cycles = parameters_;
    cycles.stopsEachCycle = 1;
    const int second =
        make([&](StudyJob& job) { job.clean(first, cycles, areaAround(66, 66, 12)); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const StudyRound between = *study_.round(study_.round(second)->parent);
    EXPECT_EQ(between.kind, RoundKind::residual);
    EXPECT_EQ(between.parent, first);
    EXPECT_NE(between.maps, study_.round(first)->maps);
    (void)make([&](StudyJob& job) { job.restore(second); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;

    const std::string to = shared_->path() + "/ex 'port'";
    std::vector<std::string> notes;
    std::string output;
    ASSERT_TRUE(exportRound(study_, second, with(engine_), to, notes, fault_)) << fault_;
    ASSERT_EQ(run({"sh", to + "/make-maps.sh", data(), to + "/again"}, output), 0) << output;
    FitsMap exported, again;
    ASSERT_TRUE(readFitsMap(to + "/map.fits", 0, exported, fault_)) << fault_;
    char name[64];
    (void)std::snprintf(name, sizeof name, "/again/rounds/%04d/restored.fits", second);
    ASSERT_TRUE(readFitsMap(to + name, 0, again, fault_)) << fault_ << output;
    EXPECT_LT(greatestDifference(exported, again),
              1e-4 * study_.round(second)->numbers.restoredPeak);
    settings.flags = 0;
    ASSERT_TRUE(study_.setSettings(settings));
}

TEST_F(RealEngine, CyclesMaskAndList)
{
    CleanParameters cycles = parameters_;
    cycles.stopsEachCycle = 1;
    cycles.iterations = 40;
    cycles.gain = 0.2;
    const std::string areas = areaAround(66, 66, 6);
    const int round = make([&](StudyJob& job) { job.clean(-1, cycles, areas); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const StudyRound made = *study_.round(round);
    EXPECT_LE(made.numbers.iterations, 40);
    EXPECT_GT(made.numbers.cycles, 1);
    EXPECT_FALSE(made.course.empty());
    // all components are inside the mask, and come back from a list as they were
    const FitsMap model = map(round, RoundMap::model), mask = map(round, RoundMap::mask);
    AComponents components;
    std::string fault;
    ASSERT_TRUE(componentsOfModel(model, components, fault)) << fault;
    EXPECT_GT(components.count(), 0);
    for (std::int64_t i = 0; i < model.cells.cells(); ++i)
        ASSERT_TRUE(model.cells.data()[i] == 0 || mask.cells.data()[i] != 0);
    FitsMap again;
    ASSERT_TRUE(modelOfComponents(components, model.header, 128, 128, again, fault)) << fault;
    EXPECT_EQ(greatestDifference(model, again), 0);
    // as a round of its own they leave the same residual
    const int edited = make([&](StudyJob& job) { job.model(round, cycles, components); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    EXPECT_LT(greatestDifference(map(round, RoundMap::residual), map(edited, RoundMap::residual)),
              1e-4 * made.numbers.threshold + 1e-4);
}

TEST_F(RealEngine, AMeasurementSetIsCopied)
{
    const std::string input = study_.dataFile();
    AStudy other;
    ASSERT_TRUE(other.create(shared_->path() + "/of an MS.pavane", input)) << other.fault();
    StudyJob job(other, with(engine_));
    job.import({});
    ASSERT_EQ(runJob(job), JobTurn::done) << job.fault();
    EXPECT_TRUE(IsFileExists(other.uvfitsFile()));
    EXPECT_NE(other.facts().find("longest-baseline"), std::string::npos);
    StudyJob maps(other, with(engine_));
    maps.firstMaps(parameters_);
    ASSERT_EQ(runJob(maps), JobTurn::done) << maps.fault();
    const int first = make([&](StudyJob& same) { same.firstMaps(parameters_); });
    EXPECT_NEAR(other.round(0)->numbers.peak, study_.round(first)->numbers.peak, 1e-4);
}

TEST_F(RealEngine, StopsAtEveryStage)
{
    const int parent = make([&](StudyJob& job) { job.clean(-1, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    const std::size_t rounds = study_.rounds().size();
    int stopped = 0;
    for (int line = 0; line < 60; line += 2) {
        // each from elsewhere, so that the model is written too
        (void)make([&](StudyJob& job) { job.clean(line % 4 ? parent : 0, parameters_, ""); }, line);
        if (turn_ == JobTurn::done)
            continue;
        ASSERT_EQ(turn_, JobTurn::stopped) << fault_;
        ++stopped;
        EXPECT_FALSE(IsFolderExists(study_.folder() + "/rounds/.new"));
        EXPECT_FALSE(IsFolderExists(study_.folder() + "/work/new"));
    }
    EXPECT_GT(stopped, 10);
    EXPECT_GE(study_.rounds().size(), rounds);
    const int after = make([&](StudyJob& job) { job.clean(parent, parameters_, ""); });
    ASSERT_EQ(turn_, JobTurn::done) << fault_;
    EXPECT_LT(study_.round(after)->numbers.noiseOutside, study_.round(0)->numbers.noiseOutside);
}

}  // namespace
}  // namespace pavane
