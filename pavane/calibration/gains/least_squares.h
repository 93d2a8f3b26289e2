#pragma once

#include <cstddef>
#include <vector>

namespace pavane
{

/// A row of the matrices of a solution times the gains.
struct RowSums {
    double real = 0, imaginary = 0;  ///< of w D conj(M) g
    double power = 0;                ///< of w |M|^2 |g|^2
};

/// `count` is a multiple of four.
RowSums rowSums(const double* crossReal, const double* crossImaginary, const double* model,
                const double* real, const double* imaginary, const double* power,
                std::size_t count);

/// The diagonal of the inverse of a symmetric matrix of n rows, of which the lower half counts and
/// which is used up (Cholesky). 0 when it is not positive definite.
int inverseDiagonal(std::vector<double>& matrix, std::size_t n, std::vector<double>& diagonal);

}  // namespace pavane
