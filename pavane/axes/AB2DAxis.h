#pragma once

#include "pavane/axes/ABAxis.h"

namespace pavane
{

/// An axis with titles that take up the scale of its labels. A title may hold one of two markers:
/// "%s", the place of a decimal prefix (the labels then go in powers of a thousand; "%%" in such a
/// title is a per cent sign), or "~", the place of a multiplier such as " •1e+06". Only the first
/// marker counts; everything else is plain text.
class PAVANE_API AB2DAxis : public ABAxis
{
public:
    using ABAxis::ABAxis;
    int GetAxisType() const override;

    /// Ticks and title of one direction. `name` is the template, `title` gets the text to draw; the
    /// others are those of ABAxis::getAxisPar. Returns what labels are divided by.
    static double getAxisParam(const CString& name, CString& title, int& n, int& nPlus, int& nMinus,
                               double& min, double& max, double& first, double& step, int& power);
    /// Title for values that are divided by a power of ten about the middle of the decades of `a`
    /// and `b` (both above 0); returns the divisor, 1 with the title left alone when `name` has no
    /// marker.
    static double getAxisPower(const CString& name, CString& title, double& a, double& b);
};

}  // namespace pavane
