#pragma once

namespace pavane
{

class AUVXFile;

/// Seconds since 0h of the reference day of a data file.
struct ObservedTimes {
    double start = 0, stop = 0;
    double interval = 0;  ///< commonest step of a baseline; 0 when none has two times
};

/// Those of a subarray and a frequency selection, -1 for any. Non-zero on success; 0 when there are
/// none or the file cannot be read to its end, and `times` are all 0.
int readObservedTimes(AUVXFile& file, int subarray, int selection, ObservedTimes& times);

}  // namespace pavane
