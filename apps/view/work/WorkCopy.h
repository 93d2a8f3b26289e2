#pragma once

#include "apps/view/work/WorkFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

class AComponents;

/// The copy of all that a window shows, kept while it is not as it was opened or saved, so that a
/// crash loses nothing: a work file "autosave-work-<process>-<window>.work" in the folder of the
/// profile. The copies of unsaved areas and components, which it names, are files of their own.
class WorkCopy
{
public:
    /// For a further window of this process; `folder` ends in '/'.
    explicit WorkCopy(const std::string& folder);
    const std::string& file() const { return file_; }
    /// Where components are kept that are not saved.
    std::string modelFile() const { return file_ + ".components"; }
    /// 0 when they could not be written.
    int keepModel(const AComponents& components);
    void removeModel();

    /// What the window shows now is in files: of that there is no copy.
    void begin(const Work& work) { saved_ = textOf(work); }
    /// Nothing of what it shows is in a file yet.
    void beginUnsaved() { saved_.clear(); }
    /// Brings the copy up to date; without one when all is as it was at `begin` and `isUnsaved` is
    /// 0. Writes only what has changed. 0 when it could not be written.
    int keep(const Work& work, int isUnsaved);
    /// Removes it, and the components.
    void remove();
    int isThere() const { return !written_.empty(); }

private:
    std::string textOf(const Work& work) const { return workText(file_, work); }

    std::string folder_, file_;
    std::string saved_;    ///< text of the work that needs no copy
    std::string written_;  ///< what the copy holds, "" without one
    int hasModel_ = 0;
};

/// Work that a session has left which ended without closing its window.
struct LeftWork {
    std::string file;
    std::int64_t time = 0;  ///< of its last change, seconds since 1970
    Work work;
};

/// Sets aside what a process of our number has left. Before the first WorkCopy.
void setLeftWorkAside(const std::string& folder);
/// All work that can be brought back, the latest first; what cannot be read is passed over.
std::vector<LeftWork> leftWork(const std::string& folder);
/// What is asked about it; `now` in seconds since 1970.
std::string questionAbout(const std::vector<LeftWork>& left, std::int64_t now);
/// Removes a copy. `andUnsaved`: with the copies of areas and components that it names, as far as
/// they are copies in its folder.
void removeLeftWork(const LeftWork& left, int andUnsaved);
/// Whether some work names the file as areas that were not saved.
int isPartOf(const std::vector<LeftWork>& left, const std::string& areas);

/// "12 minutes ago" and the like.
std::string ageText(std::int64_t time, std::int64_t now);

}  // namespace pavane
