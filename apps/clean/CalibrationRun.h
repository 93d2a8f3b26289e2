#pragma once

#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/calibration/gains/UvReach.h"
#include "pavane/dialogs/values/ASelfCalPM.h"
#include "pavane/imaging/AStudy.h"
#include "pavane/progress/AProgress.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvFilter.h"

#include <memory>
#include <string>

namespace pavane
{

/// Gains that are solved for from a study's visibilities, corrected by its chain, in slices. The
/// model's visibilities are added up from its components where that is exact and not too long a
/// work; else the engine has to predict them.
class CalibrationRun
{
public:
    CalibrationRun() = default;
    CalibrationRun(const CalibrationRun&) = delete;
    CalibrationRun& operator=(const CalibrationRun&) = delete;
    /// Takes away the file of the model's visibilities.
    ~CalibrationRun();

    struct Choice {
        const AComponents* list = nullptr;  ///< the model in place of the round's; copied
        int replaces = 0;  ///< id of the link whose gains are solved for anew; 0: a further one
    };
    /// Opens the visibilities and the model of a round. Those times and IFs are solved for that the
    /// round was made of. Non-zero on success, else `error` is a line.
    int begin(const AStudy& study, const StudyRound& round, const ASelfCalPM& wish,
              const Choice& choice, std::string& error);
    /// Goes on for a moment. Non-zero while more remains; 0 when all is done, the model has to be
    /// predicted, or `error` says why not.
    int step(std::string& error);
    /// The model's visibilities are wanted, as StudyJob::predict writes them into the file of this
    /// name in the study's `work`.
    int wantsModel() const { return wantsModel_; }
    static constexpr const char* modelName = "model.uvfits";
    /// Why they are wanted, a clause about the model.
    const std::string& reason() const { return reason_; }
    /// They are there: `step` goes on with them.
    int takeModel(std::string& error);
    /// Keeps the gains in the study and puts them at the end of its chain, or in the place of those
    /// that they replace. Non-zero on success.
    int keep(AStudy& study, const std::string& name, std::string& error) const;

    const AProgress& progress() const { return progress_; }
    void cancel() { progress_.Cancel(); }
    const AGains& gains() const { return solver_->gains(); }
    /// "G 320 of 340 solved, 12 failed, ..." for the log.
    std::string summary() const;

private:
    int needModel(const std::string& reason);
    int look(std::string& error);
    void beginStep(const char* text);

    AUVXFile file_, model_;
    AComponents components_;
    SelfCalibrationRules rules_;
    UvMarks marks_;
    std::string modelFile_, reason_;
    int wantsModel_ = 0, isList_ = 0, replaces_ = 0;
    AProgress progress_;
    std::unique_ptr<AProgressWriter> writer_;
    std::unique_ptr<UvReach> reach_;
    std::unique_ptr<SelfCalibration> solver_;
    int told_ = 0;
};

/// Keeps gains in the study, as SN table and as text. Their number, 0 with `error` on failure.
int keepGains(AStudy& study, const AGains& gains, std::string& error);

/// Keeps them and puts them at the end of the study's chain. Non-zero on success.
int addLink(AStudy& study, const AGains& gains, const std::string& name, std::string& error);

/// "phase 60 s".
std::string selfCalName(const ASelfCalPM& wish);

/// The components of a model image, a point for each cell. Non-zero on success, else `error` is a
/// line with the file's name.
int readModel(const std::string& file, AComponents& model, std::string& error);

/// What makes of visibilities those that a round, or the next one, is made of: the gains and flags
/// of the study that `data` names. Null with `error`, a line, when they cannot be read.
std::shared_ptr<UvFilter> correctionOf(const AStudy& study, const DataState& data,
                                       const UvHeader& header, std::string& error);

}  // namespace pavane
