#include "pavane/imaging/clean_parameters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr std::array<const char*, 3> weightingNames = {"natural", "uniform", "briggs"};
constexpr std::array<const char*, 7> forms = {"mean", "strict", "RR", "LL", "XX", "YY", "I"};

/// The engine pads its maps and transforms them; above this no machine of a desk holds them.
constexpr int greatestSide = 32768;
constexpr int smallestSide = 16;
/// Beyond this a map in milliarcseconds is none: the sky has 1.3e9.
constexpr double greatestAngle = 1e8;

bool isWithin(double value, double least, double greatest)
{
    return value >= least && value <= greatest;  // false of what is not a number
}

bool isSide(int cells) { return cells >= smallestSide && cells <= greatestSide && cells % 2 == 0; }

std::string mapFault(const CleanParameters& p)
{
    if (!isSide(p.width) || !isSide(p.height))
        return "the size is not an even number of cells from 16 to 32768";
    if (!isWithin(p.cell, 1e-9, greatestAngle))
        return "the cell has no size";
    if (p.cell * std::max(p.width, p.height) > greatestAngle)
        return "the map is wider than 27 degrees";
    if (!isWithin(p.robust, -5, 5))
        return "the robustness is not between -5 and 5";
    if (!isWithin(p.taper, 0, greatestAngle))
        return "the taper is not a width on the sky";
    if (!isWithin(p.shiftX, -greatestAngle, greatestAngle) ||
        !isWithin(p.shiftY, -greatestAngle, greatestAngle))
        return "the shift of the centre is no angle on the sky";
    return {};
}

std::string selectionFault(const CleanParameters& p)
{
    if (std::find(forms.begin(), forms.end(), p.form) == forms.end())
        return "there is no polarisation form of that name";
    for (std::size_t i = 0; i < p.ifs.size(); ++i)
        if (p.ifs[i] < 0 || (i > 0 && p.ifs[i] <= p.ifs[i - 1]))
            return "the IFs are not in rising order";
    if (!std::isfinite(p.start) || !std::isfinite(p.end) || p.end < p.start)
        return "the times end before they begin";
    return {};
}

}  // namespace

std::string faultOf(const CleanParameters& p)
{
    if (std::string fault = mapFault(p); !fault.empty())
        return fault;
    if (std::string fault = selectionFault(p); !fault.empty())
        return fault;
    if (!isWithin(p.gain, 1e-6, 1))
        return "the gain is not between 0 and 1";
    if (!isWithin(p.majorGain, 1e-6, 1))
        return "the major gain is not between 0 and 1";
    if (p.iterations < 0 || p.iterations > 1'000'000'000)
        return "the number of iterations is not one from 0 to a thousand million";
    if (!isWithin(p.threshold, 0, 1e12))
        return "the threshold is not a number from 0 on";
    if (p.isAutoMask && !isWithin(p.autoMaskSigma, 0.1, 1e6))
        return "the automatic mask has no level";
    if (p.stopsEachCycle && (p.isAutoMask || p.isMultiscale))
        return "stopping after each cycle goes without automatic mask and without multi-scale";
    return {};
}

int isOtherSelection(const CleanParameters& one, const CleanParameters& other)
{
    const bool all = one.start == one.end && other.start == other.end;
    const bool sameTimes = all || (one.start == other.start && one.end == other.end);
    return one.form != other.form || one.ifs != other.ifs || !sameTimes;
}

int isOtherBeam(const CleanParameters& one, const CleanParameters& other)
{
    const bool sameWeighting =
        one.weighting == other.weighting && one.taper == other.taper &&
        (one.weighting != ImageWeighting::briggs || one.robust == other.robust);
    const bool sameMap = one.width == other.width && one.height == other.height &&
                         one.cell == other.cell && one.shiftX == other.shiftX &&
                         one.shiftY == other.shiftY;
    return !sameWeighting || !sameMap || isOtherSelection(one, other);
}

double proposedCell(double longestBaseline)
{
    if (!isWithin(longestBaseline, 1e-3, 1e15))
        return 0;
    const double fifth = 180 * 3600 * 1000 / std::numbers::pi / longestBaseline / 5;
    // a hair more, so that 0.2 out of 0.2 - 1e-17 does not become 0.1
    const double size = fifth * (1 + 1e-12);
    const double power = std::pow(10.0, std::floor(std::log10(size)));
    const double digit = size / power;
    // dividing by whole powers gives 0.2, where multiplying gives 0.2 and some
    const double step = digit >= 5 ? 5 : digit >= 2 ? 2 : 1;
    return power < 1 ? step / std::round(1 / power) : step * power;
}

const char* nameOf(ImageWeighting weighting)
{
    const auto i = static_cast<std::size_t>(weighting);
    return weightingNames[std::min(i, weightingNames.size() - 1)];
}

int weightingOf(const std::string& name, ImageWeighting& weighting)
{
    const auto found = std::find(weightingNames.begin(), weightingNames.end(), name);
    if (found == weightingNames.end())
        return 0;
    weighting = static_cast<ImageWeighting>(found - weightingNames.begin());
    return 1;
}

}  // namespace pavane
