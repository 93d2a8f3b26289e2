#pragma once

#include "pavane/imaging/AImagingEngine.h"
#include "pavane/imaging/AStudy.h"
#include "pavane/progress/AProgress.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/api.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// A child process to start.
struct JobCommand {
    std::vector<std::string> words;     ///< the program, looked for along PATH, and its arguments
    std::vector<std::string> settings;  ///< "NAME=value" each, above the environment
};

/// What `next` says.
enum class JobTurn {
    start,    ///< start the command, tell its lines and its end, then ask again
    done,     ///< the job has ended well
    stopped,  ///< it was stopped: the study is as before
    failed,   ///< `fault` says why: the study is as before
    more      ///< nothing to start yet: let the user be heard and ask again (JobPrograms::slice)
};

/// How a job stands, for the window.
struct JobState {
    std::string doing;         ///< what it does now, for the user
    double fraction = -1;      ///< of the whole, 0 to 1; -1 not known
    EngineNews news;           ///< what the engine has told last
    double peak = -1;          ///< |peak| of now, Jy a beam; -1 not known
    double firstPeak = -1;     ///< at the start of the round
    double threshold = 0;      ///< Jy a beam
    long long iterations = 0;  ///< of the round until now
    long long limit = 0;
    int cycle = 0;       ///< major cycle, over all children of the round
    double seconds = 0;  ///< since the first child was started
    int cleans = 0;      ///< non-zero while a child cleans: peak and iterations are of now
};

/// A programs' names and what they may use.
struct JobPrograms {
    const AImagingEngine* engine = nullptr;  ///< not owned, outlives the job
    std::vector<std::string> data = {"pavane-ms"};
    int threads = 1;
    /// Milliseconds after which `next` answers `more` when it is still at reading, copying or
    /// syncing maps; 0: never.
    double slice = 0;
};

/// What is to be imported; texts as `pavane-ms import` takes them, "" all.
struct ImportChoice {
    std::string input, column, ifs, times, hands, source;
    int leavesOut = 0;  ///< rows that cannot be taken are left out, in place of failing
};

/// A job on a study: children that run one after another, and what is checked, copied and noted
/// between them. The host starts what `next` asks for, tells each line and the end, and asks again:
///
///     while (job.next(command) == JobTurn::start) run(command) feeding job.line, then job.ended
///
/// A host with a window sets a slice, and asks again by a message when the answer is `more`.
/// Nothing here waits or starts anything. A study has one job at a time. Rounds appear when they
/// are whole; a job that fails, is stopped or is destroyed leaves the study as it was, but for the
/// tags that became unknown.
class PAVANE_API StudyJob
{
public:
    /// The study is not owned and outlives the job.
    StudyJob(AStudy& study, const JobPrograms& programs);
    StudyJob(const StudyJob&) = delete;
    StudyJob& operator=(const StudyJob&) = delete;
    /// Sweeps what a job that has not ended has begun.
    ~StudyJob();

    // What to do, once, before the first `next`
    /// Reads the data of the user into the study.
    void import(const ImportChoice& choice);
    /// The dirty map and beam of the data, chain, flags and parameters of now: a round without
    /// parent. `result` is one that is there already when it was made of all the same.
    void firstMaps(const CleanParameters& parameters);
    /// Cleans on from a round (-1: from the dirty map), inside `areas` (as AreaCollection stores
    /// them; "": everywhere). First the data of now are written when others are there, and when the
    /// round was made of others its residual on them becomes a round between. A round that was
    /// made with another map is a fault.
    void clean(int parent, const CleanParameters& parameters, const std::string& areas);
    /// Makes the working data hold the model and the corrections of a round.
    void goTo(int round);
    /// Writes the visibilities that a round's model has into a UVFITS file inside `work`, which the
    /// host removes: groups, IFs and hands are those of the working data. The working data hold
    /// the corrections of now then; which model they hold counts as unknown.
    void predict(int round, const std::string& file);
    /// Writes the visibilities as the gains and flags of a round make them, each hand by itself and
    /// all times, into a UVFITS file outside the study; what such a file cannot hold is in `notes`.
    void exportData(int round, const std::string& file);
    /// The residual of a round's model on the data of now.
    void residual(int round);
    /// The restored map of a round; unset beam: the fitted one.
    void restore(int round, const MapBeam& beam = {});
    /// A round of a model of the user's: points snap to cells, other components go by ToMap.
    void model(int parent, const CleanParameters& parameters, const AComponents& components);

    /// What comes next; all work between children is done here, `ended` only notes.
    JobTurn next(JobCommand& command);
    /// The host has started the command: process and start time go into the lock.
    void started(int process, long long startTime);
    /// A line of the child; `isError`: of its standard error.
    void line(const std::string& text, int isError = 0);
    /// The child has ended: 0 to 255, -1 by a signal, or it could not be started (then with
    /// `fault`).
    void ended(int status, const std::string& fault = {});
    /// Gives up: the host ends the child, and tells its end as ever.
    void stop();
    /// After the child that runs now, of a round that stops after each cycle, comes no other, and
    /// what was cleaned becomes the round. 0 when the round cannot do that.
    int finishCycle();
    int canFinishCycle() const;

    const JobState& state() const;
    /// The same for a bar; follows the job from its start.
    const AProgress& progress() const;
    /// Of a job that has ended well: the round made or gone to, -1 none.
    int result() const;
    const std::string& fault() const;
    /// The last lines of the child that ran last, for a word about what went wrong.
    const std::vector<std::string>& log() const;
    /// What the user should know though the job ended well.
    const std::vector<std::string>& notes() const;

private:
    class Work;
    std::unique_ptr<Work> work_;
};

}  // namespace pavane
