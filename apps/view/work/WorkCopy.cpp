#include "apps/view/work/WorkCopy.h"

#include "apps/view/Autosave.h"
#include "pavane/tables/components/component_file.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <system_error>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* start = "autosave-work-";
constexpr const char* ending = ".work";
/// Maps that a question names.
constexpr std::size_t mostNamed = 5;

int nextNumber()
{
    static int number = 0;
    return ++number;
}

/// Whether a file lies in the folder and is a copy by its name: nothing else is ever removed.
int isCopyIn(const fs::path& folder, const std::string& file)
{
    const fs::path path(file);
    return path.parent_path() == folder.lexically_normal() &&
           path.filename().string().starts_with("autosave-");
}

std::string countOf(std::size_t count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace

WorkCopy::WorkCopy(const std::string& folder)
    : folder_(folder),
      file_(folder + start + std::to_string(getpid()) + '-' + std::to_string(nextNumber()) + ending)
{
}

int WorkCopy::keep(const Work& work, int isUnsaved)
{
    std::string text = textOf(work);
    if (text == saved_ && !isUnsaved) {
        remove();
        return 1;
    }
    if (text == written_)
        return 1;
    std::error_code ignored;
    std::string error;
    fs::create_directories(folder_, ignored);
    if (!writeWork(file_, work, error))
        return 0;
    written_ = std::move(text);
    return 1;
}

void WorkCopy::remove()
{
    std::error_code ignored;
    if (isThere())
        fs::remove(file_, ignored);
    written_.clear();
    removeModel();
}

int WorkCopy::keepModel(const AComponents& components)
{
    std::error_code ignored;
    std::string error;
    fs::create_directories(folder_, ignored);
    const int isWritten = writeComponentFile(modelFile(), components, error);
    hasModel_ |= isWritten;
    return isWritten;
}

void WorkCopy::removeModel()
{
    std::error_code ignored;
    if (hasModel_)
        fs::remove(modelFile(), ignored);
    hasModel_ = 0;
}

void setLeftWorkAside(const std::string& folder)
{
    const std::string own = start + std::to_string(getpid()) + '-';
    std::error_code failed;
    std::vector<fs::path> found;
    for (fs::directory_iterator i(folder, failed), last; !failed && i != last; i.increment(failed))
        if (const std::string name = i->path().filename().string();
            name.starts_with(own) && name.ends_with(ending))
            found.push_back(i->path());
    for (const fs::path& path : found)
        fs::rename(path, nameOfNoProcess(folder, start, std::string("-1") + ending), failed);
}

std::vector<LeftWork> leftWork(const std::string& folder)
{
    std::vector<LeftWork> left;
    for (const LeftoverAreas& copy : leftCopies(folder, start, ending)) {
        LeftWork each{copy.file, copy.time, {}};
        std::vector<std::string> notes;
        std::string error;
        if (readWork(copy.file, each.work, notes, error))
            left.push_back(std::move(each));
    }
    return left;
}

std::string questionAbout(const std::vector<LeftWork>& left, std::int64_t now)
{
    std::size_t count = 0;
    int isUnsaved = 0;
    std::string names;
    std::int64_t latest = 0;
    for (const LeftWork& each : left) {
        latest = std::max(latest, each.time);
        for (const WorkMap& map : each.work.maps) {
            if (count++ < mostNamed)
                names.append(names.empty() ? "" : ", ").append(plainText(baseNameOf(map.file)));
            isUnsaved |= IsFileExists(map.unsavedAreas) || IsFileExists(map.unsavedModel);
        }
    }
    if (count > mostNamed)
        names.append(" and ").append(countOf(count - mostNamed, "other"));
    std::string text = "The last session ended without closing its window";
    if (left.size() > 1)
        text.append("s, ").append(std::to_string(left.size())).append(" of them");
    text.append(". The work on ").append(names).append(", changed ");
    text.append(ageText(latest, now)).append(", can be brought back");
    if (isUnsaved)
        text.append(", with areas or components that are not saved");
    return text + ".\n\nBring it back? (No deletes it.)";
}

void removeLeftWork(const LeftWork& left, int andUnsaved)
{
    std::error_code ignored;
    const fs::path folder = fs::path(left.file).parent_path();
    for (const WorkMap& map : left.work.maps) {
        if (!andUnsaved)
            break;
        if (isCopyIn(folder, map.unsavedAreas))
            removeCopy(map.unsavedAreas);
        if (isCopyIn(folder, map.unsavedModel))
            fs::remove(map.unsavedModel, ignored);
    }
    fs::remove(left.file, ignored);
}

int isPartOf(const std::vector<LeftWork>& left, const std::string& areas)
{
    for (const LeftWork& each : left)
        for (const WorkMap& map : each.work.maps)
            if (map.unsavedAreas == areas)
                return 1;
    return 0;
}

std::string ageText(std::int64_t time, std::int64_t now)
{
    const std::int64_t minutes = std::max<std::int64_t>(0, now - time) / 60;
    const auto text = [](std::int64_t n, const char* what) {
        return countOf(static_cast<std::size_t>(n), what) + " ago";
    };
    return minutes < 1      ? "less than a minute ago"
           : minutes < 120  ? text(minutes, "minute")
           : minutes < 2880 ? text(minutes / 60, "hour")
                            : text(minutes / 1440, "day");
}

}  // namespace pavane
