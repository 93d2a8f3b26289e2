#pragma once

#include "apps/view/inputs.h"
#include "pavane/measures/profiles/profile_tables.h"

#include <string>
#include <vector>

namespace pavane
{

/// A curve as it is plotted, and its numbers as they are written.
struct MeasuredCurve {
    CString name;
    CString xTitle, yTitle;
    int isLogarithmic = 0;      ///< y is a count
    std::vector<double> x, y;   ///< NaN is a gap
    std::vector<double> noise;  ///< another curve at the same x; empty for none
    NumberTable table;

    int isEmpty() const { return x.empty(); }
};

// Each may throw std::bad_alloc.
MeasuredCurve curveOf(const MapProfile& profile, const ViewInputs& inputs,
                      const SkyCoordinates& sky);
/// `isCell`: of one cell, whose values are told; else fluxes are, or means where there is no beam.
MeasuredCurve curveOf(const CellSpectrum& spectrum, const CString& name, int isCell,
                      const std::vector<MomentPlane>& planes, const CString& axisUnit,
                      const ViewInputs& inputs);
/// Steps, at the edges of the bins.
MeasuredCurve curveOf(const CellHistogram& histogram, const CString& name,
                      const ViewInputs& inputs);

/// How far it is between the ends of a line, and along it: "12.3 mas at 45.2 deg, east 8.7 mas,
/// north 8.7 mas".
std::string rulerText(const ProfileLine& line, const ViewInputs& inputs, const SkyCoordinates& sky);

/// A line as it is typed: "X1,Y1,X2,Y2,WIDTH mean", pixels from 1.
std::string lineText(const ProfileLine& line);
/// Reads such a line; without a width it is 1, without a word the mean. 0, and `line` stays, for
/// anything else.
int readLine(const std::string& text, ProfileLine& line);

}  // namespace pavane
