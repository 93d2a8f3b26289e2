#pragma once

#include "platform/messages.h"

#include <vector>

namespace pavane
{

// Roles and states of parts; the numeric values are those of the Win32 interface.
inline constexpr unsigned ROLE_SYSTEM_CLIENT = 0x0A, ROLE_SYSTEM_TABLE = 0x18,
                          ROLE_SYSTEM_COLUMNHEADER = 0x19, ROLE_SYSTEM_ROWHEADER = 0x1A,
                          ROLE_SYSTEM_CELL = 0x1D, ROLE_SYSTEM_LINK = 0x1E, ROLE_SYSTEM_LIST = 0x21,
                          ROLE_SYSTEM_LISTITEM = 0x22, ROLE_SYSTEM_GRAPHIC = 0x28,
                          ROLE_SYSTEM_SEPARATOR = 0x15, ROLE_SYSTEM_STATICTEXT = 0x29,
                          ROLE_SYSTEM_TEXT = 0x2A, ROLE_SYSTEM_PUSHBUTTON = 0x2B,
                          ROLE_SYSTEM_PROGRESSBAR = 0x30;
inline constexpr unsigned STATE_SYSTEM_UNAVAILABLE = 0x1, STATE_SYSTEM_SELECTED = 0x2,
                          STATE_SYSTEM_FOCUSED = 0x4, STATE_SYSTEM_CHECKED = 0x10,
                          STATE_SYSTEM_READONLY = 0x40, STATE_SYSTEM_INVISIBLE = 0x8000,
                          STATE_SYSTEM_OFFSCREEN = 0x10000, STATE_SYSTEM_FOCUSABLE = 0x100000,
                          STATE_SYSTEM_SELECTABLE = 0x200000,
                          STATE_SYSTEM_MULTISELECTABLE = 0x1000000,
                          STATE_SYSTEM_EDITABLE = 0x20000000;  ///< the last one is our own
// What NotifyWinEvent tells of.
inline constexpr unsigned EVENT_OBJECT_REORDER = 0x8004, EVENT_OBJECT_FOCUS = 0x8005,
                          EVENT_OBJECT_SELECTION = 0x8006, EVENT_OBJECT_SELECTIONWITHIN = 0x8009,
                          EVENT_OBJECT_STATECHANGE = 0x800A, EVENT_OBJECT_NAMECHANGE = 0x800C,
                          EVENT_OBJECT_VALUECHANGE = 0x800E;

/// A part of a window: a number that the window gives it and that means the same part for as long
/// as the window lives. 0 is the window itself.
using AccessId = std::int64_t;

/// What a screen reader is told of a part.
struct AccessPart {
    unsigned role = ROLE_SYSTEM_CLIENT;
    CString name;         ///< of a cell: its text, or what its headers do not say of it
    CString value;        ///< of a cell: its text
    CString description;  ///< more than the name, when asked for
    unsigned state = 0;
    CRect rect;    ///< client coordinates; empty when it is not in view
    int row = -1;  ///< place in the table, headers not counted, from 0
    int column = -1;
};

/// What a window offers to screen readers. The window object inherits from it, or owns one, and
/// returns it from CWnd::GetAccess; all calls come while the window lives, from the main thread.
class PAVANE_API AccessSource
{
public:
    virtual ~AccessSource();
    /// Role, name, value, state and rectangle; 0 when there is no such part (any more). 0 as `id`
    /// is the window.
    virtual int GetAccessPart(AccessId id, AccessPart& part) const = 0;
    /// The parts in view, in reading order. Child windows (editor, list) follow by themselves.
    virtual std::vector<AccessId> GetAccessChildren() const { return {}; }
    /// The part under a point of the client area, 0 for none.
    virtual AccessId AccessHitTest(CPoint point) const { return (void)point, 0; }
    /// The part that has the focus when the window has it, 0 for the window.
    virtual AccessId GetAccessFocus() const { return 0; }
    /// The user asks through the screen reader: makes a part the focus, activates it (its default
    /// action), selects it or not, stores a text in it. 0 when it cannot.
    virtual int AccessSetFocus(AccessId id) { return (void)id, 0; }
    virtual int AccessActivate(AccessId id) { return (void)id, 0; }
    virtual int AccessSelect(AccessId id, int on) { return (void)id, (void)on, 0; }
    virtual int AccessSetValue(AccessId id, const CString& value)
    {
        return (void)id, (void)value, 0;
    }

    // Tables: rows and columns of data from 0, headers not counted; any cell is reached whether it
    // is in view or not.
    /// Non-zero when the window is a table; then role and the members below count.
    virtual int IsAccessTable() const { return 0; }
    virtual int GetAccessRows() const { return 0; }
    virtual int GetAccessColumns() const { return 0; }
    /// The part of a cell, 0 outside.
    virtual AccessId GetAccessCell(int row, int column) const { return (void)row, (void)column, 0; }
    /// The header of a column or row, 0 for none.
    virtual AccessId GetAccessColumnHeader(int column) const { return (void)column, 0; }
    virtual AccessId GetAccessRowHeader(int row) const { return (void)row, 0; }
    /// The selection: rows and columns, right and bottom outside; empty for none.
    virtual CRect GetAccessSelection() const { return {}; }
};

/// What screen readers call a control that no label names; empty for nothing of its own.
PAVANE_API void SetAccessName(HWND window, const CString& name);
/// Tells screen readers of a change (EVENT_OBJECT_...) in a part of a window; costs next to nothing
/// when none listens.
PAVANE_API void NotifyWinEvent(unsigned event, HWND window, AccessId part);
/// Non-zero when one listens, for what would cost time to find out.
PAVANE_API int IsAccessActive();

/// For tests: hears what NotifyWinEvent tells, as if it were a screen reader; null ends that.
/// Returns the one before.
using AccessListener = void (*)(unsigned event, HWND window, AccessId part);
PAVANE_API AccessListener SetAccessListener(AccessListener listener);

}  // namespace pavane
