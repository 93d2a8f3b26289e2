#pragma once

#include "platform/dialog_template.h"

#include <cctype>
#include <string>

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

}  // namespace pavane
