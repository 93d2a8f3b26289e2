#include "apps/clean/CalibrationRun.h"

#include "pavane/calibration/gains/UvCorrection.h"
#include "pavane/imaging/round_maps.h"
#include "tessel/fits_map.h"
#include "tessel/flags/VisibilityFlags.h"
#include "tessel/gains/gain_files.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace pavane
{

namespace
{

constexpr int progressPieces = 1000;

/// A file that is only there to be written by somebody and read again.
class PassingFile
{
public:
    PassingFile(const std::string& folder, const std::string& ending)
        : name_(GetTempFileNameA(folder, "gains") + ending)
    {
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() { (void)std::remove(name_.c_str()); }
    const std::string& name() const { return name_; }

private:
    std::string name_;
};

}  // namespace

std::shared_ptr<UvFilter> correctionOf(const AStudy& study, const DataState& data,
                                       const UvHeader& header, std::string& error)
{
    GainChain chain;
    for (const int number : data.chain) {
        AGains gains;
        const std::string file = study.gainText(number);
        if (!readGainText(file, gains, error)) {
            error.insert(0, file + ": ");
            return nullptr;
        }
        (void)chain.add(baseNameOf(file), std::move(gains));
    }
    VisibilityFlags flags;
    if (data.flags != 0 && !readFlags(study.flagFile(data.flags), flags, error)) {
        error.insert(0, study.flagFile(data.flags) + ": ");
        return nullptr;
    }
    UvCorrectionRules rules;
    rules.keepsFailed = data.keepsFailed;
    rules.keepsWeights = data.keepsWeights;
    return std::make_shared<UvCorrection>(header, chain, flags, rules);
}

int readModel(const std::string& file, AComponents& model, std::string& error)
{
    FitsMap map;
    if (readFitsMap(file, 0, map, error) && componentsOfModel(map, model, error))
        return 1;
    error.insert(0, file + ": ");
    return 0;
}

std::string selfCalName(const ASelfCalPM& wish)
{
    constexpr const char* kinds[] = {"phase", "amplitude", "both"};
    const std::string kind = kinds[static_cast<std::size_t>(wish.kind)];
    if (wish.isWhole)
        return kind + " whole time";
    return wish.seconds > 0 ? kind + ' ' + valToStr(wish.seconds) + " s" : kind + " scans";
}

int CalibrationRun::begin(const AStudy& study, const AComponents& model,
                          const SelfCalibrationRules& rules, std::string& error)
{
    const std::string data = study.uvfitsFile();
    if (!file_.open(data, error)) {
        error.insert(0, data + ": ");
        return 0;
    }
    std::shared_ptr<UvFilter> correction =
        correctionOf(study, study.dataState(), file_.header(), error);
    if (!correction)
        return 0;
    file_.setFilter(std::move(correction));
    solver_ = std::make_unique<SelfCalibration>(file_, model, rules);
    progress_ = AProgress();
    writer_ = std::make_unique<AProgressWriter>(progress_);
    writer_->SetTotal(progressPieces);
    writer_->SetText("Solving for gains");
    told_ = 0;
    return 1;
}

int CalibrationRun::step(std::string& error)
{
    error.clear();
    if (writer_->IsCancelled()) {
        writer_.reset();
        error = "it was stopped";
        return 0;
    }
    const int goesOn = solver_->step();
    const int now = static_cast<int>(std::clamp(solver_->done(), 0.0, 1.0) * progressPieces);
    writer_->Advance(now - std::exchange(told_, now));
    if (goesOn)
        return 1;
    error = solver_->error();
    if (error.empty())
        writer_->Finish();
    else
        writer_->Fail(error);
    return 0;
}

std::string CalibrationRun::summary() const
{
    const AGains& found = gains();
    const SelfCalibrationCounts& counts = solver_->counts();
    std::string text = std::to_string(found.count(GainState::solved)) + " gains, " +
                       std::to_string(found.count(GainState::failed)) + " failed, " +
                       std::to_string(found.count(GainState::missing)) + " without data, from " +
                       std::to_string(counts.used) + " visibilities";
    for (const double factor : solver_->factors())
        if (factor != 1) {
            text += "; amplitudes were scaled by";
            for (const double each : solver_->factors())
                text += ' ' + std::to_string(each);
            break;
        }
    return text;
}

int keepGains(AStudy& study, const AGains& gains, std::string& error)
{
    const PassingFile table(study.folder() + "/work", ".fits");
    const PassingFile text(study.folder() + "/work", ".txt");
    if (!writeGainTable(table.name(), gains, error) || !writeGainText(text.name(), gains, error)) {
        error.insert(0, "the gains cannot be kept: ");
        return 0;
    }
    const int number = study.addGains(table.name(), text.name());
    if (number == 0)
        error = study.fault();
    return number;
}

int addLink(AStudy& study, const AGains& gains, const std::string& name, std::string& error)
{
    const int number = keepGains(study, gains, error);
    if (number == 0)
        return 0;
    StudySettings settings = study.settings();
    StudyLink link;
    link.gains = number;
    link.name = name;
    for (const StudyLink& each : settings.chain) {
        link.id = std::max(link.id, each.id);
        if (each.isOn)
            link.solvedOn.push_back(each.id);
    }
    ++link.id;
    settings.chain.push_back(link);
    if (study.setSettings(settings))
        return 1;
    error = study.fault();
    return 0;
}

int CalibrationRun::keep(AStudy& study, const std::string& name, std::string& error) const
{
    return addLink(study, gains(), name, error);
}

}  // namespace pavane
