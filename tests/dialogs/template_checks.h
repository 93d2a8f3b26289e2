#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/dialog_template.h"

#include <cctype>
#include <span>
#include <string>
#include <vector>

namespace pavane
{

/// Letters that Alt goes with in a dialog and that two of its texts have; `others` are those of
/// the sheet around it.
inline std::string doubleMnemonics(const DlgTemplate& dialog, const std::string& others = "")
{
    std::string seen = others, twice;
    for (int i = 0; i < dialog.itemCount; ++i) {
        const std::string text = dialog.items[i].text ? dialog.items[i].text : "";
        const std::size_t at = text.find('&');
        if (at == std::string::npos || at + 1 >= text.size())
            continue;
        const char letter =
            static_cast<char>(std::tolower(static_cast<unsigned char>(text[at + 1])));
        if (seen.find(letter) != std::string::npos)
            twice += letter;
        seen += letter;
    }
    return twice;
}

/// Controls that stand on others once a dialog has grown, by their places in the template: a label
/// that stays behind, for instance. Frames may.
inline std::string collisionsWhenGrown(const DlgTemplate& dialog,
                                       std::span<const ResizeItem> follow)
{
    constexpr int more = 200;
    const CSize least(dialog.cx, dialog.cy), grown(dialog.cx + more, dialog.cy + more);
    std::vector<CRect> places;
    for (int i = 0; i < dialog.itemCount; ++i) {
        const DlgItem& item = dialog.items[i];
        CRect place(item.x, item.y, item.x + item.cx, item.y + item.cy);
        for (const ResizeItem& each : follow)
            if (item.id && each.id == item.id)
                place = grownPlace(each, place, least, grown);
        places.push_back(place);
    }
    std::string found;
    for (std::size_t a = 0; a < places.size(); ++a)
        for (std::size_t b = a + 1; b < places.size(); ++b) {
            const bool isFrame = dialog.items[a].kind == ControlKind::groupBox ||
                                 dialog.items[b].kind == ControlKind::groupBox;
            const CRect &one = places[a], &other = places[b];
            const bool isApart = one.right <= other.left || other.right <= one.left ||
                                 one.bottom <= other.top || other.bottom <= one.top;
            if (!isFrame && !isApart && dialog.items[a].kind != ControlKind::comboBox &&
                dialog.items[b].kind != ControlKind::comboBox)
                found += std::to_string(a) + "/" + std::to_string(b) + " ";
        }
    return found;
}

}  // namespace pavane
