#pragma once

#include "pavane/calibration/BaselineReader.h"
#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/PanelChart.h"

#include <vector>

namespace pavane
{

/// Closure phases against time, a panel a triangle, the model's as a line; the caption has the
/// telescopes, and with a model the reduced chi-squared. Series of triangles with several parts
/// have several colours, which a legend names. The triangles are indices of the reader's.
PAVANE_API PanelChart closureChart(const AUVXFile& file, const ClosureReader& reader,
                                   const std::vector<std::size_t>& triangles);

/// Adds panels of closure amplitudes to such a chart, a panel a quad, likewise; natural logarithms,
/// since ratios range over powers of ten. The quads are indices of the reader's.
PAVANE_API void addAmplitudePanels(const AUVXFile& file, const ClosureReader& reader,
                                   const std::vector<std::size_t>& quads, PanelChart& chart);

/// Amplitude at the left and phase at the right, a panel a baseline, the model's as lines. The
/// baselines are indices of the reader's. Parts that the reader keeps apart have colours, which a
/// legend names, and phases are crosses then.
PAVANE_API PanelChart baselineChart(const AUVXFile& file, const BaselineReader& reader,
                                    BaselinePlot plot, const std::vector<std::size_t>& baselines);

/// "means of 30 s", for a plot's header.
PAVANE_API CString meansText(double seconds);

/// "BR-FD", of telescopes without names their numbers; with "/2" behind for a subarray but the
/// first.
PAVANE_API CString baselineName(const AUVXFile& file, const UvBaseline& baseline);
PAVANE_API CString triangleName(const AUVXFile& file, const ClosureTriangle& triangle);
PAVANE_API CString quadName(const AUVXFile& file, const ClosureQuad& quad);
PAVANE_API CString telescopeName(const AUVXFile& file, const ClosureTelescope& telescope);

/// Non-zero when two telescopes of the triangle stand less than 10 km apart, so that its phases
/// say little of the source.
PAVANE_API int isTrivial(const AUVXFile& file, const ClosureTriangle& triangle);

}  // namespace pavane
