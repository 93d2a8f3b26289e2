#pragma once

#include "apps/ms/hands.h"

#include <array>
#include <casacore/casa/BasicSL/Complex.h>
#include <casacore/ms/MeasurementSets/MeasurementSet.h>
#include <memory>
#include <string>
#include <vector>

namespace pavane_ms
{

/// What a row tells beside its visibilities.
struct MsRow {
    double time = 0;      ///< MJD, s, UTC
    double hostTime = 0;  ///< days since 0h of the reference day, to the last bit as hosts see it
    double interval = 0, exposure = 0;
    std::array<double, 3> uvw{};  ///< m
    int first = 0, second = 0, window = 0, field = 0, array = 0, scan = 1, observation = 0;
};

/// A spectral window.
struct MsWindow {
    int ifNumber = 1;  ///< as gains and flags name it, from 1
    std::string name;
    std::vector<double> frequencies, widths;  ///< Hz
    double reference = 0;
    int frame = 5;  ///< casacore's MFrequency type; topocentric
    int sideband = 1;
};

/// What `correct` and hosts have to know of a working copy; kept as a keyword of its table.
struct WorkFacts {
    static constexpr const char* key = "PAVANE";

    std::vector<std::string> hands;
    std::vector<int> ifs;               ///< number of the IF of each spectral window
    std::vector<int> antennaNumbers;    ///< of each row of ANTENNA
    std::vector<int> antennaSubarrays;  ///< likewise, from 1; 0: of all
    std::vector<int> sources;           ///< of each row of FIELD
    double referenceDay = 0;            ///< Julian date
    int isIntensity = 0;
    std::string input, kind;  ///< "UVFITS" or "MS"

    void write(casacore::Table& table) const;
    /// 0 when the table is no working copy.
    int read(const casacore::Table& table);
};

/// Makes a working MeasurementSet: rows by blocks, then subtables.
class MsBuilder
{
public:
    /// Windows of different lengths make columns whose cells differ in shape.
    MsBuilder(const std::string& name, const HandPlan& plan, std::vector<MsWindow> windows);

    /// Cells of a block: for each row the windows' channels times the plan's hands, hands the
    /// fastest.
    struct Block {
        std::vector<MsRow> rows;
        std::vector<casacore::Complex> data;
        std::vector<unsigned char> flags;
        std::vector<float> weights;
        void clear();
    };
    void add(const Block& block);

    casacore::MeasurementSet& ms() { return ms_; }
    const std::vector<MsWindow>& windows() const { return windows_; }
    /// The subtables of frequencies and hands, and the texts, one row of HISTORY for each.
    void writeWindows();
    void writeHistory(const std::vector<std::string>& lines, const std::string& origin);
    /// Everything reaches the disk.
    void finish(const WorkFacts& facts);

private:
    HandPlan plan_;
    std::vector<MsWindow> windows_;
    casacore::MeasurementSet& ms_;
};

/// Mean of the weights of each hand over channels that are not flagged, over all when all are.
void meanWeights(const float* weights, const bool* flags, int hands, int channels, float* means);

/// The shape of tiles of some 100 kB.
casacore::IPosition tileShape(int hands, int channels, std::size_t bytes);

}  // namespace pavane_ms
