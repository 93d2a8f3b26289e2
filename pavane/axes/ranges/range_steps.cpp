#include "pavane/axes/ranges/range_steps.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Works on the logarithms of a logarithmic direction and on the values of a linear one.
class Measure
{
public:
    explicit Measure(int logarithmic) : logarithmic_(logarithmic) {}
    double in(double value) const { return logarithmic_ ? std::log10(value) : value; }
    double out(double value) const { return logarithmic_ ? std::pow(10.0, value) : value; }
    int isSpan(const TMnMx& s) const
    {
        const double length = in(s.max) - in(s.min);
        return (!logarithmic_ || s.min > 0) && length > 0 && std::isfinite(length);
    }
    double length(const TMnMx& s) const { return in(s.max) - in(s.min); }

private:
    int logarithmic_;
};

}  // namespace

TMnMx zoomedSpan(const TMnMx& span, double at, double factor, int logarithmic)
{
    const Measure measure(logarithmic);
    const double centre = measure.in(at);
    if (!measure.isSpan(span) || !(factor > 0) || !std::isfinite(factor) || !std::isfinite(centre))
        return span;
    const TMnMx zoomed{measure.out(centre - (centre - measure.in(span.min)) / factor),
                       measure.out(centre + (measure.in(span.max) - centre) / factor)};
    return measure.isSpan(zoomed) ? zoomed : span;
}

TMnMx shiftedSpan(const TMnMx& span, double fraction, int logarithmic)
{
    const Measure measure(logarithmic);
    if (!measure.isSpan(span) || !std::isfinite(fraction))
        return span;
    const double offset = measure.length(span) * fraction;
    const TMnMx shifted{measure.out(measure.in(span.min) + offset),
                        measure.out(measure.in(span.max) + offset)};
    return measure.isSpan(shifted) ? shifted : span;
}

TMnMx spanInside(const TMnMx& span, const TMnMx& whole, int logarithmic)
{
    const Measure measure(logarithmic);
    if (!measure.isSpan(span) || !measure.isSpan(whole))
        return span;
    const double length = measure.length(span);
    if (length >= measure.length(whole))
        return whole;
    if (span.min < whole.min)
        return {whole.min, measure.out(measure.in(whole.min) + length)};
    if (span.max > whole.max)
        return {measure.out(measure.in(whole.max) - length), whole.max};
    return span;
}

double spanPart(const TMnMx& span, const TMnMx& whole, int logarithmic)
{
    const Measure measure(logarithmic);
    if (!measure.isSpan(span) || !measure.isSpan(whole))
        return 1;
    return measure.length(span) / measure.length(whole);
}

}  // namespace pavane
