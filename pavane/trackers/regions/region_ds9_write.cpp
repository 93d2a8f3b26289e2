#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_frames.h"
#include "pavane/trackers/regions/region_label.h"
#include "pavane/trackers/regions/region_lines.h"
#include "pavane/trackers/regions/region_text.h"
#include "pavane/trackers/regions/region_values.h"

namespace pavane
{

namespace
{

using Kind = AreaShape::Kind;

std::string place(APoint<double> p, RegionSystem system)
{
    const double shift = system == RegionSystem::image ? 1 : 0;
    return plainNumber(p.x + shift) + ',' + plainNumber(p.y + shift);
}

std::string size(double value, RegionSystem system)
{
    return system == RegionSystem::image ? plainNumber(value) : plainNumber(value * 3600) + '"';
}

void appendPolygon(const AreaShape& shape, RegionSystem system, std::string& text)
{
    text += "polygon(";
    for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
        if (i)
            text += ',';
        text += place(shape.vertices[i], system);
    }
    text += ')';
}

void appendOutline(const AreaShape& shape, RegionSystem system, std::string& text)
{
    if (shape.kind == Kind::polygon)
        return appendPolygon(shape, system, text);
    const int isEllipse = shape.kind == Kind::ellipse;
    const double part = isEllipse ? 0.5 : 1;  // radii of an ellipse, full sizes of a box
    const double angle = shape.kind == Kind::rectangle ? 0 : shape.angle;
    text += isEllipse ? "ellipse(" : "box(";
    text += place(shape.centre, system) + ',' + size(shape.width * part, system) + ',' +
            size(shape.height * part, system) + ',' + plainNumber(writtenDegrees(shape, angle)) +
            ')';
}

void appendShape(const AreaShape& shape, RegionSystem system, RegionNotes& notes, std::string& text)
{
    if (shape.isNeverClean)
        text += '-';
    appendOutline(shape, system, text);
    const AreaLabel& label = shape.label;
    if (!label.isEmpty())
        text += " #";
    if (label.colour != AreaLabel::noColour)
        text.append(" color=").append(areaColourText(label.colour));
    if (!label.name.empty())
        text.append(" text=").append(quotedName(label, "{}\"\"''", notes));
    text += '\n';
}

}  // namespace

std::string ds9RegionText(const std::vector<AreaShape>& shapes, RegionSystem system,
                          const SkyCoordinates* sky, RegionNotes& notes)
{
    std::string text = "# Region file format: DS9 version 4.1\n";
    const FrameName& frame = frameForWriting(ds9Frames, sky);
    text += system == RegionSystem::image ? "image\n" : std::string(frame.name) + '\n';
    appendRegionLines(
        shapes, system, sky, frame.frame,
        [&](const AreaShape& shape, std::string& to) { appendShape(shape, system, notes, to); },
        notes, text);
    return text;
}

int writeDs9Regions(const std::string& file, const std::vector<AreaShape>& shapes,
                    RegionSystem system, const SkyCoordinates* sky, RegionNotes& notes,
                    std::string& error)
{
    notes = RegionNotes();
    return canWrite(file, system, sky, error) &&
           writeRegionText(file, ds9RegionText(shapes, system, sky, notes), error);
}

}  // namespace pavane
