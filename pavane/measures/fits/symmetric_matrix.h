#pragma once

#include <cstddef>
#include <vector>

namespace pavane
{

/// A small square matrix of so many rows, all 0 at first; row after row.
class SquareMatrix
{
public:
    explicit SquareMatrix(int size = 0)
        : size_(static_cast<std::size_t>(size)), cells_(size_ * size_)
    {
    }
    int size() const { return static_cast<int>(size_); }
    double& operator()(int r, int c) { return cells_[at(r, c)]; }
    double operator()(int r, int c) const { return cells_[at(r, c)]; }
    void clear() { cells_.assign(cells_.size(), 0); }

private:
    std::size_t at(int r, int c) const
    {
        return static_cast<std::size_t>(r) * size_ + static_cast<std::size_t>(c);
    }
    std::size_t size_;
    std::vector<double> cells_;
};

/// Solves A x = b for a symmetric A of which the upper half is read, by its Cholesky factors, each
/// row scaled to a diagonal of 1. 0 where A is not positive definite as far as doubles tell.
int solveSymmetric(const SquareMatrix& a, const std::vector<double>& b, std::vector<double>& x);
/// The inverse of such a matrix, whole.
int invertSymmetric(const SquareMatrix& a, SquareMatrix& inverse);
/// a * b.
SquareMatrix product(const SquareMatrix& a, const SquareMatrix& b);

}  // namespace pavane
