#pragma once

#include "platform/geometry.h"

#include <span>
#include <vector>

namespace pavane
{

/// How the edges of a control follow a dialog that grows: per cent of what the dialog has grown
/// across (`left`, `right`) and down (`top`, `bottom`). All 0: it stays; 0, 0, 100, 100: it grows
/// with the dialog; 100, 100, 100, 100: it keeps to the lower right corner.
struct ResizeItem {
    unsigned id;
    int left, top, right, bottom;
};

/// Where the control stands that had `place` in a dialog of the least size, when the dialog has
/// `size`. A dialog below its least size is laid out as if it had it, shares are held within 0 to
/// 100, and no control becomes smaller than it was.
PAVANE_API CRect grownPlace(const ResizeItem& item, const CRect& place, CSize least, CSize size);
/// The inverse: where it stood at the least size when it stands at `place` now.
PAVANE_API CRect ungrownPlace(const ResizeItem& item, const CRect& place, CSize least, CSize size);

/// The places of all items, in their order; `places` are those at the least size. What has no item
/// or no place is left out.
PAVANE_API std::vector<CRect> layOutDialog(std::span<const ResizeItem> items,
                                           std::span<const CRect> places, CSize least, CSize size);

/// What growing is of use for: non-zero when an item follows across, or down.
PAVANE_API int growsAcross(std::span<const ResizeItem> items);
PAVANE_API int growsDown(std::span<const ResizeItem> items);

/// A kept place of a dialog, made one that the user can reach: at least as large as `least`, else
/// no larger than the screen that it is on, and no part of it that counts outside. One that is on
/// no screen any more comes to the middle of the first. Without screens as it was kept.
PAVANE_API CRect reachablePlace(const CRect& kept, CSize least, std::span<const CRect> screens);

}  // namespace pavane
