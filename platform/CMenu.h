#pragma once

#include "platform/menu_template.h"
#include "platform/messages.h"

#include <deque>
#include <memory>

namespace pavane
{

class CImageList;
class CPicture;
class CWnd;

inline constexpr unsigned MF_BYCOMMAND = 0x0000, MF_BYPOSITION = 0x0400, MF_ENABLED = 0x0000,
                          MF_GRAYED = 0x0001, MF_CHECKED = 0x0008, MF_UNCHECKED = 0x0000;
inline constexpr unsigned TPM_RIGHTBUTTON = 0x0002, TPM_RETURNCMD = 0x0100;

/// A menu as a value: lines and popups. Positions count from 0.
class PAVANE_API CMenu
{
public:
    struct Line {
        CString text;  ///< empty for a separator
        unsigned id = 0;
        int enabled = 1;
        int checked = 0;
        std::unique_ptr<CMenu> popup;
        // the picture before the text: one of its own, or an image of a list; none when both are
        // null
        std::shared_ptr<const CPicture> picture;
        int ratio = 1;  ///< pixels of `picture` to a unit
        const CImageList* images = nullptr;
        int image = -1;
    };
    CMenu() = default;
    CMenu(CMenu&&) = default;
    CMenu& operator=(CMenu&&) = default;
    /// The same menu again, popups included.
    CMenu Clone() const;

    /// Builds the menu of the resource tables; 0 when there is none of that identifier.
    int LoadMenu(unsigned id);
    int LoadMenu(const MenuTemplate& menu);
    /// Null when there is no popup at that position.
    CMenu* GetSubMenu(int position);
    int GetMenuItemCount() const { return static_cast<int>(lines_.size()); }
    void AppendMenu(const CString& text, unsigned id);
    void AppendSeparator();
    CMenu& AppendPopup(const CString& text);
    /// `flags`: MF_GRAYED or MF_ENABLED, MF_CHECKED or MF_UNCHECKED, and MF_BYPOSITION when `item`
    /// is a position; by command popups are searched too. 0 when there is no such item.
    int EnableMenuItem(unsigned item, unsigned flags);
    int CheckMenuItem(unsigned item, unsigned flags);
    /// The picture before the text of a line: with `ratio` pixels to a unit (empty: none), or an
    /// image of a list, which has to live until the menu has been shown. `flags` MF_BYPOSITION as
    /// above. 0 when there is no such item.
    int SetItemPicture(unsigned item, unsigned flags, CPicture picture, int ratio = 1);
    int SetItemImage(unsigned item, unsigned flags, const CImageList& images, int image);
    /// Removes a line, with its popup; 0 when there is no such item.
    int RemoveMenu(unsigned item, unsigned flags);
    void DeleteAll() { lines_.clear(); }
    /// Shows the menu at a screen point until the user chose; the command goes to `owner` as
    /// WM_COMMAND, or is returned with TPM_RETURNCMD. Returns non-zero when something was chosen.
    int TrackPopupMenu(unsigned flags, CPoint screen, CWnd* owner);
    const std::deque<Line>& lines() const { return lines_; }
    std::deque<Line>& lines() { return lines_; }

private:
    void append(const MenuItem* items, int count);
    Line* find(unsigned item, unsigned flags);
    std::deque<Line> lines_;
};

/// For tests: answers popup menus without showing them: gets the menu, returns the identifier of
/// the chosen item, 0 for none. Null shows menus again.
using MenuAnswer = unsigned (*)(const CMenu& menu, CPoint screen);
PAVANE_API MenuAnswer SetMenuAnswer(MenuAnswer answer);

}  // namespace pavane
