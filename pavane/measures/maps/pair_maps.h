#pragma once

#include "pavane/measures/maps/smooth_map.h"
#include "platform/api.h"
#include "tessel/AMatrix.h"
#include "tessel/map_header.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// What is made of two maps cell by cell.
enum class MapPair : int { difference, ratio, index };

/// Why two maps do not go together.
enum class PairFault : int { none, cells, beams, units, frequencies, memory };

/// One of two maps: cells and header are not owned. The noise is in the map's unit.
struct MapOfPair {
    const AMatrix<float>& cells;
    const MapHeader& header;
    double noise = 0;
};

/// Cells are used where both maps are above `clip` times their noise (of a difference all are);
/// errors take in `calibration`, a part of each value.
struct PairRule {
    MapPair pair = MapPair::difference;
    double clip = 3;
    double calibration = 0;
};

/// A map of two, and its errors. The header is that of the first with the unit of the result.
struct PairMap {
    AMatrix<float> cells, errors;
    MapHeader header;
    std::int64_t known = 0;  ///< cells with a value
};

/// Whether beams and units, and for an index frequencies, go together; why not in `error`, in one
/// line to be read behind the name of the second map. A map without a beam goes with any. Of a
/// ratio the units may differ.
PAVANE_API PairFault pairFault(MapPair pair, const MapHeader& first, const MapHeader& second,
                               std::string& error);

/// Makes first - second, first / second, or the spectral index ln(S1/S2) / ln(f1/f2), in which S
/// goes as frequency to its power. With the noise s and the calibration c S, both squared, as the
/// error e of each: errors are root(e1^2 + e2^2), of a ratio |ratio| root((e1/S1)^2 + (e2/S2)^2),
/// of an index that root over |ln(f1/f2)|. Prefixes of units are turned into those of the first.
/// Cells that are blank in one map, or not above the clip, are blank. What does not go together,
/// and maps without the same cells (haveSameCells), are told and nothing is made.
PAVANE_API PairFault combineMaps(const MapOfPair& first, const MapOfPair& second,
                                 const PairRule& rule, PairMap& made, std::string& error);

/// Non-zero for beams that are one, to 1 per cent of the longer axis squared.
PAVANE_API int areSameBeams(const SkyBeam& a, const SkyBeam& b);

/// The smallest beam that both can be convolved to among a, b and a round one.
PAVANE_API SkyBeam commonBeam(const SkyBeam& a, const SkyBeam& b);

}  // namespace pavane
