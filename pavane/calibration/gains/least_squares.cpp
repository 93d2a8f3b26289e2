#include "pavane/calibration/gains/least_squares.h"

#include <cmath>

namespace pavane
{
namespace
{

/// A pivot that has lost so much of its row is 0 but for rounding.
constexpr double leastPivot = 1e-11;

}  // namespace

RowSums rowSums(const double* crossReal, const double* crossImaginary, const double* model,
                const double* real, const double* imaginary, const double* power, std::size_t count)
{
    RowSums sums;
    for (std::size_t j = 0; j < count; ++j) {
        sums.real += crossReal[j] * real[j] - crossImaginary[j] * imaginary[j];
        sums.imaginary += crossReal[j] * imaginary[j] + crossImaginary[j] * real[j];
        sums.power += model[j] * power[j];
    }
    return sums;
}

int inverseDiagonal(std::vector<double>& matrix, std::size_t n, std::vector<double>& diagonal)
{
    diagonal.assign(n, 0.0);
    const auto at = [&](std::size_t i, std::size_t j) -> double& { return matrix[i * n + j]; };
    for (std::size_t j = 0; j < n; ++j) {
        const double whole = at(j, j);
        for (std::size_t k = 0; k < j; ++k)
            at(j, j) -= at(j, k) * at(j, k);
        if (!(at(j, j) > leastPivot * whole))
            return 0;
        at(j, j) = std::sqrt(at(j, j));
        for (std::size_t i = j + 1; i < n; ++i) {
            for (std::size_t k = 0; k < j; ++k)
                at(i, j) -= at(i, k) * at(j, k);
            at(i, j) /= at(j, j);
        }
    }
    // column by column of the inverse of the triangle; squares add up to the diagonal wanted
    std::vector<double> column(n);
    for (std::size_t c = 0; c < n; ++c) {
        for (std::size_t i = c; i < n; ++i) {
            double value = i == c ? 1 : 0;
            for (std::size_t k = c; k < i; ++k)
                value -= at(i, k) * column[k];
            column[i] = value / at(i, i);
            diagonal[c] += column[i] * column[i];
        }
    }
    return 1;
}

}  // namespace pavane
