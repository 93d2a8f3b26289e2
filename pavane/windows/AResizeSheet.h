#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/property_sheet.h"

#include <span>
#include <vector>

namespace pavane
{

/// A page of a property sheet whose controls follow its size as their items say; its template is
/// the least size. In any sheet; only an AResizeSheet lets the user make it larger.
class PAVANE_API AResizePage : public CPropertyPage
{
public:
    /// Templates of the library are known without more.
    explicit AResizePage(unsigned templateId, unsigned captionId = 0);
    /// The template is not copied.
    explicit AResizePage(const DlgTemplate& page, const CString& caption = CString());

    /// How the controls follow, by identifier; copied. Before the page is made. Items whose control
    /// is not there are passed over.
    void SetResizeItems(std::span<const ResizeItem> items);
    std::span<const ResizeItem> GetResizeItems() const { return items_; }

protected:
    /// Heirs call it once their controls are there.
    int OnInitDialog() override;
    void OnSize(unsigned type, int cx, int cy) override;

private:
    void layOut();
    const DlgTemplate* resizeTemplate_;
    std::vector<ResizeItem> items_;
    std::vector<CRect> places_;  ///< at the least size
    CSize least_;
};

/// A property sheet that the user may make larger where controls of its pages follow, and that
/// comes back where it was.
class PAVANE_API AResizeSheet : public CPropertySheet
{
public:
    using CPropertySheet::CPropertySheet;
    ~AResizeSheet() override;
    /// The section of the profile that keeps size and place; before the sheet is made. "" (as at
    /// first) keeps nothing.
    void SetPlacementSection(const CString& section) { placement_ = section; }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnDestroy() override;

private:
    CString placement_;
    int isPlaced_ = 0;
};

}  // namespace pavane
