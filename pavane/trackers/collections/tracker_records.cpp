#include "pavane/trackers/collections/tracker_records.h"

#include "pavane/containers/item_io.h"
#include "tessel/AFile.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace pavane
{

namespace
{

/// Least bytes that one stored tracker takes: its name and the head of its record.
constexpr std::int64_t leastEntry = classNameField + 56;

}  // namespace

int storeTrackers(AFile& file, const TrackerCollection& trackers)
{
    const std::int32_t count = trackers.trackerCount();
    if (!storeItem(file, count))
        return 0;
    for (int i = 0; i < count; ++i) {
        char name[classNameField] = {};
        const ATracker& tracker = *trackers.trackerAt(i);
        std::strncpy(name, tracker.GetClassName(), sizeof name - 1);
        if (!file.write(name, sizeof name))
            return 0;
        if (!tracker.Store(file))
            return 1;
    }
    return 1;
}

int storeKeptTrackers(AFile& file, const TrackerCollection& trackers)
{
    const std::int32_t count = trackers.trackerCount();
    const std::int32_t open = !trackers.KeptState(-1).empty();
    if (!storeItem(file, count + open))
        return 0;
    const auto store = [&](const ATracker& tracker, int i) {
        char name[classNameField] = {};
        std::strncpy(name, tracker.GetClassName(), sizeof name - 1);
        const std::string state = trackers.KeptState(i);
        return file.write(name, sizeof name) &&
               file.write(state.data(), static_cast<std::int64_t>(state.size()));
    };
    for (int i = 0; i < count; ++i)
        if (!store(*trackers.trackerAt(i), i))
            return 0;
    return !open || store(*trackers.workingTracker(), -1);
}

int loadTrackers(AFile& file, const TrackerSource& make, std::vector<ATracker*>& trackers,
                 LoadReport& report)
{
    std::int32_t count = 0;
    if (!loadItem(file, count)) {
        report.note(0, "the file ends before the number of areas");
        return 0;
    }
    report.promised = count;
    if (count > 0)
        trackers.reserve(
            static_cast<std::size_t>(std::min<std::int64_t>(count, file.left() / leastEntry + 1)));
    for (std::int32_t i = 1; i <= count; ++i) {
        char name[classNameField];
        if (!file.read(name, sizeof name)) {
            report.note(i, "the file ends here; it promises " + std::to_string(count));
            return 0;
        }
        const bool ended = std::find(name, name + classNameField, '\0') != name + classNameField;
        std::unique_ptr<ATracker> tracker(ended ? make(name) : nullptr);
        if (!tracker) {
            report.note(i, "class \"" + shownClassName({name, classNameField}) + "\" is unknown");
            continue;
        }
        if (!tracker->Load(file)) {
            report.note(i, "its record is cut short or damaged");
            return 0;
        }
        trackers.push_back(tracker.release());
        ++report.loaded;
    }
    return 1;
}

}  // namespace pavane
