#include "apps/view/key_help.h"

#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/controls/AInfoText.h"
#include "platform/message.h"

#include <iterator>

namespace pavane
{

namespace
{

constexpr KeyLine mapKeys[] = {
    {"1  2  3  4  5  6", "arrow, rectangle, turned rectangle, ellipse, polygon, zoom in"},
    {"Drag with a tool", "draws a shape; clicks set the vertices of a polygon"},
    {"Double click, Enter", "closes the polygon; so does a click on its first vertex"},
    {"Enter", "with a tool: puts its shape into the middle"},
    {"Click", "picks an area with the arrow"},
    {"Drag a handle", "changes the area; the one inside turns it, with Shift in steps"},
    {"Esc, right button", "cancels a drag"},
    {"Ctrl+click, Ctrl+A", "picks several areas, all areas"},
    {"Tab, Shift+Tab", "to the next area or handle, to the one before"},
    {"Arrows", "move by a cell, with Shift by ten, with Ctrl by a pixel"},
    {"Click a vertex", "gives it the focus: Del and the arrows act on it"},
    {"Ins, Del", "a new vertex after the one with the focus; deletes it, or the area"},
    {"Ctrl+D", "copies the area"},
    {"N", "the cells of the selected areas are never cleaned, or are again"},
    {"C, then a click or Enter", "an area from a contour, there or about the brightest cell"},
    {"Ctrl+Alt+G, with Shift", "grows or shrinks areas by cells"},
    {"Ctrl+Z, Ctrl+Shift+Z", "undo, redo"},
    {"Ctrl+C", "the picture of the map to the clipboard"},
    {"Ctrl+wheel", "zooms about the pointer"},
    {"Wheel, Shift+wheel", "moves a zoomed map; so do the middle button and Space with the left"},
    {"+  -", "zooms about the middle"},
    {"7  0", "zooms back, shows the whole map"},
    {"M", "shows the cells of the mask"},
    {"G", "the grid of the sky: off, ticks, lines"},
    {"Ctrl+G, Ctrl+Shift+G", "goes to a position; copies the one under the pointer"},
    {"Ctrl+Alt+P", "sends the position to other programs (Maps > Other programs)"},
    {"Ctrl+H", "the cards of the header; Ctrl+F finds in them"},
    {"Ctrl+Shift+A, Ctrl+W", "another map in this window; closes the current one"},
    {"B, Shift+B", "the next map, the one before; with Ctrl blinks them, stops"},
    {"Ctrl+Alt+1, 2, 3", "maps behind tabs, side by side, two with a slider between them"},
    {"L", "links the maps by sky, by cell, not at all"},
    {"X", "the contours of the other map over this one, or its own again"},
    {"V", "vectors of polarisation over the map, or none"},
    {"Ctrl+Alt+I, Ctrl+Alt+V", "moments of a cube; its position-velocity map along a line"},
    {"Ctrl+Alt+B, Ctrl+Alt+U", "the map with a larger beam; its polarisation"},
    {"Page Down, Page Up", "the next plane of a cube, the one before"},
    {"Alt+P", "plays the planes of a cube, stops; Tab goes round the bar with their number"},
    {"Right drag", "colours: bias across, contrast up, with Shift a tenth as fast; Esc takes back"},
    {"P", "colours by a histogram: range, contrast, gamma, palettes"},
    {"Alt+Left, Alt+Right",
     "back and forward through the views: range, plane, colours and display"},
    {"F4, F5, F6", "numbers of the area, components, to the next part of the window"},
    {"F7", "what the areas hold: fluxes, errors, statistics; a row chooses its area, F2 names it"},
    {"F8, Shift+F8", "the map along a line, whose ends are dragged; the line by its numbers"},
    {"Ctrl+Alt+L", "corners of that line by Tab and arrows, Ins, Del, Ctrl+Z; Esc: done"},
    {"Ctrl+Alt+M", "finds the shift between this map and the one before, and applies it"},
    {"Ctrl+Alt+R", "reads the map again from its file"},
    {"Ctrl+F8, Ctrl+Shift+F8", "the spectrum of a cube, a histogram; Ctrl+K keeps the curve"},
    {"F9", "fits Gaussians to the area, or to the map"},
    {"Ctrl+3", "the map as a surface beside it: drag or arrows turn it, X Y Z look along an axis"},
    {"Ctrl+Up, Ctrl+Down", "on the surface: higher, lower; Home takes turns back"},
    {"Ins, Ctrl+D, Del", "among components: adds one, duplicates them, deletes them"},
};

constexpr KeyLine dataKeys[] = {
    {"F6, Shift+F6", "to the next part of the window: tabs, table, plot, each panel; back"},
    {"Ctrl+PgDown, Ctrl+PgUp", "next tab, the one before"},
    {"Space, click on a box", "marks what is selected: the plot shows what is marked everywhere"},
    {"Ctrl+M, Ctrl+Shift+M", "marks all of the table, none of it"},
    {"Ctrl+I", "marks what is not marked, and the reverse"},
    {"Click on a point", "tells its baseline and scan, and selects them in their tables"},
    {"Alt+1 ... Alt+5",
     "plots against distance, time; closure phases; bandpass; closure amplitudes"},
    {"Ctrl+R", "chooses the triangles of closure phases"},
    {"Alt+8, Alt+9", "means over time; the next colours: of baselines, telescopes, IFs, sources"},
    {"N, Shift+N", "the next baselines or triangles, those before"},
    {"Page Down, Page Up", "the next page of panels, the one before"},
    {"Tab, Shift+Tab", "in a panel: to its scales and curves, which + - and arrows act on"},
    {"Drag in the plot", "shows what lies in the frame"},
    {"Ctrl+wheel, +  -", "zooms about the pointer, about the middle"},
    {"7  0", "zooms back, shows all of the plot"},
    {"Alt+Left, Alt+Right", "the view before, the view that was left"},
    {"Esc", "stops reading; the menu View goes on"},
    {"Arrows, with Shift", "go through a table, select in it"},
    {"Click on a title", "sorts: rising, falling, as stored"},
    {"Ctrl+F, F3, Shift+F3", "finds a text, finds it again, before"},
    {"Ctrl+G", "goes to a row"},
    {"Ctrl+C, Ctrl+Shift+C", "copies the selection with its titles, without them"},
    {"Ctrl+Z, Ctrl+Shift+Z", "undo, redo of marks and groups"},
    {"Ins, Del", "a frequency group of the marked IFs; deletes the group"},
};

enum Control : unsigned { idLines = 101 };
constexpr const char* title = "Keys and mouse";

constexpr DlgItem helpDialogItems[] = {
    {ControlKind::placeholder, idLines, "", 8, 8, 374, 216, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "Close", 326, 230, 56, 14, WS_TABSTOP},
};
constexpr DlgTemplate helpDialog = {0,   title,           390,
                                    252, helpDialogItems, std::size(helpDialogItems)};
constexpr ResizeItem helpResize[] = {{idLines, 0, 0, 100, 100}, {IDOK, 100, 100, 100, 100}};
/// What the keys do stands so far from the left, in units of dialogs.
constexpr int whatColumn = 104;

/// The lines scroll, are found in with Ctrl+F and copied.
class KeyHelp : public AResizeDialog
{
public:
    KeyHelp(CWnd* parent, std::span<const KeyLine> lines)
        : AResizeDialog(helpDialog, parent), lines_(lines)
    {
        SetResizeItems(helpResize);
        SetPlacementSection("KeyHelp");
    }

protected:
    int OnInitDialog() override
    {
        (void)text_.UpDateControl("", this, idLines,
                                  WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL);
        text_.SetName(title);
        text_.SetColumn(MapDialogRect(CRect(0, 0, whatColumn, 0)).Width());
        CString all;
        for (const KeyLine& line : lines_)
            all.append(all.empty() ? "" : "\n").append(line.keys).append("\t").append(line.what);
        text_.SetText(all);
        return AResizeDialog::OnInitDialog();
    }

private:
    std::span<const KeyLine> lines_;
    AInfoText text_;
};

}  // namespace

void showKeys(CWnd* parent, std::span<const KeyLine> lines)
{
    KeyHelp dialog(parent, lines);
    dialog.DoModal();
}

void showMapKeys(CWnd* parent) { showKeys(parent, mapKeys); }
void showDataKeys(CWnd* parent) { showKeys(parent, dataKeys); }

void showAbout()
{
    AfxMessageBox("pavane-view marks areas on maps of radio interferometers, writes the masks of "
                  "them, and shows what is in files of visibilities.\n\nA program of the pavane "
                  "library, under the MIT licence.",
                  MB_ICONINFORMATION);
}

}  // namespace pavane
