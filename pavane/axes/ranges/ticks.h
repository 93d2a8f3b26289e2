#pragma once

#include "platform/api.h"

namespace pavane
{

/// Wanted interval counts are cut to this: more ticks than a picture has pixels help nobody.
inline constexpr int mostIntervals = 10000;

/// A tick this part of a step beyond an end of the range still counts as inside, on every scale:
/// rounding moves the multiples of a small step off a large end, and no picture shows the distance.
inline constexpr double tickAllowance = 1e-3;

/// Chooses ticks for the range min..max (RP): a step of 1 to 5 units of a power of ten, or a
/// multiple of 5 of them, so that about `nIntervals` steps fit.
///
/// In: the range, the wanted intervals (below 1 counts as 1) and the digits of a label. Out: the
/// number of whole intervals between the first and the last tick (-1 when no tick falls inside,
/// which only very few wanted intervals bring about), the digits of a label before and after the
/// point, the first tick, the step, and the power of ten that labels are divided by, a multiple of
/// three when `engineering`. Returns 10^power. Tick i, from 0 to nIntervals, is tickValue(first,
/// step, i).
///
/// A range that holds 0 has a tick at 0. Equal ends are parted (repairEqualEnds), a reversed pair
/// is worked on in order and handed back as it came, an end that is not finite gives the range
/// -1..1. An end beyond 1e306, or a span below 1e-290 or below 1e-11 of the larger end, gets ticks
/// at its two ends only. Ticks stay inside the range but for rounding, at most 1e-3 of a step.
PAVANE_API double chooseTicks(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                              double& first, double& step, int& power, int engineering);

/// The same with labels divided by 10^power whatever the range; more digits follow the point when
/// the step asks for them.
PAVANE_API double chooseTicksForPower(double& min, double& max, int& nIntervals, int& nPlus,
                                      int& nMinus, double& first, double& step, int power);

/// Tick `i`; 0 when it is within 1e-9 of a step of it.
PAVANE_API double tickValue(double first, double step, int i);

}  // namespace pavane
