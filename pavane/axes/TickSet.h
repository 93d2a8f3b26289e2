#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// What one direction of a plot shows: labelled ticks, ticks between them, and the title.
struct TickSet {
    struct Tick {
        double value = 0;  ///< RP
        CString label;     ///< empty for a tick without one
    };
    std::vector<Tick> major;  ///< ascending
    std::vector<double> minor;
    CString title;
};

/// How a direction is to be ticked.
struct TickWish {
    CString name;  ///< title, with the markers of AB2DAxis
    TMnMx range;   ///< RP, in order
    int intervals = 5;
    int nPlus = 1;      ///< digits of a label before the point
    int nMinus = 2;     ///< and after it
    bool minor = true;  ///< ticks between the labelled ones
};

/// Evenly spaced ticks; a few minor ones where they divide a step into round parts.
PAVANE_API TickSet linearTicks(const TickWish& wish);
/// Ticks at 1, 2, ... 9 times the powers of ten: the powers labelled, and 2 and 5 as well when the
/// range spans less than two decades; the powers thinned out where there are more than intervals.
/// Where fewer than two labels would fall inside, the linear ticks of the range.
PAVANE_API TickSet logarithmicTicks(const TickWish& wish);
/// Ticks of a range in seconds; the unit of the labels is appended to a title that has no bracket.
PAVANE_API TickSet timeTicks(const TickWish& wish);

}  // namespace pavane
