#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"
#include "tessel/progress_function.h"
#include "tessel/uvfits/AUVXFqTbl.h"
#include "tessel/uvfits/AUVXTlscItem.h"
#include "tessel/uvfits/uv_values.h"
#include "tessel/uvfits/UvFilter.h"
#include "tessel/uvfits/UvGroups.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pavane
{

struct FitsHdu;
struct UvLayout;

/// Non-zero when a file is one of visibilities by its first header, whole or not; its name counts
/// for nothing.
PAVANE_API int holdsVisibilities(const std::string& name);

/// A file of visibilities (UVFITS, random groups), read only. Opening reads headers and tables;
/// groups are read in pieces of the caller's choice, so a file may be larger than memory. Nothing
/// is believed before the file is known to hold the bytes behind it, nothing throws. Of one thread.
class PAVANE_API AUVXFile
{
public:
    AUVXFile();
    AUVXFile(const AUVXFile&) = delete;
    AUVXFile& operator=(const AUVXFile&) = delete;
    ~AUVXFile();

    /// Opens `name`, a plain name, closing an open file first. Non-zero on success; else nothing is
    /// open and `error` says in one line what is wrong, without the file's name. A table that is
    /// damaged counts as missing, and `notes` tells of it. When `progress` gives up, between blocks
    /// of tables, nothing is open either.
    int open(const std::string& name, std::string& error, const ProgressFunction& progress = {});
    void close();
    int isOpen() const { return file_.isOpen(); }

    const std::string& name() const { return file_.name(); }
    std::int64_t size() const { return file_.size(); }  ///< bytes
    /// Bytes as they stand in the file, for who copies it. 0 where it has none.
    int readBytes(std::int64_t position, void* bytes, std::int64_t count);
    /// Private to tessel's sources.
    const UvLayout& layout() const { return *layout_; }

    const UvHeader& header() const { return header_; }
    /// Of all antenna tables, in the file's order; none without such tables.
    const std::vector<AUVXTlscItem>& telescopes() const { return telescopes_; }
    /// Without a table of frequencies, the header's.
    const AUVXFqTbl& fqTbl() const { return fqTbl_; }
    const std::vector<UvSource>& sources() const { return sources_; }
    /// The scans of the index table, in the file's order; UvGroupScan finds them where there is no
    /// such table.
    const std::vector<UvScan>& scans() const { return scans_; }
    int hasIndex() const { return hasIndex_; }
    /// What was left out or looks wrong, a clause without its subject each.
    const std::vector<std::string>& notes() const { return notes_; }

    /// The telescope that a subarray knows by the number; null when there is none.
    const AUVXTlscItem* telescope(int subarray, int number) const;
    /// The source that groups and scans call `id`, of a file without a table its only one; null
    /// when there is none.
    const UvSource* source(int id) const;
    /// Kilometres; NaN when one of its telescopes, or where it stands, is unknown.
    double lengthOf(const UvBaseline& baseline) const;

    /// Bytes of a group in the file.
    std::int64_t groupBytes() const;
    /// Groups that are read at a time with good speed and little memory.
    int blockGroups() const;
    /// Reads `count` groups from `first` (from 0) on: the arrays that `what`, bits of
    /// UvGroups::What, names. Non-zero on success; 0 when there are no such groups, too many for
    /// memory, or when the file has become shorter.
    int readGroups(std::int64_t first, int count, int what, UvGroups& groups);
    /// From now on visibilities are read as the filter makes them, by all who read this file; null:
    /// as they are stored. Opening and closing take it away.
    void setFilter(std::shared_ptr<UvFilter> filter) { filter_ = std::move(filter); }
    const std::shared_ptr<UvFilter>& filter() const { return filter_; }
    /// Of group `i` of what was read with UvGroups::cellValues; indices from 0, all zero outside.
    /// A file without weights has 1 everywhere.
    UvVisibility visibility(const UvGroups& groups, int i, int ifIndex, int channel,
                            int stokes) const;
    /// Where the numbers of UvGroups::cells stand, for loops that need all of them.
    UvCellSteps cellSteps() const;

private:
    int takeGroups(std::int64_t first, int count, int what, UvGroups& groups);
    void applyFilter(UvGroups& groups) const;
    int seekTo(std::int64_t position);
    struct Watch;  ///< of opening
    int readHeaders(Watch& watch, std::string& error);
    void readTables(std::int64_t start, std::int64_t size, Watch& watch);
    void readTable(const FitsHdu& hdu, Watch& watch);
    void settle();
    void findReferenceDay();
    void note(const std::string& text);

    AFile file_;
    UvHeader header_;
    std::unique_ptr<UvLayout> layout_;
    std::vector<AUVXTlscItem> telescopes_;
    AUVXFqTbl fqTbl_;
    std::vector<AUVXFreqs> selections_;
    std::vector<UvSource> sources_;
    std::vector<UvScan> scans_;
    int hasIndex_ = 0;
    int hasSources_ = 0;
    int antennaTables_ = 0;
    std::vector<std::string> notes_;
    std::unordered_map<std::uint64_t, std::size_t> telescopeOf_;
    std::unordered_map<int, std::size_t> sourceOf_;
    std::vector<unsigned char> block_;
    std::shared_ptr<UvFilter> filter_;
};

}  // namespace pavane
