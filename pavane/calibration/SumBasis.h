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
    void keep(std::size_t last, std::uint32_t value);

    struct Part {
        std::uint32_t of, times;
    };
    /// What a row has: its parts, or where these are many all quantities before the last.
    struct Row {
        std::vector<Part> parts;
        std::vector<std::uint32_t> all;
    };
    /// By the last quantity that they have, which they have once; that one is left out.
    std::vector<Row> rows_;
    std::vector<char> isRow_;
    std::vector<std::uint64_t> sum_;  ///< below 2^33; all 0 between two calls
    int rank_ = 0;
};

}  // namespace pavane
