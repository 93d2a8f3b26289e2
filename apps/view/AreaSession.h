#pragma once

#include "apps/view/Autosave.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// The work on the areas of one map: where they were saved last, whether they are saved now, and
/// the copy on disk while they are not.
class AreaSession
{
public:
    /// Least time between two copies, in milliseconds.
    static constexpr std::int64_t pace = 200;

    AreaSession() = default;
    /// `folder` is where copies go, ending in '/'.
    explicit AreaSession(std::string folder) : folder_(std::move(folder)) {}
    AreaSession(const AreaSession&) = delete;
    AreaSession& operator=(const AreaSession&) = delete;

    /// Begins with a map and its areas, which count as saved. What was before ends first.
    void begin(const std::string& map);
    /// Ends on purpose: nothing is left to offer again. Without it the copy stays.
    void end();

    /// The areas changed at `now` (milliseconds of any clock); `modified`: they are not as they
    /// were saved. Returns the milliseconds after which `writeCopy` has to be called; 0: at once.
    std::int64_t changed(int modified, std::int64_t now);
    /// Brings the copy on disk up to date: written while something is unsaved, else removed. 0 when
    /// it could not be written; the next change tries again.
    int writeCopy(const StoreFunction& store, std::int64_t now,
                  const std::vector<AreaLabel>& labels = {});
    /// They were saved as they are. An empty name leaves the one from before.
    void saved(const std::string& file);
    /// They come from a file that Save would not write again (or, with an empty name, from none).
    void cameFrom(const std::string& file)
    {
        file_.clear();
        source_ = file;
    }

    /// Becomes that of another map, and the other way round.
    void swap(AreaSession& other) noexcept;

    int isModified() const { return modified_; }
    /// Where copies go.
    const std::string& folder() const { return folder_; }
    const std::string& map() const { return map_; }
    /// Where they were saved last or opened from; empty for nowhere.
    const std::string& file() const { return file_; }
    /// Where they came from, also when not all of them could be read there; empty for nowhere.
    const std::string& source() const { return source_; }
    /// Non-zero while a copy of what is unsaved lies on disk.
    int hasCopy() const { return hasCopy_; }
    const Autosave& autosave() const { return autosave_; }
    /// "map.fits*  -  pavane-view"; `otherWork`: something else is not saved either.
    std::string title(int otherWork = 0) const;

private:
    std::string folder_;
    std::string map_;
    std::string file_;
    std::string source_;
    Autosave autosave_;
    int modified_ = 0;
    int copyIsOld_ = 0;
    int hasCopy_ = 0;
    std::int64_t lastCopy_ = -pace;
};

}  // namespace pavane
