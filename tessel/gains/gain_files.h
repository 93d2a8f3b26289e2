#pragma once

#include "tessel/api.h"
#include "tessel/gains/AGains.h"

#include <string>
#include <vector>

namespace pavane
{

/// Writes gains as an AIPS SN table of a FITS file (AIPS memo 117), whole or not at all: a row an
/// antenna and interval, for each hand and IF the correction 1/g, its weight (the ratio |g| /
/// error) and the antenna whose phase is 0. What is missing, failed or flagged has no number and
/// weight 0 there. Columns behind those of AIPS hold what it has no place for: names of antennas,
/// errors, states, and values of gains that were flagged. Non-zero on success, else `error` says in
/// one line what is wrong, without the file's name.
PAVANE_API int writeGainTable(const std::string& file, const AGains& gains, std::string& error);

/// Reads the SN table of a FITS file, the one with the highest version; `notes` tells, a clause
/// each, what in it the array cannot hold (rates, delays). Corrections of 0 have failed. Where the
/// table gives no length of an interval it reaches half of the way to its neighbours. A file that
/// somebody else wrote has a group for each IF and the hands R and L. Non-zero on success.
PAVANE_API int readGainTable(const std::string& file, AGains& gains,
                             std::vector<std::string>& notes, std::string& error);

/// Writes gains as text, a line each with tabs between: subarray, antenna, name, IFs, hand, start
/// and end in days, real and imaginary part, error, weight, iterations, reference antenna, state,
/// flag. Numbers have all their digits. Non-zero on success.
PAVANE_API int writeGainText(const std::string& file, const AGains& gains, std::string& error);
/// Reads it; a wrong line is an error that names it.
PAVANE_API int readGainText(const std::string& file, AGains& gains, std::string& error);

}  // namespace pavane
