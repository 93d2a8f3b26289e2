#include "pavane/windows/AResizeDialog.h"

#include "pavane/windows/dialog_places.h"
#include "pavane/windows/library_resources.h"
#include "pavane/windows/window_placement.h"
#include "platform/resources.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Templates of the library are looked up when a dialog is made.
const DlgTemplate* knownTemplate(unsigned id)
{
    AddLibraryResources();
    return FindDialogTemplate(id);
}

}  // namespace

AResizeDialog::AResizeDialog(unsigned templateId, CWnd* parent)
    : CDialog((AddLibraryResources(), templateId), parent), template_(knownTemplate(templateId))
{
}

AResizeDialog::AResizeDialog(const DlgTemplate& dialog, CWnd* parent)
    : CDialog(dialog, parent), template_(&dialog)
{
}

// its place is kept by this part of the object
AResizeDialog::~AResizeDialog() { DestroyWindow(); }

void AResizeDialog::SetResizeItems(std::span<const ResizeItem> items)
{
    items_.assign(items.begin(), items.end());
    if (least_ == CSize())
        return;
    takePlaces();
    layOut();
}

void AResizeDialog::takePlaces()
{
    wholePlaces_ = placesAtLeastSize(*this, *template_, items_, least_);
    fitToFolds();
}

/// Where the items stand without what is folded away, and what sizes that allows.
void AResizeDialog::fitToFolds()
{
    places_ = wholePlaces_;
    least_ = whole_;
    std::vector<ResizeItem> shown;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const CRect whole = places_[i];
        const auto holds = [&](const Fold& fold) {
            return whole.top >= fold.top && whole.bottom <= fold.bottom;
        };
        for (const Fold& fold : folds_)
            if (whole.top >= fold.bottom)
                places_[i].OffsetRect(0, fold.top - fold.bottom);
        if (std::any_of(folds_.begin(), folds_.end(), holds))
            places_[i] = {};
        else if (items_[i].id && GetDlgItem(items_[i].id))
            shown.push_back(items_[i]);
    }
    for (const Fold& fold : folds_)
        least_.cy -= fold.bottom - fold.top;
    AllowResize(least_.cx, least_.cy, growsAcross(shown), growsDown(shown));
}

void AResizeDialog::FoldRows(int top, int bottom, int fold)
{
    const CRect rows = MapDialogRect(CRect(0, top, 1, bottom));
    const auto at = std::find_if(folds_.begin(), folds_.end(),
                                 [&](const Fold& known) { return known.top == rows.top; });
    if (least_ == CSize() || (at != folds_.end()) == (fold != 0))
        return;
    const CSize before = clientSize(*this);
    if (fold)
        folds_.push_back({rows.top, rows.bottom});
    else
        folds_.erase(at);
    const HWND self = GetSafeHwnd();
    const std::vector<CRect> placed = places_;
    fitToFolds();
    for (std::size_t i = 0; i < places_.size(); ++i)
        if (CWnd* const control = items_[i].id ? GetDlgItem(items_[i].id) : nullptr)
            if (places_[i].IsRectNull() != placed[i].IsRectNull())
                (void)control->ShowWindow(places_[i].IsRectNull() ? SW_HIDE : SW_SHOW);
    SetClientSize(before.cx, std::max(least_.cy, before.cy + (fold ? -1 : 1) * rows.Height()));
    if (FromHandle(self) == this)
        layOut();
}

void AResizeDialog::layOut()
{
    const std::vector<CRect> now = layOutDialog(items_, places_, least_, clientSize(*this));
    const HWND self = GetSafeHwnd();
    // whoever is told of a new size may end the dialog
    for (std::size_t i = 0; i < now.size() && FromHandle(self) == this; ++i) {
        CWnd* const control = items_[i].id ? GetDlgItem(items_[i].id) : nullptr;
        if (control && !places_[i].IsRectNull())
            (void)control->MoveWindow(now[i]);
    }
}

int AResizeDialog::OnInitDialog()
{
    const int result = CDialog::OnInitDialog();
    whole_ = least_ = clientSize(*this);
    folds_.clear();
    takePlaces();
    loadDialogPlace(*this, section_, least_, growsAcross(items_), growsDown(items_));
    layOut();
    return result;
}

void AResizeDialog::OnSize(unsigned type, int cx, int cy)
{
    CDialog::OnSize(type, cx, cy);
    if (least_ != CSize())
        layOut();
}

int AResizeDialog::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != maximiseCommand || control)
        return CDialog::OnCommand(id, code, control);
    (void)ShowWindow(SW_SHOWMAXIMIZED);
    return 1;
}

void AResizeDialog::OnDestroy()
{
    if (!section_.empty() && least_ != CSize())
        SaveWndPos(this, section_.c_str());
    least_ = CSize();
    CDialog::OnDestroy();
}

}  // namespace pavane
