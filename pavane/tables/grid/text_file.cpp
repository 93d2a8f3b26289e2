#include "pavane/tables/grid/text_file.h"

#include <filesystem>

namespace pavane
{

namespace fs = std::filesystem;

namespace
{

/// A name beside `name` that nothing has; empty when the folder cannot be looked at.
CString freeName(const CString& name)
{
    constexpr int most = 1000;
    for (int i = 0; i < most; ++i) {
        CString part = name + ".part" + (i ? std::to_string(i + 1) : "");
        std::error_code failed;
        if (fs::symlink_status(part, failed).type() == fs::file_type::not_found)
            return part;
    }
    return {};
}

}  // namespace

int TextFile::open(const CString& name)
{
    std::error_code failed;
    const fs::path real = fs::canonical(name, failed);  // behind links
    const bool exists = !failed;
    name_ = exists ? real.string() : name;
    place_ = name_;
    if (exists && fs::is_regular_file(real, failed)) {
        // one that may not be written may not be replaced either
        if (!std::ofstream(name_, std::ios::binary | std::ios::app))
            return 0;
        place_ = freeName(name_);
        if (place_.empty())
            return 0;
    }
    stream_.open(place_, std::ios::binary | std::ios::trunc);
    if (!stream_)
        return 0;
    if (replaces()) {
        const fs::perms mode = fs::status(real, failed).permissions();
        fs::permissions(place_, mode, failed);  // a file system without them keeps its own
    }
    return 1;
}

int TextFile::close(int written)
{
    stream_.close();
    if (!stream_ || !written)
        return 0;
    if (!replaces())
        return 1;
    std::error_code failed;
    fs::rename(place_, name_, failed);
    if (failed)
        return 0;
    place_ = name_;
    return 1;
}

}  // namespace pavane
