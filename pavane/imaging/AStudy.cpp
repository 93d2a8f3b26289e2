#include "pavane/imaging/AStudy.h"

#include "pavane/imaging/AStudy_state.h"
#include "tessel/folders.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>

namespace pavane
{

AStudy::AStudy() : state_(std::make_unique<State>()) {}

AStudy::~AStudy() { close(); }

int AStudy::fail(const std::string& fault)
{
    fault_ = fault.empty() ? "there is not enough memory" : fault;
    return 0;
}

int AStudy::isOpen() const { return state_->isOpen; }
int AStudy::isReadOnly() const { return state_->isReadOnly; }
const std::string& AStudy::folder() const { return state_->folder; }
const std::string& AStudy::source() const { return state_->record.source; }
const StudySettings& AStudy::settings() const { return state_->record.settings; }
const std::vector<StudyRound>& AStudy::rounds() const { return state_->rounds; }
const DataTag& AStudy::modelTag() const { return state_->record.model; }
const DataTag& AStudy::correctedTag() const { return state_->record.corrected; }

int AStudy::store(const StudyRecord& record)
{
    fault_.clear();
    if (!state_->isOpen)
        return fail("is not open");
    if (state_->isReadOnly)
        return fail("is open for reading only");
    std::string why;
    if (!writeWhole(state_->path("study.txt"), studyText(record), why))
        return fail("study.txt " + why);
    state_->record = record;
    return 1;
}

int AStudy::setSettings(const StudySettings& settings)
{
    if (settings == state_->record.settings && state_->isOpen && !state_->isReadOnly)
        return 1;
    StudyRecord record = state_->record;
    record.settings = settings;
    return store(record);
}

DataState AStudy::dataState() const { return dataState(settings().parameters); }

DataState AStudy::dataState(const CleanParameters& parameters) const
{
    const StudySettings& now = settings();
    DataState data;
    for (const StudyLink& link : now.chain)
        if (link.isOn)
            data.chain.push_back(link.gains);
    data.flags = now.flags;
    data.keepsFailed = now.keepsFailed;
    data.keepsWeights = now.keepsWeights;
    data.form = parameters.form;
    if (parameters.start != parameters.end) {
        data.start = parameters.start;
        data.end = parameters.end;
    }
    return data;
}

std::string AStudy::areas() const
{
    std::string bytes, why;
    const std::string name = state_->path("areas");
    return IsFileExists(name) && readWhole(name, mostAreas, bytes, why) ? bytes : std::string();
}

int AStudy::setAreas(const std::string& bytes)
{
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    std::string why;
    return writeWhole(state_->path("areas"), bytes, why) ? 1 : fail("the areas: it " + why);
}

std::string AStudy::areasOf(const StudyRound& round) const
{
    std::string bytes, why;
    return !round.areas.empty() && readWhole(sharedFile(round.areas), mostAreas, bytes, why)
               ? bytes
               : std::string();
}

std::string AStudy::keepAreas(const std::string& bytes)
{
    if (bytes.empty())
        return {};
    std::string key = "areas-" + contentKey(bytes);
    std::string kept, why;
    if (IsFileExists(sharedFile(key)) && readWhole(sharedFile(key), mostAreas, kept, why) &&
        kept == bytes)
        return key;
    if (writeWhole(sharedFile(key), bytes, why))
        return key;
    (void)fail("the areas: it " + why);
    return {};
}

const StudyRound* AStudy::round(int id) const
{
    for (const StudyRound& each : state_->rounds)
        if (each.id == id)
            return &each;
    return nullptr;
}

std::vector<int> AStudy::branchOf(int id) const
{
    std::vector<int> branch;
    if (round(id))
        branch.push_back(id);
    // rounds stand by rising number, and a parent's is lower
    for (const StudyRound& each : state_->rounds)
        if (std::find(branch.begin(), branch.end(), each.parent) != branch.end())
            branch.push_back(each.id);
    return branch;
}

std::string AStudy::mapFile(int id, RoundMap map, const MapBeam& beam) const
{
    const StudyRound* const found = round(id);
    if (!found)
        return {};
    const std::string own = state_->roundFolder(id) + "/";
    switch (map) {
    case RoundMap::dirty:
        return sharedFile(found->maps + "-dirty.fits");
    case RoundMap::beam:
        return sharedFile(found->maps + "-psf.fits");
    case RoundMap::mask:
        return found->mask.empty() ? std::string() : sharedFile(found->mask + ".fits");
    case RoundMap::residual:
        return found->kind == RoundKind::dirty ? sharedFile(found->maps + "-dirty.fits")
                                               : own + "residual.fits";
    case RoundMap::model:
        return found->hasModel ? own + "model.fits" : std::string();
    case RoundMap::restored:
        break;
    }
    if (!found->hasModel)
        return {};
    if (!beam.isSet() || beam == found->beam)
        return own + "restored.fits";
    return own + "restored-" +
           contentKey(valToStr(beam.major) + " " + valToStr(beam.minor) + " " +
                      valToStr(beam.angle)) +
           ".fits";
}

int AStudy::hasMap(int id, RoundMap map, const MapBeam& beam) const
{
    const std::string file = mapFile(id, map, beam);
    return !file.empty() && IsFileExists(file);
}

std::string AStudy::logFile(int id) const
{
    return round(id) ? state_->roundFolder(id) + "/log.txt" : std::string();
}

std::string AStudy::note(int id) const
{
    const auto found = state_->record.notes.find(id);
    return found == state_->record.notes.end() ? std::string() : found->second;
}

int AStudy::setNote(int id, const std::string& text)
{
    if (!round(id))
        return fail("has no such round");
    StudyRecord record = state_->record;
    if (text.empty())
        record.notes.erase(id);
    else
        record.notes[id] = text;
    return store(record);
}

int AStudy::nextRoundId() const
{
    const int last = state_->rounds.empty() ? -1 : state_->rounds.back().id;
    return std::max(state_->record.nextRound, last + 1);
}

int AStudy::addRound(const StudyRound& made, const std::string& from)
{
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    if (made.id != nextRoundId() || (made.parent >= 0 && !round(made.parent)))
        return fail("has no place for that round");
    std::string why;
    if (!writeWhole(from + "/round.txt", roundText(made), why) ||
        !renameWhole(from, state_->roundFolder(made.id), why))
        return fail("the round " + why);
    state_->rounds.push_back(made);
    return 1;
}

int AStudy::addRestored(int id, const MapBeam& beam, const std::string& from)
{
    const std::string file = mapFile(id, RoundMap::restored, beam);
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    if (file.empty())
        return fail("has no such round");
    std::string why;
    return renameWhole(from, file, why) ? 1 : fail("the restored map " + why);
}

int AStudy::deleteBranch(int id)
{
    const std::vector<int> gone = branchOf(id);
    if (gone.empty())
        return fail("has no such round");
    const auto isGone = [&gone](int each) {
        return std::find(gone.begin(), gone.end(), each) != gone.end();
    };
    StudyRecord record = state_->record;
    record.nextRound = nextRoundId();  // a number never comes again
    if (isGone(record.settings.round))
        record.settings.round = round(id)->parent;
    for (const int each : gone)
        record.notes.erase(each);
    if (!store(record))
        return 0;
    std::string why;
    // the youngest first, so that after a crash no round is without its parent
    for (auto at = gone.rbegin(); at != gone.rend(); ++at) {
        const std::string aside = state_->path("rounds/.gone");
        if (!removeAll(aside, why) || !renameWhole(state_->roundFolder(*at), aside, why))
            return fail("the round " + why);
        std::erase_if(state_->rounds, [at](const StudyRound& each) { return each.id == *at; });
        (void)removeAll(aside, why);  // what is left of it goes when the study is opened again
    }
    sweep();
    return 1;
}

std::int64_t AStudy::size() const { return bytesOf(state_->folder); }

std::int64_t AStudy::branchSize(int id) const
{
    std::int64_t bytes = 0;
    for (const int each : branchOf(id))
        bytes += bytesOf(state_->roundFolder(each));
    return bytes;
}

std::string AStudy::tagOf(const DataState& state)
{
    return "chain " + joined(state.chain) + " flags " + std::to_string(state.flags) + " form " +
           state.form + " times " + valToStr(state.start) + " " + valToStr(state.end) +
           (state.keepsFailed ? " keeps-failed" : "") +
           (state.keepsWeights ? " keeps-weights" : "");
}

std::string AStudy::tagOf(const StudyRound& round)
{
    return "round " + std::to_string(round.id) + " ifs " + joined(round.parameters.ifs);
}

std::string AStudy::mapsKey(const DataState& data, const CleanParameters& parameters)
{
    return contentKey(tagOf(data) + "\n" + mapWords(parameters));
}

int AStudy::setModelTag(const DataTag& tag)
{
    if (tag == state_->record.model)
        return 1;
    StudyRecord record = state_->record;
    record.model = tag;
    return store(record);
}

int AStudy::setCorrectedTag(const DataTag& tag)
{
    if (tag == state_->record.corrected)
        return 1;
    StudyRecord record = state_->record;
    record.corrected = tag;
    return store(record);
}

}  // namespace pavane
