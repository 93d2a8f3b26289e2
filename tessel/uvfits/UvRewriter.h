#pragma once

#include "tessel/api.h"
#include "tessel/SafeFile.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvFilter.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Writes a file of visibilities anew with what a filter makes of visibilities and weights, in
/// slices; every other byte is as it was: headers, parameters, tables, what stands behind them,
/// and visibilities that do not change. Numbers are stored as the file stores them (BITPIX, BSCALE,
/// BZERO): floats and doubles to their last digit, whole numbers rounded to the nearest. The file
/// appears under its name when it is whole; dropped before, nothing is written. The file that is
/// read outlives it; the filter of its own does not count.
///
/// What is flagged gets its weight negative, or 0 where the file cannot hold negative numbers; in a
/// file without weights it becomes no number.
class PAVANE_API UvRewriter
{
public:
    /// `out` must not be the file that is read, nor a link to it: that is an error.
    UvRewriter(AUVXFile& in, std::string out, std::shared_ptr<UvFilter> filter);
    UvRewriter(const UvRewriter&) = delete;
    UvRewriter& operator=(const UvRewriter&) = delete;

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when it is written, or
    /// cannot be: then `error` is not empty. Values that whole numbers of the file cannot hold are
    /// an error.
    int step(std::int64_t bytes = std::int64_t{4} << 20);
    double done() const;  ///< 0 to 1
    /// Why it cannot be written, a clause without its subject; "" else.
    const std::string& error() const { return error_; }
    /// What is lost, or no longer right, a clause without its subject each.
    const std::vector<std::string>& notes() const { return notes_; }
    /// Visibilities that were changed, and those that were flagged of them.
    std::int64_t changed() const { return changed_; }
    std::int64_t flagged() const { return flagged_; }

private:
    int begin();
    int goOn(std::int64_t bytes);
    int copy(std::int64_t count);
    int writeGroups();
    int change(unsigned char* cells, const UvChange& change);
    int fail(std::string reason);

    AUVXFile& in_;
    std::string out_;
    std::shared_ptr<UvFilter> filter_;
    SafeFile safe_;
    std::int64_t position_ = 0, group_ = 0;
    int isBegun_ = 0, isOver_ = 0;
    std::string error_;
    std::vector<std::string> notes_;
    std::int64_t changed_ = 0, flagged_ = 0;
    UvGroups groups_;
    std::vector<unsigned char> block_;
};

}  // namespace pavane
