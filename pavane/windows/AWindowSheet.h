#pragma once

#include "pavane/containers/LifeWatch.h"
#include "pavane/windows/ABWindow.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Several windows on a page: panels in rows and columns, filled row by row, each with a caption of
/// its own. A window of several pages takes as many panels; what does not fit goes on further
/// pages. On the screen the sheet shows one of its pages, which Page Up, Page Down, Home, End and
/// the wheel choose.
///
/// The windows belong to the host and need not be open. One that dies leaves the sheet.
class PAVANE_API AWindowSheet : public ABWindow
{
public:
    AWindowSheet();

    /// Adds a window, behind the others. `caption` is a format (FormatStr) that gets the page of
    /// the window; one of less than two characters prints none. 0 for null and for this sheet.
    int AddWindow(ABWindow* window, const CString& caption);
    /// The same with the caption that the window proposes.
    int AddWindow(ABWindow* window);
    /// 0 when the sheet does not hold it.
    int RemoveWindow(const ABWindow* window);
    void RemoveAllWindows();
    /// Windows that live.
    int GetWindowCount() const;

    /// Panels of a page: rows and columns, each at least 1 and at most 100; 1 x 1 at first.
    void SetGrid(int rows, int columns);
    int GetRows() const { return rows_; }
    int GetColumns() const { return columns_; }

    /// The page on the screen, from 1; brought into those that there are at the next paint.
    void SetShownPage(int page);
    int GetShownPage() const { return shownPage_; }

    int GetPages(CDC& dc) override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    const char* GetWndClassName() override;

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;

private:
    struct Item {
        ABWindow* window;
        LifeWatch life;
        CString caption;
        std::int64_t end;  ///< panels up to the last of this window
    };
    int countPanels(CDC& dc, CSize panel);
    int drawPanels(CDC& dc, const CRect& rect, int page);
    void drawPanel(CDC& dc, const CRect& panel, const Item& item, int page);
    CRect panelRect(const CDC& dc, const CRect& rect, int index) const;
    void forgetDead();

    std::vector<Item> items_;
    int rows_ = 1, columns_ = 1;
    int shownPage_ = 1;
    int shownPages_ = 1;
    int busy_ = 0;            ///< sheets may hold each other
    CSize panel_;             ///< that the pages were counted for, in units of the printer
    int countedFor_[3] = {};  ///< the printer: its dots and its paper
};

}  // namespace pavane
