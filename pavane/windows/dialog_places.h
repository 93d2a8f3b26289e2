#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/CDialog.h"

#include <span>
#include <vector>

namespace pavane
{

/// Where the items stand at the least size: as the template says and not their windows, since a
/// closed list shows less than it takes. What is not in it, from where it stands now.
std::vector<CRect> placesAtLeastSize(const CDialog& dialog, const DlgTemplate& dialogTemplate,
                                     std::span<const ResizeItem> items, CSize least);

/// Command of a dialog to itself, with the number of a notice that no control sends: it becomes as
/// large as the screen.
inline constexpr unsigned maximiseCommand = 0x7F01;

/// Brings a dialog that is not shown yet to the place that the profile keeps in `section` ("": does
/// nothing); it keeps its width or height where it does not grow. One that was maximised gets the
/// command later: shown before it is waited for it would not keep input from the others.
void loadDialogPlace(CDialog& dialog, const CString& section, CSize least, int across, int down);

/// Pixels inside a window.
CSize clientSize(const CWnd& window);

}  // namespace pavane
