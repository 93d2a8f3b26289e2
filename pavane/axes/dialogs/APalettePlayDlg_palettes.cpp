// The palettes of the dialog: a strip and a name each.
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/images/color_vision.h"
#include "pavane/images/palettes.h"
#include "pavane/resources/play_dialog.h"
#include "pavane/resources/play_messages.h"
#include "pavane/windows/controls/color_picture.h"
#include "platform/file_dialog.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

std::vector<COLORREF> asVector(const AArray<COLORREF>& colours)
{
    return {colours.lpArray(), colours.lpArray() + colours.count()};
}

}  // namespace

void APalettePlayDlg::fillPalettes()
{
    filling_ = 1;
    paletteList_.ResetContent();
    palettes_.clear();
    const int ratio = std::max(1, GetPixelRatio());
    const auto add = [&](const CString& name, const CString& text,
                         const AArray<COLORREF>& colours) {
        const CString marked = isColorBlindSafe(colours) ? text + colorBlindSafeText : text;
        const int line = paletteList_.AddString(marked);
        (void)paletteList_.SetItemPicture(line, colorPicture(asVector(colours), ratio), ratio);
        palettes_.push_back({name, asVector(colours)});
    };
    AArray<COLORREF> colours;
    if (!*GetGlobalPalette())
        (void)(LoadDefaultPalette() || LoadBuiltInPalette());
    (void)GetGlobalPaletteColors(0, MapColors().count, colours);
    add({}, sharedPaletteText, colours);
    palettes_.back().colours.clear();  // whatever that of all maps will be
    const AObjArray<CString> names = PaletteNames();
    for (int i = 0; i < names.count(); ++i)
        if (GetPaletteColors(names(i), colours))
            add(names(i), names(i), colours);
    filling_ = 0;
    showPalette();
}

/// Selects the line of what the map shows; none for colours of its own that no palette has.
void APalettePlayDlg::showPalette()
{
    if (!graph())
        return;
    const std::vector<COLORREF> own = asVector(graph()->colors());
    const auto found = std::find_if(palettes_.begin(), palettes_.end(),
                                    [&](const Palette& each) { return each.colours == own; });
    const int line = found == palettes_.end() ? -1 : static_cast<int>(found - palettes_.begin());
    if (paletteList_.GetCurSel() != line)
        (void)paletteList_.SetCurSel(line);
    if (CWnd* const button = GetDlgItem(IDC_PLAY_FOR_ALL))
        (void)button->EnableWindow(line > 0);
}

void APalettePlayDlg::choosePalette()
{
    const int line = paletteList_.GetCurSel();
    if (line < 0 || line >= static_cast<int>(palettes_.size()) || !graph())
        return;
    ColorLook look(*graph());
    look.colours = palettes_[static_cast<std::size_t>(line)].colours;
    step(look);
}

/// As the map shows them, with the play.
void APalettePlayDlg::savePalette()
{
    CString name = UserPaletteFolder(1);
    if (!graph() || !fnFileDialog1(name, paletteFilter, savePaletteTitle, 0, "pal",
                                   OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY, this))
        return;
    if (!graph())
        return;  // the map went while the name was asked for
    CString error;
    const int saved = WritePalette(name, graph()->mapColors(graph()->GetColorPlay()), error);
    note(saved ? CString() : error);
    if (saved)
        fillPalettes();
}

void APalettePlayDlg::PaletteChanged()
{
    if (GetSafeHwnd())
        fillPalettes();
}

void APalettePlayDlg::useForAll()
{
    const int line = paletteList_.GetCurSel();
    if (line < 1 || line >= static_cast<int>(palettes_.size()) ||
        !LoadPalette(palettes_[static_cast<std::size_t>(line)].name))
        return;
    usedForAll_ = 1;
    ColorLook look(*graph());
    look.colours.clear();
    fillPalettes();
    const LifeWatch self(life_);
    step(look);
    if (self.alive())
        OnPaletteForAll();
}

}  // namespace pavane
