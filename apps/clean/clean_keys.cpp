#include "apps/clean/clean_keys.h"

#include "apps/view/key_help.h"
#include "platform/message.h"

namespace pavane
{

namespace
{

constexpr KeyLine keys[] = {
    {"F5, Enter in the row", "cleans inside the areas, as a new round"},
    {"Shift+F5", "ends the round with this cycle, when it stops after each cycle"},
    {"Ctrl+F5", "stops now; what was half made goes"},
    {"F4, Shift+F4", "CLEAN parameters; the beam that maps are restored with"},
    {"F8, Shift+F8, F9", "self-calibration; the chain of gains; its gains as a graph"},
    {"F6, Shift+F6", "to the next part: map, curve, rounds, details, row; to the one before"},
    {"Up, Down", "among the rounds: shows another one, from which the next goes on"},
    {"Enter, double click", "on a round: goes on from it, with the keyboard in the map"},
    {"Ctrl+Page Down, Up", "the next map of the round, the one before"},
    {"B", "this map and the one that was chosen before in turn, with one range"},
    {"Ctrl+B, Space on a round", "compare with this round: B then shows it and the chosen one"},
    {"1  2  3  4  5  6", "arrow, rectangle, turned rectangle, ellipse, polygon, zoom in"},
    {"Drag with a tool", "draws a shape; clicks set the vertices of a polygon"},
    {"Double click, Enter", "closes the polygon; so does a click on its first vertex"},
    {"Click, Drag a handle", "picks an area with the arrow; changes it"},
    {"Esc, right button", "cancels a drag"},
    {"N", "the selected areas are never cleaned, or are again"},
    {"C, then a click or Enter", "an area from a contour, there or about the brightest cell"},
    {"Ctrl+Alt+G, with Shift", "grows or shrinks areas by cells"},
    {"Ctrl+T", "sets of areas under names"},
    {"Arrows, Tab", "move the area by a cell; to the next area or handle"},
    {"Ins, Del", "a new vertex after the one with the focus; deletes it, or the area"},
    {"Ctrl+D, Ctrl+A", "copies the area; selects all areas"},
    {"Ctrl+Z, Ctrl+Shift+Z", "undo, redo in the part with the keyboard: areas, components"},
    {"M", "shows the cells of the areas"},
    {"P, R", "colours by a histogram; the range of this map alone"},
    {"Right drag", "colours: bias across, contrast up; Esc takes back"},
    {"Ctrl+wheel, +  -", "zooms about the pointer, about the middle"},
    {"7  0", "zooms back, shows the whole map"},
    {"Alt+Left, Alt+Right", "back and forward through the views"},
    {"Ins, Ctrl+D, Ctrl+Del", "among components: adds one, duplicates them, deletes them"},
    {"Ctrl+C", "copies the picture of the map, the cells of a table, the log"},
    {"Ctrl+P, Ctrl+Shift+P", "prints the part with the keyboard, saves a picture"},
    {"Ctrl+O, Ctrl+Shift+O", "opens data or a study; areas"},
    {"Ctrl+E", "exports the round: maps, model, areas, gains, data, a script"},
};

}  // namespace

void showCleanKeys(CWnd* parent) { showKeys(parent, keys); }

void showAboutClean()
{
    AfxMessageBox("pavane-clean makes maps of visibilities in rounds inside areas that are marked, "
                  "and calibrates them on the model of a round. The maps are made by an imaging "
                  "engine beside it.\n\nA program of the pavane library, under the MIT licence.",
                  MB_ICONINFORMATION);
}

}  // namespace pavane
