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
    spin,         ///< a number with arrows
    placeholder,  ///< an empty frame that a window takes the place of
    upDown,       ///< arrows that step the number in the edit before them
    progress,
    slider  ///< a handle on a line; TBS_VERT: upright
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

/// The Tab key goes through the items in their order. Radio buttons from one with WS_GROUP to the
/// next are one choice. '&' in a text is before the letter that Alt goes with; on a static text it
/// gives the focus to the item behind it.
struct DlgTemplate {
    unsigned id;
    const char* title;
    int cx, cy;
    const DlgItem* items;
    int itemCount;
    unsigned style = 0;  ///< WS_THICKFRAME: the user may change the size (OnSize lays out)
};

}  // namespace pavane
