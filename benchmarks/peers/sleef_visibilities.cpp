#include "benchmarks/peers/sleef_visibilities.h"

#include <cmath>
#include <immintrin.h>
#include <sleef.h>

namespace
{

using namespace pavane;

constexpr double pi = 3.141592653589793;
constexpr double ln2 = 0.6931471805599453;
constexpr int lanes = 4;

__m256d perLane(__m256d x, double (*function)(double))
{
    alignas(32) double values[lanes];
    _mm256_store_pd(values, x);
    for (double& value : values)
        value = function(value);
    return _mm256_load_pd(values);
}

__m256d factor(const ComponentTerms& t, __m256d x)
{
    const __m256d tiny = _mm256_set1_pd(1e-9);
    const __m256d safe = _mm256_max_pd(x, tiny);
    switch (t.kind) {
    case gaussianComponent:
        return Sleef_expd4_u10avx2(_mm256_mul_pd(_mm256_mul_pd(x, x), _mm256_set1_pd(-0.25 / ln2)));
    case diskComponent:
        return _mm256_div_pd(_mm256_mul_pd(_mm256_set1_pd(2), perLane(safe, j1)), safe);
    case thinRingComponent:
        return perLane(x, j0);
    case sphereComponent: {
        const Sleef___m256d_2 sc = Sleef_sincosd4_u10avx2(safe);
        const __m256d top = _mm256_sub_pd(sc.x, _mm256_mul_pd(safe, sc.y));
        return _mm256_div_pd(_mm256_mul_pd(_mm256_set1_pd(3), top),
                             _mm256_mul_pd(safe, _mm256_mul_pd(safe, safe)));
    }
    case stripComponent:
        return _mm256_div_pd(Sleef_sind4_u10avx2(safe), safe);
    case wideRingComponent: {
        const __m256d inner = _mm256_set1_pd(1 - t.width);
        const __m256d hole = _mm256_mul_pd(inner, perLane(_mm256_mul_pd(inner, safe), j1));
        const __m256d top = _mm256_sub_pd(perLane(safe, j1), hole);
        return _mm256_div_pd(_mm256_mul_pd(_mm256_set1_pd(2 / t.width), top), safe);
    }
    default:
        return _mm256_set1_pd(1);
    }
}

void addComponent(const ComponentTerms& t, const double* u, const double* v, int n, double* real,
                  double* imaginary)
{
    const auto times = [](double a, __m256d b) { return _mm256_mul_pd(_mm256_set1_pd(a), b); };
    for (int i = 0; i + lanes <= n; i += lanes) {
        const __m256d us = _mm256_loadu_pd(u + i);
        const __m256d vs = _mm256_loadu_pd(v + i);
        const __m256d small = _mm256_add_pd(times(t.smallU, us), times(t.smallV, vs));
        const __m256d large = _mm256_add_pd(times(t.largeU, us), times(t.largeV, vs));
        const __m256d x =
            _mm256_sqrt_pd(_mm256_add_pd(_mm256_mul_pd(small, small), _mm256_mul_pd(large, large)));
        const __m256d phase = times(2 * pi, _mm256_add_pd(times(t.east, us), times(t.north, vs)));
        const Sleef___m256d_2 sc = Sleef_sincosd4_u10avx2(phase);
        const __m256d f = times(t.flux, factor(t, x));
        _mm256_storeu_pd(real + i,
                         _mm256_add_pd(_mm256_loadu_pd(real + i), _mm256_mul_pd(f, sc.y)));
        _mm256_storeu_pd(imaginary + i,
                         _mm256_add_pd(_mm256_loadu_pd(imaginary + i), _mm256_mul_pd(f, sc.x)));
    }
}

}  // namespace

void sleefVisibilities(const std::vector<ComponentTerms>& model, const double* u, const double* v,
                       int n, double* real, double* imaginary)
{
    for (const ComponentTerms& terms : model)
        addComponent(terms, u, v, n, real, imaginary);
}
