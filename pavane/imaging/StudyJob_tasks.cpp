#include "pavane/imaging/study_words.h"
#include "pavane/imaging/StudyJob_work.h"
#include "tessel/folders.h"

namespace pavane
{

namespace
{

constexpr const char* newFolder = "work/new";

}  // namespace

int StudyJob::Work::fail(const std::string& why)
{
    if (fault.empty())
        fault = why;
    return 0;
}

int StudyJob::Work::begin()
{
    std::string why;
    if (!study.isOpen() || study.isReadOnly())
        return fail("the study is open for reading only");
    if (!programs.engine)
        return fail("there is no engine");
    int isChanged = 0;
    if (!study.checkData(isChanged))
        return fail("the study: it " + study.fault());
    if (isChanged)
        notes.emplace_back("the working data have been changed since: their columns are written "
                           "again");
    if (!removeAll(path(newFolder), why) || !makeFolders(path(newFolder), why))
        return fail("work/new " + why);
    return 1;
}

std::string StudyJob::Work::relative(const std::string& name) const
{
    return relativeName(study, name);
}

EngineTask StudyJob::Work::taskFor(const CleanParameters& parameters) const
{
    return studyTask(study, parameters, programs.threads);
}

int StudyJob::Work::copy(const std::string& from, const std::string& to)
{
    std::string why;
    if (!copyWhole(path(from), path(to), why))
        return fail(to + " " + why);
    noteCommand({"cp", from, to});
    return 1;
}

int StudyJob::Work::move(const std::string& from, const std::string& to)
{
    std::string why;
    if (from == to)
        return 1;
    if (!renameWhole(path(from), path(to), why))
        return fail(to + " " + why);
    noteCommand({"mv", from, to});
    return 1;
}

int StudyJob::Work::needData(const DataState& data)
{
    if (!study.hasData())
        return fail("the data have not been imported");
    const std::string wanted = AStudy::tagOf(data);
    if (study.correctedTag() == DataTag{1, wanted})
        return 1;
    std::vector<std::string> words, files;
    std::string why;
    if (!correctWords(study, data, words, files, why))
        return fail(why);
    // rows that were flagged may have had no model written
    if (!study.setCorrectedTag({}) || !study.setModelTag({}))
        return fail("the study: it " + study.fault());
    return runData(words, "Correcting the data", [this, wanted] {
        return study.setCorrectedTag({1, wanted}) ? 1 : fail("the study: it " + study.fault());
    });
}

int StudyJob::Work::needMaps(const DataState& data, const CleanParameters& parameters)
{
    mapsKey = AStudy::mapsKey(data, parameters);
    const std::string shared = "shared/" + mapsKey;
    FitsMap map;
    std::string why;
    if (readEngineMap(path(shared + "-dirty.fits"), parameters.width, parameters.height, map,
                      why) &&
        readEngineMap(path(shared + "-psf.fits"), parameters.width, parameters.height, map, why))
        return 1;
    made.parameters = parameters;
    // other commands of the round begin anew behind these
    std::vector<std::vector<std::string>> others;
    others.swap(commands);
    return runSteps(programs.engine->dirty(taskFor(parameters)), [this, shared, others] {
        std::string error;
        if (!move(files[EngineFile::dirty], shared + "-dirty.fits") ||
            !move(files[EngineFile::beam], shared + "-psf.fits"))
            return 0;
        const std::string lines = commandLines(commands);
        commands = others;
        return writeWhole(path(shared + "-commands.txt"), lines, error)
                   ? 1
                   : fail(shared + "-commands.txt " + error);
    });
}

int StudyJob::Work::needModel(int id)
{
    const StudyRound* const round = study.round(id);
    if (!round || !round->hasModel)
        return 1;
    const DataTag wanted = {1, AStudy::tagOf(*round)};
    if (study.modelTag() == wanted)
        return 1;
    EngineTask task = taskFor(round->parameters);
    task.model = relative(study.mapFile(id, RoundMap::model));
    // no part of what makes the round: whoever repeats it writes the model when the data lack it
    std::vector<std::vector<std::string>> others;
    others.swap(commands);
    return runSteps(programs.engine->predict(task), [this, wanted, others] {
        commands = others;
        return study.setModelTag(wanted) ? 1 : fail("the study: it " + study.fault());
    });
}

int StudyJob::Work::needExactModel(int id)
{
    const StudyRound* const round = study.round(id);
    if (!round)
        return fail("there is no round " + std::to_string(id));
    EngineTask task = taskFor(round->parameters);
    task.model = relative(study.mapFile(id, RoundMap::model));
    task.isExact = 1;
    return runSteps(programs.engine->predict(task), nullptr);
}

}  // namespace pavane
