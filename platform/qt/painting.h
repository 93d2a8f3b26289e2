#pragma once

#include "platform/qt/WindowPeer.h"

#include <QEvent>

namespace pavane
{

/// The event that makes a client area send WM_PAINT and put what was painted on the screen.
QEvent::Type paintRequest();
/// Posts it, unless one is on its way.
void schedulePaint(WindowPeer& peer);
/// Sends WM_PAINT when something is invalid and the window shows, then hands what was painted to
/// the toolkit. `atOnce`: it is on the screen on return.
void runPaint(HWND hwnd, bool atOnce = false);
/// The same for all windows that wait for it; called before the toolkit composes a frame, so that
/// nothing out of date is shown.
void runPendingPaints();
/// Posts the paints that wait once more; for when their requests were not answered.
void postPendingPaints();
/// Shifts the pixels in `rect` within it on the screen, as those of the surface were, which costs
/// less than handing them out again; false when that cannot be done.
bool shiftShown(HWND hwnd, const CRect& rect, int dx, int dy);

}  // namespace pavane
