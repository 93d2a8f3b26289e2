#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// The text of a resource identifier, empty for an unknown one.
PAVANE_API CString axisString(int id);

/// The decimal prefix of a power of ten that is a multiple of three: "m" for -3, none for 0; beyond
/// 10^30 the power itself, "1e33".
PAVANE_API CString prefixText(int power);

/// " •1e+06" for 10^6, empty for 10^0.
PAVANE_API CString multiplierText(int power);

/// Non-zero when the title has the prefix marker "%s"; "%%" is a per cent sign and starts none.
PAVANE_API int hasPrefixMarker(const CString& title);
/// The title with `prefix` in place of its first "%s" and every "%%" made "%"; all else stays as it
/// is. Without a marker the title comes back unchanged.
PAVANE_API CString withPrefix(const CString& title, const CString& prefix);

/// Non-zero when the title has the multiplier marker "~".
PAVANE_API int hasMultiplierMarker(const CString& title);
/// The title with `multiplier` in place of its first "~", or behind it when there is none.
PAVANE_API CString withMultiplier(const CString& title, const CString& multiplier);

}  // namespace pavane
