#pragma once

#include "platform/api.h"

namespace pavane
{

class AFile;
class AUVXFile;
class CWinApp;

/// The part of an observation that a processing step uses, and how it is cut into intervals.
/// Seconds since 0h of the observation's reference day, running on past a day.
class PAVANE_API AUVXTIntervalPM
{
public:
    // Of the data, for information.
    double infoStart = 0, infoStop = 0, infoInterval = 0;
    // The choice.
    double start = 0, stop = 0, interval = 0;
    int everyPoint = 1;  ///< non-zero: each point by itself; `interval` then counts for nothing

    AUVXTIntervalPM() = default;
    /// As Load of a data file fills it, with everyPoint 1.
    AUVXTIntervalPM(AUVXFile& file, int subarray, int selection);

    /// The times of a subarray and a frequency selection, -1 for any: start of the first and end of
    /// the last scan, by the index or else by the groups, and the commonest step between successive
    /// times of a baseline. The choice becomes the same. Reads the groups once, twice when they are
    /// not in order of time. 0 when there are no such data or they cannot be read: then all six are
    /// 0.
    int Load(AUVXFile& file, int subarray, int selection);
    /// One record of 56 bytes. Non-zero on success; 0 also for times that are not finite. Then
    /// nothing is changed.
    int Load(AFile& file);
    int Store(AFile& file) const;

    /// Seven texts of the profile, "TI TSI3" and so on for `index` 3. What is missing there or is
    /// no finite number leaves its field alone. Non-zero when all seven were taken or written. The
    /// profile is the program's, whatever `app`, which may be null.
    int LoadFromINI(CWinApp* app, const char* section, int index);
    int StoreToINI(CWinApp* app, const char* section, int index) const;
};

}  // namespace pavane
