#pragma once

#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace pavane
{

class AFile;

/// Bytes of the field that a stored tracker's class name takes, its terminating zero included.
inline constexpr std::size_t classNameField = 32;

/// The coordinates of a shape: window pixels or data values.
enum class AreaPlane { pixels, values };

/// What is known of the records of a class of areas, without any tracker.
struct AreaClass {
    std::string name;  ///< 1 to 31 bytes
    /// Non-zero when its records begin as those of the library's shape of this plane and kind; a
    /// host's may go on after it. Else nobody but the host knows its shape.
    int hasShape = 0;
    AreaPlane plane = AreaPlane::values;
    ShapeValues::Kind kind = ShapeValues::Kind::rectangle;
    /// Moves a file past exactly one record; 0 for a bad one. May be empty for a class whose
    /// records are those of the library's shape and nothing more.
    std::function<int(AFile&)> pass;
};

/// Makes the records of a class known; one that is known already is replaced. 0 for a name that no
/// collection can store, or with neither a shape nor a way past its records. Registering a class
/// of trackers calls it.
PAVANE_API int RegisterAreaClass(const AreaClass& added);

/// Null for a name that is not known. Known are the library's shapes in pixels (ARectTracker,
/// ARotateRectTracker, AEllipseTracker, AAreaTracker), the same in data values (ARP...) and in an
/// axis (...InAxis), and what was registered. The class stays where it is.
PAVANE_API const AreaClass* areaClassOf(std::string_view name);

/// Printable ASCII of a name that a file brings, up to its end or a zero.
PAVANE_API std::string shownClassName(std::string_view name);

/// Moves the file past one record of the class; 0 for a bad one.
PAVANE_API int passRecord(const AreaClass& of, AFile& file);

}  // namespace pavane
