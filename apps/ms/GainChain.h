#pragma once

#include "apps/ms/GainFile.h"

#include <complex>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace pavane_ms
{

/// The antennas, time, hands and IF of a visibility.
struct GainPlace {
    int subarray = 1, first = 0, second = 0;
    double time = 0;
    int source = 0, ifNumber = 1;
    char firstHand = 'R', secondHand = 'R';
};

/// Gains of one file, by antenna, IF and hand in the order of time.
class GainTable
{
public:
    /// Times are moved to count from the reference day of the data.
    GainTable(const GainFile& file, const std::string& name, double referenceDay);

    /// g(first) conj(g(second)); 0 when one of them is missing, failed or flagged.
    int factor(const GainPlace& place, std::complex<double>& factor) const;

private:
    struct Entry {
        double start, end;
        int source;
        std::complex<double> value;
        int isUsable;
    };
    struct Series {
        std::vector<Entry> entries;
        mutable std::size_t last = 0;  ///< where the one before was found
    };
    const Entry* find(int subarray, int antenna, char hand, const GainPlace& place) const;

    std::vector<int> groupOf_;  ///< by the number of the IF; -1: none
    std::string hands_;
    std::map<std::pair<int, int>, std::size_t> antennaOf_;
    std::size_t groups_ = 0;
    std::vector<Series> series_;
};

/// The product of all tables: what a visibility is divided by.
class GainChain
{
public:
    void add(const std::string& name, double referenceDay);
    int isEmpty() const { return tables_.empty(); }
    int factor(const GainPlace& place, std::complex<double>& product) const;

private:
    std::vector<GainTable> tables_;
};

}  // namespace pavane_ms
