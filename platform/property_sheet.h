#pragma once

#include "platform/CDialog.h"
#include "platform/tab_control.h"

namespace pavane
{

class CPropertySheet;

inline constexpr unsigned ID_APPLY_NOW = 0x3021;   ///< the button "Apply"
inline constexpr unsigned ID_SHEET_TABS = 0x3020;  ///< the tabs

/// A dialog without a frame that stands under a tab of a property sheet. Its window is made when
/// its tab is chosen for the first time.
class PAVANE_API CPropertyPage : public CDialog
{
public:
    /// `captionId`: the text of the tab (LoadString); the title of the template where there is
    /// none. '&' stands before the letter that Alt goes with.
    explicit CPropertyPage(unsigned templateId, unsigned captionId = 0);
    /// The template is not copied; an empty `caption` is its title.
    explicit CPropertyPage(const DlgTemplate& page, const CString& caption = CString());
    ~CPropertyPage() override;

    const CString& caption() const { return caption_; }
    /// The sheet that it was added to, null for none.
    CPropertySheet* GetSheet() const { return sheet_; }
    /// Says that there is something to apply, which enables "Apply", or that there is not.
    void SetModified(int on = 1);

    /// The tab was chosen; 0 goes on to the next one.
    virtual int OnSetActive() { return 1; }
    /// Another tab was chosen, or OK or "Apply" pressed; 0 stays on this page.
    virtual int OnKillActive() { return 1; }
    /// OK or "Apply": takes what stands on the page; 0 shows the page and ends nothing. Pages that
    /// were never shown are not asked.
    virtual int OnApply() { return 1; }
    /// The sheet was cancelled.
    virtual void OnReset() {}

protected:
    void OnOK() override;
    void OnCancel() override;

private:
    friend class CPropertySheet;
    const DlgTemplate* template_;
    CString caption_;
    CPropertySheet* sheet_ = nullptr;
    int isModified_ = 0;
};

/// Pages under tabs with OK, Cancel and "Apply". Ctrl+Tab and Ctrl+Page Down choose the next page,
/// with Shift or Page Up the one before; Enter is OK, Escape is Cancel. DoModal returns IDOK or
/// IDCANCEL. Tests answer it as any dialog.
class PAVANE_API CPropertySheet : public CDialog
{
public:
    explicit CPropertySheet(const CString& title, CWnd* parent = nullptr);
    ~CPropertySheet() override;

    /// Not owned; a page that is deleted leaves the sheet. Before the sheet is shown; 0 for a page
    /// without a template, or of a sheet already.
    int AddPage(CPropertyPage& page);
    int GetPageCount() const;
    /// Null when there is no such page.
    CPropertyPage* GetPage(int index) const;
    CPropertyPage* GetActivePage() const;
    /// -1 without a page.
    int GetActiveIndex() const;
    /// Shows a page as when its tab was clicked; before the sheet is shown the first one that it
    /// will show. Non-zero when that page is the active one afterwards.
    int SetActivePage(int index);

    /// Lets the user make the sheet larger than its pages need, across or down; the tabs and the
    /// page in front get the room. Before the sheet is shown.
    void SetGrows(int across, int down);
    /// Pixels of the client area that the pages need; 0, 0 before the sheet is made.
    CSize GetLeastSize() const;

    int PreTranslateMessage(const MSG& message) override;

protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnSize(unsigned type, int cx, int cy) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    friend class CPropertyPage;
    struct Data;
    CPropertySheet(std::unique_ptr<Data> data, CWnd* parent);
    void remove(CPropertyPage& page);
    void enableApply();
    /// All pages take what stands on them; 0 when one refused or the sheet is gone.
    int apply();
    std::unique_ptr<Data> data_;
};

}  // namespace pavane
