#include "pavane/trackers/tracker_cursors.h"

#include "pavane/resources/tracker_cursors.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "platform/resources.h"

namespace pavane
{

namespace
{

struct TrackerCursors {
    HCURSOR size;
    HCURSOR turn;
};

const TrackerCursors& drawnCursors()
{
    static const TrackerCursors cursors = [] {
        ResourceModule module;
        module.cursors = trackerCursors;
        module.cursorCount = sizeof trackerCursors / sizeof *trackerCursors;
        AddResourceModule(module);
        const HCURSOR size = LoadCursor(IDC_TRACKER_SIZE);
        const HCURSOR turn = LoadCursor(IDC_TRACKER_TURN);
        return TrackerCursors{size ? size : IDC_CROSS, turn ? turn : IDC_HAND};
    }();
    return cursors;
}

}  // namespace

HCURSOR rectTrackerCursor(int hit)
{
    constexpr HCURSOR cursors[] = {IDC_SIZENWSE, IDC_SIZENESW, IDC_SIZENWSE, IDC_SIZENESW,
                                   IDC_SIZENS,   IDC_SIZEWE,   IDC_SIZENS,   IDC_SIZEWE,
                                   IDC_SIZEALL,  IDC_SIZEALL};
    return hit >= 0 && hit <= hitMiddleOutside ? cursors[hit] : IDC_ARROW;
}

HCURSOR moveTrackerCursor() { return IDC_SIZEALL; }
HCURSOR sizeTrackerCursor() { return drawnCursors().size; }
HCURSOR turnTrackerCursor() { return drawnCursors().turn; }

}  // namespace pavane
