#pragma once

#include "pavane/calibration/UvCells.h"
#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/UvMarks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace pavane
{

/// The visibilities of one time of a subarray, source and frequency selection.
struct UvMoment {
    int subarray = 1, source = 1, selection = 1;
    int origin = 0;                       ///< counts these three together, in the file's order
    double first = 0, last = 0;           ///< days: the times of its earliest and latest leg
    const double* frequencies = nullptr;  ///< see UvChoice::frequenciesOf
    std::vector<UvLeg> legs;              ///< of the baselines of the reader
    std::vector<char> has;                ///< which of them are there

    double time() const { return first + (last - first) / 2; }
};

/// Who is given the moments of a file.
class MomentSink
{
public:
    virtual void take(UvMoment& moment) = 0;
    /// Called before the first moment; and again when all that was given is void, as the file
    /// turned out not to be in the order of time.
    virtual void restart() = 0;

protected:
    ~MomentSink() = default;
};

/// Reads the groups of a file in slices and puts together those of a time: legs that lie within
/// half an integration of each other. An integration is the commonest step from a time of a
/// baseline to its next one, since what files say of it is often another one.
///
/// Files are read once, in their order, as long as no time comes back to which there are moments
/// already, as in files sorted by baseline. Then all times are looked at first, and the groups are
/// read by time, as many moments at once as a fixed amount of memory holds. Of two groups of a
/// baseline at the same time the first counts. The file and the marks outlive it.
class PAVANE_API MomentReader
{
public:
    /// Groups of other baselines than these, stored either way, do not count. Only `withSample` the
    /// sample is taken.
    MomentReader(AUVXFile& file, const UvMarks& marks, const UvSplit& split,
                 const std::vector<UvBaseline>& baselines, int withPlaces, int withSample = 0);

    /// Goes on with some `bytes` of the file. Non-zero while more remains; 0 when all is done, or
    /// cannot be: then `error` is not empty.
    int step(std::int64_t bytes, MomentSink& sink);
    double done() const;  ///< 0 to 1, never falling
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return error_; }
    /// Begins anew with what was found out about the file; the sink is not told.
    void again();
    /// Empty before the first step.
    const UvCells& cells() const { return cells_; }
    /// Groups with a good visibility of each of the wanted baselines in some parts from all over
    /// the file, which tell what most of it is like. Known when the sink is first told to begin.
    const std::vector<std::int64_t>& sample() const { return sample_; }
    /// The baselines that the groups so far have, wanted or not.
    std::vector<UvBaseline> met() const;
    /// Days; known after the first step.
    double integration() const { return 2 * half_; }

private:
    enum class Phase { start, inOrder, index, byTime, over };
    /// A leg that is wanted: of which baseline, in which direction.
    struct Leg {
        int baseline = notWanted, sign = 1;
    };
    static constexpr int notWanted = -1;
    /// What the groups of a baseline, source and selection have in common.
    struct Kind {
        int isKnown = 0;
        Leg leg;
        int origin = -1;                      ///< -1: nothing of them is marked
        const double* frequencies = nullptr;  ///< see UvChoice::frequenciesOf
    };
    struct KindKey {
        UvPair pair;
        int source, selection;
        bool operator==(const KindKey&) const = default;
        std::uint64_t hash() const
        {
            return spread(pair.hash() ^ (std::uint64_t{static_cast<std::uint32_t>(source)} << 32 |
                                         static_cast<std::uint32_t>(selection)));
        }
    };
    /// Legs closer than these days are of one time even where no step is known.
    static constexpr double leastHalf = 5e-4 / 86400;
    /// A group in files that are read by time.
    struct Entry {
        double time;
        std::int64_t group;
        int origin;
        Leg leg;
    };
    /// Times of an origin that moments were given for, in runs that rise.
    struct Given {
        std::vector<std::vector<double>> runs;
    };

    int goOn(std::int64_t bytes, MomentSink& sink);
    int readBlock(std::int64_t first, std::int64_t count, int what);
    void measureStep();
    void takeSample();
    const Kind& kindOf(std::size_t i);
    int originOf(std::size_t i);
    int isWanted(std::size_t i) const
    {
        return std::isfinite(groups_.time[i]) && marks_.times.holds(groups_.time[i]);
    }
    void begin(UvMoment& moment, int origin, const double* frequencies, double time) const;
    int fits(const UvMoment& moment, double time) const
    {
        return std::max(moment.last, time) - std::min(moment.first, time) <= half_;
    }
    void put(UvMoment& moment, std::size_t i, const Leg& leg, double time) const;
    int takeInOrder(std::size_t i, MomentSink& sink);
    void closeOthers(double time, MomentSink& sink);
    void closeAll(MomentSink& sink);
    int isGiven(int origin, double time);
    void addEntry(std::size_t i);
    int takeBatch(MomentSink& sink);
    std::size_t nextMoment(std::size_t from) const;

    AUVXFile& file_;
    const UvMarks& marks_;
    UvChoice choice_;
    UvSplit split_;
    UvCells cells_;
    std::size_t baselines_;
    int what_, withSample_;
    std::map<std::tuple<int, int, int>, Leg> wanted_;
    Distinct<KindKey, Kind> kinds_;  ///< as they come in the file
    Kind other_;                     ///< one of which nothing is kept
    Distinct<UvPair, int> origins_;
    Phase phase_ = Phase::start;
    int isByTime_ = 0;  ///< the file is in no order of time
    std::int64_t next_ = 0;
    double half_ = 0;
    std::vector<std::int64_t> sample_;
    double before_ = 0;  ///< what was done when all was read anew
    std::string error_;
    UvGroups groups_;
    std::vector<UvMoment> open_;  ///< in order: one of an origin, the first `opened_` in use
    std::size_t opened_ = 0;
    std::vector<int> openOrigin_;
    std::vector<Given> given_;  ///< by origin
    std::vector<Entry> entries_;
    std::size_t entry_ = 0;
};

}  // namespace pavane
