#include "pavane/imaging/study_export.h"

#include "pavane/imaging/round_maps.h"
#include "pavane/imaging/study_words.h"
#include "pavane/tables/components/component_file.h"
#include "tessel/folders.h"
#include "tessel/paths.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace pavane
{

namespace
{

constexpr std::int64_t mostCommands = std::int64_t{16} << 20U;

std::string numbered(int id)
{
    std::string text = std::to_string(id);
    return std::string(text.size() < 4 ? 4 - text.size() : 0, '0') + text;
}

/// Makes the script: what the data hold is followed as a study follows it.
class ScriptWriter
{
public:
    ScriptWriter(const AStudy& study, const JobPrograms& programs, std::vector<std::string>& files,
                 std::string& fault)
        : study_(study), programs_(programs), files_(files), fault_(fault)
    {
    }
    int add(const StudyRound& round);
    int addHead();
    void addRestored(const StudyRound& round, const MapBeam& restoring);
    const std::string& text() const { return text_; }

private:
    void line(const std::vector<std::string>& words)
    {
        for (std::size_t i = 0; i < words.size(); ++i)
            text_.append(i ? " " : "").append(shellWord(words[i]));
        text_ += '\n';
    }
    void steps(const std::vector<EngineStep>& steps)
    {
        for (const EngineStep& step : steps) {
            for (const EngineStep::Copy& copy : step.before)
                line({"cp", copy.from, copy.to});
            line(step.words);
        }
    }
    void need(const std::string& file)
    {
        if (std::find(files_.begin(), files_.end(), file) == files_.end())
            files_.push_back(file);
    }
    int data(const StudyRound& round);
    int maps(const StudyRound& round);

    const AStudy& study_;
    const JobPrograms& programs_;
    std::vector<std::string>& files_;
    std::string& fault_;
    std::string text_, corrected_, model_;
    std::set<std::string> made_;
};

int ScriptWriter::addHead()
{
    std::string lines;
    if (!readWhole(study_.folder() + "/work/import.txt", mostCommands, lines, fault_)) {
        fault_ = "work/import.txt " + fault_;
        return 0;
    }
    const std::vector<std::vector<std::string>> import = commandsOf(lines);
    if (import.empty() || import[0].size() < 3) {
        fault_ = "work/import.txt is none of ours";
        return 0;
    }
    text_ =
        "#!/bin/sh\n"
        "# Makes the maps of a round again: make-maps.sh [DATA [FOLDER]]\n"
        "# It needs the gains, flags, masks and models beside it, and the programs named below.\n"
        "set -eu\n"
        "here=$(cd -- \"$(dirname -- \"$0\")\" && pwd)\n"
        "data=${1:-" +
        shellWord(study_.source()) +
        "}\n"
        "case $data in /*) ;; *) data=$PWD/$data ;; esac\n"
        "folder=${2:-maps}\n"
        "export OPENBLAS_NUM_THREADS=1\n"
        "mkdir -p -- \"$folder\"\n"
        "cd -- \"$folder\"\n"
        "rm -rf work shared rounds gains\n"
        "mkdir work work/new shared rounds gains\n"
        "if [ -d \"$here/shared\" ]; then cp \"$here\"/shared/* shared; fi\n"
        "if [ -d \"$here/gains\" ]; then cp \"$here\"/gains/* gains; fi\n";
    for (const std::string& word : programs_.data)
        text_ += shellWord(word) + " ";
    text_ += import[0][0] + " \"$data\"";
    for (std::size_t i = 2; i < import[0].size(); ++i)
        text_.append(" ").append(shellWord(import[0][i]));
    text_ += '\n';
    return 1;
}

int ScriptWriter::data(const StudyRound& round)
{
    const std::string wanted = AStudy::tagOf(round.data);
    if (corrected_ == wanted)
        return 1;
    std::vector<std::string> words, files;
    if (!correctWords(study_, round.data, words, files, fault_))
        return 0;
    words.insert(words.begin(), programs_.data.begin(), programs_.data.end());
    line(words);
    for (const std::string& file : files)
        need(file);
    corrected_ = wanted;
    model_.clear();
    return 1;
}

int ScriptWriter::maps(const StudyRound& round)
{
    if (!made_.insert(round.maps).second)
        return 1;
    std::string lines;
    const std::string name = "shared/" + round.maps + "-commands.txt";
    if (!readWhole(study_.folder() + "/" + name, mostCommands, lines, fault_)) {
        fault_ = name + " " + fault_;
        return 0;
    }
    text_ += "rm -rf work/new\nmkdir work/new\n";
    for (const std::vector<std::string>& command : commandsOf(lines))
        line(command);
    return 1;
}

int ScriptWriter::add(const StudyRound& round)
{
    text_ += "\n# round " + std::to_string(round.id) + "\n";
    if (!data(round) || !maps(round))
        return 0;
    const std::string folder = "rounds/" + numbered(round.id);
    text_ += "rm -rf work/new rounds/.new\nmkdir work/new rounds/.new\n";
    const StudyRound* const parent = study_.round(round.parent);
    if (round.kind == RoundKind::model) {
        const std::string model = "models/" + numbered(round.id) + ".fits";
        need(model);
        text_ += "cp \"$here/" + model + "\" work/new/start.fits\n";
    } else if (parent && parent->hasModel && model_ != AStudy::tagOf(*parent)) {
        EngineTask task = studyTask(study_, parent->parameters, programs_.threads);
        task.model = "rounds/" + numbered(parent->id) + "/model.fits";
        steps(programs_.engine->predict(task));
    }
    for (const std::vector<std::string>& command : round.commands)
        line(command);
    if (!round.mask.empty())
        need("shared/" + round.mask + ".fits");
    text_ += "mv rounds/.new " + folder + "\n";
    if (round.kind == RoundKind::dirty)
        return 1;
    const bool isWritten = round.kind != RoundKind::clean ||
                           (round.parameters.majorGain < 1 && round.numbers.iterations > 0);
    model_ = isWritten ? AStudy::tagOf(round) : std::string();
    return 1;
}

void ScriptWriter::addRestored(const StudyRound& round, const MapBeam& restoring)
{
    const std::string folder = "rounds/" + numbered(round.id) + "/";
    if (!round.hasModel) {
        text_ += "\necho \"$PWD/shared/" + round.maps + "-dirty.fits\"\n";
        return;
    }
    const MapBeam beam = restoring.isSet() ? restoring : round.beam;
    if (beam.isSet()) {
        EngineTask task = studyTask(study_, round.parameters, programs_.threads);
        task.model = folder + "model.fits";
        task.residual = folder + "residual.fits";
        task.restoring = beam;
        text_ += "\nrm -rf work/new\nmkdir work/new\n";
        for (const EngineStep& step : programs_.engine->restore(task)) {
            line(step.words);
            for (const EngineStep::Output& output : step.outputs)
                line({"mv", output.file, folder + "restored.fits"});
        }
    }
    text_ += "echo \"$PWD/" + folder + "\"*.fits\n";
}

}  // namespace

std::string shellWord(const std::string& word)
{
    constexpr const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                  "-_./=,:+@%";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos)
        return word;
    std::string quoted = "'";
    for (const char c : word)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string roundScript(const AStudy& study, int round, const JobPrograms& programs,
                        std::vector<std::string>& files, std::string& fault,
                        const MapBeam& restoring)
{
    std::vector<const StudyRound*> line;
    for (const StudyRound* each = study.round(round); each; each = study.round(each->parent))
        line.insert(line.begin(), each);
    if (line.empty() || !programs.engine) {
        fault = "there is no round " + std::to_string(round);
        return {};
    }
    // a model of the user's begins anew
    const auto last = std::find_if(line.rbegin(), line.rend(), [](const StudyRound* each) {
        return each->kind == RoundKind::model;
    });
    if (last != line.rend())
        line.erase(line.begin(), last.base() - 1);
    ScriptWriter writer(study, programs, files, fault);
    if (!writer.addHead())
        return {};
    for (const StudyRound* each : line)
        if (!writer.add(*each))
            return {};
    writer.addRestored(*line.back(), restoring);
    return writer.text();
}

/// What is left to write, and what is there.
struct StudyExport::Work {
    struct Copy {
        std::string from, name;
    };
    std::string to;  ///< the folder, with '/' at its end
    std::vector<Copy> copies;
    std::string script, areas;
    int hasModel = 0, isWritten = 0, isFolderOurs = 0;
    std::size_t at = 0;
    FileCopy copy;
    int isCopying = 0;
    std::vector<std::string> made;

    int begin(std::string& fault);
    int writeTexts(std::vector<std::string>& notes, std::string& fault);
    int writeText(const std::string& name, const std::string& text, std::string& fault);
};

int StudyExport::Work::begin(std::string& fault)
{
    const Copy& next = copies[at];
    const std::string name = to + next.name;
    if (makeFolders(folderOf(name), fault) && copy.begin(next.from, name, 1, fault)) {
        isCopying = 1;
        made.push_back(name);
        return 1;
    }
    fault = next.name + " " + fault;
    return 0;
}

int StudyExport::Work::writeText(const std::string& name, const std::string& text,
                                 std::string& fault)
{
    if (text.empty())
        return 1;
    made.push_back(to + name);
    if (writeWhole(to + name, text, fault))
        return 1;
    fault = name + " " + fault;
    return 0;
}

int StudyExport::Work::writeTexts(std::vector<std::string>& notes, std::string& fault)
{
    if (hasModel) {
        FitsMap model;
        AComponents components;
        std::string why;
        made.push_back(to + "components.txt");
        if (!readFitsMap(to + "model.fits", 0, model, why) ||
            !componentsOfModel(model, components, why))
            notes.push_back("components.txt is not there: the model " + why);
        else if (!writeComponentFile(made.back(), components, fault)) {
            fault = "components.txt " + fault;
            return 0;
        } else
            notes.emplace_back("components.txt has six digits, model.fits all of them");
    }
    if (!writeText("areas", areas, fault) || !writeText("make-maps.sh", script, fault))
        return 0;
    std::error_code error;
    std::filesystem::permissions(to + "make-maps.sh", std::filesystem::perms::owner_exec,
                                 std::filesystem::perm_options::add, error);
    return 1;
}

StudyExport::StudyExport() = default;

StudyExport::~StudyExport()
{
    if (!work_ || work_->isWritten)
        return;
    const std::vector<std::string> made = work_->made;
    const std::string to = work_->to;
    const int isFolderOurs = work_->isFolderOurs;
    work_.reset();
    std::string ignored;
    std::error_code error;
    for (const std::string& name : made)
        (void)removeAll(name, ignored);
    for (const char* folder : {"gains", "shared", "models"})
        (void)std::filesystem::remove(to + folder, error);  // when they are empty
    if (isFolderOurs)
        (void)std::filesystem::remove(to, error);
}

int StudyExport::begin(const AStudy& study, int id, const JobPrograms& programs,
                       const std::string& folder, std::string& fault, const MapBeam& restoring)
{
    work_.reset();
    notes_.clear();
    const StudyRound* const round = study.round(id);
    if (!round) {
        fault = "there is no round " + std::to_string(id);
        return 0;
    }
    auto work = std::make_unique<Work>();
    work->to = plainPath(folder) + "/";
    if (!namesIn(folder).empty() || IsFileExists(folder)) {
        fault = folder + " holds something already";
        return 0;
    }
    if (work->to.compare(0, study.folder().size() + 1, study.folder() + "/") == 0) {
        fault = folder + " is a part of the study";
        return 0;
    }
    const struct {
        RoundMap map;
        const char* name;
    } maps[] = {{RoundMap::restored, "map.fits"}, {RoundMap::residual, "residual.fits"},
                {RoundMap::model, "model.fits"},  {RoundMap::mask, "mask.fits"},
                {RoundMap::beam, "beam.fits"},    {RoundMap::dirty, "dirty.fits"}};
    for (const auto& each : maps) {
        if (study.hasMap(id, each.map, restoring))
            work->copies.push_back({study.mapFile(id, each.map, restoring), each.name});
        else if (each.map == RoundMap::restored && round->hasModel)
            notes_.emplace_back("map.fits is not there: the round has not been restored");
    }
    work->hasModel = round->hasModel;
    work->areas = study.areasOf(*round);
    for (const int gains : round->data.chain)
        work->copies.push_back({study.gainTable(gains), "gains/" + numbered(gains) + ".fits"});
    std::vector<std::string> files;
    work->script = roundScript(study, id, programs, files, fault, restoring);
    if (work->script.empty())
        return 0;
    for (const std::string& file : files) {
        const bool isModel = file.compare(0, 7, "models/") == 0;
        work->copies.push_back({isModel ? study.folder() + "/rounds/" +
                                              file.substr(7, file.size() - 12) + "/model.fits"
                                        : study.folder() + "/" + file,
                                file});
    }
    work->isFolderOurs = !IsFolderExists(folder);
    if (!makeFolders(folder, fault)) {
        fault = folder + " " + fault;
        return 0;
    }
    work_ = std::move(work);
    return 1;
}

WorkPiece StudyExport::step(std::string& fault)
{
    Work& w = *work_;
    if (w.at < w.copies.size()) {
        if (!w.isCopying)
            return w.begin(fault) ? WorkPiece::more : WorkPiece::failed;
        const WorkPiece piece = w.copy.step(fault);
        if (piece == WorkPiece::failed)
            fault.insert(0, w.copies[w.at].name + " ");
        if (piece == WorkPiece::done) {
            w.isCopying = 0;
            ++w.at;
            return WorkPiece::more;
        }
        return piece;
    }
    if (!w.writeTexts(notes_, fault))
        return WorkPiece::failed;
    w.isWritten = 1;
    return WorkPiece::done;
}

double StudyExport::done() const
{
    return !work_ || work_->copies.empty()
               ? 0
               : static_cast<double>(work_->at) / static_cast<double>(work_->copies.size());
}

int exportRound(const AStudy& study, int id, const JobPrograms& programs, const std::string& folder,
                std::vector<std::string>& notes, std::string& fault, const MapBeam& restoring)
{
    StudyExport work;
    WorkPiece piece = work.begin(study, id, programs, folder, fault, restoring) ? WorkPiece::more
                                                                                : WorkPiece::failed;
    while (piece == WorkPiece::more)
        piece = work.step(fault);
    notes.insert(notes.end(), work.notes().begin(), work.notes().end());
    return piece == WorkPiece::done;
}

}  // namespace pavane
