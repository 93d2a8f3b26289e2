#pragma once

#include "tessel/AFile.h"
#include "tessel/HeaderCards.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// One header of a FITS file and what it claims of the data behind it. Private to tessel's sources.
struct FitsHdu {
    HeaderCards cards;
    std::string kind;  ///< "SIMPLE", or the XTENSION
    std::int64_t dataStart = 0;
    std::int64_t dataBytes = 0;  ///< as claimed, without padding, cut at what no file can hold
};

/// Opens `name` for reading and looks at its first bytes, so that the commonest slips get a clear
/// answer. Non-zero on success, else `error`.
int openFits(const std::string& name, AFile& file, std::string& error);

/// Reads the header at `start`. Non-zero on success; 0 when there is none, when the file ends
/// before it does or when its sizes make no sense. Whether the file holds the data is not asked.
int readHdu(AFile& file, std::int64_t start, FitsHdu& hdu);

/// Where the next header begins.
std::int64_t endOf(const FitsHdu& hdu);

/// The whole number of a card, `missing` without such a card, and the least one that there is when
/// the value is none or beyond 2^53.
std::int64_t wholeNumber(const HeaderCards& cards, const std::string& key, std::int64_t missing);

}  // namespace pavane
