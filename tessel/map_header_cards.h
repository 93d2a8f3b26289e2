#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

#include <string>

namespace pavane
{

/// Reads the header of a map whose cells a host has in memory, as readFitsMap reads that of a file
/// and with the same checks, and one more: a step of 0 is refused off the sky too, for who hands a
/// header over wants its cells placed. `cards`: 80 characters each, one behind another as a file
/// has them, or one a line; END may be missing. The header need not say how long the axes are;
/// where it does, the first two have to be `columns` and `rows`, and further ones longer than 1
/// need `plane`, counted from 0 over all of them (-1: the first, and only when there is just one).
/// A beam that only a table behind the image has is not known here. Non-zero on success; else 0,
/// `header` is empty and `error` says in one line what is wrong, to be read behind a name.
PAVANE_API int readMapHeader(const std::string& cards, int rows, int columns, MapHeader& header,
                             std::string& error, int plane = -1);

}  // namespace pavane
