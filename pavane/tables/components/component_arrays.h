#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/tables/components/AComponents.h"
#include "platform/types.h"
#include "tessel/AMatrix.h"
#include "tessel/StopFlag.h"

#include <complex>
#include <cstdint>

namespace pavane
{

/// The fields of a component in the order of its files.
enum class ComponentField {
    kind,
    peakFlux,
    largeAxis,
    axisRatio,
    inclination,
    angle,
    distance,
    width
};
/// How many: those of a component line.
inline constexpr int componentFields = 8;

/// Doubles of a host that stand `step` bytes apart, also backwards or all the same; they need not
/// be aligned.
struct DoubleColumn {
    const void* first = nullptr;
    std::int64_t step = sizeof(double);
};

/// A column for each field, kinds as whole numbers in doubles, units as those of ACompItem. A
/// column that is null is left out.
struct ComponentColumns {
    DoubleColumn field[componentFields];
};

/// The same to be written to.
struct ComponentTargets {
    struct {
        void* first = nullptr;
        std::int64_t step = sizeof(double);
    } field[componentFields];
};

/// Replaces the model by `count` components; fields without a column have their default. 0 with
/// `error`, and the model as it was, for a number that is not finite, a kind that is no whole
/// number of 32 bits, a count below 0 or beyond 2^31, and without memory.
PAVANE_API int componentsFrom(const ComponentColumns& columns, std::int64_t count,
                              AComponents& model, CString& error);

/// Writes the fields of all components to the columns, which have room for count() of them.
PAVANE_API void componentsTo(const AComponents& model, const ComponentTargets& columns);

/// The model's visibilities at n points (u, v) in wavelengths into out[0..n-1], which does not
/// overlap these; errors are those of AComponents::VfromUV of arrays, to which it is equal in time
/// as well. 0 with `error` when stopped (some of `out` is written then) or without memory.
PAVANE_API int modelVisibilities(const AComponents& model, DoubleColumn u, DoubleColumn v,
                                 std::int64_t n, std::complex<double>* out, CString& error,
                                 const StopFlag* stop = nullptr);

/// A new map of rows x columns with the model's flux per cell (AComponents::ToMap). 0 with `error`,
/// and `map` as it was, for a size below 1, a range that spans nothing, without memory and when
/// stopped.
PAVANE_API int modelMap(const AComponents& model, int rows, int columns, const TMinMax& range,
                        AMatrix<float>& map, CString& error, const StopFlag* stop = nullptr);

}  // namespace pavane
