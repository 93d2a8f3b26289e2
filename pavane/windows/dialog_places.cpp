#include "pavane/windows/dialog_places.h"

#include "pavane/windows/placement_text.h"
#include "platform/profile.h"
#include "platform/screens.h"

#include <algorithm>

namespace pavane
{

CSize clientSize(const CWnd& window)
{
    CRect client;
    (void)window.GetClientRect(client);
    return client.Size();
}

std::vector<CRect> placesAtLeastSize(const CDialog& dialog, const DlgTemplate& dialogTemplate,
                                     std::span<const ResizeItem> items, CSize least)
{
    std::vector<CRect> places;
    const auto* const end = dialogTemplate.items + dialogTemplate.itemCount;
    for (const ResizeItem& item : items) {
        const auto* const known = std::find_if(dialogTemplate.items, end, [&](const DlgItem& one) {
            return item.id && one.id == item.id;
        });
        if (known != end) {
            places.push_back(dialog.MapDialogRect(
                CRect(known->x, known->y, known->x + known->cx, known->y + known->cy)));
            continue;
        }
        CRect now;
        if (const CWnd* const control = dialog.GetDlgItem(item.id))
            (void)control->GetWindowRect(now);
        dialog.ScreenToClient(now);
        places.push_back(ungrownPlace(item, now, least, clientSize(dialog)));
    }
    return places;
}

void loadDialogPlace(CDialog& dialog, const CString& section, CSize least, int across, int down)
{
    PlacementRecord kept;
    if (section.empty() || !readPlacement(GetProfileString(section, "WindowPos"), kept))
        return;
    const std::vector<CRect> screens = GetScreenRects();
    CRect place = reachablePlace(kept.normal, least, screens);
    if (!across)
        place.right = place.left + least.cx;
    if (!down)
        place.bottom = place.top + least.cy;
    (void)dialog.MoveWindow(place);
    if (kept.showCommand == SW_SHOWMAXIMIZED)
        (void)dialog.PostMessage(WM_COMMAND, maximiseCommand);
}

}  // namespace pavane
