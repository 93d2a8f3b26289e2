#include "tessel/uvfits/group_values.h"

#include "tessel/big_endian.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace pavane
{

namespace
{

/// No array has more telescopes, or subarrays.
constexpr double mostTelescopes = 1 << 20;
constexpr double mostSubarrays = 1 << 16;
/// BASELINE is 256 a + b, with hundredths that count the subarrays from 0; above this 2048 a + b
/// and this much more, for arrays that a byte cannot count.
constexpr double wideBaselines = 65536;

/// Adds the term to `from`, which may be the values themselves, or to a number.
template <typename Stored, typename From>
void addTerm(const GroupBytes& stored, const UvTerm& term, From from, double* values)
{
    const unsigned char* at = stored.bytes + term.offset;
    for (int i = 0; i < stored.count; ++i, at += stored.step) {
        const double added = static_cast<double>(bigEndianItem<Stored>(at)) * term.scale;
        if constexpr (std::is_pointer_v<From>)
            values[i] = from[i] + added;
        else
            values[i] = from + added;
    }
}

template <typename From>
void addTerm(const GroupBytes& stored, int bitpix, const UvTerm& term, From from, double* values)
{
    switch (bitpix) {
    case 8:
        return addTerm<std::uint8_t>(stored, term, from, values);
    case 16:
        return addTerm<std::int16_t>(stored, term, from, values);
    case 32:
        return addTerm<std::int32_t>(stored, term, from, values);
    case 64:
        return addTerm<std::int64_t>(stored, term, from, values);
    case -32:
        return addTerm<float>(stored, term, from, values);
    default:
        return addTerm<double>(stored, term, from, values);
    }
}

/// What the terms add up to, counted from `origin`. The great numbers meet first, so that days
/// that begin at the year -4712 keep their fractions.
void takeSum(const GroupBytes& stored, int bitpix, const UvTerms& terms, double origin,
             std::vector<double>& values)
{
    double start = -origin;
    for (const UvTerm& term : terms)
        start += term.zero;
    if (terms.empty())
        return values.assign(static_cast<std::size_t>(stored.count), 0);
    values.resize(static_cast<std::size_t>(stored.count));
    addTerm(stored, bitpix, terms[0], start, values.data());
    for (std::size_t i = 1; i < terms.size(); ++i)
        addTerm(stored, bitpix, terms[i], static_cast<const double*>(values.data()), values.data());
}

/// The nearest whole number from `least` to `most`, else -1.
int number(double value, double least, double most)
{
    return value > least - 0.5 && value < most + 0.5
               ? static_cast<int>(value + (value < 0 ? -0.5 : 0.5))
               : -1;
}

/// A whole number of any sign; 1 for what is none.
int identifier(double value)
{
    constexpr double most = std::numeric_limits<int>::max() - 1;
    return value > -most && value < most ? static_cast<int>(value + (value < 0 ? -0.5 : 0.5)) : 1;
}

void takeIdentifiers(const GroupBytes& stored, int bitpix, const UvTerms& terms, int missing,
                     std::vector<double>& scratch, std::vector<int>& values)
{
    if (terms.empty())
        return values.assign(static_cast<std::size_t>(stored.count), missing);
    takeSum(stored, bitpix, terms, 0, scratch);
    values.resize(scratch.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = identifier(scratch[i]);
}

/// Telescopes and subarray of a BASELINE. Scaled numbers lie a little beside the hundredths.
void splitBaseline(double value, int& subarray, int& first, int& second)
{
    subarray = 1;
    first = second = -1;
    constexpr double half = 0.005;
    if (value > -half && value < wideBaselines - half) {
        const auto hundredths = static_cast<unsigned>((value + half) * 100);
        const unsigned packed = hundredths / 100;
        first = static_cast<int>(packed / 256);
        second = static_cast<int>(packed % 256);
        subarray = static_cast<int>(hundredths % 100) + 1;
    } else if (value > -half && value < mostTelescopes * 2048) {
        const auto packed = static_cast<std::uint64_t>(std::llround(value - wideBaselines));
        first = static_cast<int>(packed / 2048);
        second = static_cast<int>(packed % 2048);
    }
}

void takeBaselines(const UvLayout& layout, const GroupBytes& stored, UvGroups& groups)
{
    const auto count = static_cast<std::size_t>(stored.count);
    for (std::vector<int>* each : {&groups.subarray, &groups.antenna1, &groups.antenna2})
        each->resize(count);
    // a baseline of no telescopes stands for a missing one
    std::vector<double> values(layout.baseline.empty() ? count : 0, -1.0);
    if (!layout.baseline.empty())
        takeSum(stored, layout.bitpix, layout.baseline, 0, values);
    // steps that are coarser than the hundredths leave whole numbers alone
    if (layout.bitpix > 0 && std::any_of(layout.baseline.begin(), layout.baseline.end(),
                                         [](const UvTerm& t) { return std::abs(t.scale) > 0.01; }))
        for (double& value : values)
            value = std::floor(value + 0.5);
    for (std::size_t i = 0; i < count; ++i)
        splitBaseline(values[i], groups.subarray[i], groups.antenna1[i], groups.antenna2[i]);
    // parameters of their own come with arrays whose numbers BASELINE cannot hold
    if (!layout.antenna1.empty() && !layout.antenna2.empty()) {
        takeSum(stored, layout.bitpix, layout.antenna1, 0, values);
        for (std::size_t i = 0; i < count; ++i)
            groups.antenna1[i] = number(values[i], 0, mostTelescopes);
        takeSum(stored, layout.bitpix, layout.antenna2, 0, values);
        for (std::size_t i = 0; i < count; ++i) {
            groups.antenna2[i] = number(values[i], 0, mostTelescopes);
            if (groups.antenna1[i] < 0 || groups.antenna2[i] < 0)
                groups.antenna1[i] = groups.antenna2[i] = -1;
        }
    }
    if (!layout.subarray.empty()) {
        takeSum(stored, layout.bitpix, layout.subarray, 0, values);
        for (std::size_t i = 0; i < count; ++i)
            if (const int subarray = number(values[i], 1, mostSubarrays); subarray > 0)
                groups.subarray[i] = subarray;
    }
}

}  // namespace

void UvGroups::clear()
{
    first = count = 0;
    for (std::vector<double>* values : {&time, &u, &v, &w})
        values->clear();
    for (std::vector<int>* values : {&subarray, &antenna1, &antenna2, &source, &selection})
        values->clear();
    cells.clear();
    stored = nullptr;
}

void takeGroupValues(const UvLayout& layout, double referenceDay, const GroupBytes& stored,
                     int what, UvGroups& groups)
{
    if (what & UvGroups::times)
        takeSum(stored, layout.bitpix, layout.date, layout.date.empty() ? 0 : referenceDay,
                groups.time);
    if (what & UvGroups::baselines)
        takeBaselines(layout, stored, groups);
    if (what & UvGroups::origins) {
        std::vector<double> scratch;
        takeIdentifiers(stored, layout.bitpix, layout.source, layout.onlySource, scratch,
                        groups.source);
        takeIdentifiers(stored, layout.bitpix, layout.selection, layout.onlySelection, scratch,
                        groups.selection);
    }
    if (what & UvGroups::places) {
        const std::pair<const UvTerms&, std::vector<double>&> axes[] = {
            {layout.u, groups.u}, {layout.v, groups.v}, {layout.w, groups.w}};
        for (const auto& [terms, values] : axes) {
            takeSum(stored, layout.bitpix, terms, 0, values);
            if (layout.secondsOfU != 1)
                for (double& value : values)
                    value *= layout.secondsOfU;
        }
    }
}

}  // namespace pavane
