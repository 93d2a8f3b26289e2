#pragma once

#include "pavane/imaging/MapMeasure.h"
#include "pavane/imaging/round_maps.h"
#include "pavane/imaging/StudyJob.h"
#include "tessel/long_files.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>

namespace pavane
{

/// What a job does between its children. Tasks run one after another; a task that starts a child
/// leaves it in `command` with what to do when it has ended well, and may put others before the
/// rest. What takes long is a task for each piece.
class StudyJob::Work
{
public:
    using Task = std::function<int()>;
    using Maps = std::map<EngineFile, MeasuredMap>;

    Work(AStudy& onStudy, const JobPrograms& with)
        : study(onStudy), programs(with), writer(std::make_unique<AProgressWriter>(progress))
    {
    }

    // StudyJob_tasks.cpp: what every job is made of
    int fail(const std::string& why);
    int begin();
    void add(Task task) { tasks.push_back(std::move(task)); }
    void before(Task task) { tasks.push_front(std::move(task)); }
    /// The first of them first, before the rest.
    void before(std::vector<Task> list);
    /// Long work, a piece at a time, before the rest.
    void inPieces(std::function<WorkPiece()> piece);
    using MapUse = std::function<int(const MeasuredMap* map, const std::string& fault)>;
    /// Reads and measures a map with the mask, as one of this round's size; `use` gets it, or null
    /// with a fault.
    int read(const std::string& name, int wantsNoise, MapUse use);
    /// Writes a map that only the next child reads; `rowOf(r)` gives its rows.
    int write(const std::string& name, const MapHeader& like, int isMap,
              std::function<const float*(int row)> rowOf);
    int sync(const std::string& name);
    /// The corrected column holds these data.
    int needData(const DataState& data);
    /// Beam and dirty map are there.
    int needMaps(const DataState& data, const CleanParameters& parameters);
    int makeMaps();
    /// The model column holds the model of a round.
    int needModel(int round);
    /// The same as exactly as the engine can, which is not what its rounds go on from: the column
    /// counts as unknown afterwards.
    int needExactModel(int round);
    int runSteps(std::vector<EngineStep> steps, Task then);
    int runData(const std::vector<std::string>& words, const std::string& text, Task then);
    void noteCommand(std::vector<std::string> words) { commands.push_back(std::move(words)); }
    /// In pieces, for a child that reads it.
    int copy(const std::string& from, const std::string& to);
    int move(const std::string& from, const std::string& to);
    EngineTask taskFor(const CleanParameters& parameters) const;
    std::string path(const std::string& name) const { return study.folder() + "/" + name; }
    std::string relative(const std::string& name) const;

    // StudyJob_rounds.cpp: rounds
    int planFirst(const CleanParameters& parameters);
    int planClean(int parent, const CleanParameters& parameters, const std::string& areas);
    int planResidual(int parent, const CleanParameters& parameters);
    int planRestore(int round, const MapBeam& beam);
    int planModel(int parent, const CleanParameters& parameters, const AComponents& components);
    int planImport(const ImportChoice& choice);
    int beginRound(RoundKind kind, int parent, const CleanParameters& parameters);
    void useBeam();
    int keepMask(const std::string& areas);
    int writeMask(const std::string& file);
    int startCleaning();
    int cleanOnce();
    int endCycle();
    int isCycleLast();
    int registerRound();
    int registerDirty();
    int choose(int round);

    // StudyJob_run.cpp: children
    int startStep();
    int endStep();
    int launch();
    int takeOutput(const EngineStep::Output& output);
    void takeLine(const std::string& text, int isError);
    void showProgress();
    void finish(JobTurn how);
    std::string faultOfEnd(int status, const std::string& why) const;

    AStudy& study;
    JobPrograms programs;
    AProgress progress;
    std::unique_ptr<AProgressWriter> writer;
    JobState state;
    std::deque<Task> tasks;
    std::string keptFile;  ///< in `work`, for the host; it goes when the job does not end well
    std::string fault;
    std::vector<std::string> log, notes;
    std::string logText;
    long long linesLost = 0;
    int result = -1;

    // the child
    JobCommand command;
    int isPending = 0, isRunning = 0, isEngine = 0;
    Task then;
    std::vector<EngineStep> steps;  ///< the one that runs is the first
    std::string text;               ///< of a data program: its lines
    std::string lastError;
    int keepsText = 0;
    Maps maps;                                ///< outputs of the steps that have ended
    MeasuredMap dirty, beam;                  ///< of the round that is made
    std::map<EngineFile, std::string> files;  ///< and where they lie

    int isStopping = 0, isFinishing = 0, hasEnded = 0;
    JobTurn end = JobTurn::done;
    std::chrono::steady_clock::time_point began;
    int hasBegun = 0;
    std::int64_t told = 0;  ///< of the progress

    // the round that is made
    StudyRound made;
    std::vector<std::vector<std::string>> commands;
    ABitMatrix mask;
    std::string mapsKey;
    std::string startModel;  ///< image that the next child begins with; "": none
    long long doneBefore = 0;
    int cyclesBefore = 0, grown = 0;
    double lastPeak = -1;
};

}  // namespace pavane
