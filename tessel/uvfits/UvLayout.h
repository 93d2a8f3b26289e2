#pragma once

#include "tessel/fits_cells.h"
#include "tessel/fits_hdus.h"
#include "tessel/uvfits/uv_values.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// One random parameter that adds to a value: where it stands in a group and how it is scaled.
struct UvTerm {
    std::int64_t offset = 0;  ///< bytes from the start of a group
    double scale = 1;
    double zero = 0;
};

/// A value that parameters of the same name add up to, as a date of two parts; nothing without any.
using UvTerms = std::vector<UvTerm>;

/// Where everything stands in the groups of a file. Private to tessel's sources.
struct UvLayout {
    int bitpix = -32;
    std::int64_t dataStart = 0;
    std::int64_t groups = 0;
    std::int64_t groupBytes = 0;
    std::int64_t parameterBytes = 0;  ///< the cells of a group begin behind them
    std::int64_t cells = 0;           ///< numbers of a group behind its parameters
    CellScale scale;                  ///< of the cells
    /// Cells from one item of an axis to the next; the lengths are those of the header.
    std::int64_t complexStep = 1, stokesStep = 0, channelStep = 0, ifStep = 0;
    int complexLength = 3;

    UvTerms u, v, w, baseline, antenna1, antenna2, subarray, date, source, selection;
    double secondsOfU = 1;                  ///< in a unit of u, v and w
    int onlySource = 1, onlySelection = 1;  ///< of groups that do not tell
};

/// Reads axes and parameters of a header of random groups, and makes sure that the file, of `size`
/// bytes, holds the groups. Non-zero on success; else `error`, a clause without its subject.
int readUvLayout(const FitsHdu& hdu, std::int64_t size, UvHeader& header, UvLayout& layout,
                 std::string& error);

/// Years of a text such as "2000.0", "J2000" or "B1950"; 0 for another.
double equinoxOf(const std::string& text);

/// Julian date of 0h of a date such as "2010-12-24", also with a time behind it, or "24/12/96", of
/// the twentieth century. Non-zero when the text is a date.
int julianDay(const std::string& date, double& day);

}  // namespace pavane
