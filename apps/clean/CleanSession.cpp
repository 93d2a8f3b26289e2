#include "apps/clean/CleanSession.h"

#include "apps/clean/CleanSession_parts.h"
#include "apps/clean/job_text.h"
#include "pavane/imaging/StudyJob.h"
#include "pavane/progress/slices.h"
#include "tessel/paths.h"
#include "tessel/processes.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace pavane
{

namespace
{

/// For the end of a child that was killed.
constexpr int mostTries = 20;
constexpr std::chrono::milliseconds pause{50};
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
