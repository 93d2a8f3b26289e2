#pragma once

#include "pavane/calibration/UvCells.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/UvMarks.h"
#include "tessel/uvfits/UvSlices.h"
#include "tessel/uvfits/UvView.h"

#include <complex>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace pavane
{

/// What visibilities of a baseline are plotted against.
enum class BaselinePlot : int {
    time,     ///< a point an integration: the mean of the marked IFs, channels and polarisations
    channels  ///< a point a channel of all IFs: the mean of the marked times and polarisations;
              ///< those of the first frequency selection, then those of the next, and so on
};

/// Visibilities of a baseline as vectors averaged with their weights, an array for each number.
struct BaselineSeries {
    std::vector<double>
        x;  ///< days since 0h of the reference date, or the channel of all IFs from 1
    std::vector<float> amplitude, amplitudeError;   ///< Jy
    std::vector<float> phase, phaseError;           ///< degrees, as those of closure phases
    std::vector<float> modelAmplitude, modelPhase;  ///< empty without a model
    std::size_t count() const { return x.size(); }
};

/// What of a baseline is kept apart, and what is averaged.
struct BaselineDivision {
    UvColour colour = UvColour::none;  ///< ifs or source: a series each; all else: one series
    double seconds = 0;  ///< of BaselinePlot::time, above 0: means over so long, as UvTimeMeans
};

/// Reads all groups of a file in slices and makes amplitudes and phases of its baselines. Phases
/// are those from the lower to the higher number of a telescope, however the file stores them. May
/// be dropped at any time. The file outlives it.
class PAVANE_API BaselineReader
{
public:
    static constexpr std::size_t mostPoints = std::size_t{1} << 25;
    /// Channels of all baselines that are averaged at once, usually.
    static constexpr std::size_t usualSums = std::size_t{1} << 24;

    /// Without marks of polarisations those are taken that `usualStokes` gives.
    BaselineReader(AUVXFile& file, std::vector<UvBaseline> baselines, BaselinePlot plot,
                   UvMarks marks = {}, const AComponents& model = {},
                   std::size_t mostSums = usualSums, const BaselineDivision& division = {});
    BaselineReader(const BaselineReader&) = delete;
    BaselineReader& operator=(const BaselineReader&) = delete;

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when all is done, or
    /// cannot be: then `error` is not empty. It is an error when there is not one point.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    double done() const { return slices_.done(); }  ///< 0 to 1
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }
    /// Makes the series of what has been read so far, by time or channel; before, channels have no
    /// points and times stand in the order of the file. Done at the end of reading by itself.
    void refresh();
    const std::vector<UvBaseline>& baselines() const { return baselines_; }
    /// `part`: of the division, an IF or a source of the file, from 0; behind all sources are those
    /// that it does not know.
    const BaselineSeries& series(std::size_t baseline, std::size_t part = 0) const
    {
        return series_[baseline * parts_ + part];
    }
    std::size_t parts() const { return parts_; }
    const BaselineDivision& division() const { return division_; }

private:
    /// Sums of visibilities times weights.
    struct Sums {
        std::complex<double> data{}, model{};
        double weight = 0;
    };
    /// A mean in time that has not ended.
    struct OpenMean {
        Sums sums;
        double time = 0, interval = 0;  ///< time times weight
    };
    /// Of a series, a source and a frequency selection: what comes in turns at the same times does
    /// not end each other's.
    using MeanOf = std::tuple<std::size_t, int, int>;
    /// Of a series and a frequency selection.
    using ChannelsOf = std::pair<std::size_t, int>;

    void takeGroup(const UvGroups& groups, std::size_t i);
    void addModel(const double* frequencies);
    void addTo(Sums& sums, std::size_t cell) const;
    std::vector<Sums>* channelsOf(const ChannelsOf& key);
    std::size_t partOf(int source) const;
    void takePart(const UvGroups& groups, std::size_t i, std::size_t series, const Sums& sums);
    void endMean(std::size_t series, OpenMean& open);
    void addPoint(std::size_t series, double x, const Sums& sums);
    void makeChannels();
    void append(BaselineSeries& series, double x, const Sums& sums) const;

    AUVXFile& file_;
    std::vector<UvBaseline> baselines_;
    BaselinePlot plot_;
    UvMarks marks_;
    BaselineDivision division_;
    std::size_t parts_ = 1;
    AComponents model_;
    UvChoice choice_;
    UvSlices slices_;
    UvCells cells_;
    int hasCells_ = 0;
    Distinct<UvPair, int>
        indices_;  ///< of a baseline and 1, negative when it is stored the other way
    std::vector<BaselineSeries> series_;  ///< the parts of a baseline one after another
    std::map<MeanOf, OpenMean> open_;
    std::map<ChannelsOf, std::vector<Sums>> channels_;
    std::size_t points_ = 0, sums_ = 0, mostSums_;
    int isFresh_ = 1;
    UvLeg leg_;
    std::vector<double> u_, v_;
    std::vector<std::complex<double>> values_;
};

}  // namespace pavane
