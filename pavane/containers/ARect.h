#pragma once

namespace pavane
{

/// A rectangle of any number type; whether right and bottom belong to it is for its user to say.
/// Stored as left, top, right, bottom.
template <typename T>
struct ARect {
    T left{};
    T top{};
    T right{};
    T bottom{};
    friend constexpr bool operator==(const ARect&, const ARect&) = default;
};

}  // namespace pavane
