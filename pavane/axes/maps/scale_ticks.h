#pragma once

#include "pavane/axes/maps/cells/map_scale.h"
#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// A labelled tick of a scale bar.
struct ScaleTick {
    double value = 0;
    double position = 0;  ///< 0 at the low end of the bar, 1 at its high end
    CString label;
};

/// The ticks of a scale bar and its title.
struct ScaleTicks {
    std::vector<ScaleTick> ticks;  ///< rising
    CString title;
};

/// Ticks of a scale at round values. Linear and square-root scales get equal steps, about
/// `intervals` of them; logarithmic ones powers of ten, with 2 and 5 between them below two
/// decades; equalized ones round values near equal distances on the bar. `name` is the title with
/// its marker ("%s" the decimal prefix of the labels' unit).
PAVANE_API ScaleTicks scaleTicks(const MapScale& scale, const CString& name, int intervals);

/// Labels for given values, for example contour levels, divided as those of the range low..high.
PAVANE_API ScaleTicks valueTicks(const std::vector<double>& values, double low, double high,
                                 const CString& name);

}  // namespace pavane
