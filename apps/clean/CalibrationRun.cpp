#include "apps/clean/CalibrationRun.h"

#include "apps/clean/ChainEdits.h"
#include "apps/clean/PassingFile.h"
#include "pavane/calibration/gains/UvCorrection.h"
#include "pavane/imaging/round_maps.h"
#include "tessel/fits_map.h"
#include "tessel/flags/VisibilityFlags.h"
#include "tessel/gains/gain_files.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace pavane
{

namespace
{

constexpr int progressPieces = 1000;

/// Leaves of groups the IFs that a map is made of; without groups each is one.
void takeIfs(const std::vector<int>& ifs, std::vector<std::vector<int>>& groups)
{
    if (ifs.empty())
        return;
    if (groups.empty())
        for (const int each : ifs)
            groups.push_back({each});
    for (std::vector<int>& group : groups)
        std::erase_if(
            group, [&](int each) { return std::find(ifs.begin(), ifs.end(), each) == ifs.end(); });
    std::erase_if(groups, [](const std::vector<int>& group) { return group.empty(); });
}

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

CalibrationRun::~CalibrationRun()
{
    if (!modelFile_.empty())
        (void)std::remove(modelFile_.c_str());
}

int CalibrationRun::begin(const AStudy& study, const StudyRound& round, const ASelfCalPM& wish,
                          const Choice& choice, std::string& error)
{
    const std::string data = study.uvfitsFile();
    if (!round.hasModel) {
        error = "round " + std::to_string(round.id) + " has no model yet: clean first";
        return 0;
    }
    if (!file_.open(data, error)) {
        error.insert(0, data + ": ");
        return 0;
    }
    DataState state = study.dataState(round.parameters);
    replaces_ = choice.replaces;
    if (replaces_ > 0) {
        state.chain.clear();
        for (const StudyLink& each : study.settings().chain) {
            if (each.id == replaces_)
                break;
            if (each.isOn)
                state.chain.push_back(each.gains);
        }
    }
    std::shared_ptr<UvFilter> correction = correctionOf(study, state, file_.header(), error);
    if (!correction)
        return 0;
    file_.setFilter(std::move(correction));
    rules_ = wish.rules();
    takeIfs(round.parameters.ifs, rules_.frame.groups);
    marks_ = UvMarks();
    if (state.start != state.end)
        marks_.times = {state.start, std::nextafter(state.end, state.start)};
    modelFile_ = study.folder() + "/work/" + modelName;
    if (wish.model == SelfCalModel::predicted)
        return needModel("is predicted, as was chosen");
    isList_ = choice.list != nullptr;
    if (isList_) {
        components_ = *choice.list;
    } else {
        const std::string file = study.mapFile(round.id, RoundMap::model);
        FitsMap map;
        if (!readFitsMap(file, 0, map, error)) {
            error.insert(0, file + ": ");
            return 0;
        }
        if (std::string why; !componentsOfModel(map, components_, why))
            return needModel(why);
    }
    reach_ = std::make_unique<UvReach>(file_, marks_);
    constexpr double shares[] = {0.1, 0.9};  // of looking at places and of solving
    writer_ = std::make_unique<AProgressWriter>(progress_);
    writer_->SetSteps(shares);
    beginStep("Looking at the data");
    return 1;
}

void CalibrationRun::beginStep(const char* text)
{
    writer_->SetTotal(progressPieces);
    writer_->SetText(text);
    told_ = 0;
}

int CalibrationRun::needModel(const std::string& reason)
{
    reason_ = reason;
    components_ = AComponents();
    reach_.reset();
    return wantsModel_ = 1;
}

int CalibrationRun::takeModel(std::string& error)
{
    wantsModel_ = 0;
    if (!model_.open(modelFile_, error)) {
        error.insert(0, modelFile_ + ": ");
        return 0;
    }
    solver_ = std::make_unique<SelfCalibration>(file_, model_, rules_, marks_);
    progress_ = AProgress();
    writer_ = std::make_unique<AProgressWriter>(progress_);
    beginStep("Solving for gains");
    return 1;
}

/// How far the data reach, which decides how the model's visibilities are made.
int CalibrationRun::look(std::string& error)
{
    if (reach_->step())
        return 1;
    error = reach_->error();
    if (!error.empty())
        return 0;
    std::string reason;
    switch (modelWay(ModelVisibilities(components_), *reach_)) {
    case ModelWay::tooWide:
        reason = "reaches so far from the centre that the sky is not flat";
        break;
    case ModelWay::tooMany:
        reason = "has " + std::to_string(components_.count()) +
                 " components, too many to be added up for " + std::to_string(reach_->places()) +
                 " visibilities";
        break;
    case ModelWay::components:
        break;
    }
    if (!reason.empty() && isList_) {
        error = "the list of components " + reason +
                ": make a round of it, whose model the engine predicts";
        return 0;
    }
    if (!reason.empty())
        return needModel(reason), 0;
    reach_.reset();
    solver_ = std::make_unique<SelfCalibration>(file_, components_, rules_, marks_);
    beginStep("Solving for gains");
    return 1;
}

int CalibrationRun::step(std::string& error)
{
    error.clear();
    if (wantsModel_)
        return 0;
    if (writer_->IsCancelled()) {
        writer_.reset();
        error = "it was stopped";
        return 0;
    }
    const int looks = reach_ != nullptr;
    const int goesOn = looks ? look(error) : solver_->step();
    if (wantsModel_)
        return 0;
    if (looks && !reach_ && error.empty())
        return 1;  // the next step has begun
    const double done = looks ? reach_->done() : solver_->done();
    const int now = static_cast<int>(std::clamp(done, 0.0, 1.0) * progressPieces);
    writer_->Advance(now - std::exchange(told_, now));
    if (goesOn)
        return 1;
    if (!looks)
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
    (void)addLinkTo(settings.chain, number, name);
    if (study.setSettings(settings))
        return 1;
    error = study.fault();
    return 0;
}

int CalibrationRun::keep(AStudy& study, const std::string& name, std::string& error) const
{
    StudySettings settings = study.settings();
    const auto link = std::find_if(settings.chain.begin(), settings.chain.end(),
                                   [this](const StudyLink& each) { return each.id == replaces_; });
    if (replaces_ == 0 || link == settings.chain.end())
        return addLink(study, gains(), name, error);
    const int number = keepGains(study, gains(), error);
    if (number == 0)
        return 0;
    replaceLink(settings.chain, static_cast<std::size_t>(link - settings.chain.begin()), number,
                name);
    if (study.setSettings(settings))
        return 1;
    error = study.fault();
    return 0;
}

}  // namespace pavane
