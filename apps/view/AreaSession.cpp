#include "apps/view/AreaSession.h"

#include "tessel/paths.h"

#include <algorithm>
#include <utility>

namespace pavane
{

void AreaSession::begin(const std::string& map)
{
    end();
    map_ = map;
    autosave_ = Autosave(folder_, map);
}

void AreaSession::end()
{
    if (hasCopy_)
        autosave_.remove();
    hasCopy_ = 0;
    map_.clear();
    file_.clear();
    source_.clear();
    modified_ = copyIsOld_ = 0;
    lastCopy_ = -pace;
}

std::int64_t AreaSession::changed(int modified, std::int64_t now)
{
    modified_ = modified;
    copyIsOld_ = 1;
    return std::clamp<std::int64_t>(lastCopy_ + pace - now, 0, pace);
}

int AreaSession::writeCopy(const StoreFunction& store, std::int64_t now,
                           const std::vector<AreaLabel>& labels)
{
    if (map_.empty())
        return 1;
    if (!isModified()) {
        if (hasCopy_)
            autosave_.remove();
        hasCopy_ = 0;
        return 1;
    }
    if (hasCopy_ && !copyIsOld_)
        return 1;
    lastCopy_ = now;
    if (!autosave_.write(store, labels))
        return 0;
    hasCopy_ = 1;
    copyIsOld_ = 0;
    return 1;
}

void AreaSession::saved(const std::string& file)
{
    if (!file.empty())
        file_ = file;
    modified_ = 0;
    if (hasCopy_)
        autosave_.remove();
    hasCopy_ = 0;
}

void AreaSession::swap(AreaSession& other) noexcept
{
    std::swap(folder_, other.folder_);
    std::swap(map_, other.map_);
    std::swap(file_, other.file_);
    std::swap(source_, other.source_);
    std::swap(autosave_, other.autosave_);
    std::swap(modified_, other.modified_);
    std::swap(copyIsOld_, other.copyIsOld_);
    std::swap(hasCopy_, other.hasCopy_);
    std::swap(lastCopy_, other.lastCopy_);
}

std::string AreaSession::title(int otherWork) const
{
    if (map_.empty())
        return "pavane-view";
    return baseNameOf(map_) + (isModified() || otherWork ? "*" : "") + "  \u2013  pavane-view";
}

}  // namespace pavane
