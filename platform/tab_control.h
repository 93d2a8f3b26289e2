#pragma once

#include "platform/controls.h"

namespace pavane
{

inline constexpr unsigned TCN_SELCHANGE = 0x0800;  ///< code of WM_COMMAND: the user chose a tab

/// Tabs above an area in which the page of the chosen one shows. The tabs are one stop of the Tab
/// key, the arrow keys go along them, and a letter behind '&' chooses one.
class PAVANE_API CTabCtrl : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Index of the new tab, -1 without a window. The first one is chosen. `page` is a child of the
    /// control, or null; it gets the area below the tabs whenever its tab is chosen and is hidden
    /// else. Not owned; a page that is destroyed leaves an empty area.
    int InsertItem(int index, const CString& text, CWnd* page = nullptr);
    /// Non-zero when there was such a tab; its page is hidden and stays.
    int DeleteItem(int index);
    int GetItemCount() const;
    CString GetItemText(int index) const;
    int SetItemText(int index, const CString& text);
    /// The page of a tab, null for none.
    CWnd* GetItemPage(int index) const;
    /// Gives another page to a tab; the one before is hidden. Non-zero on success.
    int SetItemPage(int index, CWnd* page);
    /// -1 when there is no tab.
    int GetCurSel() const;
    /// The tab chosen before; sends no notice. An index outside changes nothing.
    int SetCurSel(int index);
    /// Goes on by `step` tabs, round the ends, as Ctrl+Page Down (1) and Ctrl+Page Up (-1) do;
    /// sends the notice. Non-zero when another one is chosen.
    int SelectNext(int step);
    /// Client rectangle of a tab, empty when there is none.
    CRect GetItemRect(int index) const;
    /// Client rectangle of the pages.
    CRect GetPageRect() const;
    /// Called when the user is about to choose tab `next`, with the page before still shown; 0
    /// stays there.
    virtual int OnSelChanging(int next) { return (void)next, 1; }
};

}  // namespace pavane
