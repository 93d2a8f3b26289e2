#include "apps/clean/DataPlots.h"

#include "apps/clean/CalibrationRun.h"
#include "apps/clean/CleanSession.h"
#include "apps/clean/ClosurePlotWindow.h"
#include "apps/clean/data_plot_menu.h"
#include "apps/clean/FlagPlotWindow.h"
#include "apps/view/same_file.h"
#include "pavane/progress/slices.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/flags/VisibilityFlags.h"
#include "tessel/paths.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned readTimer = 1, keepTimer = 2;
constexpr unsigned readPause = 5, keepPause = 300;
constexpr std::chrono::milliseconds slice{20};
constexpr std::int64_t pieceBytes = std::int64_t{1} << 18;
constexpr int progressPieces = 1000;
/// Milliseconds between two drawings of what has been read so far.
constexpr long long drawPause = 700;
constexpr const char* predictionName = "plot-model.uvfits";
constexpr const char* flagFilter = "Flags (*.txt *.flags)|*.txt *.flags|All files (*)|*|";

long long milliseconds()
{
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

/// The clock of reading and keeping.
class DataPlots::Runner : public CWnd
{
public:
    explicit Runner(DataPlots& plots) : plots_(plots) {}
    ~Runner() override { DestroyWindow(); }
    int Create() { return CWnd::Create("PavaneDataPlots", "", WS_POPUP, CRect(), nullptr, 0); }

protected:
    void OnTimer(unsigned id) override
    {
        if (id == readTimer)
            return plots_.tick();
        (void)KillTimer(keepTimer);
        plots_.keepFlags();
    }

private:
    DataPlots& plots_;
};

DataPlots::DataPlots(CleanSession& session)
    : session_(session), runner_(std::make_unique<Runner>(*this))
{
    (void)data_.listen([this] { dataChanged(); });
}

DataPlots::~DataPlots()
{
    windows_ = {};
    runner_.reset();
}

int DataPlots::hasWindow() const
{
    return std::any_of(windows_.begin(), windows_.end(),
                       [](const auto& each) { return each && each->GetSafeHwnd(); });
}

void DataPlots::tellWindows()
{
    for (const auto& window : windows_)
        if (window && window->GetSafeHwnd())
            window->Refresh();
}

/// The flags of the study are known; a study without data has none.
int DataPlots::isLoaded()
{
    if (!session_.isOpen() || !session_.study().hasData())
        return 0;
    if (isLoaded_)
        return 1;
    if (!runner_->GetSafeHwnd() && !runner_->Create())
        return 0;
    VisibilityFlags flags;
    const int number = session_.study().settings().flags;
    std::string error;
    if (number != 0 && !readFlags(session_.study().flagFile(number), flags, error)) {
        complain(session_.study().flagFile(number) + ": " + error);
        return 0;
    }
    isLoaded_ = 1;
    data_.setFlags(std::move(flags));
    keptVersion_ = data_.edits().version();
    return 1;
}

int DataPlots::show(Kind kind, CWnd* owner)
{
    if (!isLoaded())
        return 0;
    const auto at = static_cast<std::size_t>(kind);
    if (!windows_[at])
        windows_[at] = kind == Kind::closure
                           ? std::unique_ptr<DataPlotWindow>(new ClosurePlotWindow(*this))
                           : std::make_unique<FlagPlotWindow>(*this, kind == Kind::distance);
    if (!windows_[at]->GetSafeHwnd() && !windows_[at]->Open(owner)) {
        complain("The window of the plot cannot be made");
        return 0;
    }
    if (kind != Kind::closure && !shown().file())
        read();
    windows_[at]->Refresh();
    windows_[at]->SetFocus();
    return 1;
}

void DataPlots::close()
{
    keepFlags(1);
    for (const auto& window : windows_)
        if (window && window->GetSafeHwnd())
            window->DestroyWindow();
    data_.show(nullptr);
    past_.show(nullptr);
    file_.close();
    isLoaded_ = 0;
    data_.setFlags({});
    keptVersion_ = data_.edits().version();
    readModel_ = readRound_ = -1;
    writer_.reset();
}

/// The data need room that nobody uses then; the flags and their steps stay.
void DataPlots::windowClosed()
{
    keepFlags();
    const auto isShown = [this](Kind kind) {
        const auto& window = windows_[static_cast<std::size_t>(kind)];
        return window && window->GetSafeHwnd();
    };
    if (isShown(Kind::distance) || isShown(Kind::time))
        return;
    data_.show(nullptr);
    past_.show(nullptr);
    file_.close();
    writer_.reset();
}

// --- reading

int DataPlots::isFixed() const
{
    return source_ == PlotSource::round || !session_.isOpen() || session_.study().isReadOnly();
}

int DataPlots::correct(AUVXFile& file, DataState state)
{
    std::string error;
    std::shared_ptr<UvFilter> filter;
    if (source_ == PlotSource::original)
        state.chain.clear();
    filter = correctionOf(session_.study(), state, file.header(), error);
    if (!filter) {
        complain(error);
        return 0;
    }
    file.setFilter(std::move(filter));
    return 1;
}

int DataPlots::openData(AUVXFile& file, int withFlags)
{
    const AStudy& study = session_.study();
    const std::string name = study.uvfitsFile();
    std::string error;
    if (!file.open(name, error)) {
        complain(name + ": " + error);
        return 0;
    }
    keepFlags();
    const StudyRound* const round = study.round(session_.shown());
    DataState state = source_ == PlotSource::round && round ? round->data : study.dataState();
    if (!withFlags)
        state.flags = 0;
    return correct(file, state);
}

/// What corrects the data of now. Flags are shown as they are: they make no other data.
std::string DataPlots::gainsOfNow() const
{
    DataState state = session_.study().dataState();
    state.flags = 0;
    state.form.clear();
    state.start = state.end = 0;
    return AStudy::tagOf(state);
}

/// Shows the data of now in the windows of flags; reads them anew.
void DataPlots::read()
{
    data_.show(nullptr);
    past_.show(nullptr);
    file_.close();
    if (!openData(file_, 0))
        return tellWindows();
    if (source_ == PlotSource::round) {
        const StudyRound* const round = session_.study().round(session_.shown());
        VisibilityFlags flags;
        std::string error;
        const std::string name = round ? session_.study().flagFile(round->data.flags) : "";
        if (round && round->data.flags != 0 && !readFlags(name, flags, error))
            complain(name + ": " + error);
        past_.setFlags(std::move(flags));
        readRound_ = session_.shown();
    }
    readGains_ = gainsOfNow();
    shown().show(&file_);
    begin("Reading the visibilities");
    applyModel();
}

int DataPlots::modelOfNow() const
{
    const int wanted = modelRound_ == shownModel ? session_.shown() : modelRound_;
    const StudyRound* const round = session_.isOpen() ? session_.study().round(wanted) : nullptr;
    return round && round->hasModel ? wanted : noModel;
}

AComponents DataPlots::model()
{
    AComponents model;
    modelNote_.clear();
    const int round = modelOfNow();
    if (round == noModel)
        return model;
    std::string error;
    const std::string file = session_.study().mapFile(round, RoundMap::model);
    if (!readModel(file, model, error)) {
        if (error.starts_with(file + ": "))
            error.erase(0, file.size() + 2);
        modelNote_ = "no model is shown: it " + error;
        model = AComponents();
    }
    return model;
}

void DataPlots::applyModel()
{
    readModel_ = modelOfNow();
    shown().setModel(model());
    if (shown().isBusy() && !writer_)
        begin("Adding up the model");
}

void DataPlots::setSource(PlotSource source)
{
    if (std::exchange(source_, source) == source)
        return;
    read();
    tellWindows();
}

void DataPlots::setModelRound(int round)
{
    modelRound_ = round;
    if (shown().file())
        applyModel();
    tellWindows();
}

void DataPlots::begin(const char* text)
{
    progress_ = AProgress();
    writer_ = std::make_unique<AProgressWriter>(progress_);
    writer_->SetTotal(progressPieces);
    writer_->SetText(text);
    told_ = 0;
    shownAt_ = milliseconds();
    pause_ = drawPause;
    (void)runner_->SetTimer(readTimer, readPause);
    tellWindows();
}

void DataPlots::tick()
{
    if (!writer_ || !shown().isBusy())
        return end();
    // a drag is about what was shown when it began
    if (CWnd::GetCapture())
        return;
    if (writer_->IsCancelled())
        return stopReading();
    const int goesOn = runSlice(slice, [this] { return shown().step(pieceBytes); });
    if (!writer_)
        return;  // what was told of it has ended it
    const int now = static_cast<int>(std::clamp(shown().done(), 0.0, 1.0) * progressPieces);
    if (now > told_)
        writer_->Advance(now - std::exchange(told_, now));
    if (!goesOn)
        return end();
    if (const long long start = milliseconds(); start - shownAt_ > pause_) {
        shown().refresh();
        shownAt_ = milliseconds();
        constexpr long long parts = 10;  // of the time goes to drawing at most one
        pause_ = std::max(drawPause, parts * (shownAt_ - start));
    }
}

void DataPlots::end()
{
    (void)runner_->KillTimer(readTimer);
    if (writer_)
        (void)writer_->Finish();
    writer_.reset();
    if (!shown().modelFault().empty())
        modelNote_ = "no model is shown: it " + shown().modelFault();
    if (predicted_.isOpen() && !shown().isBusy()) {
        shown().keepModel();
        predicted_.close();
    }
    tellWindows();
}

void DataPlots::stopReading()
{
    if (!writer_)
        return;
    shown().stop();
    end();
    for (const auto& window : windows_)
        if (window && window->GetSafeHwnd())
            window->Tell("Stopped: a part of the data is shown");
}

// --- the study

void DataPlots::studyChanged()
{
    if (!isLoaded_ || !session_.isOpen())
        return;
    keepFlags();
    if (!hasWindow())
        return;
    const int isOther = source_ == PlotSource::round       ? readRound_ != session_.shown()
                        : source_ == PlotSource::corrected ? readGains_ != gainsOfNow()
                                                           : 0;
    if (predictedRound_ != noModel && !session_.isRunning() && takePrediction())
        return tellWindows();
    if (isOther && shown().file() && !session_.isRunning()) {
        read();
    } else if (shown().file() && readModel_ != modelOfNow()) {
        applyModel();
    }
    tellWindows();
}

void DataPlots::dataChanged()
{
    if (isLoaded_ && data_.edits().version() != keptVersion_)
        (void)runner_->SetTimer(keepTimer, keepPause);
    if (source_ != PlotSource::round && data_.isBusy() && !writer_)
        begin("Finding the flags");
}

void DataPlots::keepFlags(int isLeaving)
{
    if (!isLoaded_ || data_.edits().version() == keptVersion_ ||
        (session_.isRunning() && !isLeaving) || session_.study().isReadOnly())
        return;
    (void)runner_->KillTimer(keepTimer);
    AStudy& study = session_.study();
    StudySettings settings = study.settings();
    std::string text, error;
    settings.flags = 0;
    if (!data_.flags().lines.empty()) {
        if (!flagFileText(data_.flags(), text, error))
            return complain("The flags cannot be kept: the file " + error);
        settings.flags = study.addFlags(text);
        if (settings.flags == 0)
            return complain("The flags cannot be kept: " + study.fault());
    }
    if (!study.setSettings(settings))
        return complain(study.fault());
    keptVersion_ = data_.edits().version();
}

// --- commands

int DataPlots::run(unsigned id, CWnd* owner)
{
    switch (id) {
    case idPlotDistance:
        return show(Kind::distance, owner), 1;
    case idPlotTime:
        return show(Kind::time, owner), 1;
    case idPlotClosure:
        return show(Kind::closure, owner), 1;
    case idOpenFlags:
        return openFlags(owner), 1;
    case idSaveFlags:
        return saveFlags(owner), 1;
    case idRemoveFlags:
        return removeFlags(owner), 1;
    case idRoundFlags:
        return takeFlagsOfRound(owner), 1;
    case idUseFlags:
        return useFlags(), 1;
    case idPredictModel:
        return predictModel(), 1;
    default:
        return 0;
    }
}

/// In the status line of the window that the command came from.
void DataPlots::tell(CWnd* owner, const CString& text)
{
    if (auto* const window = dynamic_cast<DataPlotWindow*>(owner))
        window->Tell(text);
    else if (notice)
        notice(text);
}

void DataPlots::removeFlags(CWnd* owner)
{
    if (!isLoaded() || session_.study().isReadOnly())
        return;
    if (data_.removeFlags("Removal of all flags"))
        tell(owner, "All flags were removed; Ctrl+Z in a plot brings them back");
    else
        tell(owner, "There are no flags to remove");
}

void DataPlots::openFlags(CWnd* owner)
{
    if (!isLoaded() || session_.study().isReadOnly())
        return;
    CString name = folderOf(session_.data());
    if (!fnFileDialog1(name, flagFilter, "Open flags", 1, "txt", OFN_FILEMUSTEXIST, owner) ||
        name.empty())
        return;
    VisibilityFlags flags;
    std::string error;
    if (!readFlags(name, flags, error))
        return complain(name + ": " + error);
    (void)data_.replaceFlags(flags, "Opening of " + baseNameOf(name));
    const auto lines = flags.lines.size();
    tell(owner, std::to_string(lines) + (lines == 1 ? " line of " : " lines of ") +
                    baseNameOf(name) + (lines == 1 ? " is" : " are") +
                    " the flags now; Ctrl+Z in a plot brings back those of before");
}

void DataPlots::saveFlags(CWnd* owner)
{
    if (!isLoaded())
        return;
    CString name = folderOf(session_.data()) + "flags.txt";
    if (!fnFileDialog1(name, flagFilter, "Save flags", 0, "txt", OFN_OVERWRITEPROMPT, owner) ||
        name.empty())
        return;
    std::string error;
    if (isSameFile(name, session_.data()))
        return complain(name + ": is the file of the data, which is never written");
    if (writeFlags(name, shown().flags(), error))
        tell(owner, "Saved the flags in " + name);
    else
        complain(name + ": " + error);
}

void DataPlots::takeFlagsOfRound(CWnd* owner)
{
    const StudyRound* const round = isLoaded() ? session_.study().round(session_.shown()) : nullptr;
    if (!round || session_.study().isReadOnly())
        return;
    VisibilityFlags flags;
    std::string error;
    flags.referenceDay = data_.flags().referenceDay;
    const std::string name = session_.study().flagFile(round->data.flags);
    if (round->data.flags != 0 && !readFlags(name, flags, error))
        return complain(name + ": " + error);
    const std::string what = "round " + std::to_string(round->id);
    tell(owner, data_.replaceFlags(flags, "Flags of " + what)
                    ? "The flags of " + what + " are those of now"
                    : "They are those of " + what + " already");
}

/// The residual of the shown model on the data that are left.
void DataPlots::useFlags()
{
    if (!isLoaded())
        return;
    std::string error;
    if (session_.isRunning())
        return complain(session_.jobName() + " still runs");
    keepFlags();
    if (!session_.startResidual(error))
        complain(error);
}

// --- models that components are too many of

std::string DataPlots::predictionFile() const
{
    return session_.study().folder() + "/work/" + predictionName;
}

int DataPlots::canPredict() const
{
    return !modelNote_.empty() && modelOfNow() != noModel && !session_.isRunning() &&
           !session_.study().isReadOnly();
}

void DataPlots::predictModel()
{
    if (!isLoaded() || !canPredict())
        return;
    keepFlags();
    std::string error;
    predictedRound_ = modelOfNow();
    if (session_.startVisibilities(predictedRound_, predictionName, error))
        return;
    predictedRound_ = noModel;
    complain(error);
}

/// The engine has made them, or could not, which the user was told. Non-zero when they are shown.
int DataPlots::takePrediction()
{
    const int round = std::exchange(predictedRound_, noModel);
    std::string error;
    const std::string name = predictionFile();
    if (!shown().file() || round != modelOfNow() || !predicted_.open(name, error))
        return 0;
    (void)std::remove(name.c_str());  // what is open can be read to its end
    readModel_ = round;
    modelNote_.clear();
    shown().setModelFile(&predicted_);
    if (shown().isBusy() && !writer_)
        begin("Reading the model");
    return 1;
}

}  // namespace pavane
