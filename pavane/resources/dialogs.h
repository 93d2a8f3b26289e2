#pragma once

#include "pavane/resources/resource_ids.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

inline constexpr DlgItem areaSelectItems[] = {
    {ControlKind::placeholder, IDC_AREA_WINDOW, "", 4, 4, 372, 260, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 272, 270, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 326, 270, 50, 14, WS_TABSTOP},
};

/// The dialogs of the library, by identifier.
inline constexpr DlgTemplate libraryDialogs[] = {
    {IDD_AREA_SELECT, "Areas", 380, 290, areaSelectItems,
     static_cast<int>(std::size(areaSelectItems)), WS_THICKFRAME},
};

}  // namespace pavane
