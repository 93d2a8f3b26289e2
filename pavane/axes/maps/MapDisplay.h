#pragma once

#include "pavane/axes/maps/BeamLook.h"
#include "pavane/axes/maps/cells/contour_levels.h"
#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/axes/maps/ColorLook.h"

namespace pavane
{

class ABAxis;
class ABMapGraph;
class MapContours;

/// How the contours of a map look.
struct ContourLook {
    ContourLevels levels;
    COLORREF color = CLR_INVALID;  ///< CLR_INVALID: whichever stands out
    int width = 0;                 ///< in pixels of 96 per inch; 0: in proportion to the font
    friend bool operator==(const ContourLook&, const ContourLook&) = default;
};

/// The lines of an axis that help to read it.
struct AxisLook {
    int gridX = 0, gridY = 0;
    int ticksInside = 0;
    int minorTicks = 1;
    friend bool operator==(const AxisLook&, const AxisLook&) = default;
};

/// What stands beside a map.
struct MapTitles {
    CString header;        ///< the line above it
    int isOwnHeader = 0;   ///< someone gave it; else it goes with what the map shows
    CString x, y;          ///< with the marker of a prefix ("%s", "~") where one goes
    CString value;         ///< of the values, without their unit
    CString unit;          ///< of the values, as papers write it: "Jy/beam"
    int isPlainValue = 1;  ///< `value` is the whole title, the unit with it

    /// The title of colour bars.
    CString valueTitle() const;
    /// Takes that apart; what does not end with a unit in brackets is a plain title.
    void setValueTitle(const CString& title);
    friend bool operator==(const MapTitles& a, const MapTitles& b)
    {
        return a.isOwnHeader == b.isOwnHeader && (!a.isOwnHeader || a.header == b.header) &&
               a.x == b.x && a.y == b.y && a.valueTitle() == b.valueTitle();
    }
};

/// Parts of a display, as a dialog has them on pages.
enum class DisplayPart { colours, contours, beam, axes };

/// How a map is displayed, as a value: to be changed, checked, kept under a name, put back and
/// given to other maps.
struct PAVANE_API MapDisplay {
    ColorLook colours;
    ContourLook contours;
    BeamLook beamLook;
    MapBeam beam;  ///< in units of RP; unset without one
    AxisLook axes;
    MapTitles titles;

    MapDisplay() = default;
    /// As the map is displayed now; a graph without colours or contours leaves these as at first.
    MapDisplay(const ABAxis& axis, const ABMapGraph& graph);
    /// Gives it all to a map; what is the same already is left alone, so contours are traced anew
    /// only for other levels. Draws nothing. Non-zero when something changed.
    int give(ABAxis& axis, ABMapGraph& graph) const;
    /// This style for another map: range of values, beam and titles are those of `own`, which
    /// belong to the map and not to a style.
    MapDisplay styleFor(const MapDisplay& own) const;
    /// Non-zero when the values of a part can be shown; else 0 and `error` says in one line why.
    int check(DisplayPart part, CString& error) const;

    /// The style as one line of fields, which keeps neither range nor beam nor titles.
    CString styleText() const;
    /// All of it as numbers, for a history of views; and back. Numbers that are no display leave
    /// it, or what is missing, as at first.
    std::vector<double> values() const;
    static MapDisplay of(const std::vector<double>& values);
    /// Reads such a line: fields that are missing, unknown or wrong leave what they belong to as
    /// it is. Non-zero when a field was taken.
    int readStyle(const CString& text);
};
/// Equal in all that is drawn.
PAVANE_API int sameDisplay(const MapDisplay& a, const MapDisplay& b);
/// The same of a part; titles go with the axes.
PAVANE_API int samePart(DisplayPart part, const MapDisplay& a, const MapDisplay& b);
/// What differs between `before` and `now` is given to `kept`, which keeps the rest.
PAVANE_API void takeChanges(const MapDisplay& before, const MapDisplay& now, MapDisplay& kept);

/// The contours of a graph that has some, else null.
PAVANE_API MapContours* contoursOf(ABMapGraph& graph);
PAVANE_API const MapContours* contoursOf(const ABMapGraph& graph);

/// Widest contours, in pixels.
inline constexpr int widestContour = 20;

}  // namespace pavane
