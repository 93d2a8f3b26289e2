#pragma once

namespace pavane
{

enum class ControlKind {
    staticText,
    groupBox,
    pushButton,
    defaultButton,
    checkBox,
    radioButton,
    edit,
    comboBox,  ///< a closed list to choose from; with CBS_DROPDOWN also text
    listBox,
    spin,        ///< a number with arrows
    placeholder  ///< an empty frame that a window takes the place of
};

/// One control. Places and sizes in dialog units (a quarter of the mean character's width, an
/// eighth of its height).
struct DlgItem {
    ControlKind kind;
    unsigned id;
    const char* text;
    int x, y, cx, cy;
    unsigned style = 0;    ///< WS_TABSTOP, WS_GROUP, ES_..., CBS_...
    unsigned exStyle = 0;  ///< WS_EX_...
};

struct DlgTemplate {
    unsigned id;
    const char* title;
    int cx, cy;
    const DlgItem* items;
    int itemCount;
};

}  // namespace pavane
