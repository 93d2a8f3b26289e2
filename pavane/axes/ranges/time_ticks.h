#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/containers/AObjArray.h"
#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// Ticks of a time axis: about `n` steps of whole seconds, minutes, hours or days (decimal parts of
/// a second for short ranges) inside `range`, which is in seconds.
///
/// `ticks` gets the times, ascending, `labels` a text for each: "12:30" hours and minutes,
/// "12:30:05.5" when steps are below a minute, "3d 12:30" beyond one day either way, "3" days when
/// steps are whole days, plain seconds when the range stays within a minute of 0. `header`, when
/// not null, gets the unit to write beside them ("[h:m]" ...). Returns the number of ticks. Ends
/// that are equal, reversed, not finite, or too far or too close together are treated as
/// chooseTicks does.
PAVANE_API int chooseTimeTicks(TMnMx range, int n, AArray<double>& ticks,
                               AObjArray<CString>& labels, CString* header);

}  // namespace pavane
