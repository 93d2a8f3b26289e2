#include "pavane/imaging/StudyJob_work.h"
#include "tessel/folders.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <sstream>

namespace pavane
{

namespace
{

constexpr std::int64_t mostFlagFile = std::int64_t{256} << 20U;
constexpr const char* newFolder = "work/new";

std::string commandLines(const std::vector<std::vector<std::string>>& commands)
{
    std::string lines;
    for (const std::vector<std::string>& words : commands) {
        for (std::size_t i = 0; i < words.size(); ++i)
            lines += (i ? "\t" : "") + words[i];
        lines += '\n';
    }
    return lines;
}

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
    if (!removeAll(path(newFolder), why) || !makeFolders(path(newFolder), why))
        return fail("work/new " + why);
    return 1;
}

std::string StudyJob::Work::relative(const std::string& name) const
{
    const std::string start = study.folder() + "/";
    return name.compare(0, start.size(), start) == 0 ? name.substr(start.size()) : name;
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

int StudyJob::Work::factLine(const std::string& name, std::string& value) const
{
    std::istringstream in(study.facts());
    std::string line;
    while (std::getline(in, line))
        if (line.compare(0, name.size() + 1, name + " ") == 0) {
            value = line.substr(name.size() + 1);
            return 1;
        }
    return 0;
}

double StudyJob::Work::fact(const std::string& name, std::size_t field, double missing) const
{
    std::string line;
    if (!factLine(name, line))
        return missing;
    std::string_view rest = line;
    for (; field > 0; --field) {
        const std::size_t tab = rest.find('\t');
        if (tab == std::string_view::npos)
            return missing;
        rest.remove_prefix(tab + 1);
    }
    double value = missing;
    return stoval(rest.substr(0, std::min(rest.find('\t'), rest.size())), value) ? value : missing;
}

EngineTask StudyJob::Work::taskFor(const CleanParameters& parameters) const
{
    EngineTask task;
    task.data = "work/data.ms";
    task.folder = newFolder;
    task.threads = programs.threads;
    task.parameters = parameters;
    task.centreX = fact("source", 2, 0);
    task.centreY = fact("source", 3, 0);
    return task;
}

/// A selection of times is flags of all others, behind those of the user.
int StudyJob::Work::writeTimes(const DataState& data, std::string& flags)
{
    flags = data.flags > 0 ? relative(study.flagFile(data.flags)) : std::string();
    if (data.start == data.end)
        return 1;
    std::string text, why;
    if (data.flags > 0 && !readWhole(path(flags), mostFlagFile, text, why))
        return fail(flags + " " + why);
    if (text.empty())
        text = "# pavane flags 1\n# referenceday " + valToStr(fact("referenceday", 0, 0)) + "\n";
    if (text.back() != '\n')
        text += '\n';
    const auto flag = [&text](double start, double end) {
        text += "flag\t0\t0\t0\t*\t*\t" + valToStr(start) + "\t" + valToStr(end) + "\t0\n";
    };
    flag(-1e6, data.start);
    flag(data.end, 1e6);
    flags = "gains/times-" + valToStr(data.start) + "-" + valToStr(data.end) + "-" +
            std::to_string(data.flags) + ".txt";
    return writeWhole(path(flags), text, why) ? 1 : fail(flags + " " + why);
}

int StudyJob::Work::needData(const DataState& data)
{
    if (!study.hasData())
        return fail("the data have not been imported");
    const std::string wanted = AStudy::tagOf(data);
    if (study.correctedTag() == DataTag{1, wanted})
        return 1;
    std::vector<std::string> words = {"correct", "work/data.ms", "--form", data.form};
    for (const int gains : data.chain) {
        if (!IsFileExists(study.gainText(gains)))
            return fail("gains " + std::to_string(gains) + " are not in the study");
        words.insert(words.end(), {"--gains", relative(study.gainText(gains))});
    }
    std::string flags;
    if (!writeTimes(data, flags))
        return 0;
    if (!flags.empty()) {
        if (!IsFileExists(path(flags)))
            return fail(flags + " is not in the study");
        words.insert(words.end(), {"--flags", flags});
    }
    if (data.keepsFailed)
        words.emplace_back("--keep-failed");
    if (data.keepsWeights)
        words.emplace_back("--keep-weights");
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

}  // namespace pavane
