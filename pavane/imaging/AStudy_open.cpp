#include "pavane/imaging/AStudy_state.h"
#include "tessel/folders.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace pavane
{

std::string holderText(const StudyHolder& self, const StudyHolder& child)
{
    return self.host.substr(0, 200) + "\n" + std::to_string(self.process) + " " +
           std::to_string(self.started) + "\n" + std::to_string(child.process) + " " +
           std::to_string(child.started) + "\n";
}

int readHolderText(const std::string& text, StudyHolder& self, StudyHolder& child)
{
    std::istringstream in(text);
    self = child = {};
    if (!std::getline(in, self.host) || self.host.empty() ||
        !(in >> self.process >> self.started >> child.process >> child.started))
        return 0;
    child.host = self.host;
    return 1;
}

int AStudy::create(const std::string& folder, const std::string& source)
{
    close();
    fault_.clear();
    const std::string name = plainPath(folder);
    std::string why;
    if (IsFolderExists(name) || IsFileExists(name))
        return fail("is there already");
    if (!IsFolderExists(source) && !IsFileExists(source))
        return fail("has no data: " + source + " is not there");
    for (const char* part : {"", "/rounds", "/gains", "/shared", "/work"})
        if (!makeFolders(name + part, why))
            return fail(why);
    StudyRecord record;
    record.source = plainPath(source);
    if (!writeWhole(name + "/study.txt", studyText(record), why))
        return fail("study.txt " + why);
    if (open(name) != StudyOpening::opened)
        return 0;
    state_->isNew = 1;
    return 1;
}

StudyOpening AStudy::take(int takeOver)
{
    int isHeld = 0;
    const std::string lock = state_->path("lock");
    if (!state_->hold.take(lock, isHeld)) {
        if (!isHeld)
            return StudyOpening::readOnly;
        (void)readHolderText(FileHold::textOf(lock), holder_, child_);
        return StudyOpening::held;
    }
    state_->self = {hostName(), processId(), processStartTime(processId())};
    if (!readHolderText(state_->hold.text(), holder_, child_))
        return StudyOpening::opened;
    if (holder_.host != state_->self.host)
        // nobody here knows whether it lives
        return takeOver ? StudyOpening::opened : StudyOpening::held;
    if (child_.process > 0 && child_.started > 0 &&
        processStartTime(child_.process) == child_.started)
        return StudyOpening::childRuns;
    return takeOver ? StudyOpening::opened : StudyOpening::dead;
}

StudyOpening AStudy::open(const std::string& folder, int takeOver)
{
    close();
    fault_.clear();
    notes_.clear();
    holder_ = child_ = {};
    state_->folder = plainPath(folder);
    std::string text, why;
    if (!readWhole(state_->path("study.txt"), mostStudyText, text, why)) {
        (void)fail("study.txt " + why);
        return StudyOpening::failed;
    }
    StudyRecord record;
    const StudyTextKind kind = readStudyText(text, record, why);
    if (kind == StudyTextKind::bad) {
        (void)fail("study.txt " + why);
        return StudyOpening::failed;
    }
    StudyOpening opening = StudyOpening::readOnly;
    if (kind == StudyTextKind::good)
        opening = take(takeOver);
    if (opening != StudyOpening::opened && opening != StudyOpening::readOnly) {
        state_->hold.release();
        return opening;
    }
    // another program may have changed it before the lock was taken
    if (opening == StudyOpening::opened &&
        (!readWhole(state_->path("study.txt"), mostStudyText, text, why) ||
         readStudyText(text, record, why) != StudyTextKind::good)) {
        state_->hold.release();
        (void)fail("study.txt " + why);
        return StudyOpening::failed;
    }
    state_->record = std::move(record);
    state_->isOpen = 1;
    state_->isReadOnly = opening == StudyOpening::readOnly;
    if (kind == StudyTextKind::newer)
        notes_.emplace_back("the study was written by a newer version");
    readRounds();
    if (!state_->isReadOnly) {
        for (const char* part : {"rounds", "gains", "shared", "work"})
            (void)makeFolders(state_->path(part), why);
        if (!setChild(0, 0)) {
            close();
            return StudyOpening::failed;
        }
        sweep();
    }
    return opening;
}

void AStudy::readRounds()
{
    state_->rounds.clear();
    damaged_ = 0;
    for (const std::string& name : namesIn(state_->path("rounds"))) {
        int id = 0;
        if (name.front() == '.' || !stoval(name, id) || id < 0 || State::numbered(id) != name)
            continue;
        std::string text, why;
        StudyRound round;
        if (!readWhole(state_->roundFolder(id) + "/round.txt", mostStudyText, text, why) ||
            readRoundText(text, round, why) == StudyTextKind::bad) {
            ++damaged_;
            notes_.push_back("round " + std::to_string(id) + " is left out: round.txt " + why);
            continue;
        }
        if (round.id != id || round.parent >= id) {
            ++damaged_;
            notes_.push_back("round " + std::to_string(id) + " is left out: it is another's");
            continue;
        }
        state_->rounds.push_back(std::move(round));
    }
    std::sort(state_->rounds.begin(), state_->rounds.end(),
              [](const StudyRound& a, const StudyRound& b) { return a.id < b.id; });
    std::vector<int> lost;
    for (const StudyRound& each : state_->rounds) {
        for (const RoundMap map : {RoundMap::residual, RoundMap::model, RoundMap::beam}) {
            const std::string file = mapFile(each.id, map);
            if (file.empty() || IsFileExists(file))
                continue;
            notes_.push_back("round " + std::to_string(each.id) +
                             " is left out: " + baseNameOf(file) + " is missing");
            lost.push_back(each.id);
            break;
        }
        if (each.parent >= 0 && !round(each.parent))
            notes_.push_back("round " + std::to_string(each.id) + " has lost its parent");
    }
    damaged_ += static_cast<int>(lost.size());
    std::erase_if(state_->rounds, [&lost](const StudyRound& each) {
        return std::find(lost.begin(), lost.end(), each.id) != lost.end();
    });
    // numbers of those left out are not given again
    for (const std::string& name : namesIn(state_->path("rounds")))
        if (int id = 0; name.front() != '.' && stoval(name, id) && id >= 0 && id < 1'000'000'000)
            state_->record.nextRound = std::max(state_->record.nextRound, id + 1);
}

int AStudy::discard()
{
    if (!state_->isNew || hasData() || !rounds().empty())
        return 0;
    std::string ignored;
    const int isGone = removeAll(folder(), ignored);
    close();
    return isGone;
}

void AStudy::close()
{
    if (state_->hold.isTaken())
        (void)state_->hold.setText("");
    state_->hold.release();
    state_ = std::make_unique<State>();
}

}  // namespace pavane
