#include "pavane/windows/AResizeDialog.h"

#include "pavane/windows/library_resources.h"
#include "pavane/windows/placement_text.h"
#include "pavane/windows/window_placement.h"
#include "platform/profile.h"
#include "platform/resources.h"
#include "platform/screens.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Command to itself, with the number of a notice that no control sends.
constexpr unsigned maximise = 0x7F01;

/// Templates of the library are looked up when a dialog is made.
const DlgTemplate* knownTemplate(unsigned id)
{
    AddLibraryResources();
    return FindDialogTemplate(id);
}

CSize clientSize(const CWnd& window)
{
    CRect client;
    (void)window.GetClientRect(client);
    return client.Size();
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

/// That of the template and not of the window: a closed list shows less than it takes.
CRect AResizeDialog::placeInTemplate(const ResizeItem& item) const
{
    const auto* const end = template_->items + template_->itemCount;
    const auto* const known =
        std::find_if(template_->items, end, [&](const DlgItem& one) { return one.id == item.id; });
    if (known != end)
        return MapDialogRect(CRect(known->x, known->y, known->x + known->cx, known->y + known->cy));
    CRect now;
    if (const CWnd* const control = GetDlgItem(item.id))
        (void)control->GetWindowRect(now);
    ScreenToClient(now);
    return ungrownPlace(item, now, least_, clientSize(*this));
}

void AResizeDialog::takePlaces()
{
    wholePlaces_.clear();
    for (const ResizeItem& item : items_)
        wholePlaces_.push_back(placeInTemplate(item));
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
    loadPlace();
    layOut();
    return result;
}

/// A dialog that is shown before it is waited for would not keep input from the others, so it
/// becomes as large as the screen only then.
void AResizeDialog::loadPlace()
{
    PlacementRecord kept;
    if (section_.empty() || !readPlacement(GetProfileString(section_, "WindowPos"), kept))
        return;
    const std::vector<CRect> screens = GetScreenRects();
    CRect place = reachablePlace(kept.normal, least_, screens);
    if (!growsAcross(items_))
        place.right = place.left + least_.cx;
    if (!growsDown(items_))
        place.bottom = place.top + least_.cy;
    (void)MoveWindow(place);
    if (kept.showCommand == SW_SHOWMAXIMIZED)
        (void)PostMessage(WM_COMMAND, maximise);
}

void AResizeDialog::OnSize(unsigned type, int cx, int cy)
{
    CDialog::OnSize(type, cx, cy);
    if (least_ != CSize())
        layOut();
}

int AResizeDialog::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != maximise || control)
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
