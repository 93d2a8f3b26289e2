#include "apps/clean/CleanSession.h"

#include "apps/clean/CalibrationRun.h"
#include "apps/clean/ExportRun.h"
#include "apps/clean/job_text.h"
#include "pavane/imaging/study_export.h"
#include "pavane/imaging/StudyJob.h"
#include "pavane/progress/slices.h"
#include "platform/CWnd.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "tessel/paths.h"
#include "tessel/processes.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <thread>
#include <utility>

namespace pavane
{

namespace
{

/// For the end of a child that was killed.
constexpr int mostTries = 20;
constexpr std::chrono::milliseconds pause{50};
constexpr unsigned newsMessage = WM_USER + 17;
/// Of work between two looks at what the user does.
constexpr int sliceMilliseconds = 15;
constexpr int exportPieces = 1000;
/// Seconds without a line of a child from which on that is told.
constexpr long long silenceTold = 20;

std::string folderFor(const CleanOptions& options)
{
    if (!options.study.empty())
        return options.study;
    std::string name = options.data;
    while (name.size() > 1 && name.back() == '/')
        name.pop_back();
    const std::string ending = extensionOf(name);
    const std::size_t cut = ending.empty() ? 0 : ending.size() + 1;
    return name.substr(0, name.size() - cut) + ".pavane";
}

int isStudy(const std::string& file) { return IsFileExists(file + "/study.txt"); }

std::string holderText(const StudyHolder& holder)
{
    return "process " + std::to_string(holder.process) + " on " + holder.host;
}

RoundMap mapOf(MapKind kind)
{
    constexpr RoundMap maps[mapKinds] = {RoundMap::residual, RoundMap::restored, RoundMap::model,
                                         RoundMap::dirty,    RoundMap::beam,     RoundMap::mask};
    return maps[static_cast<std::size_t>(kind)];
}

}  // namespace

/// The files of a round on their way out.
struct CleanSession::FileExport {
    StudyExport work;
    AProgress progress;
    AProgressWriter writer{progress};
    int told = 0;
};

/// A map that was just made, on its way to the window.
struct CleanSession::MapLoading {
    std::string file, fault;  ///< of the job that has ended
    MapContentReader reader;
};

/// Starts what the job asks for and tells it what became of it, from the message loop.
class CleanSession::Runner : public CWnd
{
public:
    explicit Runner(CleanSession& session) : session_(session) {}
    ~Runner() override { DestroyWindow(); }

    int Create() { return CWnd::Create("PavaneRunner", "", WS_POPUP, CRect(), nullptr, 0); }
    /// The next child of the job, or its end; from a message, so that nothing is deeper within.
    /// By a timer: messages that are posted one after another are all sent before the user is
    /// heard.
    void Advance()
    {
        if (!isAdvancing_)
            isAdvancing_ = SetTimer(advanceTimer, 0) != 0;
    }
    void Terminate() { process_.Terminate(); }
    void Kill() { process_.Kill(); }
    int IsRunning() const { return process_.IsRunning(); }
    /// Seconds since the last line of the child that runs; 0 when none does.
    long long Silence() const
    {
        return process_.IsRunning() ? std::chrono::duration_cast<std::chrono::seconds>(
                                          std::chrono::steady_clock::now() - lastWord_)
                                          .count()
                                    : 0;
    }

    void OnTimer(unsigned id) override
    {
        if (id == advanceTimer) {
            KillTimer(advanceTimer);
            isAdvancing_ = 0;
            if (!process_.IsRunning())
                next();
            return;
        }
        if (id != lookTimer)
            return CWnd::OnTimer(id);
        if (!process_.IsRunning())
            KillTimer(lookTimer);
        else if (!heard_.empty() ||
                 std::chrono::steady_clock::now() - lastReport_ > std::chrono::seconds(1))
            report();
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != newsMessage)
            return CWnd::WindowProc(message, wParam, lParam);
        hear(*reinterpret_cast<const ProcessNews*>(lParam));  // NOLINT: a pointer in it
        return 0;
    }

private:
    static constexpr unsigned lookTimer = 1, advanceTimer = 2;
    static constexpr unsigned lookPause = 100;  ///< milliseconds
    static constexpr std::chrono::milliseconds reportPause{50};
    /// Bytes of a line that are told; the log of the round has all.
    static constexpr std::size_t longestSaid = 4000;

    void next()
    {
        if (session_.calibration_) {
            std::string error;
            if (session_.solve(error))
                return Advance();
            return session_.calibrated(error);
        }
        if (session_.loading_) {
            if (session_.load())
                Advance();
            return;
        }
        if (session_.files_) {
            std::string error;
            if (session_.writeFiles(error))
                return Advance();
            return session_.filesWritten(error);
        }
        if (session_.export_) {
            std::string error;
            if (session_.writeData(error))
                return Advance();
            return session_.exported(error);
        }
        while (session_.job_) {
            JobCommand command;
            const JobTurn turn = session_.job_->next(command);
            if (turn == JobTurn::more)
                return Advance();
            if (turn != JobTurn::start) {
                const std::string fault =
                    turn == JobTurn::failed ? faultText(*session_.job_) : std::string();
                return session_.jobEnded(turn == JobTurn::done, fault);
            }
            if (session_.said)
                session_.said("$ " + commandText(command.words));
            CString error;
            if (process_.Start({command.words, command.settings}, GetSafeHwnd(), newsMessage,
                               error)) {
                session_.job_->started(process_.GetId(), ProcessStartTime(process_.GetId()));
                lastWord_ = std::chrono::steady_clock::now();
                heard_.clear();
                SetTimer(lookTimer, lookPause);
                return session_.tell();
            }
            session_.job_->ended(-1, command.words.front() + ": " + error);
        }
    }

    void hear(const ProcessNews& news)
    {
        if (!session_.job_)
            return;
        lastWord_ = std::chrono::steady_clock::now();
        if (news.kind == ProcessNews::ended) {
            KillTimer(lookTimer);
            report();
            if (!session_.job_)
                return;
            session_.job_->ended(news.status);
            return Advance();
        }
        session_.job_->line(news.text, news.kind == ProcessNews::errorLine);
        heard_.append(heard_.empty() ? "" : "\n").append(news.text, 0, longestSaid);
        if (lastWord_ - lastReport_ > reportPause)
            report();
    }

    /// A program may write faster than anybody reads: not each line is told by itself.
    void report()
    {
        lastReport_ = std::chrono::steady_clock::now();
        std::string lines = std::exchange(heard_, {});
        if (!lines.empty() && session_.said)
            session_.said(lines);
        session_.tell();
    }

    CleanSession& session_;
    CProcess process_;
    std::chrono::steady_clock::time_point lastWord_, lastReport_;
    std::string heard_;    ///< lines that have not been told
    int isAdvancing_ = 0;  ///< its message is on its way
};

CleanSession::CleanSession() : runner_(std::make_unique<Runner>(*this)) {}

CleanSession::~CleanSession() { close(); }

int CleanSession::open(const CleanOptions& options, std::string& error)
{
    close();
    if (!runner_->GetSafeHwnd() && !runner_->Create()) {
        error = "the programs that make maps cannot be listened to";
        return 0;
    }
    engine_ = options.engine.empty() ? std::make_unique<WscleanEngine>()
                                     : std::make_unique<WscleanEngine>(options.engine);
    leavesOut = options.leavesOut;
    dataProgram_ = options.ms.empty() ? std::vector<std::string>{dataProgramName()} : options.ms;
    const std::string folder = isStudy(options.data) ? options.data : folderFor(options);
    opening_ = StudyOpening::opened;
    if (!isStudy(folder)) {
        if (study_.create(folder, options.data)) {
            parameters = options.parameters;
            return 1;
        }
        error = folder + ": " + study_.fault();
        return 0;
    }
    opening_ = study_.open(folder, options.takeOver);
    if (opening_ == StudyOpening::childRuns && options.takeOver) {
        const StudyHolder child = study_.runningChild();
        (void)endProcess(child.process, child.started, 1);
        for (int tries = 0; tries < mostTries && opening_ == StudyOpening::childRuns; ++tries) {
            std::this_thread::sleep_for(pause);  // until the system has taken it away
            opening_ = study_.open(folder, options.takeOver);
        }
    }
    switch (opening_) {
    case StudyOpening::opened:
    case StudyOpening::readOnly:
        parameters = study_.settings().parameters;
        return 1;
    case StudyOpening::held:
        error = folder + ": another program has it open (" + holderText(study_.holder()) + ")";
        return 0;
    case StudyOpening::dead:
        error = folder + ": a program that is gone has left it locked (" +
                holderText(study_.holder()) + ")";
        return 0;
    case StudyOpening::childRuns:
        error = folder + ": the engine of a program that is gone still works on it (" +
                holderText(study_.runningChild()) + ")";
        return 0;
    case StudyOpening::failed:
        break;
    }
    error = folder + ": " + study_.fault();
    return 0;
}

void CleanSession::close()
{
    next_.clear();
    runner_->Kill();
    job_.reset();
    calibration_.reset();
    predicted_.reset();
    loading_.reset();
    files_.reset();
    export_.reset();
    exportFolder_.clear();
    // of data that could not be read nothing stays
    if (!study_.discard())
        study_.close();
}

// --- jobs

int CleanSession::start(const Job& job, std::string& error)
{
    endLoading();
    if (!study_.isOpen() || isRunning()) {
        error = isRunning() ? jobName_ + " still runs" : "no study is open";
        return 0;
    }
    if (study_.isReadOnly()) {
        error = study_.folder() + " is open to be read only";
        return 0;
    }
    begin(job);
    return 1;
}

void CleanSession::begin(const Job& job)
{
    job_ = std::make_unique<StudyJob>(study_, programs());
    jobName_ = job.name;
    keepsShown_ = job.keepsShown;
    toldPeak_ = -1;
    toldIterations_ = -1;
    job.begin(*job_);
    if (began)
        began();
    runner_->Advance();
}

JobPrograms CleanSession::programs() const
{
    JobPrograms programs;
    programs.engine = engine_.get();
    programs.data = dataProgram_;
    programs.threads = engineThreads();
    programs.slice = sliceMilliseconds;
    return programs;
}

void CleanSession::jobEnded(int isDone, const std::string& error)
{
    // it goes before anything is told: what is told may begin another
    const std::unique_ptr<StudyJob> finished = std::move(job_);
    const int round = isDone ? finished->result() : -1;
    std::string fault = error;
    if (isDone)
        for (const std::string& note : finished->notes())
            tellNote(note);
    if (predicted_) {
        if (isDone && takePrediction(fault))
            return;
        predicted_.reset();
        isDone = 0;
    }
    if (isDone && round >= 0 && !keepsShown_)
        (void)show(round, fault);
    if (isDone && round >= 0 && beginLoading(round, fault))
        return;
    goOnAfter(isDone, fault);
}

/// Reads the map that is to be shown now, in slices, so that showing it takes no reading. 0 when
/// there is none to read.
int CleanSession::beginLoading(int round, const std::string& error)
{
    auto loading = std::make_unique<MapLoading>();
    loading->file = fileWanted && loaded ? fileWanted(round) : std::string();
    loading->fault = error;
    CString ignored;  // comes again, and is told, when it is shown
    if (loading->file.empty() || !loading->reader.begin(loading->file, ignored))
        return 0;
    loading_ = std::move(loading);
    runner_->Advance();
    return 1;
}

/// Non-zero while more remains.
int CleanSession::load()
{
    CString error;
    if (runSlice(std::chrono::milliseconds(sliceMilliseconds),
                 [&] { return loading_->reader.step(error); }))
        return 1;
    const std::unique_ptr<MapLoading> done = std::move(loading_);
    if (error.empty())
        loaded(done->file, std::move(done->reader.content()));
    goOnAfter(1, done->fault);
    return 0;
}

/// Somebody does not wait for it: the window reads the map when it shows it.
void CleanSession::endLoading()
{
    if (const std::unique_ptr<MapLoading> given = std::move(loading_))
        goOnAfter(1, given->fault);
}

/// What comes after a job: the next one, the export that waited for it, or a word to the user.
void CleanSession::goOnAfter(int isDone, std::string fault)
{
    if (!isDone) {
        next_.clear();
        exportFolder_.clear();
    } else if (next_.empty() && !exportFolder_.empty() && beginExport(fault)) {
        return;
    }
    if (!next_.empty()) {
        const Job job = std::move(next_.front());
        next_.pop_front();
        if (roundsOther)
            roundsOther();
        return begin(job);
    }
    if (roundsOther)
        roundsOther();
    if (ended)
        ended(isDone && fault.empty(), fault);
}

void CleanSession::tell()
{
    if (!told || !job_)
        return;
    const JobState& state = job_->state();
    RunNews news;
    news.text = stateText(state);
    if (const long long silence = runner_->Silence(); silence >= silenceTold)
        news.text +=
            "   no word from the program for " + std::to_string(silence) + " s (Ctrl+F5 stops it)";
    news.row = state.cleans ? state.news.peakY : -1;
    news.column = state.cleans ? state.news.peakX : -1;
    if (state.cleans && state.peak > 0 &&
        (state.peak != toldPeak_ || state.iterations != toldIterations_)) {
        toldPeak_ = state.peak;
        toldIterations_ = state.iterations;
        const std::vector<PeakPoint> before = pointsOf(shown());
        news.point = {(before.empty() ? 0 : before.back().iterations) +
                          static_cast<double>(state.iterations),
                      state.peak, std::nan("")};
    }
    told(news);
}

int CleanSession::startImport(std::string& error)
{
    if (study_.hasData())
        return study_.rounds().empty() && startFirstMaps(error);
    ImportChoice choice;
    choice.input = study_.source();
    choice.leavesOut = leavesOut;
    if (!start({"Reading the data", [choice](StudyJob& job) { job.import(choice); }}, error))
        return 0;
    if (study_.rounds().empty())
        next_.push_back({"Dirty map", [this](StudyJob& job) {
                             std::string ignored;
                             (void)useProposedCell(ignored);
                             job.firstMaps(parameters);
                         }});
    return 1;
}

/// A cell that nobody has chosen: a fifth of the finest fringe.
int CleanSession::useProposedCell(std::string& error)
{
    if (!(parameters.cell > 0))
        parameters.cell = proposedCell(longestBaseline(study_.facts()));
    if (parameters.cell > 0)
        return keepParameters(error);
    error = "the data tell no baseline, so a cell has to be given";
    return 0;
}

int CleanSession::keepParameters(std::string& error)
{
    StudySettings settings = study_.settings();
    settings.parameters = parameters;
    if (study_.setSettings(settings))
        return 1;
    error = study_.fault();
    return 0;
}

int CleanSession::startFirstMaps(std::string& error)
{
    return useProposedCell(error) &&
           start({"Dirty map", [this](StudyJob& job) { job.firstMaps(parameters); }}, error);
}

int CleanSession::startRound(const std::string& areas, std::string& error)
{
    const int parent = shown();
    const std::string fault = faultOf(parameters);
    if (!fault.empty()) {
        error = fault;
        return 0;
    }
    return start(
        {"CLEAN", [this, parent, areas](StudyJob& job) { job.clean(parent, parameters, areas); }},
        error);
}

int CleanSession::startRestore(int round, std::string& error)
{
    const MapBeam beam = restoringBeam(round);
    return start({"Restored map", [round, beam](StudyJob& job) { job.restore(round, beam); }, 1},
                 error);
}

int CleanSession::startModel(const AComponents& components, std::string& error)
{
    const int parent = shown();
    return start({"Model", [this, parent, components](
                               StudyJob& job) { job.model(parent, parameters, components); }},
                 error);
}

int CleanSession::startVisibilities(int round, const std::string& file, std::string& error)
{
    return start({"Model visibilities", [round, file](StudyJob& job) { job.predict(round, file); }},
                 error);
}

int CleanSession::startResidual(std::string& error)
{
    const int round = shown();
    return start({"Residual", [round](StudyJob& job) { job.residual(round); }}, error);
}

int CleanSession::startSelfCal(const ASelfCalPM& wish, std::string& error, const AComponents* list,
                               int replaces)
{
    endLoading();
    const StudyRound* const round = study_.round(shown());
    if (isRunning() || !round || study_.isReadOnly()) {
        error = isRunning() ? jobName_ + " still runs" : "there is no round to calibrate on";
        return 0;
    }
    auto run = std::make_unique<CalibrationRun>();
    if (!run->begin(study_, *round, wish, {list, replaces}, error))
        return 0;
    calibration_ = std::move(run);
    jobName_ = "Self-calibration";
    calibrationName_ = selfCalName(wish);
    if (calibration_->wantsModel())
        return predictModel(error);
    if (began)
        began();
    runner_->Advance();
    return 1;
}

/// A moment of it; the window hears its user between.
int CleanSession::solve(std::string& error)
{
    return runSlice(std::chrono::milliseconds(sliceMilliseconds),
                    [&] { return calibration_->step(error); });
}

/// The model's visibilities are made by the engine, for a calibration that waits for them.
int CleanSession::predictModel(std::string& error)
{
    predicted_ = std::move(calibration_);
    const int round = shown();
    if (start({"Model visibilities",
               [round](StudyJob& job) { job.predict(round, CalibrationRun::modelName); }},
              error)) {
        if (said)
            said("The engine makes the model's visibilities: it " + predicted_->reason());
        return 1;
    }
    predicted_.reset();
    return 0;
}

int CleanSession::takePrediction(std::string& error)
{
    if (!predicted_->takeModel(error))
        return 0;
    calibration_ = std::move(predicted_);
    jobName_ = "Self-calibration";
    if (began)
        began();
    runner_->Advance();
    return 1;
}

void CleanSession::calibrated(const std::string& error)
{
    std::string stopped;
    if (error.empty() && calibration_->wantsModel()) {
        if (predictModel(stopped))
            return;
        if (ended)
            ended(0, stopped);
        return;
    }
    const std::unique_ptr<CalibrationRun> run = std::move(calibration_);
    std::string fault = error;
    const int isDone = fault.empty() && run->keep(study_, calibrationName_, fault);
    const int wasStopped = run->progress().IsCancelled();
    if (isDone && said)
        said(run->summary());
    if (isDone && startResidual(fault))
        return;
    if (roundsOther)
        roundsOther();
    if (ended)
        ended(0, wasStopped ? CString() : CString(fault));
}

int CleanSession::startExport(const std::string& folder, std::string& error)
{
    endLoading();
    const int round = shown();
    if (isRunning() || !study_.round(round)) {
        error = isRunning() ? jobName_ + " still runs" : "there is no round to export";
        return 0;
    }
    exportFolder_ = folder;
    if (study_.round(round)->hasModel && fileOf(round, MapKind::restored).empty()) {
        if (startRestore(round, error))
            return 1;
        exportFolder_.clear();
        return 0;
    }
    return beginExport(error);
}

/// Non-zero when files are being written; else `error` says why not.
int CleanSession::beginExport(std::string& error)
{
    auto files = std::make_unique<FileExport>();
    if (!files->work.begin(study_, shown(), programs(), exportFolder_, error,
                           restoringBeam(shown()))) {
        error.insert(0, exportFolder_ + ": ");
        exportFolder_.clear();
        return 0;
    }
    files->writer.SetTotal(exportPieces);
    files->writer.SetText("Writing files");
    files_ = std::move(files);
    jobName_ = "Export";
    if (began)
        began();
    runner_->Advance();
    return 1;
}

/// Non-zero while more remains.
int CleanSession::writeFiles(std::string& error)
{
    FileExport& files = *files_;
    WorkPiece piece = WorkPiece::more;
    (void)runSlice(std::chrono::milliseconds(sliceMilliseconds), [&] {
        piece = files.writer.IsCancelled() ? WorkPiece::failed : files.work.step(error);
        return piece == WorkPiece::more;
    });
    const int now = static_cast<int>(files.work.done() * exportPieces);
    files.writer.Advance(now - std::exchange(files.told, now));
    return piece == WorkPiece::more;
}

/// The visibilities follow.
void CleanSession::filesWritten(const std::string& error)
{
    const std::unique_ptr<FileExport> files = std::move(files_);
    const std::string folder = std::exchange(exportFolder_, {});
    std::string fault = error.empty() ? error : folder + ": " + error;
    for (const std::string& note : files->work.notes())
        if (fault.empty())
            tellNote(note);
    const int isStopped = files->writer.IsCancelled();
    if (fault.empty() && !isStopped && writeVisibilities(folder, fault))
        return;
    if (ended)
        ended(fault.empty() && !isStopped, isStopped ? CString() : CString(fault));
}

/// Non-zero when the data are being written; 0 when there are none, or `error` says why not.
int CleanSession::writeVisibilities(const std::string& folder, std::string& error)
{
    if (study_.uvfitsFile() != study_.source()) {
        const int round = shown();
        const std::string file = std::filesystem::absolute(folder).string() + "/corrected.uvfits";
        begin({"Export", [round, file](StudyJob& job) { job.exportData(round, file); }});
        return 1;
    }
    auto run = std::make_unique<ExportRun>();
    if (!run->begin(study_, study_.round(shown())->data, folder + "/corrected.uvfits", error))
        return 0;
    export_ = std::move(run);
    if (began)
        began();
    runner_->Advance();
    return 1;
}

void CleanSession::tellNote(const std::string& note) const
{
    if (noted)
        noted(note);
    else if (said)
        said(note);
}

int CleanSession::writeData(std::string& error)
{
    return runSlice(std::chrono::milliseconds(sliceMilliseconds),
                    [&] { return export_->step(error); });
}

void CleanSession::exported(const std::string& error)
{
    const std::unique_ptr<ExportRun> run = std::move(export_);
    if (ended)
        ended(error.empty(), run->progress().IsCancelled() ? CString() : CString(error));
}

int CleanSession::isRunning() const { return job_ || calibration_ || files_ || export_; }

const AProgress& CleanSession::progress() const
{
    return job_           ? job_->progress()
           : calibration_ ? calibration_->progress()
           : files_       ? files_->progress
           : export_      ? export_->progress()
                          : noProgress_;
}

void CleanSession::stop()
{
    if (calibration_)
        return calibration_->cancel();
    if (files_)
        return files_->progress.Cancel();
    if (export_)
        return export_->cancel();
    if (!job_)
        return;
    job_->stop();
    if (runner_->IsRunning())
        runner_->Terminate();
    else
        runner_->Advance();
}

int CleanSession::finishCycle() { return job_ && job_->finishCycle(); }

// --- rounds

int CleanSession::show(int round, std::string& error)
{
    StudySettings settings = study_.settings();
    if (settings.round == round)
        return 1;
    settings.round = round;
    if (study_.setSettings(settings))
        return 1;
    error = study_.fault();
    return 0;
}

std::vector<RoundLine> CleanSession::lines() const
{
    std::vector<RoundLine> lines;
    if (!study_.isOpen())
        return lines;
    const std::vector<StudyRound>& rounds = study_.rounds();
    std::vector<int> parents;
    for (const StudyRound& round : rounds) {
        const auto parent = std::find_if(rounds.begin(), rounds.end(), [&](const StudyRound& each) {
            return each.id == round.parent;
        });
        parents.push_back(parent == rounds.end() ? -1 : static_cast<int>(parent - rounds.begin()));
        RoundLine line;
        line.number = round.id;
        line.name = roundNameOf(round);
        line.cells = round.mask.empty() ? -1 : round.numbers.maskCells;
        line.iterations = round.numbers.allIterations;
        line.flux = round.hasModel ? round.numbers.modelFlux : std::nan("");
        line.peak = round.numbers.peak;
        line.noiseOut = round.numbers.noiseOutside;
        line.noiseIn = round.numbers.noiseInside;
        line.dynamicRange = round.numbers.dynamicRange;
        line.note = study_.note(round.id);
        lines.push_back(line);
    }
    const std::vector<int> depths = branchDepths(parents);
    for (std::size_t i = 0; i < lines.size(); ++i)
        lines[i].depth = depths[i];
    return lines;
}

std::string CleanSession::fileOf(int round, MapKind kind) const
{
    const MapBeam beam = kind == MapKind::restored ? restoringBeam(round) : MapBeam();
    return study_.isOpen() && round >= 0 && study_.hasMap(round, mapOf(kind), beam)
               ? study_.mapFile(round, mapOf(kind), beam)
               : std::string();
}

std::string CleanSession::logOf(int round) const { return study_.logFile(round); }

std::string CleanSession::areasOf(int round) const
{
    const StudyRound* const found = study_.round(round);
    return found ? study_.areasOf(*found) : std::string();
}

std::vector<PeakPoint> CleanSession::pointsOf(int round) const
{
    std::vector<const StudyRound*> line;
    for (const StudyRound* at = study_.isOpen() ? study_.round(round) : nullptr; at;
         at = study_.round(at->parent))
        line.insert(line.begin(), at);
    std::vector<PeakPoint> points;
    double before = 0;
    for (const StudyRound* const each : line) {
        for (const RoundPoint& point : each->course)
            points.push_back(
                {before + static_cast<double>(point.iterations), point.peak, std::nan("")});
        // a model of the user's counts from 0, and the curve goes on
        before += static_cast<double>(each->numbers.iterations);
        points.push_back(
            {before, each->numbers.peak, each->hasModel ? each->numbers.modelFlux : 0});
    }
    return points;
}

}  // namespace pavane
