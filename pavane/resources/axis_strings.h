#pragma once

#include "pavane/resources/resource_ids.h"

namespace pavane
{

/// A text of the library and its identifier.
struct ResourceString {
    int id;
    const char* text;
};

/// The texts of axes, UTF-8, by identifier. Titles hold the markers of AB2DAxis.
inline constexpr ResourceString axisStrings[] = {
    {IDS_LEVELS, "Levels"},
    {IDS_DECLINATION, "Declination [%sas]"},
    {IDS_RIGHT_ASCENSION, "Right ascension [%sas]"},
    {10010, "1e-30"},
    {10011, "1e-27"},
    {10012, "1e-24"},
    {10013, "1e-21"},
    {10014, "1e-18"},
    {10015, "1e-15"},
    {10016, "p"},
    {10017, "n"},
    {10018, "\u00b5"},
    {10019, "m"},
    {10020, ""},
    {10021, "K"},
    {10022, "M"},
    {10023, "G"},
    {10024, "T"},
    {10025, "1e15"},
    {10026, "1e18"},
    {10027, "1e21"},
    {10028, "1e24"},
    {10029, "1e27"},
    {10030, "1e30"},
    {IDS_HOURS, "[hours]"},
};

}  // namespace pavane
