#pragma once

#include "tessel/api.h"
#include "tessel/sky_frame.h"

#include <string>
#include <string_view>

namespace pavane
{

/// A position in a frame, degrees.
struct SkyPosition {
    double longitude = 0;
    double latitude = 0;
    SkyFrame frame;
};

/// Sexagesimal angles: hours or degrees, minutes and seconds with ':' between them, "12h34m5.6s",
/// "-12d34m5.6s", "-01.54.24.5". `isLongitude` says that ':' stands behind hours. Degrees.
/// Non-zero when the text is one of these; minutes are below 60, seconds not above.
PAVANE_API int readSexagesimal(std::string_view text, int isLongitude, double& degrees);

/// The frame of a name in any letters: ICRS, FK5 or J2000, FK4 or B1950, galactic or gal, ecliptic
/// or ecl, with an equinox behind it where they take one ("FK5 at 1975", "J1975"). 0 for others,
/// and `frame` stays.
PAVANE_API int readSkyFrame(std::string_view text, SkyFrame& frame);

/// A position as people write it: two coordinates in degrees, with ':' or blanks between hours or
/// degrees, minutes and seconds, with units ("12h30m49.4s +12d23m28s", also with the signs for
/// degrees, minutes and seconds of arc), or without anything between ("J123049.4+122328"), and
/// perhaps the name of a frame before or behind them; `usual` is meant without one. 0 and a line in
/// `error` for anything else.
PAVANE_API int readSkyPosition(std::string_view text, const SkyFrame& usual, SkyPosition& position,
                               std::string& error);

/// "12h30m49.42s +12°23′28.0″ (ICRS)", "283.778° +74.491° (galactic)", with digits for a tenth of
/// `step` degrees. readSkyPosition reads it.
PAVANE_API std::string skyPositionText(const SkyPosition& position, double step);

}  // namespace pavane
