#include "pavane/axes/windows/AAreaSelectDlg.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/windows/library_resources.h"
#include "platform/message.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* discardQuestion = "Discard the changes of the areas?";
constexpr int gap = 6;
/// The head of a tracker's record, which holds no shape.
constexpr std::size_t recordHead = 56;

/// A template is looked up when a dialog is made.
unsigned knownTemplate()
{
    AddLibraryResources();
    return IDD_AREA_SELECT;
}

}  // namespace

AAreaSelectDlg::AAreaSelectDlg(CWnd* parent) : CDialog(knownTemplate(), parent) {}

/// All areas without what selecting them changes.
std::string AAreaSelectDlg::shapes() const
{
    const ATrackerArrayInAxis& areas =
        *const_cast<AAreaSelectDlg*>(this)->window_.axisWnd().GetTrackers();
    std::string all;
    for (int i = 0; i < areas.trackerCount(); ++i) {
        const std::string state = areas.trackerAt(i)->State();
        all += areas.trackerAt(i)->GetClassName();
        all += state.substr(std::min(recordHead, state.size()));
    }
    return all;
}

int AAreaSelectDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    MemoryFile file;
    if (window_.axisWnd().GetTrackers()->Store(file))
        stored_ = file.bytes();
    shapes_ = shapes();
    modified_ = window_.axisWnd().GetTrackers()->IsModified();
    window_.axisWnd().GetTrackers()->BeginTrial();
    // no stop of the Tab key itself: it would hand the focus back to the axis in it
    window_.UpDateControl("", this, IDC_AREA_WINDOW, 0);
    layOut();
    window_.axisWnd().SetFocus();
    return 0;
}

void AAreaSelectDlg::OnCancel()
{
    ATrackerArrayInAxis& areas = *window_.axisWnd().GetTrackers();
    const HWND self = GetSafeHwnd();
    const auto gone = [&] { return CWnd::FromHandle(self) != this; };
    const int changed = areas.workingTracker() || shapes() != shapes_;
    if (changed && (AfxMessageBox(discardQuestion, MB_YESNO | MB_ICONQUESTION) != IDYES || gone()))
        return;
    const int dropped = areas.DropTrial(&window_.axisWnd());
    if (gone())
        return;
    if (!dropped) {
        // steps of the dialog were given up for want of memory, so that none before it fits either
        MemoryFile file(stored_);
        areas.EndWorking();
        areas.Load(file);
        areas.history().clear();
        if (modified_)
            areas.history().markUnsaved();
        else
            areas.SetSaved();
    }
    CDialog::OnCancel();
}

void AAreaSelectDlg::OnDestroy()
{
    window_.axisWnd().GetTrackers()->EndTrial();
    CDialog::OnDestroy();
}

void AAreaSelectDlg::OnSize(unsigned type, int cx, int cy)
{
    CDialog::OnSize(type, cx, cy);
    layOut();
}

/// Buttons stay in the lower right corner, the window takes what is left.
void AAreaSelectDlg::layOut()
{
    CWnd* const cancel = GetDlgItem(IDCANCEL);
    CWnd* const ok = GetDlgItem(IDOK);
    if (!cancel || !ok || !window_.GetSafeHwnd())
        return;
    CRect client;
    GetClientRect(client);
    CRect button;
    ok->GetWindowRect(button);
    const CSize size = button.Size();
    const int top = client.bottom - gap - size.cy;
    int right = client.right - gap;
    for (CWnd* const each : {cancel, ok}) {
        each->MoveWindow(CRect(right - size.cx, top, right, top + size.cy));
        right -= size.cx + gap;
    }
    window_.MoveWindow(
        CRect(gap, gap, std::max(gap, client.right - gap), std::max(gap, top - gap)));
}

}  // namespace pavane
