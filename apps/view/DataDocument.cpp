#include "apps/view/DataDocument.h"

#include "pavane/progress/slices.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"
#include "tessel/stokes_name.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace pavane
{

namespace
{

/// Bytes between two looks at the clock.
constexpr std::int64_t sliceBytes = std::int64_t{1} << 20;
constexpr double megalambda = 1e6;
/// Of more IFs, which no telescope has, no groups are made: their bits grow with the square.
constexpr int mostGroupedIfs = 8192;
constexpr int shownDigits = 5;
constexpr double secondsPerDay = 86400;
/// Bytes of groups that a command may read before its dialog shows.
constexpr std::int64_t mostReadAtOnce = std::int64_t{64} << 20;

std::string telescopeName(const AUVXFile& file, int subarray, int number)
{
    const AUVXTlscItem* const item = file.telescope(subarray, number);
    return item && !item->name.empty() ? item->name : std::to_string(number);
}

}  // namespace

int DataDocument::open(const std::string& file, std::string& error, const UvTimes& times,
                       const ProgressFunction& progress)
{
    int opened = observation_.open(file, error, 0, progress);
    if (!opened && error == readingGivenUp) {
        error.clear();
        return 0;
    }
    if (opened && !times.isAll()) {
        opened = observation_.limitTimes(times);
        error = observation_.error();
    }
    if (!opened) {
        error = file + ": " + error;
        return 0;
    }
    file_ = file;
    state_ = FileState(file);
    const AUVXFqTbl& frequencies = observation_.file().fqTbl();
    if (frequencies.ifCount() <= mostGroupedIfs)
        groups_ = AFreqGroupArray(frequencies);
    return 1;
}

const AUVXTIntervalPM& DataDocument::times()
{
    AUVXFile& file = observation_.file();
    if (std::exchange(knowsTimes_, 1))
        return times_;
    if (!file.hasIndex() || file.header().groups * file.groupBytes() <= mostReadAtOnce)
        (void)times_.Load(file, -1, -1);
    else
        for (const UvScan& scan : file.scans()) {
            const int isFirst = &scan == file.scans().data();
            const double start = scan.start * secondsPerDay;
            const double end = scan.end * secondsPerDay;
            times_.infoStart = isFirst ? start : std::min(times_.infoStart, start);
            times_.infoStop = isFirst ? end : std::max(times_.infoStop, end);
        }
    const UvTimes& chosen = observation_.times();
    times_.start = std::max(times_.infoStart, chosen.start * secondsPerDay);
    times_.stop = std::min(times_.infoStop, chosen.stop * secondsPerDay);
    return times_;
}

int DataDocument::chooseTimes(const AUVXTIntervalPM& times)
{
    times_ = times;
    const int isAll = times.start <= times.infoStart && times.stop >= times.infoStop;
    return observation_.limitTimes(isAll ? UvTimes() : UvTimes::ofSeconds(times.start, times.stop));
}

void DataDocument::plot(UvMarks marks, const UvView& view)
{
    marks.times = observation_.times();
    points_ = std::make_unique<UvPlotPoints>(observation_.file(), std::move(marks),
                                             UvPlotPoints::usualMost, view);
    reading_ = 1;
    stopped_ = 0;
}

int DataDocument::step(int milliseconds)
{
    (void)runSlice(std::chrono::milliseconds(milliseconds),
                   [this] { return isReading() && (reading_ = points_->step(sliceBytes)); });
    return isReading();
}

std::string DataDocument::trouble() const
{
    if (points_ && !points_->error().empty())
        return points_->error();
    if (!observation_.error().empty())
        return observation_.error();
    return state_.change();
}

int DataDocument::loadGroups(const std::string& file, std::string& error)
{
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = file + ": " + readFault(file);
        return 0;
    }
    if (!groups_.Load(in) || in.tell() != in.size()) {
        error = file + ": holds no frequency groups of " +
                std::to_string(observation_.file().fqTbl().ifCount()) + " IFs";
        return 0;
    }
    groupFile_ = file;
    return 1;
}

int DataDocument::saveGroups(const std::string& file, std::string& error)
{
    SafeFile safe;
    if (!safe.open(file) || !groups_.Store(safe.file()) || !safe.commit()) {
        error = file + ": " + safe.fault();
        return 0;
    }
    groupFile_ = file;
    return 1;
}

PointWords wordsOf(const UvObservation& observation, const UvPointOrigin& origin)
{
    const AUVXFile& file = observation.file();
    const std::vector<UvBaseline>& baselines = observation.baselines();
    const auto baseline =
        std::find_if(baselines.begin(), baselines.end(), [&](const UvBaseline& b) {
            return b.subarray == origin.subarray && b.first == origin.antenna1 &&
                   b.second == origin.antenna2;
        });
    PointWords words;
    words.baseline =
        baseline == baselines.end() ? 0 : static_cast<int>(baseline - baselines.begin()) + 1;
    words.scan = scanOf(observation.scans(), origin.subarray, origin.source, origin.selection,
                        origin.time, origin.group + 1) +
                 1;
    words.text = telescopeName(file, origin.subarray, origin.antenna1) + " - " +
                 telescopeName(file, origin.subarray, origin.antenna2);
    if (words.scan > 0)
        words.text += ", scan " + std::to_string(words.scan);
    if (const std::string time = uvTimeText(origin.time); !time.empty())
        words.text += ", " + time;
    words.text += ", IF " + std::to_string(origin.ifIndex + 1);
    if (file.header().channels > 1)
        words.text += " channel " + std::to_string(origin.channel + 1);
    words.text += ' ' + stokesName(file.header().stokes[static_cast<std::size_t>(origin.stokes)]) +
                  ": " + valToStr(amplitudeOf(origin.value), shownDigits) + " Jy at " +
                  valToStr(std::hypot(origin.u, origin.v) / megalambda, shownDigits) + " M\u03bb";
    if (origin.count > 1)
        words.text += ", mean of " + std::to_string(origin.count);
    return words;
}

}  // namespace pavane
