#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/dialogs/values/record_entries.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

/// Which beam a map is restored with.
enum class BeamKind {
    fitted,    ///< the Gaussian that fits the main lobe of the dirty beam
    circular,  ///< a round one
    typed      ///< any other
};

/// The restoring beam as the page "Beam shape" lets the user choose it. Full widths at half maximum
/// in milliarcseconds, angles in degrees from north through east. In the profile the keys are
/// "BS KIND", "BS DIA", "BS MAJ", "BS MIN", "BS PA".
class PAVANE_API ABeamShapePM : public EntryRecord<ABeamShapePM>
{
public:
    // Of the data, for information; not stored.
    MapBeam fitted;  ///< unset while there is no dirty beam, or none fits
    // The choice.
    BeamKind kind = BeamKind::fitted;
    double diameter = 0;  ///< of the circular one; 0: of the area of the fitted one
    MapBeam typed;

    /// The beam that is chosen, unset when there is none yet.
    MapBeam GetBeam() const;

    std::vector<RecordEntry> entries() const;
    int takeEntry(const RecordEntry& entry);
};

/// What is wrong with a beam, a sentence; "" when nothing is.
PAVANE_API CString faultOfBeam(const MapBeam& beam);

}  // namespace pavane
