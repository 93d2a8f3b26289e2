#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <span>
#include <string_view>

namespace pavane
{

class UvObservation;

/// The tables of an observation.
enum class UvTable : int { telescopes, baselines, sources, stokes, frequencies, scans };
inline constexpr int uvTableCount = 6;
inline constexpr UvTable uvTables[uvTableCount] = {UvTable::telescopes,  UvTable::baselines,
                                                   UvTable::sources,     UvTable::stokes,
                                                   UvTable::frequencies, UvTable::scans};

/// A column of such a table. Rows count from 0 here, and are there.
struct UvColumn {
    const char* title;
    const char* tip;
    int width;  ///< in characters
    /// Text of a cell, "" where the file leaves it open.
    CString (*text)(const UvObservation& of, int row);
    /// What a cell stands for, NaN where that is unknown; null in columns of words.
    double (*number)(const UvObservation& of, int row);
};

/// What a table is called and made of.
struct UvTableLook {
    const char* name;   ///< "telescopes": for command lines and profiles
    const char* title;  ///< "Telescopes": for users
    std::span<const UvColumn> columns;
};
PAVANE_API const UvTableLook& uvTableLook(UvTable table);
/// The table of a name; 0 when there is none.
PAVANE_API int uvTableOf(std::string_view name, UvTable& table);

/// "hh:mm:ss.ssssss" of a right ascension in degrees, from 0 to 24 hours; "" when not finite.
PAVANE_API CString rightAscensionText(double degrees);
/// "+dd:mm:ss.sssss" of a declination in degrees; "" when not finite.
PAVANE_API CString declinationText(double degrees);

}  // namespace pavane
