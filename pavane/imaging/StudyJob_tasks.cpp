#include "pavane/imaging/study_words.h"
#include "pavane/imaging/StudyJob_work.h"
#include "tessel/FitsMapWriter.h"
#include "tessel/folders.h"

#include <algorithm>
#include <memory>

namespace pavane
{

namespace
{

constexpr const char* newFolder = "work/new";
/// Cells that are written at once.
constexpr int pieceCells = 1 << 18;

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

void StudyJob::Work::before(std::vector<Task> list)
{
    for (auto each = list.rbegin(); each != list.rend(); ++each)
        tasks.push_front(std::move(*each));
}

void StudyJob::Work::inPieces(std::function<WorkPiece()> piece)
{
    before([this, piece = std::move(piece)] {
        const WorkPiece answer = piece();
        if (answer == WorkPiece::more)
            inPieces(piece);
        return answer != WorkPiece::failed;
    });
}

int StudyJob::Work::read(const std::string& name, int wantsNoise, MapUse use)
{
    const auto reading = std::make_shared<MapMeasure>();
    std::string why;
    if (!reading->begin(path(name), made.parameters.width, made.parameters.height, mask, wantsNoise,
                        why))
        return use(nullptr, why);
    inPieces([reading, use = std::move(use)] {
        std::string fault;
        const WorkPiece piece = reading->step(fault);
        if (piece == WorkPiece::more)
            return piece;
        return use(piece == WorkPiece::done ? &reading->map() : nullptr, fault) ? WorkPiece::done
                                                                                : WorkPiece::failed;
    });
    return 1;
}

int StudyJob::Work::write(const std::string& name, const MapHeader& like, int isMap,
                          std::function<const float*(int row)> rowOf)
{
    struct Writing {
        AFile file;
        FitsMapWriter rows;
        int row = 0;
    };
    const auto writing = std::make_shared<Writing>();
    const int columns = made.parameters.width, rows = made.parameters.height;
    const auto refuse = [this, name, writing] {
        (void)fail(name + " " + writing->rows.fault());
        return WorkPiece::failed;
    };
    if (!writing->file.open(path(name), AFile::writeOnly | AFile::create) ||
        !writing->rows.begin(writing->file, rows, columns, like, isMap))
        return refuse() == WorkPiece::done;
    inPieces([writing, refuse, rows, columns, rowOf = std::move(rowOf)] {
        const int end = std::min(rows, writing->row + std::max(1, pieceCells / columns));
        for (; writing->row < end; ++writing->row)
            if (!writing->rows.write(rowOf(writing->row)))
                return refuse();
        if (end < rows)
            return WorkPiece::more;
        return writing->rows.finish() && writing->file.close() ? WorkPiece::done : refuse();
    });
    return 1;
}

int StudyJob::Work::sync(const std::string& name)
{
    const auto syncing = std::make_shared<FileSync>();
    std::string why;
    if (!syncing->begin(path(name), why))
        return fail(name + " " + why);
    inPieces([this, name, syncing] {
        std::string fault;
        const WorkPiece piece = syncing->step(fault);
        if (piece == WorkPiece::failed)
            (void)fail(name + " " + fault);
        return piece;
    });
    return 1;
}

int StudyJob::Work::copy(const std::string& from, const std::string& to)
{
    const auto copying = std::make_shared<FileCopy>();
    std::string why;
    if (!copying->begin(path(from), path(to), 0, why))
        return fail(to + " " + why);
    noteCommand({"cp", from, to});
    inPieces([this, to, copying] {
        std::string fault;
        const WorkPiece piece = copying->step(fault);
        if (piece == WorkPiece::failed)
            (void)fail(to + " " + fault);
        return piece;
    });
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
    // of a round that is the dirty map the noise is wanted too
    return read(shared + "-dirty.fits", made.kind == RoundKind::dirty,
                [this, shared](const MeasuredMap* map, const std::string&) {
                    if (!map)
                        return makeMaps();
                    dirty = *map;
                    return read(shared + "-psf.fits", 0,
                                [this](const MeasuredMap* second, const std::string&) {
                                    if (!second)
                                        return makeMaps();
                                    beam = *second;
                                    return 1;
                                });
                });
}

int StudyJob::Work::makeMaps()
{
    const std::string shared = "shared/" + mapsKey;
    // other commands of the round begin anew behind these
    std::vector<std::vector<std::string>> others;
    others.swap(commands);
    return runSteps(programs.engine->dirty(taskFor(made.parameters)), [this, shared, others] {
        std::string error;
        if (!move(files[EngineFile::dirty], shared + "-dirty.fits") ||
            !move(files[EngineFile::beam], shared + "-psf.fits"))
            return 0;
        dirty = maps[EngineFile::dirty];
        beam = maps[EngineFile::beam];
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
