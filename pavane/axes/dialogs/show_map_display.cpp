#include "pavane/axes/dialogs/show_map_display.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"

namespace pavane
{

MapDisplay shownDisplay(const AAxisWnd& plot)
{
    const ABMapGraph* const map = plot.GetMap();
    const A2DAxis* const axis = plot.GetAxis();
    return map && axis ? MapDisplay(*axis, *map) : MapDisplay();
}

int showDisplay(AAxisWnd& plot, const MapDisplay& display)
{
    ABMapGraph* const map = plot.GetMap();
    A2DAxis* const axis = plot.GetAxis();
    if (!map || !axis)
        return 0;
    const ColorLook before = shownDisplay(plot).colours;
    if (!display.give(*axis, *map))
        return 0;
    if (plot.GetColorsGraph() && !(before == display.colours))
        plot.ShowColorLook(display.colours);  // whoever follows the colours hears of it
    else
        plot.ContentChanged();
    return 1;
}

}  // namespace pavane
