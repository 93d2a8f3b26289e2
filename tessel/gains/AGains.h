#pragma once

#include "tessel/api.h"

#include <complex>
#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

/// What became of a gain.
enum class GainState : unsigned char {
    missing,  ///< the antenna has no data in the interval
    solved,
    failed  ///< it has data, too few or too noisy ones
};

/// What an antenna does to a signal in an interval, a group of IFs and a hand: it makes of the
/// visibility M(ab) of the sky g(a) conj(g(b)) M(ab).
struct Gain {
    std::complex<double> value = 1;
    double error = 0;   ///< of real or imaginary part, in the unit of `value`; 0: not known
    double weight = 0;  ///< of the data that it is from: sum of weights times squared model
    int iterations = 0;
    int reference = -1;  ///< index of the antenna whose phase was made 0; -1: none
    GainState state = GainState::missing;
    unsigned char isFlagged = 0;  ///< by the user; what was solved stays beside it

    /// Non-zero when data may be divided by it.
    int isUsable() const { return state == GainState::solved && !isFlagged; }
    /// |value| / error; 0 when the error is not known.
    double ratio() const { return error > 0 ? std::abs(value) / error : 0; }
};

/// An antenna as the data name it.
struct GainAntenna {
    int subarray = 1, number = 0;
    std::string name;
};

/// A time that gains hold for, its start included, its end not. Days since 0h of the reference day.
struct GainInterval {
    double start = 0, end = 0;
    int subarray = 1;
    int source = 0;  ///< 0: every one

    double middle() const { return start + (end - start) / 2; }
};

/// Gains of antennas: an array of intervals, groups of IFs, hands and antennas, in this order, the
/// last index the fastest. An interval is of one subarray; gains of antennas of others are missing
/// in it. Intervals of a subarray rise and do not meet. Nothing is interpolated between them.
class PAVANE_API AGains
{
public:
    double referenceDay = 0;  ///< Julian date of 0h of the day that times count from
    int ifs = 1;              ///< of the data

    /// Makes an array of missing gains. 0, and an empty one, where it does not fit into memory.
    int create(std::vector<GainAntenna> antennas, std::vector<GainInterval> intervals,
               std::vector<std::vector<int>> groups, std::vector<char> hands);

    const std::vector<GainAntenna>& antennas() const { return antennas_; }
    const std::vector<GainInterval>& intervals() const { return intervals_; }
    /// Each has the IFs, from 0, that share a gain. An IF is in one group at the most.
    const std::vector<std::vector<int>>& groups() const { return groups_; }
    /// Of each: 'R', 'L', 'X' or 'Y'; 'I' for gains of the total intensity.
    const std::vector<char>& hands() const { return hands_; }

    /// Indices from 0, all of them within the array.
    Gain& at(std::size_t interval, std::size_t group, std::size_t hand, std::size_t antenna)
    {
        return cells_[placeOf(interval, group, hand, antenna)];
    }
    const Gain& at(std::size_t interval, std::size_t group, std::size_t hand,
                   std::size_t antenna) const
    {
        return cells_[placeOf(interval, group, hand, antenna)];
    }
    /// All of them.
    std::vector<Gain>& cells() { return cells_; }
    const std::vector<Gain>& cells() const { return cells_; }

    /// -1 when there is none.
    int intervalOf(int subarray, double time, int source = 0) const;
    int antennaOf(int subarray, int number) const;
    int groupOf(int ifIndex) const;
    int handOf(char hand) const;

    /// How many are in a state.
    std::size_t count(GainState state) const;

private:
    std::size_t placeOf(std::size_t interval, std::size_t group, std::size_t hand,
                        std::size_t antenna) const
    {
        return ((interval * groups_.size() + group) * hands_.size() + hand) * antennas_.size() +
               antenna;
    }
    void sortIntervals();

    std::vector<GainAntenna> antennas_;
    std::vector<GainInterval> intervals_;
    std::vector<std::vector<int>> groups_;
    std::vector<char> hands_;
    std::vector<Gain> cells_;
    std::vector<std::size_t> byTime_;  ///< intervals by subarray and start
    std::vector<int> groupOf_;         ///< by IF
};

}  // namespace pavane
