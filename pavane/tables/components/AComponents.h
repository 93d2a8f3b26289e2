#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/tables/components/ACompItem.h"

#include <complex>
#include <iosfwd>

namespace pavane
{

/// A source model: the list of its components.
class PAVANE_API AComponents : public AArray<ACompItem>
{
public:
    AComponents() = default;
    AComponents(const AComponents&) = default;
    AComponents& operator=(const AComponents&) = default;
    ~AComponents() override;

    /// Replaces the list by that of a text: comment lines that begin with ';', the number of
    /// components, one component a line. Blank lines are skipped, the first 128 characters of a
    /// line count. A number below 1, or none, leaves the list empty; a text that ends early leaves
    /// what was read. Lines that are too short or hold words keep the default fields
    /// (readComponentFile refuses them). No locale is asked.
    std::istream& Load(std::istream& in);
    /// Writes such a text, with a comment line on every column and six significant digits.
    std::ostream& Store(std::ostream& out) const;
    /// The binary form: the number of components (int32), then a record of 60 bytes for each. A
    /// number that the rest of the file does not hold, or a short read, gives 0 and an empty list.
    int Load(AFile& file);
    int Store(AFile& file) const;

    /// Sum of the components' visibilities at (u, v), in wavelengths.
    std::complex<double> VfromUV(double u, double v) const;
    /// The same at n points (u[i], v[i]) into out[i], much faster point by point than one at a
    /// time: the error stays below 1e-9 of the sum of |peak flux|, for points and Gaussians below
    /// 1e-12. `out` does not overlap u and v.
    void VfromUV(const double* u, const double* v, int n, std::complex<double>* out) const;

    /// Adds every component to the map, see ACompItem::ToMap.
    void ToMap(AMatrix<float>& map, const TMinMax& range) const;
};

}  // namespace pavane
