#include "pavane/measures/fits/symmetric_matrix.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Lower factor of the scaled matrix, and the scales.
int factor(const SquareMatrix& a, SquareMatrix& lower, std::vector<double>& scale)
{
    constexpr double least = 1e-14;
    const int n = a.size();
    lower = SquareMatrix(n);
    scale.assign(static_cast<std::size_t>(n), 0);
    for (int i = 0; i < n; ++i) {
        if (!(a(i, i) > 0) || !std::isfinite(a(i, i)))
            return 0;
        scale[static_cast<std::size_t>(i)] = 1 / std::sqrt(a(i, i));
    }
    for (int r = 0; r < n; ++r)
        for (int c = 0; c <= r; ++c) {
            double sum =
                a(c, r) * scale[static_cast<std::size_t>(r)] * scale[static_cast<std::size_t>(c)];
            for (int k = 0; k < c; ++k)
                sum -= lower(r, k) * lower(c, k);
            if (r > c)
                lower(r, c) = sum / lower(c, c);
            else if (!(sum > least))
                return 0;
            else
                lower(r, r) = std::sqrt(sum);
        }
    return 1;
}

void solve(const SquareMatrix& lower, const std::vector<double>& scale, std::vector<double>& x)
{
    const int n = lower.size();
    const auto at = [&](int i) -> double& { return x[static_cast<std::size_t>(i)]; };
    for (int i = 0; i < n; ++i) {
        at(i) *= scale[static_cast<std::size_t>(i)];
        for (int k = 0; k < i; ++k)
            at(i) -= lower(i, k) * at(k);
        at(i) /= lower(i, i);
    }
    for (int i = n - 1; i >= 0; --i) {
        for (int k = i + 1; k < n; ++k)
            at(i) -= lower(k, i) * at(k);
        at(i) /= lower(i, i);
    }
    for (int i = 0; i < n; ++i)
        at(i) *= scale[static_cast<std::size_t>(i)];
}

}  // namespace

int solveSymmetric(const SquareMatrix& a, const std::vector<double>& b, std::vector<double>& x)
{
    SquareMatrix lower;
    std::vector<double> scale;
    if (!factor(a, lower, scale))
        return 0;
    x = b;
    solve(lower, scale, x);
    return 1;
}

int invertSymmetric(const SquareMatrix& a, SquareMatrix& inverse)
{
    SquareMatrix lower;
    std::vector<double> scale, column;
    if (!factor(a, lower, scale))
        return 0;
    inverse = SquareMatrix(a.size());
    for (int c = 0; c < a.size(); ++c) {
        column.assign(static_cast<std::size_t>(a.size()), 0);
        column[static_cast<std::size_t>(c)] = 1;
        solve(lower, scale, column);
        for (int r = 0; r < a.size(); ++r)
            inverse(r, c) = column[static_cast<std::size_t>(r)];
    }
    return 1;
}

SquareMatrix product(const SquareMatrix& a, const SquareMatrix& b)
{
    SquareMatrix made(a.size());
    for (int r = 0; r < a.size(); ++r)
        for (int k = 0; k < a.size(); ++k)
            for (int c = 0; c < a.size(); ++c)
                made(r, c) += a(r, k) * b(k, c);
    return made;
}

}  // namespace pavane
