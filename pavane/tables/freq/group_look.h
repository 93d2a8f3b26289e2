#pragma once

#include "pavane/tables/freq/AFreqGroupArray.h"
#include "tessel/api.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// What is wrong with a selection of IFs that has gaps, as users read it.
inline constexpr const char* notNeighboursText = "Infalid selection. Selected IFs must be neighbor";

/// "  IF2..IF4" for the IFs of a group, "IF2" for a single one, "" for none.
PAVANE_API std::string groupRangeText(const ABitArray& group);
/// "  Frequency group #3" of the group with index 2.
PAVANE_API std::string groupNameText(int group);

/// Colour of a group as 0x00bbggrr. Black text can be read on each, or, with `dark` non-zero, white
/// text; neighbours differ also for eyes that do not part red from green or blue from yellow.
PAVANE_API std::uint32_t groupColor(int group, int dark = 0);
/// A frequency in Hz as text in MHz that reads back to it, with six decimals or more, so that
/// columns line up; "" when it is not finite.
PAVANE_API std::string megahertzText(double hertz);

/// Non-zero when each IF is in just one group. Else `question` says what is not: no group at all,
/// IFs in none, IFs in several. `hasGroups` is 0 when there is no group, which no answer mends.
PAVANE_API int areComplete(const AFreqGroupArray& groups, int& hasGroups, std::string& question);

}  // namespace pavane
