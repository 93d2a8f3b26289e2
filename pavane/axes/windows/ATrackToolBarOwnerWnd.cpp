#include "pavane/axes/windows/ATrackToolBarOwnerWnd.h"

#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/controls.h"

#include <iterator>

namespace pavane
{

namespace
{

struct Handler {
    unsigned id;
    void (ATrackToolBarOwnerWnd::*call)();
};

constexpr Handler handlers[] = {
    {ID_TRACK_ARROW, &ATrackToolBarOwnerWnd::OnArrow},
    {ID_TRACK_RECT, &ATrackToolBarOwnerWnd::OnRect},
    {ID_TRACK_ROTATE_RECT, &ATrackToolBarOwnerWnd::OnRotateRect},
    {ID_TRACK_AREA, &ATrackToolBarOwnerWnd::OnArea},
    {ID_TRACK_ELLIPSE, &ATrackToolBarOwnerWnd::OnEllipse},
    {ID_ZOOM_PLUS, &ATrackToolBarOwnerWnd::OnZoomPlus},
    {ID_ZOOM_MINUS, &ATrackToolBarOwnerWnd::OnZoomMinus},
    {ID_TRACK_DELETE, &ATrackToolBarOwnerWnd::OnTrackDelete},
    {ID_TRACK_COPY, &ATrackToolBarOwnerWnd::OnTrackCopy},
    {ID_ZOOM_1, &ATrackToolBarOwnerWnd::OnZoom1},
    {ID_ZOOM_1 + 1, &ATrackToolBarOwnerWnd::OnZoom2},
    {ID_ZOOM_1 + 2, &ATrackToolBarOwnerWnd::OnZoom3},
    {ID_ZOOM_1 + 3, &ATrackToolBarOwnerWnd::OnZoom4},
    {ID_ZOOM_5, &ATrackToolBarOwnerWnd::OnZoom5},
    {ID_TRACK_UNDO, &ATrackToolBarOwnerWnd::OnUndo},
    {ID_TRACK_REDO, &ATrackToolBarOwnerWnd::OnRedo},
    {ID_SHOW_CELLS, &ATrackToolBarOwnerWnd::OnShowCells},
    {ID_WHOLE_MAP, &ATrackToolBarOwnerWnd::OnWholeMap},
};

}  // namespace

int ATrackToolBarOwnerWnd::GetPages(CDC& dc)
{
    return axisWnd_ ? axisWnd_->GetPages(dc) : ABWindow::GetPages(dc);
}

CString ATrackToolBarOwnerWnd::GetSubscript()
{
    return axisWnd_ ? axisWnd_->GetSubscript() : ABWindow::GetSubscript();
}

void ATrackToolBarOwnerWnd::PrintWindow(CDC& dc, CRect& rect, int page)
{
    if (axisWnd_)
        axisWnd_->PrintWindow(dc, rect, page);
}

const char* ATrackToolBarOwnerWnd::GetWndClassName() { return "ATrackToolBarOwnerWnd"; }

/// The map gets the keyboard, so that the next key belongs to the tool that was chosen.
void ATrackToolBarOwnerWnd::run(unsigned id)
{
    if (!axisWnd_ || !axisWnd_->GetSafeHwnd())
        return;
    const HWND self = GetSafeHwnd();
    axisWnd_->RunCommand(id);
    focusAxis(self);
}

/// `self` is the handle from before a command, which may have ended the window.
void ATrackToolBarOwnerWnd::focusAxis(HWND self)
{
    if (CWnd::FromHandle(self) == this && axisWnd_ && axisWnd_->GetSafeHwnd())
        axisWnd_->SetFocus();
}

void ATrackToolBarOwnerWnd::OnArrow() { run(ID_TRACK_ARROW); }
void ATrackToolBarOwnerWnd::OnRect() { run(ID_TRACK_RECT); }
void ATrackToolBarOwnerWnd::OnRotateRect() { run(ID_TRACK_ROTATE_RECT); }
void ATrackToolBarOwnerWnd::OnArea() { run(ID_TRACK_AREA); }
void ATrackToolBarOwnerWnd::OnEllipse() { run(ID_TRACK_ELLIPSE); }
void ATrackToolBarOwnerWnd::OnZoomPlus() { run(ID_ZOOM_PLUS); }
void ATrackToolBarOwnerWnd::OnZoomMinus() { run(ID_ZOOM_MINUS); }
void ATrackToolBarOwnerWnd::OnTrackDelete() { run(ID_TRACK_DELETE); }
void ATrackToolBarOwnerWnd::OnTrackCopy() { run(ID_TRACK_COPY); }
void ATrackToolBarOwnerWnd::OnZoom1() { run(ID_ZOOM_1); }
void ATrackToolBarOwnerWnd::OnZoom2() { run(ID_ZOOM_1 + 1); }
void ATrackToolBarOwnerWnd::OnZoom3() { run(ID_ZOOM_1 + 2); }
void ATrackToolBarOwnerWnd::OnZoom4() { run(ID_ZOOM_1 + 3); }
void ATrackToolBarOwnerWnd::OnZoom5() { run(ID_ZOOM_5); }
void ATrackToolBarOwnerWnd::OnUndo() { run(ID_TRACK_UNDO); }
void ATrackToolBarOwnerWnd::OnRedo() { run(ID_TRACK_REDO); }
void ATrackToolBarOwnerWnd::OnShowCells() { run(ID_SHOW_CELLS); }
void ATrackToolBarOwnerWnd::OnWholeMap() { run(ID_WHOLE_MAP); }

void ATrackToolBarOwnerWnd::OnChangeArea()
{
    if (!axisWnd_ || !axisWnd_->GetComboBox())
        return;
    const HWND self = GetSafeHwnd();
    axisWnd_->GetTrackers()->ChangeActiveTrack(axisWnd_, axisWnd_->GetComboBox()->GetCurSel());
    focusAxis(self);
}

void ATrackToolBarOwnerWnd::OnDropDown()
{
    CToolBar* const bar = axisWnd_ ? axisWnd_->GetToolBar() : nullptr;
    if (!bar)
        return;
    CMenu menu;
    const int factor = axisWnd_->GetTrackers()->zoomScale();
    for (int i = 0; i < zoomFactorCount; ++i) {
        const unsigned id = ID_ZOOM_1 + static_cast<unsigned>(i);
        menu.AppendMenu("Zoom " + std::to_string(zoomFactors[i]) + " times", id);
        menu.CheckMenuItem(id, zoomFactors[i] == factor ? MF_CHECKED : MF_UNCHECKED);
    }
    const CRect button = bar->GetButtonRect(ID_ZOOM_PLUS);
    CPoint below(button.left, button.bottom);
    bar->ClientToScreen(below);
    menu.TrackPopupMenu(TPM_RIGHTBUTTON, below, this);
}

int ATrackToolBarOwnerWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == CBN_SELCHANGE && id == ID_CHANGE_AREA)
        return OnChangeArea(), 1;
    if (code == TBN_DROPDOWN && id == ID_ZOOM_PLUS)
        return OnDropDown(), 1;
    for (const Handler& handler : handlers)
        if (code == 0 && handler.id == id)
            return (this->*handler.call)(), 1;
    return ABWindow::OnCommand(id, code, control);
}

}  // namespace pavane
