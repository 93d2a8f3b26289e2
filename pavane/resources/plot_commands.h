#pragma once

#include "pavane/resources/resource_ids.h"
#include "pavane/resources/toolbar_icons.h"
#include "pavane/resources/tools.h"
#include "pavane/resources/view_ids.h"
#include "platform/menu_template.h"
#include "platform/messages.h"

#include <cstdint>

namespace pavane
{

/// When a command of a window with a plot would do something.
enum class CommandWhen : std::uint8_t {
    always,
    hasHistory,        ///< of ranges
    isZoomed,          ///< less than the whole range is shown
    hasPlot,           ///< to mark areas in
    hasMap,            ///< whose cells areas hold
    canUndo,           ///< edits of areas
    canRedo,           ///< the same
    isSelected,        ///< an area or several
    isSelectedOrOpen,  ///< or a polygon is being drawn
    isOpen,            ///< a polygon is being drawn
    hasPolygonThere,   ///< where the menu was asked for, or with the focus
    hasAreas,          ///< at all
    hasMapAndAreas,    ///< both
    hasAreasOrOpen,    ///< or a polygon is being drawn
    canViewBack,       ///< to the view before
    canViewForward     ///< to the view that was left
};

/// Held with the key of a command. Shift only tells two commands of one key apart.
enum CommandKey : int { withControl = 1, withShift = 2, withAlt = 4 };

/// The tool of commands that take none up.
inline constexpr int noTool = -1;

/// A command of windows that show plots and areas: whatever its menus, keys and buttons say of it.
struct PlotCommand {
    unsigned id;
    CommandWhen when;
    const char* text;   ///< of menus, as MenuItem has it
    int key = 0;        ///< a capital letter, a digit or a VK_ code; 0 for none of its own
    int held = 0;       ///< CommandKey
    int buttons = 0;    ///< TrackerButtons group in the toolbar; 0 for no button
    int tool = noTool;  ///< ToolMode that it takes up
    const char* const* icon = nullptr;
    const char* tip = nullptr;
};

/// In the order of the toolbar.
inline constexpr PlotCommand plotCommands[] = {
    {ID_TRACK_ARROW, CommandWhen::hasPlot, "&Arrow\t1", '1', 0, trackerButtonsDraw, toolArrow,
     arrowIcon, "Select and change areas (1)"},
    {ID_TRACK_RECT, CommandWhen::hasPlot, "&Rectangle\t2", '2', 0, trackerButtonsDraw, toolRect,
     rectIcon, "Draw a rectangle (2)"},
    {ID_TRACK_ROTATE_RECT, CommandWhen::hasPlot, "&Turned rectangle\t3", '3', 0, trackerButtonsDraw,
     toolRotateRect, rotateRectIcon, "Draw a rectangle that can be turned (3)"},
    {ID_TRACK_ELLIPSE, CommandWhen::hasPlot, "&Ellipse\t4", '4', 0, trackerButtonsDraw, toolEllipse,
     ellipseIcon, "Draw an ellipse (4)"},
    {ID_TRACK_AREA, CommandWhen::hasPlot, "&Polygon\t5", '5', 0, trackerButtonsDraw, toolArea,
     areaIcon, "Draw a polygon: click its corners, close it with a double click or Enter (5)"},
    {ID_ZOOM_PLUS, CommandWhen::hasPlot, "&Zoom in\t6", '6', 0, trackerButtonsZoom, toolZoomIn,
     zoomInIcon, "Zoom in where you click (6)"},
    {ID_ZOOM_MINUS, CommandWhen::hasHistory, "Zoom &back\t7", '7', 0, trackerButtonsZoom, noTool,
     zoomBackIcon, "Back to the view before (7)"},
    {ID_WHOLE_MAP, CommandWhen::isZoomed, "&Whole map\t0", '0', 0, trackerButtonsZoom, noTool,
     wholeMapIcon, "Show the whole map (0)"},
    {ID_VIEW_BACK, CommandWhen::canViewBack, "Pr&evious view\tAlt+Left", VK_LEFT, withAlt},
    {ID_VIEW_FORWARD, CommandWhen::canViewForward, "Ne&xt view\tAlt+Right", VK_RIGHT, withAlt},
    {ID_TRACK_UNDO, CommandWhen::canUndo, "&Undo\tCtrl+Z", 'Z', withControl, trackerButtonsEdit,
     noTool, undoIcon, "Undo (Ctrl+Z)"},
    {ID_TRACK_REDO, CommandWhen::canRedo, "&Redo\tCtrl+Shift+Z", 'Z', withControl | withShift,
     trackerButtonsEdit, noTool, redoIcon, "Redo (Ctrl+Shift+Z)"},
    {ID_TRACK_COPY, CommandWhen::isSelected, "Du&plicate area\tCtrl+D", 'D', withControl,
     trackerButtonsEdit, noTool, copyIcon, "Duplicate the area (Ctrl+D)"},
    // the key is about a vertex that has the focus first
    {ID_TRACK_DELETE, CommandWhen::isSelectedOrOpen, "&Delete area\tDel", 0, 0, trackerButtonsEdit,
     noTool, deleteIcon, "Delete the area (Del)"},
    {ID_NEVER_CLEAN, CommandWhen::isSelected, "&Never clean\tN", 'N'},
    {ID_CONTOUR_AREA, CommandWhen::hasMap, "Area from &contour\tC", 'C', 0, 0, toolContour},
    {ID_CONTOUR_LEVEL, CommandWhen::hasMap, "Contour &level..."},
    {ID_GROW_AREAS, CommandWhen::hasMapAndAreas, "&Grow areas...\tCtrl+Alt+G", 'G',
     withControl | withAlt},
    {ID_SHRINK_AREAS, CommandWhen::hasMapAndAreas, "&Shrink areas...\tCtrl+Alt+Shift+G", 'G',
     withControl | withAlt | withShift},
    {ID_SHOW_CELLS, CommandWhen::hasMap, "Show &cells of areas\tM", 'M', 0, trackerButtonsCells,
     noTool, cellsIcon, "Show the cells that the areas hold (M)"},
    {ID_SELECT_ALL, CommandWhen::hasAreas, "Select &all areas\tCtrl+A", 'A', withControl},
    {ID_CLEAR_AREAS, CommandWhen::hasAreasOrOpen, "C&lear all areas"},
    // the key places a shape when no polygon is open
    {ID_CLOSE_AREA, CommandWhen::isOpen, "C&lose area\tEnter"},
    {ID_VERTEX_INSERT, CommandWhen::hasPolygonThere, "&Insert vertex\tIns", VK_INSERT},
    {ID_VERTEX_DELETE, CommandWhen::hasPolygonThere, "Delete &vertex"},
    // hosts and their handbooks know these two by these words, whatever the file is
    {ID_COPY_TO_CLIPBOARD, CommandWhen::always, "Copy to Clipboard", 'C', withControl},
    {ID_COPY_TO_BMP, CommandWhen::always, "Copy to BMP..."},
};

/// Null for a command that is none of these.
constexpr const PlotCommand* commandOf(unsigned id)
{
    for (const PlotCommand& command : plotCommands)
        if (command.id == id)
            return &command;
    return nullptr;
}

/// The command that takes a tool up; null where none does.
constexpr const PlotCommand* commandOfTool(int tool)
{
    for (const PlotCommand& command : plotCommands)
        if (command.tool == tool && tool != noTool)
            return &command;
    return nullptr;
}

/// The command of a key, digits of the number pad included; null where none has it.
constexpr const PlotCommand* commandOfKey(int key, bool shift, bool control, bool alt = false)
{
    const int pressed = key >= VK_NUMPAD0 && key <= VK_NUMPAD0 + 9 ? key - VK_NUMPAD0 + '0' : key;
    const PlotCommand* found = nullptr;
    for (const PlotCommand& command : plotCommands) {
        if (command.key == 0 || command.key != pressed ||
            !(command.held & withControl) == control || !(command.held & withAlt) == alt)
            continue;
        if (!(command.held & withShift) != shift)
            return &command;
        found = found ? found : &command;
    }
    return found;
}

/// The line of a menu for one of the commands.
constexpr MenuItem menuItemOf(unsigned id) { return {commandOf(id)->text, id}; }

}  // namespace pavane
