#pragma once

#include "pavane/axes/multi/AYScale.h"
#include "pavane/axes/TickSet.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>
#include <map>
#include <vector>

namespace pavane
{

class CDC;

/// The parts of a picture with several scales.
enum class MultiPart : std::uint8_t { none, plot, yAxis, xAxis, title, gap };

/// What lies at a point; -1 for no panel, no scale. In a plot the scale is the panel's first.
struct MultiHit {
    int panel = -1;
    int scale = -1;
    MultiPart part = MultiPart::none;
};

/// How values of a direction become pixels: the arithmetic of ABAxis.
struct DirectionMap {
    int direct = 1;
    TMnMx range;

    /// 0 at the start of the range, 1 at its end.
    PAVANE_API double fraction(double value) const;
    /// The value there.
    PAVANE_API double value(double fraction) const;
    /// In a plot from `top` to `bottom`, both included.
    PAVANE_API int yPixel(double value, int top, int bottom) const;
    PAVANE_API double yValue(int pixel, int top, int bottom) const;
    PAVANE_API int xPixel(double value, int left, int right) const;
};

/// Names in rows of a width, each behind its sample: as many in a row as there is room for. Where
/// an entry begins, in its row and by rows; heights and widths in one kind of units.
struct LegendRows {
    struct Entry {
        int row = 0;
        int left = 0;  ///< from the start of the row
        int width = 0;
    };
    std::vector<Entry> entries;
    std::vector<int> widths;  ///< of the rows
    int line = 0;             ///< height of one
    int sample = 0;           ///< width
    int air = 0;              ///< between sample and name
};
/// With the font of the context.
LegendRows legendRows(CDC& dc, const std::vector<CString>& names, int fHeight, int width);

/// What there is to lay out; ranges are repaired, and of scales that are not shown empty.
struct MultiWish {
    struct Scale {
        AYScale spec;
        int isShown = 1;
        COLORREF color = 0;  ///< that its axis takes, while `isColored`
        int isColored = 0;
        int hasGraphs = 0;
        int hasPoints = 0;  ///< one of its graphs has something to draw
    };
    std::vector<Scale> scales;
    TickWish x;
    int xDirect = 1;
    int isXWhole = 0;  ///< ticks at whole numbers alone
    int options = 0;   ///< AxisOption bits
    int columns = 1;
    int rows = 0;    ///< of a page; 0: all panels stand on one
    int page = 0;    ///< from 0
    int ofPage = 0;  ///< panels that a page has at most; 0: as many as its columns and rows
    double gap = 0.5;
    int fHeight = 0;
    CRect border{-1, -1, -1, -1};
    CString header;
    std::vector<CString> legend;  ///< names that stand over all panels
    std::map<int, CString> captions;

    /// Panels that there are, one at least.
    PAVANE_API int panels() const;
    PAVANE_API int rowsOfPage() const;
    PAVANE_API int panelsOfPage() const;
    PAVANE_API int pages() const;
};

/// Where everything of a picture with several scales stands. Device units; edges of plots are
/// included.
struct MultiLayout {
    /// The axis of a scale: its line, ticks, labels and title.
    struct YAxis {
        int scale = 0;
        int panel = 0;  ///< index into `panels`
        int isRight = 0;
        int slot = 0;  ///< 0 stands at the plot, the others outside one after another
        DirectionMap map;
        TickSet ticks;
        int line = 0;        ///< x of the line
        int labelWidth = 0;  ///< of the widest label in its place of the column
        CRect rect;
        COLORREF color = 0;
        int isColored = 0;
    };
    struct Panel {
        int number = 0;
        int column = 0;
        CRect plot;
        int isLowest = 0;
        std::vector<int> scales;  ///< all that are shown, in their order
        std::vector<int> axes;    ///< indices into `axes`
        CString caption;
        int captionRoom = 0;  ///< over the plot; 0: it stands inside
    };
    /// A line of text; `box` is what it covers.
    struct Text {
        CString text;
        CRect box;
        int isTurned = 0;  ///< runs upwards
        int isBold = 0;
        COLORREF color = 0;
        int isColored = 0;
        MultiPart part = MultiPart::none;
        int panel = -1;  ///< its number
        int scale = -1;
        int isCaption = 0;
        int isOfLegend = 0;
        int hasGround = 0;  ///< stands on a light ground, as there is something below
    };
    /// One title for the axes of a column that have the same.
    struct ColumnTitle {
        int axis = 0;  ///< of the top
        int top = 0, bottom = 0;
        CString text;
    };

    /// The names of graphs in a panel; the texts stand among `texts`.
    struct Legend {
        struct Line {
            int graph = 0;  ///< among the graphs of the axis
            CRect sample;
        };
        int panel = 0;  ///< its number
        CRect box;
        std::vector<Line> lines;
    };

    CRect picture;
    int fHeight = 0;
    DirectionMap xMap;
    TickSet x;
    std::vector<Panel> panels;
    std::vector<YAxis> axes;
    std::vector<ColumnTitle> titles;
    std::vector<Text> texts;
    std::vector<Legend> legends;
    CString header;
    CRect legendBox;  ///< of the names over all panels
    CRect headerBox;

    PAVANE_API const Panel* findPanel(int number) const;
    PAVANE_API const YAxis* findAxis(int scale) const;
    PAVANE_API MultiHit hitTest(CPoint point) const;
    /// The plots of all panels.
    PAVANE_API CRect bounds() const;

private:
    MultiHit hitColumnTitle(CPoint point) const;
};

/// Lays out `wish` in `rect` of a context: all but the texts. 0 when no plot has room. Pages are
/// laid out as a picture of their size.
PAVANE_API int composeMulti(CDC& dc, const CRect& rect, const MultiWish& wish, MultiLayout& layout);

/// Then the texts, in the letters of the context.
PAVANE_API void placeMultiTexts(CDC& dc, const MultiWish& wish, MultiLayout& layout);

}  // namespace pavane
