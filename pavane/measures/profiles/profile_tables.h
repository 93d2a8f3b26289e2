#pragma once

#include "pavane/measures/areas/AreaMeasures.h"
#include "pavane/measures/profiles/CellHistogram.h"
#include "pavane/measures/profiles/MapProfile.h"
#include "pavane/measures/profiles/NumberTable.h"
#include "pavane/measures/profiles/spectra.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

/// A column of longitudes and one of latitudes in the map's frame, with `of` before their names and
/// digits for a hundredth of a cell.
PAVANE_API std::vector<NumberColumn> skyColumns(const SkyCoordinates& sky, const MapFrame& frame,
                                                const CString& of);

/// A row a sample: how far along the line in cells and on the sky, pixel (from 1), position, value.
/// May throw std::bad_alloc, as all of these may.
PAVANE_API NumberTable profileTable(const MapProfile& profile, const CString& valueUnit,
                                    const SkyCoordinates& sky, const MapFrame& frame);

/// A spectrum by the name of its cells.
struct NamedSpectrum {
    CString name;
    const CellSpectrum* spectrum = nullptr;
};

/// A row a plane, the spectra one behind another. `axisUnit` is "" for planes without a place on an
/// axis of frequency or velocity, whose rows have the number of the plane alone.
PAVANE_API NumberTable spectrumTable(const std::vector<NamedSpectrum>& spectra,
                                     const std::vector<MomentPlane>& planes,
                                     const CString& axisUnit, const FluxScale& scale);

/// A histogram by the name of its cells.
struct NamedHistogram {
    CString name;
    const CellHistogram* histogram = nullptr;
};

/// A row a bin, the histograms one behind another.
PAVANE_API NumberTable histogramTable(const std::vector<NamedHistogram>& histograms,
                                      const CString& valueUnit);

/// A title with its unit in brackets; alone without one.
PAVANE_API CString titleWithUnit(const CString& title, const CString& unit);

}  // namespace pavane
