#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "tessel/fits_map.h"
#include "tests/imaging/study_host.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <sys/wait.h>

namespace pavane
{
namespace
{

namespace fs = std::filesystem;

constexpr int steps = 10000, side = 16;

std::string textOf(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string areaAround(double x, double y, double r)
{
    AreaCollection areas;
    ShapeValues shape;
    shape.rect = {x - r, y - r, x + r, y + r};
    (void)areas.add(shape);
    MemoryFile file;
    (void)areas.Store(file);
    return file.bytes();
}

/// A user with bad luck: each step is one of all that can be done to a study.
class Steps
{
public:
    explicit Steps(unsigned seed) : random_(seed)
    {
        std::ofstream(data_) << "data";
        all_.engine = &engine_;
        all_.data = {"scripted-ms"};
        for (CleanParameters* each : {&parameters_, &other_}) {
            each->width = each->height = side;
            each->cell = 0.2;
            each->iterations = 4;
        }
        other_.robust = 1;
    }
    void begin()
    {
        ASSERT_TRUE(study_.create(folder_, data_)) << study_.fault();
        StudyJob job(study_, all_);
        job.import({});
        ASSERT_EQ(runScriptedJob(job), JobTurn::done) << job.fault();
        // a gain and two flag files
        const std::string gains = place_.path() + "/gains.txt";
        std::ofstream(gains) << "gains";
        ASSERT_EQ(study_.addGains(gains, gains), 1);
        ASSERT_EQ(study_.addFlags("# pavane flags 1\n"), 1);
        ASSERT_EQ(study_.addFlags("# pavane flags 1\n# more\n"), 2);
        ASSERT_EQ(study_.addFlags("# pavane flags 1\n"), 1);
    }
    void step();
    /// The tag rule, and that no finished round has changed.
    void check(int deep);
    int isDone(const char* what) const { return done_.count(what) ? done_.at(what) : 0; }

private:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    int someRound()
    {
        const auto& rounds = study_.rounds();
        return rounds.empty()
                   ? -1
                   : rounds[static_cast<std::size_t>(pick(static_cast<int>(rounds.size())))].id;
    }
    void beginJob(StudyJob& job);
    void crash();
    void changeData();
    std::string bytesOfModel(const StudyRound& round) const;

    std::mt19937 random_;
    TestFolder place_{"steps"};
    std::string data_ = place_.path() + "/data.uvfits", folder_ = place_.path() + "/s.pavane";
    ScriptedEngine engine_;
    AStudy study_;
    JobPrograms all_;
    CleanParameters parameters_, other_;
    std::map<std::string, std::string> kept_;  ///< files of finished rounds
    std::map<std::string, std::pair<fs::file_time_type, std::uintmax_t>> stamps_;
    std::map<std::string, int> done_;
};

void Steps::beginJob(StudyJob& job)
{
    const CleanParameters& p = pick(6) ? parameters_ : other_;
    CleanParameters cycles = p;
    cycles.stopsEachCycle = pick(3) == 0;
    switch (pick(8)) {
    case 0:
        return job.firstMaps(p);
    case 1:
        return job.goTo(someRound());
    case 2:
        return job.residual(someRound());
    case 3:
        return job.restore(someRound());
    case 4: {
        AComponents components;
        ACompItem item;
        item.Distance() = 0.2e-3 * pick(6);
        item.Angle() = 90.0 * pick(4);
        components.Add(item);
        return job.model(someRound(), p, components);
    }
    default:
        return job.clean(pick(10) ? someRound() : -1, cycles, pick(2) ? study_.areas() : "");
    }
}

/// A program that goes in the middle, with its child or without.
void Steps::crash()
{
    study_.close();
    const int where = pick(5), half = pick(2);
    int slices = pick(2) ? pick(20) : -1;
    const pid_t child = fork();
    if (child == 0) {
        if (study_.open(folder_) != StudyOpening::opened)
            _exit(3);
        StudyJob job(study_, all_);
        beginJob(job);
        JobCommand command;
        JobTurn turn = JobTurn::start;
        for (int n = 0; (turn = job.next(command)) == JobTurn::start || turn == JobTurn::more;) {
            if (turn == JobTurn::more) {
                if (slices-- == 0)
                    _exit(0);
                continue;
            }
            job.started(getpid(), processStartTime(getpid()));
            const std::vector<std::string> words(command.words.begin() + 3, command.words.end());
            if (n == where && !half)
                _exit(0);
            const int status =
                runScripted(words, command.words[2], n == where ? Mischief::killed : Mischief::none,
                            [](const std::string&) {});
            if (n++ == where)
                _exit(0);
            job.ended(status);
        }
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    ASSERT_EQ(study_.open(folder_), StudyOpening::dead);
    ASSERT_EQ(study_.open(folder_, 1), StudyOpening::opened) << study_.fault();
}

void Steps::changeData()
{
    StudySettings settings = study_.settings();
    settings.flags = pick(3);
    settings.chain = {{1, 1, pick(2), "phase", {}}};
    settings.keepsWeights = pick(2);
    ASSERT_TRUE(study_.setSettings(settings));
}

void Steps::step()
{
    const int what = pick(100);
    // after each task, or all at once
    all_.slice = pick(2) ? 1e-9 : 0;
    if (what < 3) {
        crash();
        ++done_["crash"];
    } else if (what < 6) {
        study_.close();
        ASSERT_EQ(study_.open(folder_), StudyOpening::opened) << study_.fault();
        ASSERT_TRUE(study_.notes().empty()) << study_.notes().front();
    } else if (what < 16) {
        ASSERT_TRUE(study_.setAreas(areaAround(0, 0, 0.2e-3 * (1 + pick(6)))));
    } else if (what < 20) {
        changeData();
    } else if (what < 26 || study_.rounds().size() > 40) {
        const int round = someRound();
        if (round >= 0) {
            const std::vector<int> gone = study_.branchOf(round);
            ASSERT_TRUE(study_.deleteBranch(round)) << study_.fault();
            for (const int id : gone)
                EXPECT_FALSE(study_.round(id));
            ++done_["delete"];
        }
    } else if (what < 30) {
        const int round = someRound();
        ASSERT_EQ(study_.setNote(round, "note"), round >= 0);
    } else {
        StudyJob job(study_, all_);
        beginJob(job);
        const Mischief mischief = what < 80 ? Mischief::none : static_cast<Mischief>(pick(7));
        JobTurn turn = JobTurn::done;
        if (what >= 95) {
            // stopped before, in or after a child
            JobCommand command;
            for (int n = pick(4); n > 0;) {
                turn = job.next(command);
                if (turn == JobTurn::more)
                    continue;
                if (turn != JobTurn::start)
                    break;
                const std::vector<std::string> words(command.words.begin() + 3,
                                                     command.words.end());
                if (n == 1)
                    job.stop();
                job.ended(runScripted(words, command.words[2],
                                      n == 1 ? Mischief::killed : Mischief::none,
                                      [&job](const std::string& line) { job.line(line); }));
                --n;
            }
            job.stop();
            turn = job.next(command);
        } else
            turn = runScriptedJob(job, mischief, pick(4), nullptr, pick(8) ? -1 : pick(60));
        ++done_[turn == JobTurn::done ? "done" : turn == JobTurn::stopped ? "stopped" : "failed"];
        if (mischief == Mischief::none && what < 95 && turn == JobTurn::failed) {
            ASSERT_TRUE(study_.rounds().empty() ||
                        job.fault().find("model to restore") != std::string::npos)
                << job.fault();
        }
        ASSERT_FALSE(fs::exists(folder_ + "/work/new")) << "half-made things stay";
    }
}

std::string Steps::bytesOfModel(const StudyRound& round) const
{
    FitsMap map;
    std::string error;
    EXPECT_TRUE(readFitsMap(study_.mapFile(round.id, RoundMap::model), 0, map, error)) << error;
    return {reinterpret_cast<const char*>(map.cells.data()),
            static_cast<std::size_t>(map.cells.cells()) * sizeof(float)};
}

void Steps::check(int deep)
{
    // what the disk says, not the value in memory
    std::string study = textOf(folder_ + "/study.txt");
    const DataTag model = study_.modelTag(), corrected = study_.correctedTag();
    ASSERT_NE(study.find(model.isKnown ? "modelcolumn known " + model.what : "modelcolumn unknown"),
              std::string::npos);
    ASSERT_NE(study.find(corrected.isKnown ? "correctedcolumn known " + corrected.what
                                           : "correctedcolumn unknown"),
              std::string::npos);
    // the tag rule: what is known is what lies there
    for (const StudyRound& round : study_.rounds())
        if (model == DataTag{1, AStudy::tagOf(round)}) {
            ASSERT_EQ(textOf(study_.dataFile() + "/MODEL"), bytesOfModel(round));
        }
    const std::string lies = textOf(study_.dataFile() + "/CORRECTED");
    for (const StudyRound& round : study_.rounds()) {
        if (corrected == DataTag{1, AStudy::tagOf(round.data)}) {
            ASSERT_EQ(lies.find("--flags") != std::string::npos, round.data.flags > 0);
            ASSERT_EQ(lies.find("--gains") != std::string::npos, !round.data.chain.empty());
            ASSERT_EQ(lies.find("--keep-weights") != std::string::npos,
                      round.data.keepsWeights != 0);
        }
        const std::string name = folder_ + "/rounds/" +
                                 std::string(4 - std::to_string(round.id).size(), '0') +
                                 std::to_string(round.id);
        for (const char* file : {"/round.txt", "/log.txt", "/model.fits", "/residual.fits"}) {
            if (!fs::exists(name + file))
                continue;
            const std::pair stamp{fs::last_write_time(name + file), fs::file_size(name + file)};
            const auto [at, isNew] = stamps_.emplace(name + file, stamp);
            ASSERT_EQ(at->second, stamp) << name << file;
            if (isNew)
                kept_[name + file] = textOf(name + file);
            else if (deep) {
                ASSERT_EQ(kept_[name + file], textOf(name + file)) << name << file;
            }
            if (!isNew || std::string(file) != "/residual.fits")
                continue;
            // the engine takes off what the column holds: a wrong model there shows here
            const std::vector<float> sky = [&] {
                FitsMap map;
                std::string error;
                EXPECT_TRUE(readFitsMap(study_.mapFile(round.id, RoundMap::dirty), 0, map, error));
                return std::vector<float>(map.cells.data(), map.cells.data() + map.cells.cells());
            }();
            FitsMap residual, cleaned;
            std::string error;
            ASSERT_TRUE(readFitsMap(name + file, 0, residual, error)) << error;
            ASSERT_TRUE(readFitsMap(name + "/model.fits", 0, cleaned, error)) << error;
            for (std::size_t i = 0; i < sky.size(); ++i)
                ASSERT_NEAR(residual.cells.data()[i] + cleaned.cells.data()[i], sky[i], 1e-5);
        }
    }
}

TEST(Study, TenThousandStepsKeepTheTagRule)
{
    Steps user(20061115);
    user.begin();
    for (int i = 0; i < steps && !testing::Test::HasFatalFailure(); ++i) {
        SCOPED_TRACE("step " + std::to_string(i));
        user.step();
        if (testing::Test::HasFatalFailure())
            return;
        user.check(i % 100 == 99);
    }
    for (const char* what : {"crash", "delete", "done", "stopped", "failed"})
        EXPECT_GT(user.isDone(what), 100) << what;
}

}  // namespace
}  // namespace pavane
