#include "pavane/trackers/areas/area_shape_record.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cstring>

namespace pavane
{

namespace
{

using Kind = ShapeValues::Kind;

ARect<double> asValues(const CRect& r)
{
    return {static_cast<double>(r.left), static_cast<double>(r.top), static_cast<double>(r.right),
            static_cast<double>(r.bottom)};
}
const ARect<double>& asValues(const ARect<double>& r) { return r; }
APoint<double> asValues(CPoint p) { return {static_cast<double>(p.x), static_cast<double>(p.y)}; }
const APoint<double>& asValues(const APoint<double>& p) { return p; }

void assign(CRect& to, const ARect<double>& r)
{
    to = {truncated(r.left), truncated(r.top), truncated(r.right), truncated(r.bottom)};
}
void assign(ARect<double>& to, const ARect<double>& r) { to = r; }
void assign(CPoint& to, const APoint<double>& p) { to = {truncated(p.x), truncated(p.y)}; }
void assign(APoint<double>& to, const APoint<double>& p) { to = p; }

template <typename T>
void put(std::string& bytes, std::size_t at, const T& field)
{
    std::memcpy(bytes.data() + at, &field, sizeof field);
}

template <typename Rect, typename Point>
struct Plane {
    static int read(Kind kind, AFile& file, ShapeValues& shape)
    {
        RecordHead head;
        if (!head.load(file))
            return 0;
        shape = {};
        shape.kind = kind;
        if (kind == Kind::rectangle) {
            RectFields<Rect> fields;
            if (!fields.load(file))
                return 0;
            shape.rect = asValues(fields.rect);
        } else if (kind != Kind::polygon) {
            TurnedFields<Rect> fields;
            if (!fields.load(file))
                return 0;
            shape.rect = asValues(fields.rect);
            shape.angle = fields.angle;
        } else {
            AArray<Point> points;
            if (!loadVertices(file, points))
                return 0;
            shape.points.reserve(static_cast<std::size_t>(points.count()));
            for (int i = 0; i < points.count(); ++i)
                shape.points.push_back(asValues(points(i)));
        }
        return 1;
    }

    /// Into a record that is whole; `vertices`: how many its polygon has.
    static void write(std::string& bytes, std::size_t vertices, const ShapeValues& shape)
    {
        if (shape.kind != Kind::polygon) {
            Rect rect;
            assign(rect, shape.rect);
            put(bytes, recordHeadBytes, rect);
            if (shape.kind != Kind::rectangle)
                put(bytes, recordHeadBytes + sizeof rect, shape.angle);
            return;
        }
        std::string fields(sizeof(std::int32_t) + shape.points.size() * sizeof(Point), '\0');
        put(fields, 0, static_cast<std::int32_t>(shape.points.size()));
        for (std::size_t i = 0; i < shape.points.size(); ++i) {
            Point point;
            assign(point, shape.points[i]);
            put(fields, sizeof(std::int32_t) + i * sizeof point, point);
        }
        bytes.replace(recordHeadBytes, sizeof(std::int32_t) + vertices * sizeof(Point), fields);
    }

    static std::string fresh(Kind kind)
    {
        MemoryFile file;
        RecordHead head;
        head.style = (trackerNew & ~unsigned{trackerActive}) |
                     (kind == Kind::polygon ? unsigned{trackerReady} : 0u);
        (void)head.store(file);  // memory takes every write
        if (kind == Kind::rectangle)
            (void)RectFields<Rect>().store(file);
        else if (kind != Kind::polygon)
            (void)TurnedFields<Rect>().store(file);
        else
            (void)AArray<Point>().Store(file);
        return file.bytes();
    }
};

using Pixels = Plane<CRect, CPoint>;
using Values = Plane<ARect<double>, APoint<double>>;

int isInPixels(const AreaClass& of) { return of.plane == AreaPlane::pixels; }

}  // namespace

int shapeOfRecord(const AreaClass& of, std::string_view bytes, ShapeValues& shape)
{
    if (!of.hasShape)
        return 0;
    MemoryFile file{std::string(bytes)};
    return isInPixels(of) ? Pixels::read(of.kind, file, shape) : Values::read(of.kind, file, shape);
}

int setShapeInRecord(const AreaClass& of, std::string& bytes, const ShapeValues& shape)
{
    ShapeValues old;
    constexpr auto most = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
    const bool isEmpty = shape.kind == Kind::polygon && shape.points.empty();
    if (!shapeOfRecord(of, bytes, old) || shape.kind != old.kind || isEmpty || !isFinite(shape) ||
        !plausibleAngle(shape.angle) || shape.points.size() > most)
        return 0;
    if (isInPixels(of))
        Pixels::write(bytes, old.points.size(), shape);
    else
        Values::write(bytes, old.points.size(), shape);
    return 1;
}

std::string newRecord(const AreaClass& of, const ShapeValues& shape)
{
    if (!of.hasShape)
        return {};
    std::string bytes = isInPixels(of) ? Pixels::fresh(of.kind) : Values::fresh(of.kind);
    return setShapeInRecord(of, bytes, shape) ? bytes : std::string();
}

std::size_t vertexBytes(const AreaClass& of)
{
    if (!of.hasShape || of.kind != Kind::polygon)
        return 0;
    return isInPixels(of) ? sizeof(CPoint) : sizeof(APoint<double>);
}

}  // namespace pavane
