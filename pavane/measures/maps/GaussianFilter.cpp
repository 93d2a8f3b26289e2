#include "pavane/measures/maps/GaussianFilter.h"

#include <kissfft/kiss_fft.h>
#include <kissfft/kiss_fftr.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <numbers>
#include <vector>

namespace pavane
{

namespace
{

/// Columns that are transformed together, so that whole lines of the cache are moved.
constexpr int blockColumns = 16;
/// A Gaussian is below 1e-10 this many full widths from its centre.
constexpr double reachWidths = 3;
/// Added, since one that is narrower than the cells rings.
constexpr double reachCells = 64;
/// Factors below e to the minus this are 0 in floats.
constexpr double mostExponent = 90;
constexpr const char* noMemory = "there is no memory for its transform";

using Plan = std::unique_ptr<void, void (*)(void*)>;

/// A length that holds the cells and, behind them, what would wrap round; even, and quick to
/// transform.
int paddedLength(int cells, double squaredWidth)
{
    const double reach = std::ceil(reachWidths * std::sqrt(squaredWidth)) + reachCells;
    const int pad = reach < cells ? static_cast<int>(reach) : cells;
    return kiss_fft_next_fast_size((cells + pad + 1) / 2) * 2;
}

class Filter
{
public:
    Filter(AMatrix<float>& cells, const CellGaussian& gaussian)
        : cells_(cells), gaussian_(gaussian), width_(paddedLength(cells.columns(), gaussian.xx)),
          height_(paddedLength(cells.rows(), gaussian.yy)),
          toRow_(kiss_fftr_alloc(width_, 0, nullptr, nullptr), freePlan),
          fromRow_(kiss_fftr_alloc(width_, 1, nullptr, nullptr), freePlan),
          toColumn_(kiss_fft_alloc(height_, 0, nullptr, nullptr), freePlan),
          fromColumn_(kiss_fft_alloc(height_, 1, nullptr, nullptr), freePlan)
    {
    }

    int run(std::string& error, const ProgressFunction& progress)
    {
        // rows beyond the map are zeros before, and are not wanted after
        if (!toRow_ || !fromRow_ || !toColumn_ || !fromColumn_ ||
            !spectrum_.allocate(cells_.rows(), width_ / 2 + 1)) {
            error = noMemory;
            return 0;
        }
        return transformRows(progress, error) && filterColumns(progress, error) &&
               restoreRows(progress, error);
    }

private:
    static void freePlan(void* plan) { kiss_fft_free(plan); }

    static int goesOn(const ProgressFunction& progress, double part, std::string& error)
    {
        if (!progress || progress(part))
            return 1;
        error = "the convolution was given up";
        return 0;
    }

    int transformRows(const ProgressFunction& progress, std::string& error)
    {
        std::vector<float> line(static_cast<std::size_t>(width_));
        for (int r = 0; r < cells_.rows(); ++r) {
            std::copy_n(cells_.row(r), cells_.columns(), line.data());
            kiss_fftr(static_cast<kiss_fftr_cfg>(toRow_.get()), line.data(), spectrum_.row(r));
            if (r % blockColumns == 0 && !goesOn(progress, 0.25 * r / cells_.rows(), error))
                return 0;
        }
        return 1;
    }

    int filterColumns(const ProgressFunction& progress, std::string& error)
    {
        const auto height = static_cast<std::size_t>(height_);
        std::vector<kiss_fft_cpx> lines(height * blockColumns);
        std::vector<kiss_fft_cpx> line(height);
        for (int first = 0; first < spectrum_.columns(); first += blockColumns) {
            const int some = std::min(blockColumns, spectrum_.columns() - first);
            std::fill(lines.begin(), lines.end(), kiss_fft_cpx{0, 0});
            for (int r = 0; r < cells_.rows(); ++r)
                for (int c = 0; c < some; ++c)
                    lines[static_cast<std::size_t>(c) * height + static_cast<std::size_t>(r)] =
                        spectrum_(r, first + c);
            for (int c = 0; c < some; ++c) {
                kiss_fft_cpx* const column = lines.data() + static_cast<std::size_t>(c) * height;
                kiss_fft(static_cast<kiss_fft_cfg>(toColumn_.get()), column, line.data());
                multiply(line, first + c);
                kiss_fft(static_cast<kiss_fft_cfg>(fromColumn_.get()), line.data(), column);
            }
            for (int r = 0; r < cells_.rows(); ++r)
                for (int c = 0; c < some; ++c)
                    spectrum_(r, first + c) =
                        lines[static_cast<std::size_t>(c) * height + static_cast<std::size_t>(r)];
            if (!goesOn(progress, 0.25 + 0.5 * first / spectrum_.columns(), error))
                return 0;
        }
        return 1;
    }

    /// With the transform of the Gaussian, exp(-pi^2 / (4 ln 2) f P f), f in waves per cell.
    void multiply(std::vector<kiss_fft_cpx>& line, int column) const
    {
        constexpr double scale = std::numbers::pi * std::numbers::pi / (4 * std::numbers::ln2);
        const double fx = static_cast<double>(column) / width_;
        const double norm = 1.0 / width_ / height_;
        for (int r = 0; r < height_; ++r) {
            const double fy = static_cast<double>(2 * r > height_ ? r - height_ : r) / height_;
            const double exponent = scale * (gaussian_.xx * fx * fx + 2 * gaussian_.xy * fx * fy +
                                             gaussian_.yy * fy * fy);
            const auto factor =
                static_cast<float>(exponent < mostExponent ? std::exp(-exponent) * norm : 0);
            kiss_fft_cpx& value = line[static_cast<std::size_t>(r)];
            value.r *= factor;
            value.i *= factor;
        }
    }

    int restoreRows(const ProgressFunction& progress, std::string& error)
    {
        std::vector<float> line(static_cast<std::size_t>(width_));
        for (int r = 0; r < cells_.rows(); ++r) {
            kiss_fftri(static_cast<kiss_fftr_cfg>(fromRow_.get()), spectrum_.row(r), line.data());
            std::copy_n(line.data(), cells_.columns(), cells_.row(r));
            if (r % blockColumns == 0 && !goesOn(progress, 0.75 + 0.25 * r / cells_.rows(), error))
                return 0;
        }
        return 1;
    }

    AMatrix<float>& cells_;
    CellGaussian gaussian_;
    int width_, height_;
    Plan toRow_, fromRow_, toColumn_, fromColumn_;
    AMatrix<kiss_fft_cpx> spectrum_;
};

}  // namespace

int convolve(AMatrix<float>& cells, const CellGaussian& gaussian, std::string& error,
             const ProgressFunction& progress)
{
    try {
        return Filter(cells, gaussian).run(error, progress);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
}

}  // namespace pavane
