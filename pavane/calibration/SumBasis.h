#pragma once

#include "tessel/api.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pavane
{

/// A term of a signed sum: which quantity, and 1 or -1.
struct SumTerm {
    std::size_t of;
    int sign;
};

/// Signed sums of quantities that are linearly independent over the real numbers.
///
/// It counts modulo the prime 2^31 - 1: a sum found independent is so over the real numbers. One
/// found dependent is, unless a determinant of the sums is a multiple of the prime, which sums of
/// three terms are too small for below a rank of 40, and no array known comes near above.
class PAVANE_API SumBasis
{
public:
    explicit SumBasis(std::size_t quantities);
    /// Non-zero when the sum was independent of those before and is in the basis now.
    int add(std::span<const SumTerm> sum);
    int rank() const { return rank_; }

private:
    using Row = std::vector<std::uint32_t>;
    std::vector<Row> rows_;  ///< by the last quantity that they have, which they have once
    Row sum_;
    int rank_ = 0;
};

}  // namespace pavane
