#pragma once

#include "pavane/imaging/StudyRound.h"
#include "tessel/api.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

struct StudyRecord;

/// A map of a round.
enum class RoundMap { residual, restored, model, dirty, beam, mask };

/// A link of the chain that the user has now: gains of a study, on or off.
struct StudyLink {
    int gains = 0;  ///< AStudy::gains
    int id = 0;     ///< that of the link, kept when its gains are edited
    int isOn = 1;
    std::string name;
    std::vector<int> solvedOn;  ///< ids of the links whose corrections the data had
    friend bool operator==(const StudyLink&, const StudyLink&) = default;
};

/// What the user has chosen now; it changes freely and lies in study.txt.
struct StudySettings {
    CleanParameters parameters;
    std::vector<StudyLink> chain;
    int flags = 0;
    int keepsFailed = 0, keepsWeights = 0;
    int round = -1;                  ///< that the next one begins with; -1: none
    std::vector<std::string> other;  ///< lines of the host ("name value"), kept as they are
    friend bool operator==(const StudySettings&, const StudySettings&) = default;
};

/// What lies in a column of the working data.
struct DataTag {
    int isKnown = 0;
    std::string what;  ///< of a known one; see AStudy::modelTag and dataTag
    friend bool operator==(const DataTag&, const DataTag&) = default;
};

/// A process that works on a study.
struct StudyHolder {
    std::string host;
    int process = 0;
    long long started = 0;  ///< as processStartTime tells it
    friend bool operator==(const StudyHolder&, const StudyHolder&) = default;
};

/// How an attempt to open ended.
enum class StudyOpening {
    opened,
    readOnly,   ///< of a newer version, or in a folder that cannot be written
    held,       ///< another program has it open
    dead,       ///< one that ended without closing it had; open again with takeOver
    childRuns,  ///< a child of a program that ended still runs: end it or wait, then open again
    failed
};

/// A user's work on one data set: a folder NAME.pavane with study.txt, a folder for each round, the
/// gains, the working data and what rounds share. The value in memory is what lies on the disk:
/// each change is written aside, synced and renamed before the function returns. Functions that
/// change return non-zero on success; else nothing has changed and `fault` says why in a clause.
/// One program at a time has a study open to write. From one thread.
class PAVANE_API AStudy
{
public:
    AStudy();
    AStudy(const AStudy&) = delete;
    AStudy& operator=(const AStudy&) = delete;
    /// Gives the study back.
    ~AStudy();

    /// Makes an empty study; what has the name already is a fault. `source` is the data file of the
    /// user, which is never written.
    int create(const std::string& folder, const std::string& source);
    /// Opens one. With `takeOver` also that of a program that is dead, whose half-made rounds and
    /// temporary files go. What is damaged is left out and told in `notes`.
    StudyOpening open(const std::string& folder, int takeOver = 0);
    void close();
    /// Closes one that was created and into which no data came since, and removes its folder. 0,
    /// and nothing done, otherwise.
    int discard();
    int isOpen() const;
    int isReadOnly() const;
    const std::string& folder() const;  ///< absolute, without a '/' at its end
    const std::string& source() const;
    const std::string& fault() const { return fault_; }
    const std::vector<std::string>& notes() const { return notes_; }
    /// Who has it, after `held`, `dead` or `childRuns`, and the child that still runs.
    const StudyHolder& holder() const { return holder_; }
    const StudyHolder& runningChild() const { return child_; }

    // What the user has chosen
    const StudySettings& settings() const;
    int setSettings(const StudySettings& settings);
    /// The data that the chain, flags and parameters of now ask for.
    DataState dataState() const;
    DataState dataState(const CleanParameters& parameters) const;

    // Areas of now, as AreaCollection stores them; each round keeps its own.
    std::string areas() const;
    int setAreas(const std::string& bytes);
    std::string areasOf(const StudyRound& round) const;

    // Rounds
    const std::vector<StudyRound>& rounds() const;  ///< by rising number
    /// Null when there is no such round; valid until rounds change.
    const StudyRound* round(int id) const;
    std::vector<int> branchOf(int id) const;  ///< the round and all that came of it
    /// The file of a map, whether it is there or not (a restored map is made when first shown); ""
    /// when the round has no such map. `beam`: of a restored map that is not the fitted one.
    std::string mapFile(int id, RoundMap map, const MapBeam& beam = {}) const;
    int hasMap(int id, RoundMap map, const MapBeam& beam = {}) const;
    std::string logFile(int id) const;
    std::string note(int id) const;
    int setNote(int id, const std::string& text);
    /// Deletes the round and all that came of it, and what none shares any more.
    int deleteBranch(int id);
    /// Bytes on the disk of everything, and of a branch.
    std::int64_t size() const;
    std::int64_t branchSize(int id) const;

    // Gains and flags: files of the study that never change, numbered from 1
    /// Keeps gains: `table` is the file as FITS (SN table), `text` the same as tab-separated text.
    /// Their number, 0 on failure.
    int addGains(const std::string& table, const std::string& text);
    std::string gainTable(int gains) const;
    std::string gainText(int gains) const;
    /// Keeps a flag file; its number, 0 on failure. One that is there already has its number.
    int addFlags(const std::string& bytes);
    std::string flagFile(int flags) const;

    // The working data
    std::string dataFile() const { return folder() + "/work/data.ms"; }
    /// The visibilities for readers of UVFITS: the source itself, or what was made of an MS.
    std::string uvfitsFile() const;
    /// What `pavane-ms facts` told of the working data, "name value" lines.
    std::string facts() const;
    int hasData() const;  ///< imported

    // Which model and which corrections the working data hold
    const DataTag& modelTag() const;
    const DataTag& correctedTag() const;
    static std::string tagOf(const DataState& state);
    static std::string tagOf(const StudyRound& round);

    // For StudyJob
    int setModelTag(const DataTag& tag);
    int setCorrectedTag(const DataTag& tag);
    /// Notes the working data as they are now: what changed them was a child of ours.
    int leaveData();
    /// When another program has changed the working data since, both columns become unknown; then
    /// `isChanged` is not 0.
    int checkData(int& isChanged);
    int setData(const std::string& uvfits, const std::string& facts);
    /// Notes the child that runs now (process 0: none) in the lock.
    int setChild(int process, long long started);
    int nextRoundId() const;
    /// Takes a folder with the files of a round, inside the study, as that round.
    int addRound(const StudyRound& round, const std::string& from);
    int addRestored(int id, const MapBeam& beam, const std::string& from);
    std::string sharedFile(const std::string& key) const { return folder() + "/shared/" + key; }
    /// The key of beam and dirty map of these data and parameters.
    static std::string mapsKey(const DataState& data, const CleanParameters& parameters);
    /// Keeps areas that rounds share; their key, "" of none or on failure.
    std::string keepAreas(const std::string& bytes);
    /// Removes what no round has: half-made ones, temporary files, maps that nobody shares. The
    /// file of `work` that is named stays.
    void sweep(const std::string& keeps = {});

private:
    struct State;
    int fail(const std::string& fault);
    int store(const StudyRecord& record);
    StudyOpening take(int takeOver);
    void readRounds();
    std::unique_ptr<State> state_;
    std::string fault_;
    std::vector<std::string> notes_;
    StudyHolder holder_, child_;
    int damaged_ = 0;  ///< rounds left out, whose files are not swept
};

}  // namespace pavane
