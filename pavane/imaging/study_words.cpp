#include "pavane/imaging/study_words.h"

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
/// Days before and after all that an observation can have.
constexpr double farDay = 1e6;

int writeTimes(const AStudy& study, const DataState& data, std::string& flags, std::string& fault)
{
    flags = data.flags > 0 ? relativeName(study, study.flagFile(data.flags)) : std::string();
    if (data.start == data.end)
        return 1;
    const auto path = [&study](const std::string& name) { return study.folder() + "/" + name; };
    std::string text;
    if (data.flags > 0 && !readWhole(path(flags), mostFlagFile, text, fault)) {
        fault = flags + " " + fault;
        return 0;
    }
    if (text.empty())
        text = "# pavane flags 1\n# referenceday " +
               valToStr(studyFact(study, "referenceday", 0, 0)) + "\n";
    if (text.back() != '\n')
        text += '\n';
    const auto flag = [&text](double start, double end) {
        text += "flag\t0\t0\t0\t*\t*\t" + valToStr(start) + "\t" + valToStr(end) + "\t0\n";
    };
    flag(-farDay, data.start);
    flag(data.end, farDay);
    flags = "gains/times-" + valToStr(data.start) + "-" + valToStr(data.end) + "-" +
            std::to_string(data.flags) + ".txt";
    if (IsFileExists(path(flags)) || writeWhole(path(flags), text, fault))
        return 1;
    fault = flags + " " + fault;
    return 0;
}

}  // namespace

std::string relativeName(const AStudy& study, const std::string& name)
{
    const std::string start = study.folder() + "/";
    return name.compare(0, start.size(), start) == 0 ? name.substr(start.size()) : name;
}

double studyFact(const AStudy& study, const std::string& name, std::size_t field, double missing)
{
    std::istringstream in(study.facts());
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, name.size() + 1, name + " ") != 0)
            continue;
        std::string_view rest = std::string_view(line).substr(name.size() + 1);
        for (; field > 0; --field) {
            const std::size_t tab = rest.find('\t');
            if (tab == std::string_view::npos)
                return missing;
            rest.remove_prefix(tab + 1);
        }
        double value = missing;
        return stoval(rest.substr(0, std::min(rest.find('\t'), rest.size())), value) ? value
                                                                                     : missing;
    }
    return missing;
}

EngineTask studyTask(const AStudy& study, const CleanParameters& parameters, int threads)
{
    EngineTask task;
    task.data = "work/data.ms";
    task.folder = "work/new";
    task.threads = threads;
    task.parameters = parameters;
    task.centreX = studyFact(study, "source", 2, 0);
    task.centreY = studyFact(study, "source", 3, 0);
    return task;
}

int correctWords(const AStudy& study, const DataState& data, std::vector<std::string>& words,
                 std::vector<std::string>& files, std::string& fault)
{
    words = {"correct", "work/data.ms", "--form", data.form};
    files.clear();
    for (const int gains : data.chain) {
        files.push_back(relativeName(study, study.gainText(gains)));
        words.insert(words.end(), {"--gains", files.back()});
    }
    std::string flags;
    if (!writeTimes(study, data, flags, fault))
        return 0;
    if (!flags.empty()) {
        files.push_back(flags);
        words.insert(words.end(), {"--flags", flags});
    }
    if (data.keepsFailed)
        words.emplace_back("--keep-failed");
    if (data.keepsWeights)
        words.emplace_back("--keep-weights");
    for (const std::string& file : files)
        if (!IsFileExists(study.folder() + "/" + file)) {
            fault = file + " is not in the study";
            return 0;
        }
    return 1;
}

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

std::vector<std::vector<std::string>> commandsOf(const std::string& lines)
{
    std::vector<std::vector<std::string>> commands;
    std::istringstream in(lines);
    std::string line, word;
    while (std::getline(in, line)) {
        std::istringstream parts(line);
        commands.emplace_back();
        while (std::getline(parts, word, '\t'))
            commands.back().push_back(word);
    }
    return commands;
}

}  // namespace pavane
