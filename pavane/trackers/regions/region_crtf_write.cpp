#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_frames.h"
#include "pavane/trackers/regions/region_label.h"
#include "pavane/trackers/regions/region_lines.h"
#include "pavane/trackers/regions/region_text.h"
#include "pavane/trackers/regions/region_values.h"

#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

using Kind = AreaShape::Kind;

std::string place(APoint<double> p, RegionSystem system)
{
    const char* const unit = system == RegionSystem::image ? "pix" : "deg";
    return '[' + plainNumber(p.x) + unit + ", " + plainNumber(p.y) + unit + ']';
}

std::string sizes(double width, double height, RegionSystem system)
{
    const int isImage = system == RegionSystem::image;
    const double factor = isImage ? 1 : 3600;
    const char* const unit = isImage ? "pix" : "arcsec";
    return '[' + plainNumber(width * factor) + unit + ", " + plainNumber(height * factor) + unit +
           ']';
}

std::string degreesText(const AreaShape& shape, double angle)
{
    return plainNumber(writtenDegrees(shape, angle)) + "deg";
}

void appendEllipse(const AreaShape& shape, RegionSystem system, std::string& text)
{
    double major = shape.width / 2;
    double minor = shape.height / 2;
    double angle = shape.angle;  // of the major axis, from +x or west
    if (minor > major) {
        std::swap(minor, major);
        angle += std::numbers::pi / 2;
    }
    text += "ellipse[" + place(shape.centre, system) + ", " + sizes(major, minor, system) + ", " +
            degreesText(shape, angle - std::numbers::pi / 2) + ']';
}

void appendOutline(const AreaShape& shape, RegionSystem system, std::string& text)
{
    if (shape.kind == Kind::ellipse)
        return appendEllipse(shape, system, text);
    if (shape.kind != Kind::polygon) {
        const int isTurned = shape.kind == Kind::rotatedRectangle;
        text += (isTurned ? "rotbox[" : "centerbox[") + place(shape.centre, system) + ", " +
                sizes(shape.width, shape.height, system);
        text += isTurned ? ", " + degreesText(shape, shape.angle) + ']' : "]";
        return;
    }
    text += "poly[";
    for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
        if (i)
            text += ", ";
        text += place(shape.vertices[i], system);
    }
    text += ']';
}

void appendShape(const AreaShape& shape, RegionSystem system, RegionNotes& notes, std::string& text)
{
    if (shape.isNeverClean)
        text += '-';
    appendOutline(shape, system, text);
    if (shape.label.colour != AreaLabel::noColour)
        text.append(", color=").append(areaColourText(shape.label.colour));
    if (!shape.label.name.empty())
        text.append(", label=").append(quotedName(shape.label, "\"\"''", notes));
    text += '\n';
}

}  // namespace

std::string crtfRegionText(const std::vector<AreaShape>& shapes, RegionSystem system,
                           const SkyCoordinates* sky, RegionNotes& notes)
{
    std::string text = "#CRTFv0 CASA Region Text Format version 0\n";
    const FrameName& frame = frameForWriting(crtfFrames, sky);
    if (system == RegionSystem::sky)
        text += "global coord=" + std::string(frame.name) + '\n';
    appendRegionLines(
        shapes, system, sky, frame.frame,
        [&](const AreaShape& shape, std::string& to) { appendShape(shape, system, notes, to); },
        notes, text, 1);
    return text;
}

int writeCrtfRegions(const std::string& file, const std::vector<AreaShape>& shapes,
                     RegionSystem system, const SkyCoordinates* sky, RegionNotes& notes,
                     std::string& error)
{
    notes = RegionNotes();
    return canWrite(file, system, sky, error) &&
           writeRegionText(file, crtfRegionText(shapes, system, sky, notes), error);
}

}  // namespace pavane
