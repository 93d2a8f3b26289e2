#pragma once

#include "pavane/trackers/regions/region_values.h"
#include "tessel/SkyCoordinates.h"

#include <cstddef>
#include <string_view>

namespace pavane
{

/// A frame as a format of region files calls it.
struct FrameName {
    std::string_view name;
    SkyFrame frame;
};

/// What DS9 calls frames; other equinoxes have no name there.
inline constexpr FrameName ds9Frames[] = {{"icrs", {SkyFrame::System::icrs, 2000}},
                                          {"fk5", {SkyFrame::System::fk5, 2000}},
                                          {"fk4", {SkyFrame::System::fk4, 1950}},
                                          {"galactic", {SkyFrame::System::galactic, 2000}},
                                          {"ecliptic", {SkyFrame::System::ecliptic, 2000}},
                                          {"j2000", {SkyFrame::System::fk5, 2000}},
                                          {"b1950", {SkyFrame::System::fk4, 1950}}};
/// What CASA, and others in its files, call them.
inline constexpr FrameName crtfFrames[] = {{"ICRS", {SkyFrame::System::icrs, 2000}},
                                           {"J2000", {SkyFrame::System::fk5, 2000}},
                                           {"B1950", {SkyFrame::System::fk4, 1950}},
                                           {"GALACTIC", {SkyFrame::System::galactic, 2000}},
                                           {"ECLIPTIC", {SkyFrame::System::ecliptic, 2000}},
                                           {"FK5", {SkyFrame::System::fk5, 2000}},
                                           {"FK4", {SkyFrame::System::fk4, 1950}}};

/// The frame of a name, in any letters; null for others.
template <std::size_t n>
const SkyFrame* frameNamed(std::string_view name, const FrameName (&names)[n])
{
    for (const FrameName& known : names)
        if (sameWord(known.name, name))
            return &known.frame;
    return nullptr;
}

/// What files of a map are written in: the first name of the map's frame, so that nothing moves,
/// else ICRS, which stands first.
template <std::size_t n>
const FrameName& frameForWriting(const FrameName (&names)[n], const SkyCoordinates* sky)
{
    for (const FrameName& known : names)
        if (sky && known.frame == sky->skyFrame())
            return known;
    return names[0];
}

}  // namespace pavane
