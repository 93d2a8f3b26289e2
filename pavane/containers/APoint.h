#pragma once

namespace pavane
{

/// A point of any number type, in the space that its user names. Stored as x, y.
template <typename T>
struct APoint {
    T x{};
    T y{};
    friend constexpr bool operator==(const APoint&, const APoint&) = default;
};

}  // namespace pavane
