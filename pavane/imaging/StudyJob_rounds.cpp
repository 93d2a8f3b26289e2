#include "pavane/imaging/study_text.h"
#include "pavane/imaging/study_words.h"
#include "pavane/imaging/StudyJob_work.h"
#include "tessel/folders.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string_view>

namespace pavane
{

namespace
{

constexpr const char* roundFolder = "rounds/.new";
constexpr double degreeInArcseconds = 3600;

bool isSameGrid(const CleanParameters& a, const CleanParameters& b)
{
    return a.width == b.width && a.height == b.height && a.cell == b.cell && a.shiftX == b.shiftX &&
           a.shiftY == b.shiftY;
}

std::string bitsOf(const ABitMatrix& mask)
{
    std::string bytes = std::to_string(mask.rows()) + " " + std::to_string(mask.columns()) + "\n";
    for (int r = 0; r < mask.rows(); ++r)
        bytes.append(reinterpret_cast<const char*>(mask.row(r)),
                     static_cast<std::size_t>(mask.rowWords()) * sizeof(ABitMatrix::Word));
    return bytes;
}

}  // namespace

int StudyJob::Work::beginRound(RoundKind kind, int parent, const CleanParameters& parameters)
{
    made = StudyRound();
    made.id = study.nextRoundId();
    made.parent = parent;
    made.kind = kind;
    made.parameters = parameters;
    made.data = study.dataState(parameters);
    // a round knows what its data are by its parameters
    if (made.data.start == made.data.end)
        made.parameters.start = made.parameters.end = 0;
    made.maps = mapsKey = AStudy::mapsKey(made.data, parameters);
    commands.clear();
    mask = ABitMatrix();
    startModel.clear();
    doneBefore = 0;
    cyclesBefore = grown = 0;
    lastPeak = -1;
    state.cleans = 0;
    state.fraction = -1;
    return 1;
}

/// The beam that the engine fitted stands in its beam map.
void StudyJob::Work::useBeam()
{
    if (beam.header.hasBeam)
        made.beam = {beam.header.bmaj * degreeInArcseconds, beam.header.bmin * degreeInArcseconds,
                     beam.header.bpa};
}

int StudyJob::Work::registerRound()
{
    std::string why;
    const std::string folder = std::string(roundFolder) + "/";
    made.numbers.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    made.commands = commands;
    std::string text = logText;
    if (linesLost)
        text += "... and " + std::to_string(linesLost) + " lines more\n";
    if (!writeWhole(path(folder + "log.txt"), text, why))
        return fail(folder + "log.txt " + why);
    if (!study.addRound(made, path(roundFolder)))
        return fail("the study: it " + study.fault());
    logText.clear();
    linesLost = 0;
    return choose(made.id);
}

int StudyJob::Work::choose(int id)
{
    result = id;
    StudySettings settings = study.settings();
    settings.round = id;
    return study.setSettings(settings) ? 1 : fail("the study: it " + study.fault());
}

namespace
{

/// Empties the folder in which a round is put together.
int emptyFolder(const std::string& folder, std::string& why)
{
    return removeAll(folder, why) && makeFolders(folder, why);
}

}  // namespace

int StudyJob::Work::registerDirty()
{
    std::string why;
    useBeam();
    measureRound(dirty, nullptr, nullptr, mask, made.numbers);
    return emptyFolder(path(roundFolder), why) ? registerRound()
                                               : fail(std::string(roundFolder) + " " + why);
}

int StudyJob::Work::planFirst(const CleanParameters& parameters)
{
    const DataState data = study.dataState(parameters);
    const std::string key = AStudy::mapsKey(data, parameters);
    for (const StudyRound& each : study.rounds())
        if (each.kind == RoundKind::dirty && each.maps == key && each.data == data &&
            study.hasMap(each.id, RoundMap::dirty) && study.hasMap(each.id, RoundMap::beam)) {
            const int id = each.id;
            before([this, id] { return choose(id); });
            return 1;
        }
    before([this] { return registerDirty(); });
    before([this, data, parameters] { return needMaps(data, parameters); });
    before([this, data] { return needData(data); });
    return beginRound(RoundKind::dirty, -1, parameters);
}

int StudyJob::Work::planResidual(int parent, const CleanParameters& parameters)
{
    const StudyRound* const from = study.round(parent);
    if (!from)
        return fail("there is no round " + std::to_string(parent));
    if (!isSameGrid(from->parameters, parameters))
        return fail("round " + std::to_string(parent) +
                    " was made with another size, cell or centre");
    if (!from->hasModel)
        return planFirst(parameters);
    const DataState data = study.dataState(parameters);
    // pushed in front in reverse order
    before([this] {
        EngineTask task = taskFor(made.parameters);
        task.beam = "shared/" + mapsKey + "-psf.fits";
        task.model = relative(study.mapFile(made.parent, RoundMap::model));
        return runSteps(programs.engine->residual(task), [this] {
            std::string why;
            if (!emptyFolder(path(roundFolder), why))
                return fail(std::string(roundFolder) + " " + why);
            const std::string folder = std::string(roundFolder) + "/";
            useBeam();
            measureRound(maps[EngineFile::residual], &maps[EngineFile::model], nullptr, mask,
                         made.numbers);
            if (const StudyRound* const old = study.round(made.parent))
                made.numbers.allIterations = old->numbers.allIterations;
            made.hasModel = 1;
            if (!move(files[EngineFile::residual], folder + "residual.fits") ||
                !move(files[EngineFile::model], folder + "model.fits") || !registerRound())
                return 0;
            // the column holds the model of the parent, which is this one's
            return study.setModelTag({1, AStudy::tagOf(made)})
                       ? 1
                       : fail("the study: it " + study.fault());
        });
    });
    before([this] { return needModel(made.parent); });
    before([this] {
        // in the areas of its parent, so that their noises compare
        const StudyRound* const parentRound = study.round(made.parent);
        return parentRound ? keepMask(study.areasOf(*parentRound)) : 1;
    });
    before([this, data, parameters] { return needMaps(data, parameters); });
    before([this, data] { return needData(data); });
    return beginRound(RoundKind::residual, parent, parameters);
}

int StudyJob::Work::planClean(int parent, const CleanParameters& parameters,
                              const std::string& areas)
{
    if (const std::string wrong = faultOf(parameters); !wrong.empty())
        return fail(wrong);
    if (parent < 0) {
        // on the dirty map, once it is there
        before([this, parameters, areas] { return planClean(result, parameters, areas); });
        return planFirst(parameters);
    }
    const StudyRound* const from = study.round(parent);
    if (!from)
        return fail("there is no round " + std::to_string(parent));
    const DataState data = study.dataState(parameters);
    const bool isOther = from->data != data || from->maps != AStudy::mapsKey(data, parameters);
    if (isOther) {
        before([this, parameters, areas] { return planClean(result, parameters, areas); });
        return planResidual(parent, parameters);
    }
    before([this] { return cleanOnce(); });
    before([this] { return startCleaning(); });
    before([this, areas] { return keepMask(areas); });
    before([this] { return needModel(made.parent); });
    before([this, data, parameters] { return needMaps(data, parameters); });
    before([this, data] { return needData(data); });
    return beginRound(RoundKind::clean, parent, parameters);
}

int StudyJob::Work::keepMask(const std::string& areas)
{
    std::string why;
    if (!maskOfAreas(areas, dirty.header, dirty.rows, dirty.columns, mask, why))
        return fail(why);
    made.areas = study.keepAreas(areas);
    if (made.areas.empty() && !areas.empty())
        return fail("the study: " + study.fault());
    if (mask.rows() == 0)
        return 1;
    made.mask = "mask-" + contentKey(bitsOf(mask) + made.maps);
    const std::string file = "shared/" + made.mask + ".fits";
    return IsFileExists(path(file)) || writeMask(file);
}

int StudyJob::Work::writeMask(const std::string& file)
{
    const std::string aside = "work/new/mask.fits";
    before({[this, aside] {
                const auto cells =
                    std::make_shared<std::vector<float>>(static_cast<std::size_t>(mask.columns()));
                return write(aside, dirty.header, 0, [this, cells](int row) {
                    fillMaskRow(mask, row, cells->data());
                    return cells->data();
                });
            },
            [this, aside] { return sync(aside); },
            [this, aside, file] {
                std::string why;
                return renameWhole(path(aside), path(file), why) ? 1 : fail(file + " " + why);
            }});
    return 1;
}

int StudyJob::Work::startCleaning()
{
    const StudyRound* const from = study.round(made.parent);
    std::string why;
    if (!from)
        return fail("there is no round " + std::to_string(made.parent));
    if (!emptyFolder(path(roundFolder), why))
        return fail(std::string(roundFolder) + " " + why);
    useBeam();
    startModel = from->hasModel ? relative(study.mapFile(made.parent, RoundMap::model)) : "";
    made.numbers.allIterations = from->numbers.allIterations;
    state.peak = state.firstPeak = -1;
    state.fraction = -1;
    state.limit = made.parameters.iterations;
    state.iterations = 0;
    state.cycle = 0;
    const std::string name = relative(study.mapFile(made.parent, RoundMap::residual));
    const int isInSigma = made.parameters.unit == ThresholdUnit::sigma;
    return read(name, isInSigma,
                [this, name, isInSigma](const MeasuredMap* residual, const std::string& fault) {
                    if (!residual)
                        return fail(name + " " + fault);
                    const double threshold = made.parameters.threshold;
                    made.numbers.threshold =
                        isInSigma ? threshold * noiseOutside(*residual) : threshold * 1e-3;
                    state.threshold = made.numbers.threshold;
                    lastPeak = std::abs(residual->sums.peakInside().value);
                    return 1;
                });
}

int StudyJob::Work::cleanOnce()
{
    EngineTask task = taskFor(made.parameters);
    const std::string shared = "shared/" + mapsKey;
    task.dirty = shared + "-dirty.fits";
    task.beam = shared + "-psf.fits";
    task.model = startModel;
    task.mask = made.mask.empty() ? "" : "shared/" + made.mask + ".fits";
    task.threshold = made.numbers.threshold;
    task.iterations = made.parameters.iterations - doneBefore;
    task.majorCycles = made.parameters.stopsEachCycle ? 1 : 0;
    state.cleans = 1;
    return runSteps(programs.engine->round(task), [this] { return endCycle(); });
}

/// After a child of a round that stops after each cycle: non-zero when there comes no other.
int StudyJob::Work::isCycleLast()
{
    const EngineNews& news = state.news;
    const double peak = std::abs(maps[EngineFile::residual].sums.peakInside().value);
    grown = lastPeak >= 0 && peak > lastPeak ? grown + 1 : 0;
    lastPeak = peak;
    const char* reason = nullptr;
    if (isFinishing)
        reason = "the user let this cycle be the last";
    else if (news.iterations == 0)
        reason = "nothing was left to clean";
    else if (doneBefore >= made.parameters.iterations)
        reason = "maximum number of iterations was reached";
    else if (peak <= made.numbers.threshold)
        reason = "the threshold was reached";
    else if (grown >= 2)
        reason = "the peak has grown in two cycles";
    if (reason)
        made.stopReason = reason;
    return reason != nullptr;
}

int StudyJob::Work::endCycle()
{
    doneBefore += state.news.iterations;
    cyclesBefore += std::max(state.news.cycle, 1);
    made.stopReason = state.news.stopReason;
    const std::string folder = std::string(roundFolder) + "/";
    if (!move(files[EngineFile::residual], folder + "residual.fits") ||
        !move(files[EngineFile::model], folder + "model.fits"))
        return 0;
    if (made.parameters.stopsEachCycle && !isCycleLast()) {
        startModel = folder + "model.fits";
        return cleanOnce();
    }
    state.cleans = 0;
    made.hasModel = 1;
    made.numbers.iterations = doneBefore;
    made.numbers.allIterations += doneBefore;
    made.numbers.cycles = cyclesBefore;
    measureRound(maps[EngineFile::residual], &maps[EngineFile::model],
                 maps.count(EngineFile::restored) ? &maps[EngineFile::restored] : nullptr, mask,
                 made.numbers);
    if (!registerRound())
        return 0;
    state.fraction = 1;
    showProgress();
    // with a major gain of 1 the engine does not go back to the visibilities, and leaves the
    // column as it was
    if (made.parameters.majorGain >= 1 || doneBefore == 0)
        return 1;
    return study.setModelTag({1, AStudy::tagOf(made)}) ? 1 : fail("the study: it " + study.fault());
}

int StudyJob::Work::planRestore(int id, const MapBeam& beam)
{
    const StudyRound* const round = study.round(id);
    if (!round)
        return fail("there is no round " + std::to_string(id));
    if (!round->hasModel)
        return fail("round " + std::to_string(id) + " has no model to restore");
    const MapBeam used = beam.isSet() ? beam : round->beam;
    if (!used.isSet())
        return fail("no beam is known");
    result = id;
    if (study.hasMap(id, RoundMap::restored, beam))
        return 1;
    made.parameters = round->parameters;  // whose size the map has
    EngineTask task = taskFor(round->parameters);
    task.model = relative(study.mapFile(id, RoundMap::model));
    task.residual = relative(study.mapFile(id, RoundMap::residual));
    task.restoring = used;
    return runSteps(programs.engine->restore(task), [this, id, beam] {
        return study.addRestored(id, beam, path(files[EngineFile::restored]))
                   ? 1
                   : fail("the study: " + study.fault());
    });
}

int StudyJob::Work::planModel(int parent, const CleanParameters& parameters,
                              const AComponents& components)
{
    if (const std::string wrong = faultOf(parameters); !wrong.empty())
        return fail(wrong);
    const DataState data = study.dataState(parameters);
    const std::string start = "work/new/start.fits";
    before([this, start] {
        // the column holds the new model now
        EngineTask task = taskFor(made.parameters);
        task.beam = "shared/" + mapsKey + "-psf.fits";
        task.model = start;
        return runSteps(programs.engine->residual(task), [this] {
            std::string why;
            const std::string folder = std::string(roundFolder) + "/";
            if (!emptyFolder(path(roundFolder), why))
                return fail(std::string(roundFolder) + " " + why);
            measureRound(maps[EngineFile::residual], &maps[EngineFile::model], nullptr, mask,
                         made.numbers);
            made.hasModel = 1;
            useBeam();
            if (!move(files[EngineFile::residual], folder + "residual.fits") ||
                !move(files[EngineFile::model], folder + "model.fits") || !registerRound())
                return 0;
            return study.setModelTag({1, AStudy::tagOf(made)})
                       ? 1
                       : fail("the study: it " + study.fault());
        });
    });
    before([this, start] {
        EngineTask task = taskFor(made.parameters);
        task.model = start;
        return runSteps(programs.engine->predict(task), nullptr);
    });
    before([this, start, components] {
        const auto model = std::make_shared<FitsMap>();
        std::string why;
        if (!modelOfComponents(components, dirty.header, dirty.rows, dirty.columns, *model, why))
            return fail(why);
        return write(start, model->header, 1, [model](int row) { return model->cells.row(row); });
    });
    before([this, data, parameters] { return needMaps(data, parameters); });
    before([this, data] { return needData(data); });
    return beginRound(RoundKind::model, study.round(parent) ? parent : -1, parameters);
}

int StudyJob::Work::planImport(const ImportChoice& choice)
{
    // working data that somebody took away come again, and the rounds go on
    if (!study.rounds().empty() && study.hasData())
        return fail("the study has rounds of the data there are");
    const std::string input = plainPath(choice.input.empty() ? study.source() : choice.input);
    std::string why;
    if (!study.setModelTag({}) || !study.setCorrectedTag({}))
        return fail("the study: it " + study.fault());
    for (const char* name : {"work/data.ms", "work/data.uvfits"})
        if (!removeAll(path(name), why))
            return fail(std::string(name) + " " + why);
    std::vector<std::string> words = {"import", input, "work/data.ms"};
    const auto add = [&words](const char* option, const std::string& value) {
        if (!value.empty())
            words.insert(words.end(), {option, value});
    };
    add("--column", choice.column);
    add("--ifs", choice.ifs);
    add("--times", choice.times);
    add("--hands", choice.hands);
    add("--source", choice.source);
    if (choice.leavesOut)
        words.emplace_back("--leave-out");
    const bool isTable = IsFolderExists(input);
    before([this, isTable, input, words] {
        // with the name of the data left open, for whoever repeats it
        std::vector<std::string> repeated = words;
        repeated[1] = "DATA";
        std::string error;
        if (!writeWhole(path("work/import.txt"), commandLines({repeated}), error))
            return fail("work/import.txt " + error);
        return study.setData(isTable ? "work/data.uvfits" : input, text)
                   ? 1
                   : fail("the study: " + study.fault());
    });
    if (isTable)
        before([this] {
            const std::string facts = text;
            return runData({"export", "work/data.ms", "work/data.uvfits", "--column", "DATA"},
                           "Writing the data for tables and plots", [this, facts] {
                               text = facts;
                               return IsFileExists(path("work/data.uvfits"))
                                          ? 1
                                          : fail("the data were not written");
                           });
        });
    before([this] {
        keepsText = 1;
        return runData({"facts", "work/data.ms"}, "Reading what the data hold", [this] {
            keepsText = 0;
            return text.empty() ? fail("nothing was told of the data") : 1;
        });
    });
    before([this, words] {
        return runData(words, "Reading the data", [this] {
            return IsFolderExists(study.dataFile()) ? 1 : fail("the data were not read");
        });
    });
    return 1;
}

// --- what the host asks for

void StudyJob::import(const ImportChoice& choice)
{
    work_->add([this, choice] { return work_->planImport(choice); });
}

void StudyJob::firstMaps(const CleanParameters& parameters)
{
    work_->add([this, parameters] {
        const std::string wrong = faultOf(parameters);
        return wrong.empty() ? work_->planFirst(parameters) : work_->fail(wrong);
    });
}

void StudyJob::clean(int parent, const CleanParameters& parameters, const std::string& areas)
{
    work_->add([=, this] { return work_->planClean(parent, parameters, areas); });
}

void StudyJob::goTo(int round)
{
    work_->add([this, round] {
        const StudyRound* const found = work_->study.round(round);
        if (!found)
            return work_->fail("there is no round " + std::to_string(round));
        const DataState data = found->data;
        work_->made.parameters = found->parameters;
        work_->before([this, round] { return work_->choose(round); });
        work_->before([this, round] { return work_->needModel(round); });
        return work_->needData(data);
    });
}

void StudyJob::predict(int round, const std::string& file)
{
    work_->add([this, round, file] {
        const StudyRound* const found = work_->study.round(round);
        if (!found)
            return work_->fail("there is no round " + std::to_string(round));
        if (!found->hasModel)
            return work_->fail("round " + std::to_string(round) + " has no model");
        const DataState data = work_->study.dataState(found->parameters);
        work_->made.parameters = found->parameters;
        work_->keptFile = file;
        work_->before([this, file] {
            return work_->runData(
                {"export", "work/data.ms", "work/" + file, "--column", "MODEL_DATA"},
                "Writing the model's visibilities", [this, file] {
                    return IsFileExists(work_->path("work/" + file))
                               ? 1
                               : work_->fail("they were not written");
                });
        });
        work_->before([this, round] { return work_->needExactModel(round); });
        return work_->needData(data);
    });
}

void StudyJob::exportData(int round, const std::string& file)
{
    work_->add([this, round, file] {
        const StudyRound* const found = work_->study.round(round);
        if (!found)
            return work_->fail("there is no round " + std::to_string(round));
        // the form and the times are those of a map
        DataState data = found->data;
        data.form = "strict";
        data.start = data.end = 0;
        work_->before([this, file] {
            work_->text.clear();
            work_->keepsText = 1;
            return work_->runData(
                {"export", "work/data.ms", plainPath(file), "--column", "CORRECTED_DATA"},
                "Writing the corrected data", [this, file] {
                    work_->keepsText = 0;
                    constexpr std::string_view lost = "lost ";
                    std::istringstream lines(work_->text);
                    for (std::string line; std::getline(lines, line);)
                        if (line.compare(0, lost.size(), lost) == 0)
                            work_->notes.push_back(baseNameOf(file) + " does not hold " +
                                                   line.substr(lost.size()));
                    return IsFileExists(file) ? 1 : work_->fail(file + " was not written");
                });
        });
        return work_->needData(data);
    });
}

void StudyJob::residual(int round)
{
    work_->add([this, round] {
        const StudyRound* const found = work_->study.round(round);
        if (!found)
            return work_->fail("there is no round " + std::to_string(round));
        return work_->planResidual(round, found->parameters);
    });
}

void StudyJob::restore(int round, const MapBeam& beam)
{
    work_->add([=, this] { return work_->planRestore(round, beam); });
}

void StudyJob::model(int parent, const CleanParameters& parameters, const AComponents& components)
{
    work_->add([=, this] { return work_->planModel(parent, parameters, components); });
}

}  // namespace pavane
