#include "pavane/windows/AResizeSheet.h"

#include "pavane/windows/dialog_places.h"
#include "pavane/windows/library_resources.h"
#include "pavane/windows/window_placement.h"
#include "platform/resources.h"

namespace pavane
{

AResizePage::AResizePage(unsigned templateId, unsigned captionId)
    : CPropertyPage((AddLibraryResources(), templateId), captionId),
      resizeTemplate_(FindDialogTemplate(templateId))
{
}

AResizePage::AResizePage(const DlgTemplate& page, const CString& caption)
    : CPropertyPage(page, caption), resizeTemplate_(&page)
{
}

void AResizePage::SetResizeItems(std::span<const ResizeItem> items)
{
    items_.assign(items.begin(), items.end());
}

int AResizePage::OnInitDialog()
{
    const int result = CPropertyPage::OnInitDialog();
    if (!resizeTemplate_)
        return result;
    least_ = MapDialogRect(CRect(0, 0, resizeTemplate_->cx, resizeTemplate_->cy)).Size();
    places_ = placesAtLeastSize(*this, *resizeTemplate_, items_, least_);
    layOut();
    return result;
}

void AResizePage::layOut()
{
    const HWND self = GetSafeHwnd();
    const std::vector<CRect> now = layOutDialog(items_, places_, least_, clientSize(*this));
    // whoever is told of a new size may end the sheet
    for (std::size_t i = 0; i < now.size() && FromHandle(self) == this; ++i)
        if (CWnd* const control = items_[i].id ? GetDlgItem(items_[i].id) : nullptr)
            (void)control->MoveWindow(now[i]);
}

void AResizePage::OnSize(unsigned type, int cx, int cy)
{
    const HWND self = GetSafeHwnd();
    CPropertyPage::OnSize(type, cx, cy);
    if (FromHandle(self) == this && !places_.empty())
        layOut();
}

// its place is kept by this part of the object
AResizeSheet::~AResizeSheet() { DestroyWindow(); }

int AResizeSheet::OnInitDialog()
{
    int across = 0, down = 0;
    for (int i = 0; i < GetPageCount(); ++i)
        if (const auto* const page = dynamic_cast<const AResizePage*>(GetPage(i))) {
            across |= growsAcross(page->GetResizeItems());
            down |= growsDown(page->GetResizeItems());
        }
    SetGrows(across, down);
    const HWND self = GetSafeHwnd();
    const int result = CPropertySheet::OnInitDialog();
    if (FromHandle(self) != this)
        return result;
    isPlaced_ = 1;
    loadDialogPlace(*this, placement_, GetLeastSize(), across, down);
    return result;
}

int AResizeSheet::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != maximiseCommand || control)
        return CPropertySheet::OnCommand(id, code, control);
    (void)ShowWindow(SW_SHOWMAXIMIZED);
    return 1;
}

void AResizeSheet::OnDestroy()
{
    if (isPlaced_ && !placement_.empty())
        SaveWndPos(this, placement_.c_str());
    isPlaced_ = 0;
    CPropertySheet::OnDestroy();
}

}  // namespace pavane
