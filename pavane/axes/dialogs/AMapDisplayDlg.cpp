#include "pavane/axes/dialogs/AMapDisplayDlg.h"

#include "pavane/axes/dialogs/DisplayPage.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/dialogs/stand_beside.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/map_display_messages.h"

namespace pavane
{

AMapDisplayDlg::AMapDisplayDlg(AAxisWnd& plot, double arcseconds, CWnd* parent)
    : CPropertySheet(displaySheetTitle, parent), window_(&plot), windowLives_(plot.life()),
      arcseconds_(arcseconds)
{
    if (plot.GetColorsGraph())
        pages_.push_back(coloursPage(*this));
    if (plot.GetMap() && contoursOf(*plot.GetMap()))
        pages_.push_back(contoursPage(*this));
    pages_.push_back(beamPage(*this));
    pages_.push_back(axesPage(*this));
    pages_.push_back(presetsPage(*this));
    for (const auto& page : pages_)
        (void)AddPage(*page);
}

AMapDisplayDlg::~AMapDisplayDlg() { DestroyWindow(); }

AAxisWnd* AMapDisplayDlg::window() const { return windowLives_.alive() ? window_ : nullptr; }

MapDisplay AMapDisplayDlg::GetDisplay() const
{
    return window() ? shownDisplay(*window()) : MapDisplay();
}

void AMapDisplayDlg::Show(const MapDisplay& display)
{
    if (!window())
        return;
    window()->BeginViewGesture();
    const LifeWatch self(life_);
    showing_ = 1;
    const int changed = showDisplay(*window(), display);
    if (!self.alive())
        return;
    known_ = GetDisplay();
    if (changed)
        OnDisplayShown(display);
    if (self.alive())
        showing_ = 0;
}

void AMapDisplayDlg::DisplayChanged()
{
    if (!GetSafeHwnd() || !window() || showing_)
        return;
    const MapDisplay now = GetDisplay();
    takeChanges(known_, now, stayed_);
    known_ = now;
    for (const auto& page : pages_)
        page->follow(now);
}

int AMapDisplayDlg::OnInitDialog()
{
    stayed_ = known_ = GetDisplay();
    const LifeWatch self(life_);
    const int result = CPropertySheet::OnInitDialog();
    if (self.alive() && GetSafeHwnd())
        standBeside(*this, window());
    return result;
}

void AMapDisplayDlg::OnCancel()
{
    const LifeWatch self(life_);
    if (window() && !sameDisplay(GetDisplay(), stayed_))
        Show(stayed_);
    if (self.alive())
        CPropertySheet::OnCancel();
}

int AMapDisplayDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != ID_APPLY_NOW)
        return CPropertySheet::OnCommand(id, code, control);
    const LifeWatch self(life_);
    refused_ = 0;
    const int result = CPropertySheet::OnCommand(id, code, control);
    if (self.alive() && !refused_)
        stayed_ = GetDisplay();
    return result;
}

}  // namespace pavane
