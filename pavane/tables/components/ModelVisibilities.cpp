#include "pavane/tables/components/ModelVisibilities.h"

#include "pavane/tables/components/visibility_batch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double radiansPerArcsecond = 4.84813681109536e-6;
/// Points whose sums and places stay in the nearest memory while all components pass over them.
constexpr std::size_t blockPoints = 512;
/// Some milliseconds of a block.
constexpr std::size_t componentsBetweenLooks = 1024;

/// The greatest size of n numbers, NaN when one of them is.
double greatestSize(const double* numbers, std::size_t n)
{
    double greatest = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (std::isnan(numbers[i]))
            return std::numeric_limits<double>::quiet_NaN();
        greatest = std::max(greatest, std::abs(numbers[i]));
    }
    return greatest;
}

}  // namespace

ModelVisibilities::ModelVisibilities(const AComponents& model)
{
    terms_.reserve(static_cast<std::size_t>(std::max(model.count(), 0)));
    for (int k = 0; k < model.count(); ++k) {
        const ACompItem& item = model(k);
        terms_.emplace_back(item);
        const double size =
            item.type == pointComponent
                ? 0
                : std::abs(item.LargeAxis()) * std::max(1.0, std::abs(item.AxisRatio()));
        const double reach = (std::abs(item.Distance()) + size / 2) * radiansPerArcsecond;
        extent_ = std::isfinite(reach) ? std::max(extent_, reach)
                                       : std::numeric_limits<double>::infinity();
    }
}

int ModelVisibilities::at(const double* u, const double* v, std::size_t n,
                          std::complex<double>* out, const StopFlag* stop) const
{
    double real[blockPoints], imaginary[blockPoints];
    for (std::size_t from = 0; from < n; from += blockPoints) {
        const std::size_t some = std::min(blockPoints, n - from);
        const double* const ub = u + from;
        const double* const vb = v + from;
        const double greatestU = greatestSize(ub, some), greatestV = greatestSize(vb, some);
        std::fill_n(real, some, 0.0);
        std::fill_n(imaginary, some, 0.0);
        std::size_t passed = 0;
        for (const ComponentTerms& terms : terms_) {
            if (passed++ % componentsBetweenLooks == 0 && isStopped(stop))
                return 0;
            if (addVisibilities(terms, ub, vb, static_cast<int>(some), greatestU, greatestV, real,
                                imaginary))
                continue;
            for (std::size_t i = 0; i < some; ++i) {
                const std::complex<double> value = visibility(terms, ub[i], vb[i]);
                real[i] += value.real();
                imaginary[i] += value.imag();
            }
        }
        for (std::size_t i = 0; i < some; ++i)
            out[from + i] = {real[i], imaginary[i]};
    }
    return 1;
}

double ModelVisibilities::wTurns(double greatestW) const
{
    const double square = extent_ * extent_;
    // beyond the horizon there is no sky
    if (!(square < 1))
        return std::numeric_limits<double>::infinity();
    // 1 - sqrt(1 - x) without the loss of digits
    return std::abs(greatestW) * square / (1 + std::sqrt(1 - square));
}

}  // namespace pavane
