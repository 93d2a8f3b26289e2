#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/trackers/areas/tracker_style.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "platform/geometry.h"
#include "tessel/AFile.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace pavane
{

// The fields of tracker records: written as they lie in memory, one after another without padding.
// A record is a head and what follows it for its shape. `load` gives 0 for fields that are cut
// short or that no tracker can have written.

static_assert(std::endian::native == std::endian::little, "stored fields are little-endian");
static_assert(sizeof(CRect) == 16 && sizeof(CPoint) == 8 && sizeof(CSize) == 8,
              "rectangles and points are stored as they lie in memory");

template <typename... T>
int storeFields(AFile& file, const T&... fields)
{
    return (file.write(&fields, sizeof fields) && ...);
}

template <typename... T>
int loadFields(AFile& file, T&... fields)
{
    static_assert((std::is_trivially_copyable_v<T> && ...), "fields are plain values");
    return (file.read(&fields, sizeof fields) && ...);
}

constexpr bool plausibleHandle(int size) { return size >= 1 && size <= 256; }
constexpr bool plausibleLeast(CSize size)
{
    constexpr int most = 32767;
    return size.cx >= 0 && size.cx <= most && size.cy >= 0 && size.cy <= most;
}
constexpr bool plausibleStep(int degrees) { return degrees >= 0 && degrees <= 360; }
inline bool plausibleAngle(double angle) { return std::abs(angle) <= 1000; }
inline bool isFinite(const CRect&) { return true; }
inline bool isFinite(const CPoint&) { return true; }

/// Bytes of the head, and where the fields of the shape begin.
inline constexpr std::size_t recordHeadBytes = 56;

struct RecordHead {
    unsigned style = trackerNew;
    int handleSize = newHandleSize;
    CRect valid;
    CRect clip;

    int store(AFile& file) const
    {
        // Deliberate: the valid rectangle goes out twice and both are read into the same field;
        // every derived record starts after it.
        return storeFields(file, style, handleSize, valid, valid, clip);
    }
    int load(AFile& file)
    {
        return loadFields(file, style, handleSize, valid, valid, clip) &&
               plausibleHandle(handleSize);
    }
};

/// An upright rectangle; Rect is CRect or ARect<double>.
template <typename Rect>
struct RectFields {
    Rect rect;
    CSize least{2 * newHandleSize, 2 * newHandleSize};
    int allowInvert = 0;

    int store(AFile& file) const { return storeFields(file, rect, least, allowInvert); }
    int load(AFile& file)
    {
        return loadFields(file, rect, least, allowInvert) && isFinite(rect) &&
               plausibleLeast(least);
    }
};

/// A turned rectangle or an ellipse. Records in data values end with a word that hosts may use.
template <typename Rect>
struct TurnedFields {
    static constexpr bool hasWord = !std::is_same_v<Rect, CRect>;
    Rect rect;
    double angle = 0;
    CSize least{8, 8};
    int angleStep = 15;
    std::uint32_t word = 0;

    int store(AFile& file) const
    {
        return storeFields(file, rect, angle, least, angleStep) &&
               (!hasWord || storeFields(file, word));
    }
    int load(AFile& file)
    {
        return loadFields(file, rect, angle, least, angleStep) &&
               (!hasWord || loadFields(file, word)) && isFinite(rect) && plausibleAngle(angle) &&
               plausibleLeast(least) && plausibleStep(angleStep);
    }
};

/// A polygon: the number of its vertices, then these; Point is CPoint or APoint<double>.
template <typename Point>
int loadVertices(AFile& file, AArray<Point>& points)
{
    int good = points.Load(file);
    for (int i = 0; good && i < points.count(); ++i)
        good = isFinite(points(i));
    return good;
}

}  // namespace pavane
