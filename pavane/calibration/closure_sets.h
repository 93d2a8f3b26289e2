#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/uv_values.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// A telescope as baselines name it.
struct ClosureTelescope {
    int subarray = 1, number = 0;
    auto operator<=>(const ClosureTelescope&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// Three telescopes of a subarray that are all joined.
struct ClosureTriangle {
    int subarray = 1;
    std::array<int, 3> telescopes{};  ///< numbers, rising where they come from `closureTriangles`
    std::int64_t points = 0;          ///< at most; that is what its rarest baseline has
    bool operator==(const ClosureTriangle&) const = default;
};

/// Which triangles are wanted.
struct ClosureKind {
    enum Set : int {
        all,
        /// A largest set whose signed sums of baselines are linearly independent over the real
        /// numbers, those of most points first: (N - 1)(N - 2) / 2 of N telescopes that are all
        /// joined.
        independent,
        withTelescope,  ///< those that have one of `telescopes`
        within          ///< those whose telescopes all are among `telescopes`
    };
    Set set = all;
    std::vector<ClosureTelescope> telescopes{};
};

/// Triangles of the telescopes, by subarray and numbers. A baseline without groups joins nothing;
/// it may be stored either way, or both. Baselines of other telescopes, and of one telescope with
/// itself, do not count. None when there are more than `mostTriangles` of them, or independent ones
/// wanted of more than `mostJoined` baselines.
PAVANE_API std::vector<ClosureTriangle>
closureTriangles(const std::vector<ClosureTelescope>& telescopes,
                 const std::vector<UvBaseline>& baselines, const ClosureKind& kind = {});
inline constexpr std::size_t mostTriangles = 1 << 19, mostJoined = 1 << 14;

/// Of triangles those of an independent set, in the order given; those of most points first.
PAVANE_API std::vector<ClosureTriangle>
independentTriangles(const std::vector<ClosureTriangle>& triangles);

/// Four telescopes of a subarray for the closure amplitude |V(ab) V(cd)| / |V(ac) V(bd)|.
struct ClosureQuad {
    int subarray = 1;
    std::array<int, 4> telescopes{};  ///< a, b, c, d
    std::int64_t points = 0;          ///< at most
    bool operator==(const ClosureQuad&) const = default;
};

/// Quads of the telescopes whose four baselines are there, three of four telescopes that are all
/// joined; of all kinds, and none of too many, as with triangles. Independent are those whose sums
/// of logarithms are, N (N - 3) / 2 of N telescopes that are all joined.
PAVANE_API std::vector<ClosureQuad> closureQuads(const std::vector<ClosureTelescope>& telescopes,
                                                 const std::vector<UvBaseline>& baselines,
                                                 const ClosureKind& kind = {});

/// Of quads those of an independent set, in the order given; those of most points first.
PAVANE_API std::vector<ClosureQuad> independentQuads(const std::vector<ClosureQuad>& quads);

/// Why these baselines have no triangles, or quads: none are joined so, or there are too many. A
/// clause without its subject; "" when they have some.
PAVANE_API std::string whyNoTriangles(const std::vector<UvBaseline>& baselines);
PAVANE_API std::string whyNoQuads(const std::vector<UvBaseline>& baselines);

/// Telescopes that the baselines name, by subarray and number.
PAVANE_API std::vector<ClosureTelescope> telescopesOf(const std::vector<UvBaseline>& baselines);

}  // namespace pavane
