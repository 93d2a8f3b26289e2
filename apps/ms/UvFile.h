#pragma once

#include "apps/ms/FitsHeader.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace pavane_ms
{

struct UvAntenna {
    int subarray = 1, number = 0;
    std::string name;
    std::array<double, 3> position{};  ///< geocentric, m
    int mount = 0;                     ///< 0 alt-azimuth, 1 equatorial, 2 in orbit
    double diameter = 0;               ///< m; 0: not told
    char feeds[2] = {'R', 'L'};
    double feedAngles[2] = {0, 0};  ///< degrees
};

struct UvIf {
    double frequency = 0;  ///< of the first channel, Hz
    double width = 0;      ///< of a channel, Hz; may be negative
    int sideband = 1;
};

struct UvSelection {
    int id = 1;
    std::vector<UvIf> ifs;
};

struct UvSource {
    int id = 1;
    std::string name;
    double ra = 0, dec = 0;  ///< degrees
    double equinox = 2000;
};

struct UvScan {
    std::int64_t first = 0, last = 0;  ///< groups from 0, `last` included
};

/// What a group tells beside its visibilities.
struct UvGroup {
    double time = 0;             ///< days since 0h of the reference day
    double u = 0, v = 0, w = 0;  ///< s
    int subarray = 1, first = 0, second = 0;
    int source = 1, selection = 1;
    double integration = 0;  ///< s; 0: not told
};

/// 0 for what can be no visibility of an observation.
int isWhole(const UvGroup& group);

/// A UVFITS file: random groups, with its tables. Whatever in it cannot be true is a Failure.
class UvFile
{
public:
    explicit UvFile(const std::string& name);

    std::int64_t groups() const { return groups_; }
    int ifs() const { return ifs_; }
    int channels() const { return channels_; }
    /// As FITS counts them: 1..4 I Q U V, -1.. RR LL RL LR, -5.. XX YY XY YX.
    const std::vector<int>& stokes() const { return stokes_; }
    const std::vector<UvAntenna>& antennas() const { return antennas_; }
    const std::vector<UvSelection>& selections() const { return selections_; }
    const std::vector<UvSource>& sources() const { return sources_; }
    const std::vector<UvScan>& scans() const { return scans_; }
    const FitsHeader& header() const { return header_; }
    /// Julian date of 0h of the day that times count from, and what is to be taken from times to
    /// make them UTC, in seconds.
    double referenceDay() const { return referenceDay_; }
    double aheadOfUtc() const { return aheadOfUtc_; }
    /// What in the file was left out.
    const std::vector<std::string>& notes() const { return notes_; }

    /// As many as make a block of some megabytes.
    std::int64_t blockGroups() const;
    void readGroups(std::int64_t first, std::int64_t count);
    /// Of the block last read, the group counted from its first.
    UvGroup group(std::int64_t i) const;
    /// Real, imaginary part and weight, the last 1 where the file has none.
    std::array<float, 3> visibility(std::int64_t i, int ifIndex, int channel, int stokes) const;

private:
    struct Term {
        std::int64_t offset;
        double scale, zero;
    };
    using Terms = std::vector<Term>;

    void readLayout();
    void readParameters(std::int64_t count);
    void readTables();
    void readAntennas(const FitsTable& table, const FitsHeader& header);
    void readSelections(const FitsTable& table);
    void readSources(const FitsTable& table);
    void readScans(const FitsTable& table);
    void settle();
    double sum(const unsigned char* group, const Terms& terms, double start) const;
    double cell(const unsigned char* group, std::int64_t index) const;

    InputFile file_;
    FitsHeader header_;
    std::vector<unsigned char> block_;
    int bitpix_ = -32, ifs_ = 1, channels_ = 1, complexLength_ = 3;
    std::int64_t groups_ = 0, parameterBytes_ = 0, groupBytes_ = 0;
    std::int64_t complexStep_ = 1, stokesStep_ = 0, channelStep_ = 0, ifStep_ = 0;
    double frequency_ = 0, channelWidth_ = 0, referenceChannel_ = 1;
    double scale_ = 1, zero_ = 0, blank_ = 0;
    int hasBlank_ = 0, antennaTables_ = 0;
    double secondsOfU_ = 1, referenceDay_ = 0, aheadOfUtc_ = 0;
    Terms u_, v_, w_, baseline_, date_, antenna1_, antenna2_, subarray_, source_, selection_,
        integration_;
    std::vector<int> stokes_;
    std::vector<UvAntenna> antennas_;
    std::vector<UvSelection> selections_;
    std::vector<UvSource> sources_;
    std::vector<UvScan> scans_;
    std::vector<std::string> notes_;
};

}  // namespace pavane_ms
