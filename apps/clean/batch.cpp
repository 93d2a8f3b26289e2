#include "apps/clean/batch.h"

#include "apps/clean/CalibrationRun.h"
#include "apps/clean/ChainEdits.h"
#include "apps/clean/CleanSession.h"
#include "apps/view/any_area_file.h"
#include "apps/view/batch_output.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/tables/components/AComponents.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/profile.h"
#include "tessel/flags/VisibilityFlags.h"
#include "tessel/paths.h"
#include "tessel/SkyCoordinates.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace pavane
{

namespace
{

constexpr int digits = 5;

/// The steps of a command line, one after another, each until its children have ended.
class Batch
{
public:
    explicit Batch(const CleanOptions& options) : options_(options)
    {
        session_.ended = [this](int isDone, const CString& error) {
            isDone_ = isDone;
            error_ = isDone || !error.empty() ? std::string(error) : "it was stopped";
            PostQuitMessage(0);
        };
        session_.noted = [](const CString& line) {
            std::string ignored;
            (void)printText("note " + line + "\n", ignored);
        };
    }

    int run(std::string& error)
    {
        if (!session_.open(options_, error))
            return 0;
        if (!session_.study().hasData() || session_.study().rounds().empty()) {
            if (!session_.startImport(error) || !wait(error))
                return 0;
        } else if (!takeParameters(error)) {
            return 0;
        }
        printRound(session_.shown());
        for (const CleanStep& step : options_.steps)
            if (!take(step, error))
                return 0;
        return options_.out.empty() || (session_.startExport(options_.out, error) && wait(error));
    }

private:
    int wait(std::string& error)
    {
        if (session_.isRunning())
            (void)RunMessages();
        if (!isDone_)
            error = error_.empty() ? "it was stopped" : error_;
        return isDone_;
    }

    /// Of a study that is there: maps of what the options ask for, when it has others.
    int takeParameters(std::string& error)
    {
        if (!options_.hasMap)
            return 1;
        CleanParameters wanted = options_.parameters;
        if (!(wanted.cell > 0))
            wanted.cell = session_.parameters.cell;
        const StudyRound* const shown = session_.study().round(session_.shown());
        session_.parameters = wanted;
        if (shown && !isOtherBeam(wanted, shown->parameters))
            return 1;
        return session_.startFirstMaps(error) && wait(error);
    }

    int take(const CleanStep& step, std::string& error)
    {
        switch (step.kind) {
        case CleanStep::areas:
            return readAreas(step.file, error);
        case CleanStep::model:
            return readModel(step.file, error);
        case CleanStep::round:
            return clean(step.round_, error);
        case CleanStep::from:
            if (!session_.study().round(step.number)) {
                error = "the study has no round " + std::to_string(step.number);
                return 0;
            }
            return session_.show(step.number, error);
        case CleanStep::chain:
            return takeChain(step, error);
        case CleanStep::flags:
            return readFlagFile(step.file, error);
        case CleanStep::selfcal:
            return selfCalibrate(step.selfcal_, error);
        }
        return 0;
    }

    int readAreas(const std::string& file, std::string& error)
    {
        areas_.clear();
        if (file.empty())
            return 1;
        MapContent map;
        std::string on = session_.fileOf(session_.shown(), MapKind::residual);
        if (on.empty())
            on = session_.fileOf(session_.shown(), MapKind::dirty);
        if (on.empty() || !readMapContent(on, 0, map, error)) {
            error = on.empty() ? "there is no map for the areas yet" : on + ": " + error;
            return 0;
        }
        SkyCoordinates sky;
        std::string noSky;
        (void)sky.init(map.map.header, noSky);
        const AreaPlace place{map.frame.centres(), map.map.cells.rows(), map.map.cells.columns(),
                              &sky};
        ATrackerArrayInAxis read;
        AreaNotes notes;
        if (!openAreas(file, place, read, notes, error))
            return 0;
        if (!notes.loss.empty()) {
            error = file + ": " + notes.lossText();
            return 0;
        }
        MemoryFile bytes;
        if (read.count() > 0 && !storeAreas(read, bytes)) {
            error = "there is not enough memory for the areas";
            return 0;
        }
        areas_ = bytes.bytes();
        return 1;
    }

    /// "0.5" or "0.5,EAST,NORTH": Jy, milliarcseconds from the phase centre.
    static int readPoint(const std::string& text, AComponents& components, std::string& error)
    {
        constexpr double arcsecond = 1e3, degree = 3.14159265358979323846 / 180;
        double numbers[3] = {0, 0, 0};
        std::size_t count = 0;
        for (std::size_t start = 0; start <= text.size() && count < std::size(numbers); ++count) {
            const std::size_t end = std::min(text.find(',', start), text.size());
            if (!stoval(text.substr(start, end - start), numbers[count]))
                break;
            start = end + 1;
        }
        if ((count != 1 && count != std::size(numbers)) || !(numbers[0] > 0) ||
            std::count(text.begin(), text.end(), ',') + 1 != static_cast<std::ptrdiff_t>(count)) {
            error = "a point wants FLUX or FLUX,EAST,NORTH (Jy above 0, mas), not '" + text + "'";
            return 0;
        }
        ACompItem item;
        item.type = pointComponent;
        item.PeakFlux() = numbers[0];
        item.Distance() = std::hypot(numbers[1], numbers[2]) / arcsecond;
        item.Angle() =
            numbers[1] == 0 && numbers[2] == 0 ? 0 : std::atan2(numbers[1], numbers[2]) / degree;
        components.Add(item);
        return 1;
    }

    int readModel(const std::string& file, std::string& error)
    {
        AComponents components;
        const std::string point = "point=";
        if (file.compare(0, point.size(), point) == 0)
            return readPoint(file.substr(point.size()), components, error) &&
                   makeModel(components, error);
        std::ifstream in(file);
        if (!in) {
            error = file + ": cannot be read";
            return 0;
        }
        components.Load(in);
        if (components.count() == 0) {
            error = file + ": there is no component in it";
            return 0;
        }
        return makeModel(components, error);
    }

    int makeModel(const AComponents& components, std::string& error)
    {
        if (!session_.startModel(components, error) || !wait(error))
            return 0;
        printRound(session_.shown());
        return 1;
    }

    int clean(const RoundWish& wish, std::string& error)
    {
        const CleanParameters common = session_.parameters;
        session_.parameters = wish.over(common);
        const int isDone = session_.startRound(areas_, error) && wait(error);
        session_.parameters = common;
        if (isDone)
            printRound(session_.shown());
        return isDone;
    }

    int readFlagFile(const std::string& file, std::string& error)
    {
        VisibilityFlags flags;
        if (!readFlags(file, flags, error)) {
            error.insert(0, file + ": ");
            return 0;
        }
        std::ifstream in(file, std::ios::binary);
        std::ostringstream bytes;
        bytes << in.rdbuf();
        AStudy& study = session_.study();
        StudySettings settings = study.settings();
        settings.flags = study.addFlags(bytes.str());
        if (settings.flags == 0 || !study.setSettings(settings)) {
            error = study.fault();
            return 0;
        }
        if (!session_.startResidual(error) || !wait(error))
            return 0;
        printRound(session_.shown());
        return 1;
    }

    int takeChain(const CleanStep& step, std::string& error)
    {
        AStudy& study = session_.study();
        const StudyRound* const shown = study.round(session_.shown());
        chain_.follow(study.settings().chain, "Gains that were solved for");
        for (const int each : step.gains)
            if (!IsFileExists(study.gainText(each))) {
                error = "the study has no gains " + std::to_string(each);
                return 0;
            }
        if (!chain_.take(step.isRoundChain && shown ? shown->data.chain : step.gains))
            return 1;
        StudySettings settings = study.settings();
        settings.chain = chain_.chain();
        if (!study.setSettings(settings)) {
            error = study.fault();
            return 0;
        }
        if (shown && shown->data == study.dataState(shown->parameters))
            return 1;
        if (!session_.startResidual(error) || !wait(error))
            return 0;
        printRound(session_.shown());
        return 1;
    }

    int selfCalibrate(const SelfCalWish& asked, std::string& error)
    {
        ASelfCalPM wish;
        wish.kind = asked.kind;
        wish.isWhole = asked.seconds < 0;
        wish.seconds = asked.seconds;
        wish.isScaled = asked.isScaled;
        wish.leastRatio = asked.leastRatio;
        wish.leastAntennas = asked.leastAntennas;
        wish.references = asked.references;
        wish.leastUv = asked.uvLow;
        wish.mostUv = asked.uvHigh;
        wish.usesWeights = !asked.isEqual;
        wish.groups = asked.groups;
        if (asked.isPredicted)
            wish.model = SelfCalModel::predicted;
        StudySettings settings = session_.study().settings();
        settings.keepsFailed = asked.keepsFailed;
        settings.keepsWeights = asked.keepsWeights;
        if (!session_.study().setSettings(settings)) {
            error = session_.study().fault();
            return 0;
        }
        if (!session_.startSelfCal(wish, error) || !wait(error))
            return 0;
        printRound(session_.shown());
        return 1;
    }

    void printRound(int number) const
    {
        const StudyRound* const round = session_.study().round(number);
        if (!round)
            return;
        std::string text = statLine("round", number, digits, "");
        const RoundNumbers& numbers = round->numbers;
        text += statLine("iterations", static_cast<double>(numbers.allIterations), 10, "");
        if (numbers.maskCells > 0)
            text += statLine("mask_cells", static_cast<double>(numbers.maskCells), 10, "");
        const struct {
            const char* name;
            double value;
            const char* unit;
        } lines[] = {{"model_flux", numbers.modelFlux, "Jy"},
                     {"residual_peak", numbers.peak, "Jy/beam"},
                     {"noise_outside", numbers.noiseOutside, "Jy/beam"},
                     {"noise_inside", numbers.noiseInside, "Jy/beam"},
                     {"restored_flux", numbers.restoredFlux, "Jy"},
                     {"dynamic_range", numbers.dynamicRange, ""}};
        for (const auto& line : lines)
            if (std::isfinite(line.value))
                text += statLine(line.name, line.value, digits, line.unit);
        std::string ignored;
        (void)printText(text, ignored);
    }

    const CleanOptions& options_;
    CleanSession session_;
    std::string areas_;
    ChainEdits chain_;  ///< knows links that earlier steps have taken off
    int isDone_ = 0;
    std::string error_;
};

}  // namespace

int runCleanBatch(char** argv, const CleanOptions& options, std::string& error)
{
    SetProfileProgram("pavane-clean");
    // children tell by messages, which need windows, and windows no display
    (void)setenv("QT_QPA_PLATFORM", "offscreen", 0);
    if (!InitPlatform(1, argv, PlatformUse::windows, error))
        return 0;
    int isDone = 0;
    {
        Batch batch(options);
        isDone = batch.run(error);
    }
    ShutdownPlatform();
    return isDone;
}

}  // namespace pavane
