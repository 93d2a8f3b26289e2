#pragma once

#include "apps/ms/FitsOutput.h"
#include "apps/ms/WorkTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane_ms
{

/// Groups of a UVFITS file that are of one scan, counted from 1.
struct ExportScan {
    int number = 0, field = 0, array = 0;
    std::int64_t firstGroup = 0, lastGroup = 0;
    double start = 0, end = 0;  ///< days
};

/// What of a working copy goes where in a UVFITS file, its header and its tables.
class ExportPlan
{
public:
    explicit ExportPlan(WorkTable& work);

    struct Place {
        int selection = 0, ifPlace = 0;  ///< from 0
    };
    Place placeOf(int window) const { return places_[static_cast<std::size_t>(window)]; }
    /// Numbers of the IFs in the order of the file.
    const std::vector<int>& ifs() const { return ifs_; }
    int channels() const { return channels_; }
    struct Hand {
        int fits = -1, from = 0;  ///< index in the columns
    };
    const std::vector<Hand>& hands() const { return hands_; }
    /// The data have one hand, of the two columns that the engine wants.
    int isSingle() const { return hands_.size() == 1; }
    /// Non-zero where both columns share the weight of the one hand.
    int isShared(const std::string& column) const
    {
        return work_.facts().isIntensity || column == "CORRECTED_DATA";
    }
    int hasWideNumbers() const { return hasWideNumbers_; }

    /// The place of the card that tells the number of groups.
    std::size_t writeHeader(FitsCards& cards, const std::string& column) const;
    std::vector<std::string> lost() const;
    void writeTables(FitsOutput& file, const std::vector<ExportScan>& scans) const;

private:
    struct Window {
        double frequency = 0, width = 0;
        int channels = 1, sideband = 1;
    };
    void planWindows();
    void planHands();
    void writeAntennas(FitsOutput& file, int subarray) const;
    void writeFrequencies(FitsOutput& file) const;
    void writeScans(FitsOutput& file, const std::vector<ExportScan>& scans) const;
    void writeSources(FitsOutput& file) const;
    casacore::Table subtable(const char* name) const;

    WorkTable& work_;
    std::vector<Place> places_;
    std::vector<Window> windows_;
    std::vector<int> ifs_;
    std::vector<Hand> hands_;
    int channels_ = 1, unevenWindows_ = 0, selections_ = 1, subarrays_ = 1, hasWideNumbers_ = 0;
};

}  // namespace pavane_ms
