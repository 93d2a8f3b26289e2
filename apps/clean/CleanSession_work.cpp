#include "apps/clean/CleanSession_parts.h"
#include "apps/clean/job_text.h"
#include "pavane/imaging/StudyJob.h"
#include "pavane/progress/slices.h"

#include <chrono>
#include <filesystem>
#include <utility>

namespace pavane
{

namespace
{

constexpr int exportPieces = 1000;

}  // namespace

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

}  // namespace pavane
