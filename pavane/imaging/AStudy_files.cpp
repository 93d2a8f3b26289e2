#include "pavane/imaging/AStudy_state.h"
#include "tessel/folders.h"
#include "tessel/paths.h"

#include <algorithm>
#include <set>

namespace pavane
{

// The gains and flags of a study, and its working data: files that never change once they are
// there.

namespace
{

constexpr int mostFiles = 99999;

int firstFree(const std::string& folder, const char* ending)
{
    for (int i = 1; i <= mostFiles; ++i) {
        char digits[16];
        (void)std::snprintf(digits, sizeof digits, "/%04d", i);
        if (!IsFileExists(folder + digits + ending))
            return i;
    }
    return 0;
}

}  // namespace

std::string AStudy::gainTable(int gains) const
{
    return state_->path("gains/" + State::numbered(gains) + ".fits");
}

std::string AStudy::gainText(int gains) const
{
    return state_->path("gains/" + State::numbered(gains) + ".txt");
}

std::string AStudy::flagFile(int flags) const
{
    return flags > 0 ? state_->path("gains/flags-" + State::numbered(flags) + ".txt")
                     : std::string();
}

int AStudy::addGains(const std::string& table, const std::string& text)
{
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    // the table comes last: gains are there when it is
    const int number = firstFree(state_->path("gains"), ".fits");
    std::string why;
    if (!number)
        return fail("has too many gains");
    if (!copyWhole(text, gainText(number), why) || !copyWhole(table, gainTable(number), why))
        return fail("the gains: it " + why);
    return number;
}

int AStudy::addFlags(const std::string& bytes)
{
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    std::string why, there;
    int number = 1;
    for (; number <= mostFiles && IsFileExists(flagFile(number)); ++number)
        if (readWhole(flagFile(number), mostAreas, there, why) && there == bytes)
            return number;
    if (number > mostFiles)
        return fail("has too many flag files");
    return writeWhole(flagFile(number), bytes, why) ? number : fail("the flags: it " + why);
}

std::string AStudy::uvfitsFile() const
{
    const std::string& name = state_->record.uvfits;
    return name.empty() || name.front() == '/' ? name : state_->path(name);
}

std::string AStudy::facts() const
{
    std::string bytes, why;
    return readWhole(state_->path("work/facts.txt"), mostStudyText, bytes, why) ? bytes
                                                                                : std::string();
}

int AStudy::hasData() const { return !state_->record.uvfits.empty() && IsFolderExists(dataFile()); }

int AStudy::setData(const std::string& uvfits, const std::string& facts)
{
    if (!state_->isOpen || state_->isReadOnly)
        return fail("is open for reading only");
    std::string why;
    if (!writeWhole(state_->path("work/facts.txt"), facts, why))
        return fail("the facts: it " + why);
    StudyRecord record = state_->record;
    record.uvfits = uvfits;
    record.model = record.corrected = {};
    return store(record);
}

int AStudy::leaveData()
{
    StudyRecord record = state_->record;
    record.stamp = contentKey(stampOf(dataFile(), "table.lock"));
    return record.stamp == state_->record.stamp || store(record);
}

int AStudy::checkData(int& isChanged)
{
    const std::string& left = state_->record.stamp;
    isChanged = !left.empty() && left != contentKey(stampOf(dataFile(), "table.lock"));
    if (!isChanged || (!modelTag().isKnown && !correctedTag().isKnown))
        return 1;
    StudyRecord record = state_->record;
    record.model = record.corrected = {};
    return store(record);
}

int AStudy::setChild(int process, long long started)
{
    if (!state_->hold.isTaken())
        return fail("is open for reading only");
    const StudyHolder child = {process > 0 ? state_->self.host : "", process, started};
    if (!state_->hold.setText(holderText(state_->self, child)))
        return fail("the lock cannot be written");
    state_->child = child;
    return 1;
}

void AStudy::sweep(const std::string& keeps)
{
    std::set<std::string> used;
    for (const StudyRound& each : state_->rounds) {
        used.insert(each.areas);
        used.insert(each.mask + ".fits");
        for (const char* ending : {"-dirty.fits", "-psf.fits", "-commands.txt"})
            used.insert(each.maps + ending);
    }
    std::string why;
    // maps of a round that cannot be read are kept: someone may mend it
    for (const std::string& name : namesIn(state_->path("shared")))
        if (damaged_ == 0 && !used.count(name))
            (void)removeAll(state_->path("shared/" + name), why);
    for (const std::string& name : namesIn(state_->path("rounds")))
        if (name.front() == '.')
            (void)removeAll(state_->path("rounds/" + name), why);
    // temporary files of the engine and data that were not brought to their end
    for (const std::string& name : namesIn(state_->path("work")))
        if (name != "data.ms" && name != "data.uvfits" && name != "facts.txt" &&
            name != "import.txt" && name != keeps)
            (void)removeAll(state_->path("work/" + name), why);
}

}  // namespace pavane
