#pragma once

#include "pavane/trackers/shapes/area_label.h"
#include "tessel/AFile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// Writes a collection into an open file; non-zero when all of it was written.
using StoreFunction = std::function<int(AFile&)>;

/// What a session that ended without saving has left.
struct LeftoverAreas {
    std::string file;
    std::int64_t time = 0;  ///< of its last write, seconds since 1970
};

/// Removes a copy with the names beside it.
void removeCopy(const std::string& file);

// Copies of all kinds are called START<process>END or START<process>-<number>END, in the folder of
// the profile, which ends in '/'.

/// Those whose processes are gone, the latest first.
std::vector<LeftoverAreas> leftCopies(const std::string& folder, const std::string& start,
                                      const std::string& end);
/// A name that no copy has and that no process makes.
std::string nameOfNoProcess(const std::string& folder, const std::string& start,
                            const std::string& end);

/// The copy of the areas of one map that is written while they are not saved, so that a crash loses
/// nothing: "autosave-<name of the map as a number>-<process>.areas" in the folder of the profile.
class Autosave
{
public:
    Autosave() = default;
    /// `folder` ends in '/'; it is made when the first copy is written.
    Autosave(const std::string& folder, const std::string& map);

    const std::string& file() const { return file_; }
    /// Writes the copy, whole or not at all, with names and colours of its areas beside it;
    /// non-zero on success.
    int write(const StoreFunction& store, const std::vector<AreaLabel>& labels = {});
    /// Removes the copy and its names, if there is one.
    void remove();

    /// Copies of the same map whose processes are gone, the latest first. To be asked for before
    /// the first `write`: one that has the name of ours gets another.
    std::vector<LeftoverAreas> leftovers() const;

private:
    void setAside() const;
    std::string folder_;
    std::string start_;  ///< of the names of all copies of this map
    std::string file_;
};

}  // namespace pavane
