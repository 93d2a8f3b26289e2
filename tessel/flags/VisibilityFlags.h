#pragma once

#include "tessel/api.h"

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// One step of flagging: takes visibilities away, or brings back those that earlier lines took.
struct FlagLine {
    int isRestore = 0;
    int subarray = 0;           ///< 0: every one
    int first = 0, second = 0;  ///< numbers of antennas, in either order; 0: every one
    std::vector<int> ifs{};     ///< from 0, rising; none: all
    int stokes = 0;             ///< FITS code of a polarisation (-1 RR, -5 XX, 1 I); 0: all
    double start = 0, end = 0;  ///< days since 0h of the reference day; the end is not in it
    int source = 0;             ///< 0: every one

    bool operator==(const FlagLine&) const = default;
};

/// What of a user's data does not count, a layer beside them: lines in their order, of which later
/// ones win. What the data themselves have flagged no line brings back.
struct VisibilityFlags {
    double referenceDay = 0;  ///< Julian date of 0h of the day that times count from; 0: not known
    std::vector<FlagLine> lines;
};

/// A line of a file of flags: flag or restore, subarray, both antennas, IFs from 1 ("1-4,6" or
/// "*"), hand ("RR" or "*"), start and end in days with all their digits, source; tabs between.
PAVANE_API std::string flagText(const FlagLine& line);
/// Reads it; 0 with the name of the field that is wrong.
PAVANE_API int readFlagLine(std::string_view text, FlagLine& line, std::string& wrong);

/// The text of a file of flags: "# pavane flags 1", "# referenceday" with the Julian date, then the
/// lines. 0 when a line could not be read again; `error` is then a clause without its subject.
PAVANE_API int flagFileText(const VisibilityFlags& flags, std::string& text, std::string& error);
/// Writes it. The file is there as a whole or not at all. Non-zero on success, else `error` says in
/// one line what is wrong, without the file's name.
PAVANE_API int writeFlags(const std::string& file, const VisibilityFlags& flags,
                          std::string& error);
/// Reads them; a wrong line is an error that names it.
PAVANE_API int readFlags(const std::string& file, VisibilityFlags& flags, std::string& error);

}  // namespace pavane
