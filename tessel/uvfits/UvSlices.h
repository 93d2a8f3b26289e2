#pragma once

#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <utility>

namespace pavane
{

/// Goes through all groups of a file once, in slices, for those who make something of them. What
/// runs out of memory in a slice ends the reading with an error. The file outlives it.
class UvSlices
{
public:
    explicit UvSlices(AUVXFile& file) : file_(file) {}

    /// Calls `take(groups)` with the next blocks, some `bytes` of the file and one block at the
    /// least. `what` are bits of UvGroups::What. Non-zero while more remains; 0 when all is done,
    /// or cannot be: then `error` is not empty.
    template <class Take>
    int step(std::int64_t bytes, int what, Take take)
    {
        const std::int64_t groups = file_.header().groups;
        std::int64_t left = bytes;
        try {
            do {
                const std::int64_t count =
                    std::min<std::int64_t>(file_.blockGroups(), groups - next_);
                if (count <= 0 || !error_.empty())
                    return 0;
                if (!file_.readGroups(next_, static_cast<int>(count), what, groups_))
                    fail("has become shorter while it was read");
                else {
                    take(std::as_const(groups_));
                    next_ += count;
                }
                left -= count * file_.groupBytes();
            } while (left > 0 && error_.empty());
        } catch (const std::bad_alloc&) {
            fail("needs more memory than there is");
        }
        return error_.empty() && next_ < groups;
    }
    /// Ends the reading with the block that is being taken, for this reason.
    void fail(std::string reason) { error_ = std::move(reason); }

    /// 0 to 1.
    double done() const
    {
        const std::int64_t groups = file_.header().groups;
        return groups > 0 ? static_cast<double>(next_) / static_cast<double>(groups) : 1;
    }
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return error_; }

private:
    AUVXFile& file_;
    std::int64_t next_ = 0;
    std::string error_;
    UvGroups groups_;
};

}  // namespace pavane
