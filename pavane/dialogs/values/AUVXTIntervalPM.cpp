#include "pavane/dialogs/values/AUVXTIntervalPM.h"

#include "pavane/dialogs/values/observed_times.h"
#include "platform/profile.h"
#include "tessel/AFile.h"
#include "tessel/value_text.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace pavane
{

namespace
{

constexpr int recordBytes = 56;
constexpr int flagAt = 48;

using Time = double AUVXTIntervalPM::*;

struct TimeKey {
    Time time;
    const char* key;
};
/// In the order of the record.
constexpr TimeKey timeKeys[] = {
    {&AUVXTIntervalPM::infoStart, "TI TSI"},    {&AUVXTIntervalPM::infoStop, "TI TEI"},
    {&AUVXTIntervalPM::infoInterval, "TI TDI"}, {&AUVXTIntervalPM::start, "TI TS"},
    {&AUVXTIntervalPM::stop, "TI TE"},          {&AUVXTIntervalPM::interval, "TI TD"},
};
constexpr const char* everyPointKey = "TI AT";

void put(std::uint8_t* bytes, std::uint64_t bits, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(bits >> 8 * i);
}

std::uint64_t taken(const std::uint8_t* bytes, int count)
{
    std::uint64_t bits = 0;
    for (int i = 0; i < count; ++i)
        bits |= std::uint64_t{bytes[i]} << 8 * i;
    return bits;
}

/// The number of an entry; 0 when it is missing or none.
int readEntry(const CString& section, const CString& entry, double& value)
{
    double read = 0;
    if (!stoval(GetProfileString(section, entry), read) || !std::isfinite(read))
        return 0;
    value = read;
    return 1;
}

}  // namespace

AUVXTIntervalPM::AUVXTIntervalPM(AUVXFile& file, int subarray, int selection)
{
    (void)Load(file, subarray, selection);
}

int AUVXTIntervalPM::Load(AUVXFile& file, int subarray, int selection)
{
    ObservedTimes times;
    const int isFound = readObservedTimes(file, subarray, selection, times);
    infoStart = start = times.start;
    infoStop = stop = times.stop;
    infoInterval = interval = times.interval;
    return isFound;
}

int AUVXTIntervalPM::Load(AFile& file)
{
    std::uint8_t bytes[recordBytes];
    if (!file.read(bytes, recordBytes))
        return 0;
    AUVXTIntervalPM read;
    const std::uint8_t* at = bytes;
    for (const TimeKey& each : timeKeys) {
        read.*each.time = std::bit_cast<double>(taken(at, 8));
        if (!std::isfinite(read.*each.time))
            return 0;
        at += 8;
    }
    read.everyPoint = static_cast<int>(static_cast<std::uint32_t>(taken(bytes + flagAt, 4)));
    *this = read;
    return 1;
}

int AUVXTIntervalPM::Store(AFile& file) const
{
    std::uint8_t bytes[recordBytes] = {};
    std::uint8_t* at = bytes;
    for (const TimeKey& each : timeKeys) {
        put(at, std::bit_cast<std::uint64_t>(this->*each.time), 8);
        at += 8;
    }
    put(bytes + flagAt, static_cast<std::uint32_t>(everyPoint), 4);
    return file.write(bytes, recordBytes);
}

int AUVXTIntervalPM::LoadFromINI(CWinApp*, const char* section, int index)
{
    if (!section)
        return 0;
    const std::string number = std::to_string(index);
    int all = 1;
    for (const TimeKey& each : timeKeys)
        all = readEntry(section, each.key + number, this->*each.time) && all;
    double flag = 0;
    if (!readEntry(section, everyPointKey + number, flag))
        return 0;
    const bool isInt = flag >= std::numeric_limits<int>::min() &&
                       flag <= std::numeric_limits<int>::max() && flag == std::trunc(flag);
    everyPoint = isInt ? static_cast<int>(flag) : 1;
    return all;
}

int AUVXTIntervalPM::StoreToINI(CWinApp*, const char* section, int index) const
{
    if (!section)
        return 0;
    const std::string number = std::to_string(index);
    int all = 1;
    for (const TimeKey& each : timeKeys)
        all = WriteProfileString(section, each.key + number, valToStr(this->*each.time)) && all;
    return WriteProfileString(section, everyPointKey + number, valToStr(everyPoint)) && all;
}

}  // namespace pavane
