#pragma once

#include "pavane/axes/maps/cells/contour_levels.h"
#include "pavane/axes/maps/cells/contour_lines.h"
#include "platform/types.h"

namespace pavane
{

class ABAxis;
class ABMapGraph;
class AColorsGraph;
class CDC;

/// The contours of a map graph: which levels, how they look, and their lines, which are traced at
/// the first drawing and kept until `forget`.
class PAVANE_API MapContours
{
public:
    void setLevels(const ContourLevels& levels);
    /// As they were given.
    const ContourLevels& wantedLevels() const { return levels_; }
    /// Colour of the lines; CLR_INVALID (at first): black, and over a colour map black or white,
    /// whichever stands out from the map at the level.
    void setColor(COLORREF color) { color_ = color; }
    COLORREF color() const { return color_; }
    /// Width in pixels of 96 per inch; 0 (at first): in proportion to the font.
    void setWidth(int width) { width_ = width; }
    int width() const { return width_; }
    COLORREF color(double level, const AColorsGraph* colors) const;
    /// Width in units of the context.
    int width(const CDC& dc, int fontHeight) const;
    void forget() { traced_ = 0; }
    /// The lines of `levels` levels, as `levels` tells them, traced beforehand: drawings trace none
    /// until `forget`. Without any, which `note` explains, none are drawn.
    void setLines(ContourLines lines, std::size_t levels, const CString& note = CString());

    /// The levels of a map, rising.
    std::vector<double> levels(const ABMapGraph& map) const;
    /// Draws the lines, those of negative levels dashed, clipped to the graph rectangle. `colors`
    /// is the colour map below, null for none. Where levels were left out the plot says so in a
    /// line at its top; a raster holds no text.
    void draw(CDC& dc, const ABMapGraph& map, const AColorsGraph* colors) const;
    /// What the last drawing says of levels that were left out for want of memory (see
    /// SetContourMemory), in one line; empty when all were drawn.
    const CString& leftOutText() const { return leftOutText_; }

    /// Dash and gap of negative levels in font heights.
    static constexpr double dashPart = 0.4;
    static constexpr double gapPart = 0.25;
    /// Neither is shorter, in pixels of 96 per inch.
    static constexpr double leastDash = 2;

private:
    void tellLeftOut(std::size_t levels) const;
    void drawLeftOutText(CDC& dc, const ABAxis& axis) const;

    ContourLevels levels_;
    COLORREF color_ = CLR_INVALID;
    int width_ = 0;
    mutable ContourLines lines_;
    mutable int traced_ = 0;
    mutable CString leftOutText_;
};

}  // namespace pavane
