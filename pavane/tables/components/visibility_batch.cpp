#include "pavane/tables/components/visibility_batch.h"

#include "pavane/tables/components/amplitude_table.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

// The loops below are written for the vectoriser: no branch, no call, one array item a step. They
// are inlined into functions for each kind of processor. This file is compiled without errno and
// trapping arithmetic, which nothing here looks at.

namespace pavane
{

namespace
{

#if defined(__x86_64__)
#define PAVANE_INLINE inline __attribute__((always_inline))

// GCC keeps to half the width unless it is told otherwise; Clang does not know the word.
#if defined(__clang__)
#define PAVANE_WIDE_TARGET "avx512f,avx512dq,avx512vl,avx512bw,fma"
#else
#define PAVANE_WIDE_TARGET "avx512f,avx512dq,avx512vl,avx512bw,fma,prefer-vector-width=512"
#endif

constexpr double pi = 3.141592653589793;
constexpr double ln2 = 0.6931471805599453;
/// Adding it leaves the nearest whole number in the low bits of a double.
constexpr double roundingShift = 6755399441055744.0;  // 1.5 * 2^52
/// Beyond these the single-point form is used: phases in turns, arguments of amplitudes, and rings
/// so thin that the difference of their edges cancels.
constexpr double mostTurns = 1e12;
constexpr double greatestArgument = 1e6;
constexpr double thinnestRing = 0.01;
/// 2 to this power is 0 beside any flux.
constexpr double leastPower = -1000;

PAVANE_INLINE double nearest(double x) { return (x + roundingShift) - roundingShift; }

PAVANE_INLINE double fused(double a, double b, double c) { return __builtin_fma(a, b, c); }

/// Product less the nearest whole number, exact but for the last rounding.
PAVANE_INLINE double turnsPart(double u, double whole, double rest)
{
    const double product = u * whole;
    const double lost = fused(u, rest, fused(u, whole, -product));
    return (product - nearest(product)) + lost;
}

struct SineCosine {
    double sine, cosine;
};

/// Of 2 pi turns, for turns below a few: reduced to an eighth of a turn, then Taylor's series.
PAVANE_INLINE SineCosine sineCosine(double turns)
{
    const double shifted = 4 * turns + roundingShift;
    const auto quarter = std::bit_cast<std::uint64_t>(shifted);
    const double a = 2 * pi * fused(-0.25, shifted - roundingShift, turns);
    const double q = a * a;
    double s = -1.0 / 1307674368000.0;
    s = fused(s, q, 1.0 / 6227020800.0);
    s = fused(s, q, -1.0 / 39916800.0);
    s = fused(s, q, 1.0 / 362880.0);
    s = fused(s, q, -1.0 / 5040.0);
    s = fused(s, q, 1.0 / 120.0);
    s = fused(s, q, -1.0 / 6.0);
    s = fused(s * q, a, a);
    double c = 1.0 / 20922789888000.0;
    c = fused(c, q, -1.0 / 87178291200.0);
    c = fused(c, q, 1.0 / 479001600.0);
    c = fused(c, q, -1.0 / 3628800.0);
    c = fused(c, q, 1.0 / 40320.0);
    c = fused(c, q, -1.0 / 720.0);
    c = fused(c, q, 1.0 / 24.0);
    c = fused(c, q, -0.5);
    c = fused(c, q, 1.0);
    // an odd quarter swaps the two; the signs come from the quarter's bits
    const std::uint64_t swap = 0 - (quarter & 1);
    const auto sBits = std::bit_cast<std::uint64_t>(s);
    const auto cBits = std::bit_cast<std::uint64_t>(c);
    const std::uint64_t mixed = (sBits ^ cBits) & swap;
    const std::uint64_t sineSign = (quarter & 2) << 62;
    const std::uint64_t cosineSign = ((quarter + 1) & 2) << 62;
    return {std::bit_cast<double>((sBits ^ mixed) ^ sineSign),
            std::bit_cast<double>((cBits ^ mixed) ^ cosineSign)};
}

/// 2 to the power x, x from -1000 to 0.
PAVANE_INLINE double powerOfTwo(double x)
{
    const double shifted = x + roundingShift;
    const double z = (x - (shifted - roundingShift)) * ln2;
    double p = 1.0 / 479001600.0;
    p = fused(p, z, 1.0 / 39916800.0);
    p = fused(p, z, 1.0 / 3628800.0);
    p = fused(p, z, 1.0 / 362880.0);
    p = fused(p, z, 1.0 / 40320.0);
    p = fused(p, z, 1.0 / 5040.0);
    p = fused(p, z, 1.0 / 720.0);
    p = fused(p, z, 1.0 / 120.0);
    p = fused(p, z, 1.0 / 24.0);
    p = fused(p, z, 1.0 / 6.0);
    p = fused(p, z, 0.5);
    p = fused(p, z, 1.0);
    p = fused(p, z, 1.0);
    // the whole part goes into the exponent
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(p) +
                                 (std::bit_cast<std::uint64_t>(shifted) << 52));
}

PAVANE_INLINE double tabled(const AmplitudeTable& table, double x)
{
    constexpr double last = AmplitudeTable::intervals - 1e-9;  // in the last interval
    const double place = std::min(x * AmplitudeTable::perUnit, last);
    const int i = static_cast<int>(place);
    const double s = 2 * (place - i) - 1;
    double sum = table.coefficient[AmplitudeTable::terms - 1][i];
    for (int k = AmplitudeTable::terms - 2; k >= 0; --k)
        sum = fused(sum, s, table.coefficient[k][i]);
    return sum;
}

/// Hankel's asymptotic form of J of order 0 or 1 (Abramowitz and Stegun, 9.2.5 to 9.2.10), to 1e-11
/// from 32 on.
template <int Order>
PAVANE_INLINE double besselFar(double x)
{
    constexpr double mu = 4.0 * Order * Order;
    constexpr double p2 = -(mu - 1) * (mu - 9) / 2;
    constexpr double p4 = -p2 * (mu - 25) * (mu - 49) / 12;
    constexpr double p6 = -p4 * (mu - 81) * (mu - 121) / 30;
    constexpr double p8 = -p6 * (mu - 169) * (mu - 225) / 56;
    constexpr double q1 = mu - 1;
    constexpr double q3 = -q1 * (mu - 9) * (mu - 25) / 6;
    constexpr double q5 = -q3 * (mu - 49) * (mu - 81) / 20;
    constexpr double q7 = -q5 * (mu - 121) * (mu - 169) / 42;
    const double r = 1 / (8 * x);
    const double rr = r * r;
    const double p = fused(fused(fused(fused(p8, rr, p6), rr, p4), rr, p2), rr, 1.0);
    const double q = r * fused(fused(fused(q7, rr, q5), rr, q3), rr, q1);
    const double turns = x * (0.5 / pi);
    const SineCosine sc = sineCosine((turns - nearest(turns)) - (2 * Order + 1) / 8.0);
    return __builtin_sqrt(2 / (pi * x)) * (p * sc.cosine - q * sc.sine);
}

/// The amplitude factors that are read from tables, with what they are beyond the tables.
struct ThinRing {
    static PAVANE_INLINE double far(double x) { return besselFar<0>(x); }
    static constexpr std::int32_t kind = thinRingComponent;
};
struct Disk {
    static PAVANE_INLINE double far(double x) { return 2 * besselFar<1>(x) / x; }
    static constexpr std::int32_t kind = diskComponent;
};
struct Sphere {
    static PAVANE_INLINE double far(double x)
    {
        const double turns = x * (0.5 / pi);
        const SineCosine sc = sineCosine(turns - nearest(turns));
        return 3 * (sc.sine / x - sc.cosine) / (x * x);
    }
    static constexpr std::int32_t kind = sphereComponent;
};
struct Strip {
    static PAVANE_INLINE double far(double x)
    {
        const double turns = x * (0.5 / pi);
        return sineCosine(turns - nearest(turns)).sine / x;
    }
    static constexpr std::int32_t kind = stripComponent;
};

template <typename Factor>
const AmplitudeTable& tableOf()
{
    static const AmplitudeTable table([](double x) { return amplitude(Factor::kind, x, 0); });
    return table;
}

constexpr int blockPoints = 512;

/// Factors for a block of arguments: from the table, and where the block goes beyond it also from
/// the far form.
template <typename Factor>
PAVANE_INLINE void factors(const AmplitudeTable& table, const double* x, double scale, int n,
                           double* to)
{
    double greatest = 0;
    for (int i = 0; i < n; ++i)
        greatest = std::max(greatest, x[i] * scale);
    for (int i = 0; i < n; ++i)
        to[i] = tabled(table, x[i] * scale);
    if (greatest < AmplitudeTable::end)
        return;
    for (int i = 0; i < n; ++i) {
        const double at = x[i] * scale;
        const double far = Factor::far(std::max(at, double{AmplitudeTable::end}));
        to[i] = at < AmplitudeTable::end ? to[i] : far;
    }
}

/// The tables that a kind needs, made before the wide code runs.
const AmplitudeTable* tableFor(std::int32_t kind)
{
    switch (kind) {
    case thinRingComponent:
        return &tableOf<ThinRing>();
    case diskComponent:
    case wideRingComponent:
        return &tableOf<Disk>();
    case sphereComponent:
        return &tableOf<Sphere>();
    case stripComponent:
        return &tableOf<Strip>();
    default:
        return nullptr;
    }
}

PAVANE_INLINE void amplitudes(const ComponentTerms& t, const AmplitudeTable* table, const double* u,
                              const double* v, int n, double* to)
{
    double x[blockPoints];
    for (int i = 0; i < n; ++i) {
        const double small = fused(u[i], t.smallU, v[i] * t.smallV);
        const double large = fused(u[i], t.largeU, v[i] * t.largeV);
        x[i] = fused(small, small, large * large);
    }
    if (t.kind == gaussianComponent) {
        constexpr double perSquare = -0.25 / (ln2 * ln2);
        for (int i = 0; i < n; ++i)
            to[i] = t.flux * powerOfTwo(std::max(x[i] * perSquare, leastPower));
        return;
    }
    for (int i = 0; i < n; ++i)
        x[i] = __builtin_sqrt(x[i]);
    switch (t.kind) {
    case thinRingComponent:
        factors<ThinRing>(*table, x, 1, n, to);
        break;
    case sphereComponent:
        factors<Sphere>(*table, x, 1, n, to);
        break;
    case stripComponent:
        factors<Strip>(*table, x, 1, n, to);
        break;
    default:
        factors<Disk>(*table, x, 1, n, to);
    }
    double scale = t.flux;
    if (t.kind == wideRingComponent) {
        // the disk less the hole, whose area is inner^2 of it
        double hole[blockPoints];
        const double inner = 1 - t.width;
        factors<Disk>(*table, x, std::abs(inner), n, hole);
        for (int i = 0; i < n; ++i)
            to[i] -= inner * inner * hole[i];
        scale = t.flux / t.width;
    }
    for (int i = 0; i < n; ++i)
        to[i] *= scale;
}

PAVANE_INLINE void addBlocks(const ComponentTerms& t, const AmplitudeTable* table, const double* u,
                             const double* v, int n, double* real, double* imaginary)
{
    double factor[blockPoints];
    for (int from = 0; from < n; from += blockPoints) {
        const int some = std::min(blockPoints, n - from);
        const double* const ub = u + from;
        const double* const vb = v + from;
        if (t.kind == gaussianComponent || table)
            amplitudes(t, table, ub, vb, some, factor);
        else
            std::fill_n(factor, some, t.flux);
        double* const re = real + from;
        double* const im = imaginary + from;
        for (int i = 0; i < some; ++i) {
            const SineCosine sc = sineCosine(turnsPart(ub[i], t.east, t.eastRest) +
                                             turnsPart(vb[i], t.north, t.northRest));
            re[i] = fused(factor[i], sc.cosine, re[i]);
            im[i] = fused(factor[i], sc.sine, im[i]);
        }
    }
}

__attribute__((target(PAVANE_WIDE_TARGET))) void addWide(const ComponentTerms& t,
                                                         const AmplitudeTable* table,
                                                         const double* u, const double* v, int n,
                                                         double* real, double* imaginary)
{
    addBlocks(t, table, u, v, n, real, imaginary);
}

__attribute__((target("avx2,fma"))) void addMiddle(const ComponentTerms& t,
                                                   const AmplitudeTable* table, const double* u,
                                                   const double* v, int n, double* real,
                                                   double* imaginary)
{
    addBlocks(t, table, u, v, n, real, imaginary);
}

/// Non-zero when every product stays where the vector form is exact enough.
int isInRange(const ComponentTerms& t, double greatestU, double greatestV)
{
    const double turns = greatestU * std::abs(t.east) + greatestV * std::abs(t.north);
    const double small = greatestU * std::abs(t.smallU) + greatestV * std::abs(t.smallV);
    const double large = greatestU * std::abs(t.largeU) + greatestV * std::abs(t.largeV);
    const int ring = t.kind != wideRingComponent ||
                     (std::abs(t.width) >= thinnestRing && std::abs(1 - t.width) <= 1);
    return turns <= mostTurns && small <= greatestArgument && large <= greatestArgument && ring &&
           std::isfinite(t.flux);
}
#endif

}  // namespace

int addVisibilities([[maybe_unused]] const ComponentTerms& terms, [[maybe_unused]] const double* u,
                    [[maybe_unused]] const double* v, [[maybe_unused]] int n,
                    [[maybe_unused]] double greatestU, [[maybe_unused]] double greatestV,
                    [[maybe_unused]] double* real, [[maybe_unused]] double* imaginary)
{
#if defined(__x86_64__)
    if (!__builtin_cpu_supports("fma") || !__builtin_cpu_supports("avx2") ||
        !isInRange(terms, greatestU, greatestV))
        return 0;
    const AmplitudeTable* const table = tableFor(terms.kind);
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw"))
        addWide(terms, table, u, v, n, real, imaginary);
    else
        addMiddle(terms, table, u, v, n, real, imaginary);
    return 1;
#else
    return 0;
#endif
}

}  // namespace pavane
