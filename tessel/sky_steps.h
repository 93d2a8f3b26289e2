#pragma once

#include "tessel/api.h"
#include "tessel/sky_frame.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace pavane
{

/// How the numbers of a grid are written.
enum class SkyNumbers : std::uint8_t {
    hours,   ///< "12h30m49.5s"
    arc,     ///< "+12°23′28.0″"
    degrees  ///< "187.7059°"
};

/// The labels that a user asks for. `usual` are hours and arc on the equator, degrees elsewhere;
/// `offsets` are true angles from a reference position, east and north of it.
enum class SkyLabels : std::uint8_t { usual, sexagesimal, degrees, offsets };

/// The values at which a grid has lines of one kind: origin + k step, k any whole number.
struct SkySteps {
    SkyNumbers numbers = SkyNumbers::degrees;
    double step = 1;    ///< degrees of the coordinate
    double origin = 0;  ///< degrees; 0 but for offsets
    int isOffset = 0;
    double shown = 1;  ///< of offsets: what a step counts in their unit
    std::string unit;  ///< of offsets: "mas", "arcmin" ...; empty else
    int decimals = 0;  ///< digits behind the point of the last part
    double value(double k) const { return origin + k * step; }
};

/// A text in up to three parts, of which those that repeat may be left out.
struct PAVANE_API SkyText {
    std::array<std::string, 3> parts;
    std::size_t count = 0;
    /// All parts.
    std::string whole() const;
    /// Without the first parts that are those of `before`; the last part always stays.
    std::string after(const SkyText& before) const;
};

/// How a coordinate of the frame is written; offsets say nothing of it and give degrees.
PAVANE_API SkyNumbers numbersOf(const SkyFrame& frame, SkyLabels labels, int isLatitude);

/// The closest round step that gives at most `most` lines (1 at least) on `span` degrees: of time
/// or arc 1, 2, 5, 10, 15, 20, 30 seconds or minutes, 1, 2, 3, 6 hours and so on, decimals 1, 2, 5.
/// Every step goes into 360 degrees, or the right angle, without a rest.
PAVANE_API SkySteps roundSteps(SkyNumbers numbers, double span, int most);
/// The same for angles from `reference`, a step in longitude being 1 / cos(`latitude`) of one on
/// the sky.
PAVANE_API SkySteps offsetSteps(double reference, double latitude, int isLatitude, double span,
                                int most);

/// Into how many round parts a step is divided by ticks between its lines, 1 for none.
PAVANE_API int roundParts(const SkySteps& steps);

/// What stands at the line k. Longitudes are 0 to below a turn.
PAVANE_API SkyText skyText(const SkySteps& steps, double k, int isLatitude);

}  // namespace pavane
