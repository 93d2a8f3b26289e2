#pragma once

#include "apps/view/FileState.h"
#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "pavane/tables/freq/AFreqGroupArray.h"
#include "pavane/tables/uvdata/UvObservation.h"
#include "tessel/uvfits/UvPlotPoints.h"

#include <memory>
#include <string>

namespace pavane
{

/// A file of visibilities that is open in a window: its tables, its frequency groups and the points
/// of the plot, which are read in slices. Neither copied nor moved: tables point into it.
class DataDocument
{
public:
    DataDocument() = default;
    DataDocument(const DataDocument&) = delete;
    DataDocument& operator=(const DataDocument&) = delete;

    /// Reads headers and tables; only these times are listed and plotted. Non-zero on success; else
    /// 0 and `error` is one line with the file's name, "" when `progress` gave up.
    int open(const std::string& file, std::string& error, const UvTimes& times = {},
             const ProgressFunction& progress = {});
    const std::string& file() const { return file_; }
    UvObservation& observation() { return observation_; }
    const UvObservation& observation() const { return observation_; }
    AFreqGroupArray& groups() { return groups_; }

    /// The times of the data, and those that are listed and plotted. The first call of a file that
    /// is small or has no index reads its groups.
    const AUVXTIntervalPM& times();
    /// Lists other times; the plot is to be made anew. 0, and nothing to list, without memory.
    int chooseTimes(const AUVXTIntervalPM& times);

    /// Begins to read the points that are marked. Those of before go when `points` is asked next.
    void plot(UvMarks marks, const UvView& view);
    /// Null before the first plot.
    UvPlotPoints* points() { return points_.get(); }
    const UvPlotPoints* points() const { return points_.get(); }
    /// Goes on reading for about so many milliseconds. Non-zero while more remains.
    int step(int milliseconds);
    /// Escape: what has been read stays, and resume goes on from there.
    void stop() { stopped_ = reading_; }
    void resume() { stopped_ = 0; }
    int isReading() const { return reading_ && !stopped_; }
    int isStopped() const { return stopped_; }
    /// What has happened to the file meanwhile, "" for nothing; a clause without its subject.
    std::string trouble() const;

    /// Reads groups in place of those there are. 0 when the file is none of groups of these IFs;
    /// `error` then names it, and nothing has changed.
    int loadGroups(const std::string& file, std::string& error);
    /// Writes them whole or not at all. Non-zero on success, else one line in `error` that names
    /// the file.
    int saveGroups(const std::string& file, std::string& error);
    /// Where the groups were saved last or opened from; empty for nowhere.
    const std::string& groupFile() const { return groupFile_; }

private:
    std::string file_;
    FileState state_;
    UvObservation observation_;
    AFreqGroupArray groups_;
    std::string groupFile_;
    AUVXTIntervalPM times_;
    int knowsTimes_ = 0;
    std::unique_ptr<UvPlotPoints> points_;
    int reading_ = 0;
    int stopped_ = 0;
};

/// Where a visibility of the plot comes from, in words, with the records (from 1, 0 for none) that
/// its baseline and its scan have in their tables.
struct PointWords {
    std::string text;
    int baseline = 0, scan = 0;
};
PointWords wordsOf(const UvObservation& observation, const UvPointOrigin& origin);

}  // namespace pavane
