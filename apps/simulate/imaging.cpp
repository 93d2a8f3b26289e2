#include "apps/simulate/imaging.h"

#include "tessel/rounding.h"

#include <cmath>
#include <complex>
#include <kissfft/kiss_fft.h>
#include <map>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

/// The grid is this many times as wide as the image, so that what folds over stays outside.
constexpr int padding = 2;
/// Cells of the grid that a sample is spread over, and the shape of the Kaiser-Bessel function for
/// this width and padding (Beatty, Nishimura and Pauly 2005, IEEE Trans. Med. Imaging 24, 799).
constexpr int support = 6;
constexpr double radiansPerArcsecond = 4.84813681109536e-6;

double kernelShape()
{
    const double w = support / static_cast<double>(padding) * (padding - 0.5);
    return std::numbers::pi * std::sqrt(w * w - 0.8);
}

double kernel(double distance)
{
    const double t = 2 * distance / support;
    return t * t < 1 ? std::cyl_bessel_i(0.0, kernelShape() * std::sqrt(1 - t * t)) : 0.0;
}

/// Fourier transform of the kernel at `fraction` of the grid's width from the image centre, which
/// the image is divided by.
double kernelTransform(double fraction)
{
    const double a = std::numbers::pi * support * fraction;
    const double square = kernelShape() * kernelShape() - a * a;
    const double root = std::sqrt(std::fabs(square));
    const double relative = root < 1e-9  ? 1.0
                            : square > 0 ? std::sinh(root) / root
                                         : std::sin(root) / root;
    return support * relative;
}

using Grid = AMatrix<kiss_fft_cpx>;

int wrapped(int index, int size) { return (index % size + size) % size; }

/// Transforms rows, then columns, in place.
int transform(Grid& grid)
{
    const int n = grid.rows();
    const std::unique_ptr<void, void (*)(void*)> plan(kiss_fft_alloc(n, 0, nullptr, nullptr),
                                                      kiss_fft_free);
    if (!plan)
        return 0;
    const auto fft = static_cast<kiss_fft_cfg>(plan.get());
    std::vector<kiss_fft_cpx> line(static_cast<std::size_t>(n));
    for (int r = 0; r < n; ++r) {
        kiss_fft(fft, grid.row(r), line.data());
        std::copy(line.begin(), line.end(), grid.row(r));
    }
    for (int c = 0; c < n; ++c) {
        kiss_fft_stride(fft, &grid(0, c), line.data(), n);
        for (int r = 0; r < n; ++r)
            grid(r, c) = line[static_cast<std::size_t>(r)];
    }
    return 1;
}

/// The cell of the grid that a sample is nearest to.
struct Place {
    double x, y;
    int column, row;
};

Place placeOf(const Visibilities& samples, std::size_t i, double cellsPerWavelength)
{
    const double x = samples.u[i] * cellsPerWavelength;
    const double y = samples.v[i] * cellsPerWavelength;
    return {x, y, truncated(std::round(x)), truncated(std::round(y))};
}

/// Spreads one weighted value over the cells around its place.
void spread(Grid& grid, const Place& p, std::complex<double> value)
{
    const int n = grid.rows();
    double across[support + 1];
    for (int k = 0; k <= support; ++k)
        across[k] = kernel(p.x - (p.column - support / 2 + k));
    for (int j = 0; j <= support; ++j) {
        const int row = p.row - support / 2 + j;
        const double along = kernel(p.y - row);
        for (int k = 0; k <= support; ++k) {
            kiss_fft_cpx& cell = grid(wrapped(row, n), wrapped(p.column - support / 2 + k, n));
            const std::complex<double> part = value * (along * across[k]);
            cell.r += static_cast<float>(part.real());
            cell.i += static_cast<float>(part.imag());
        }
    }
}

/// Takes the image out of the middle of the transformed grid. The transform has the phase
/// -2 pi (u x + v y), and x, east, falls with the column.
AMatrix<float> imageOf(const Grid& grid, int size, double sumOfWeights)
{
    AMatrix<float> image(size, size);
    const int n = grid.rows();
    for (int r = 0; r < image.rows(); ++r)
        for (int c = 0; c < image.columns(); ++c) {
            const int y = r - size / 2;
            const int x = size / 2 - c;
            const double taper = kernelTransform(static_cast<double>(x) / n) *
                                 kernelTransform(static_cast<double>(y) / n);
            const double value = static_cast<double>(grid(wrapped(y, n), wrapped(x, n)).r);
            image(r, c) = static_cast<float>(value / (taper * sumOfWeights));
        }
    return image;
}

}  // namespace

void temperWeights(Visibilities& samples, double field)
{
    const double cellsPerWavelength = field * radiansPerArcsecond;
    const auto cellOf = [&](std::size_t i) {
        const Place p = placeOf(samples, i, cellsPerWavelength);
        return std::pair(p.row, p.column);
    };
    std::map<std::pair<int, int>, int> counts;
    for (std::size_t i = 0; i < samples.u.size(); ++i)
        ++counts[cellOf(i)];
    for (std::size_t i = 0; i < samples.u.size(); ++i)
        samples.weights[i] = 1 / std::sqrt(static_cast<double>(counts[cellOf(i)]));
}

AMatrix<float> dirtyImage(const Visibilities& samples, int size, double cell, int beam)
{
    const int n = padding * size;
    Grid grid(n, n);
    if (!grid.rows() || samples.u.empty())
        return {};
    grid.fill({0, 0});
    const double cellsPerWavelength = n * cell * radiansPerArcsecond;
    double sum = 0;
    for (std::size_t i = 0; i < samples.u.size(); ++i) {
        const std::complex<double> value = beam ? 1.0 : samples.values[i];
        spread(grid, placeOf(samples, i, cellsPerWavelength), samples.weights[i] * value);
        sum += samples.weights[i];
    }
    if (!transform(grid))
        return {};
    return imageOf(grid, size, sum);
}

}  // namespace pavane
