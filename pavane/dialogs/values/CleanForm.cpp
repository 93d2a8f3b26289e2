#include "pavane/dialogs/values/CleanForm.h"

#include "pavane/dialogs/values/clean_numbers.h"
#include "tessel/value_text.h"

#include <cmath>
#include <iterator>
#include <numbers>

namespace pavane
{

namespace
{

constexpr const char* weightingTexts[] = {"natural", "uniform", "Briggs"};
constexpr const char* unitTexts[] = {"mJy", "sigma"};
constexpr double masPerRadian = 180 * 3600e3 / std::numbers::pi;

struct NumberLine {
    CleanForm::Field field;
    const TypedNumber& number;
    double CleanParameters::*value;
};
const NumberLine numberLines[] = {
    {CleanForm::cell, cleanCell, &CleanParameters::cell},
    {CleanForm::robust, cleanRobust, &CleanParameters::robust},
    {CleanForm::taper, cleanTaper, &CleanParameters::taper},
    {CleanForm::shiftX, cleanShiftX, &CleanParameters::shiftX},
    {CleanForm::shiftY, cleanShiftY, &CleanParameters::shiftY},
    {CleanForm::gain, cleanGain, &CleanParameters::gain},
    {CleanForm::majorGain, cleanMajorGain, &CleanParameters::majorGain},
    {CleanForm::threshold, cleanThreshold, &CleanParameters::threshold},
    {CleanForm::maskLevel, cleanMaskLevel, &CleanParameters::autoMaskSigma},
};

struct FlagLine {
    CleanForm::Field field;
    int CleanParameters::*value;
};
constexpr FlagLine flagLines[] = {
    {CleanForm::isAutoMask, &CleanParameters::isAutoMask},
    {CleanForm::isMultiscale, &CleanParameters::isMultiscale},
    {CleanForm::stopsEachCycle, &CleanParameters::stopsEachCycle},
};

/// An angle in the unit in which it is handy: "51.2 mas", "1.5 arcsec", "2 deg".
CString angleText(double mas)
{
    constexpr double second = 1e3, degree = 3600e3;
    if (mas < second)
        return valToStr(mas, 4) + " mas";
    return mas < degree ? valToStr(mas / second, 4) + " arcsec"
                        : valToStr(mas / degree, 4) + " deg";
}

}  // namespace

void CleanForm::setRecord(const ACleanParameterPM& record)
{
    record_ = record;
    CleanParameters& p = record_.parameters;
    if (p.cell == 0)
        p.cell = record_.GetProposedCell();
    opened_ = record.parameters;
    setText(width, valToStr(p.width));
    setText(height, valToStr(p.height));
    for (const NumberLine& line : numberLines)
        setText(line.field, valToStr(p.*line.value));
    if (p.cell == 0)
        setText(cell, "");
    setText(iterations, std::to_string(p.iterations));
    for (const FlagLine& line : flagLines)
        setChoice(line.field, p.*line.value != 0);
    setChoice(weighting, static_cast<int>(p.weighting));
    setChoice(unit, static_cast<int>(p.unit));
}

int CleanForm::takeProposal()
{
    const double proposed = record_.GetProposedCell();
    if (proposed > 0)
        setText(cell, valToStr(proposed));
    return proposed > 0;
}

std::vector<CString> CleanForm::lines(int field) const
{
    if (field == weighting)
        return {std::begin(weightingTexts), std::end(weightingTexts)};
    if (field == unit)
        return {std::begin(unitTexts), std::end(unitTexts)};
    return {};
}

int CleanForm::isEnabled(int field) const
{
    switch (field) {
    case robust:
        return choice(weighting) == static_cast<int>(ImageWeighting::briggs);
    case isAutoMask:
    case isMultiscale:
        // a child of a cycle would begin their first stage again
        return !choice(stopsEachCycle);
    case maskLevel:
        return choice(isAutoMask) && !choice(stopsEachCycle);
    default:
        return 1;
    }
}

/// What cannot be typed now is not judged and stays as the record has it.
FormRefusal CleanForm::read(CleanParameters& p) const
{
    FormRefusal refusal;
    const auto number = [&](Field field, const TypedNumber& wanted, double& value) {
        if (refusal.isRefused() || !isEnabled(field))
            return;
        if (!readTyped(text(field), wanted, value, refusal.message))
            refusal.field = field;
    };
    double sides[] = {0, 0};
    double limit = 0;
    number(width, cleanWidth, sides[0]);
    number(height, cleanHeight, sides[1]);
    for (const NumberLine& line : numberLines)
        if (line.field <= shiftY)
            number(line.field, line.number, p.*line.value);
    for (const NumberLine& line : numberLines)
        if (line.field == gain || line.field == majorGain)
            number(line.field, line.number, p.*line.value);
    number(iterations, cleanIterations, limit);
    for (const NumberLine& line : numberLines)
        if (line.field >= threshold)
            number(line.field, line.number, p.*line.value);
    if (refusal.isRefused())
        return refusal;
    p.width = static_cast<int>(sides[0]);
    p.height = static_cast<int>(sides[1]);
    p.iterations = static_cast<long long>(limit);
    for (const FlagLine& line : flagLines)
        p.*line.value = isEnabled(line.field) && choice(line.field);
    p.weighting = static_cast<ImageWeighting>(choice(weighting));
    p.unit = static_cast<ThresholdUnit>(choice(unit));
    if (p.cell * std::max(p.width, p.height) > greatestSkyAngle)
        return {cell, "A map of so many cells of this size is wider than 27 degrees."};
    const std::string fault = faultOf(p);
    return {-1, fault.empty() ? CString() : "This cannot be: " + fault + "."};
}

CString CleanForm::note(int which) const
{
    CleanParameters p = record_.parameters;
    if (which == proposal) {
        const double proposed = record_.GetProposedCell();
        if (proposed <= 0)
            return "The data propose no cell.";
        return "proposed: " + valToStr(proposed) + " (finest fringe " +
               angleText(masPerRadian / record_.greatestUv) + ")";
    }
    if (read(p).isRefused())
        return {};
    if (which == extent)
        return "The map shows " + angleText(p.cell * p.width) + " by " +
               angleText(p.cell * p.height) + ".";
    return opened_.cell == 0 || isOtherBeam(opened_, p)
               ? "A new beam and a new dirty map are made before the next round."
               : "Beam and dirty map stay as they are.";
}

FormRefusal CleanForm::save()
{
    CleanParameters p = record_.parameters;
    FormRefusal refusal = read(p);
    if (!refusal.isRefused())
        record_.parameters = p;
    return refusal;
}

}  // namespace pavane
