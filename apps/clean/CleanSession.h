#pragma once

#include "apps/clean/options.h"
#include "apps/clean/peak_point.h"
#include "apps/clean/round_lines.h"
#include "apps/clean/ShownMap.h"
#include "pavane/dialogs/values/ABeamShapePM.h"
#include "pavane/imaging/AStudy.h"
#include "pavane/imaging/WscleanEngine.h"
#include "pavane/progress/AProgress.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class AComponents;
class ASelfCalPM;
class CalibrationRun;
class ExportRun;
class StudyJob;
struct JobPrograms;

/// What the engine tells while a round runs.
struct RunNews {
    CString text;               ///< "22.3 mJy at 255, 256   cycle 2   1:05"
    int row = -1, column = -1;  ///< (MP) of the peak; -1: not known
    PeakPoint point;            ///< iterations of all rounds before it counted
};

/// A study that is open and the work on it: jobs of child processes, whose lines and ends come as
/// messages. One job runs at a time. The same for the window and for --batch.
class CleanSession
{
public:
    CleanSession();
    CleanSession(const CleanSession&) = delete;
    CleanSession& operator=(const CleanSession&) = delete;
    /// Stops what runs.
    ~CleanSession();

    std::function<void()> roundsOther;  ///< rounds, or the one that is shown
    std::function<void(const RunNews& news)> told;
    std::function<void(const CString& line)> said;  ///< lines of a child
    /// What the user should know though a job ended well; `said` gets it where this is not set.
    std::function<void(const CString& line)> noted;
    /// The map that will be shown of a round that was just made; "" when nothing is to be read.
    std::function<std::string(int round)> fileWanted;
    /// It was read, before `roundsOther`.
    std::function<void(const std::string& file, MapContent&& content)> loaded;
    std::function<void()> began;  ///< another job of those that were asked for
    /// All jobs have ended; `error` is empty when they did their work or were stopped.
    std::function<void(int isDone, const CString& error)> ended;

    /// Makes a study of data, or opens the one that is there. Non-zero when it is open; else
    /// `error` is a line.
    int open(const CleanOptions& options, std::string& error);
    /// Why the last `open` failed is that a program which is gone has left the study locked, or a
    /// child of it still runs; the user may take it over then (CleanOptions::takeOver).
    int canTakeOver() const
    {
        return opening_ == StudyOpening::dead || opening_ == StudyOpening::childRuns;
    }
    /// Begins the import and the first maps of a study that has none. 0 when there is nothing to
    /// do, or it cannot begin (`error`).
    int startImport(std::string& error);
    /// Ends what runs and lets the study go.
    void close();
    int isOpen() const { return study_.isOpen(); }
    AStudy& study() { return study_; }
    const AStudy& study() const { return study_; }
    /// The visibilities of the user.
    const std::string& data() const { return study_.source(); }

    // Rounds, by number
    std::vector<RoundLine> lines() const;
    /// The round that is shown and that the next one goes on from; -1 for none.
    int shown() const { return study_.isOpen() ? study_.settings().round : -1; }
    int show(int round, std::string& error);
    /// The file of a map; empty when the round has none yet.
    std::string fileOf(int round, MapKind kind) const;
    /// The beam that maps are restored with, as the user has chosen it, with the round's fitted one
    /// (mas); and that one (arcseconds), unset for the fitted one.
    ABeamShapePM beamShape(int round) const;
    MapBeam restoringBeam(int round) const;
    /// Puts the choice into the study.
    int keepBeamShape(const ABeamShapePM& shape, std::string& error);
    std::string logOf(int round) const;
    std::string areasOf(int round) const;
    /// Of the rounds that lead to it.
    std::vector<PeakPoint> pointsOf(int round) const;

    int leavesOut = 0;  ///< an import goes without rows that it cannot take, in place of failing
    /// The command of pavane-ms.
    const std::vector<std::string>& dataProgram() const { return dataProgram_; }

    CleanParameters parameters;  ///< of the next round

    /// Puts `parameters` into the study, to come back with it.
    int keepParameters(std::string& error);

    // Jobs; 0 and `error` when it cannot begin
    int startFirstMaps(std::string& error);
    /// Cleans on from the shown round; `areas` as their collection stores them, "": everywhere.
    int startRound(const std::string& areas, std::string& error);
    /// The restored map of a round with the beam that is chosen; which round is shown stays.
    int startRestore(int round, std::string& error);
    int startModel(const AComponents& components, std::string& error);
    /// Solves for gains on the model of the shown round, puts them at the end of the chain, and
    /// makes the residual of that model on the data that they correct.
    /// The model is `list` when there is one. With the id of a link in `replaces` its gains are
    /// solved for anew, on data that those before it correct.
    int startSelfCal(const ASelfCalPM& wish, std::string& error, const AComponents* list = nullptr,
                     int replaces = 0);
    /// Writes all that the shown round came to into a folder that is empty or not there: maps,
    /// model, mask, areas, gains, flags, a script that makes it again, and the corrected data of a
    /// UVFITS file. The restored map is made first.
    int startExport(const std::string& folder, std::string& error);
    /// Lets the engine predict the visibilities of a round's model into a file of this name in the
    /// study's `work`.
    int startVisibilities(int round, const std::string& file, std::string& error);
    /// Another chain or other flags were chosen: the residual of the shown round's model on them.
    int startResidual(std::string& error);
    int isRunning() const;
    /// The map of a job that has ended is being read; whatever is started ends that.
    int isLoading() const { return loading_ != nullptr; }
    const AProgress& progress() const;
    const CString& jobName() const { return jobName_; }
    void stop();
    int finishCycle();

private:
    class Runner;
    struct FileExport;
    struct MapLoading;
    struct Job {
        CString name;
        std::function<void(StudyJob& job)> begin;
        int keepsShown = 0;  ///< its round is not shown when it has ended
    };
    int start(const Job& job, std::string& error);
    void begin(const Job& job);
    void jobEnded(int isDone, const std::string& error);
    int beginLoading(int round, const std::string& error);
    int load();
    void endLoading();
    void goOnAfter(int isDone, std::string fault);
    void tell();
    int solve(std::string& error);
    void calibrated(const std::string& error);
    int predictModel(std::string& error);
    int takePrediction(std::string& error);
    int beginExport(std::string& error);
    int writeFiles(std::string& error);
    void filesWritten(const std::string& error);
    int writeVisibilities(const std::string& folder, std::string& error);
    int writeData(std::string& error);
    void tellNote(const std::string& note) const;
    void exported(const std::string& error);
    JobPrograms programs() const;
    int useProposedCell(std::string& error);

    std::unique_ptr<WscleanEngine> engine_;
    std::vector<std::string> dataProgram_;
    AStudy study_;
    StudyOpening opening_ = StudyOpening::opened;
    std::unique_ptr<StudyJob> job_;
    std::unique_ptr<CalibrationRun> calibration_;
    std::unique_ptr<CalibrationRun> predicted_;  ///< waits for its model's visibilities
    CString calibrationName_;
    std::unique_ptr<MapLoading> loading_;
    std::unique_ptr<FileExport> files_;
    std::unique_ptr<ExportRun> export_;
    std::string exportFolder_;  ///< of an export that waits for the restored map, or runs
    std::unique_ptr<Runner> runner_;
    std::deque<Job> next_;
    AProgress noProgress_;
    CString jobName_;
    int keepsShown_ = 0;
    double toldPeak_ = -1;
    long long toldIterations_ = -1;
};

}  // namespace pavane
