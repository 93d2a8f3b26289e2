#pragma once

namespace pavane
{

// Values that a component cannot have: what stands in the table stays.
inline constexpr const char* unknownKindText =  // behind the text in quotes
    " is no kind of component. There are Point, Gaussian, Disk, Thin ring, Sphere, Strip and "
    "Wide ring.";
inline constexpr const char* noFieldNumberText = " is not a number.";  // the same
inline constexpr const char* axisBelow0Text = "The large axis is 0 or more.";
inline constexpr const char* ratioRangeText =
    "The axis ratio, small axis over large axis, lies between 0 and 1.";
inline constexpr const char* distanceBelow0Text =
    "The distance is 0 or more: the angle says in which direction.";
inline constexpr const char* widthRangeText =
    "The width is a fraction of the radius, between 0 and 1.";
inline constexpr const char* noSuchFieldText = "There is no such value.";

}  // namespace pavane
