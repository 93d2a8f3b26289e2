#include "pavane/axes/windows/AAreaSelectDlg.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/resources/dialogs.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* discardQuestion = "Discard the changes of the areas?";
/// The head of a tracker's record, which holds no shape.
constexpr std::size_t recordHead = 56;

}  // namespace

AAreaSelectDlg::AAreaSelectDlg(CWnd* parent) : AResizeDialog(IDD_AREA_SELECT, parent)
{
    SetResizeItems(areaSelectResize);
}

/// All areas without what selecting them changes.
std::string AAreaSelectDlg::shapes() const
{
    const ATrackerArrayInAxis& areas =
        *const_cast<AAreaSelectDlg*>(this)->window_.axisWnd().GetTrackers();
    std::string all;
    for (int i = 0; i < areas.trackerCount(); ++i) {
        const std::string state = areas.trackerAt(i)->State();
        all += areas.trackerAt(i)->GetClassName();
        all += areas.trackerAt(i)->IsNeverClean() ? '-' : '+';
        all += state.substr(std::min(recordHead, state.size()));
    }
    return all;
}

int AAreaSelectDlg::OnInitDialog()
{
    AResizeDialog::OnInitDialog();
    MemoryFile file;
    if (window_.axisWnd().GetTrackers()->Store(file))
        stored_ = file.bytes();
    shapes_ = shapes();
    modified_ = window_.axisWnd().GetTrackers()->IsModified();
    window_.axisWnd().GetTrackers()->BeginTrial();
    // no stop of the Tab key itself: it would hand the focus back to the axis in it
    window_.UpDateControl("", this, IDC_AREA_WINDOW, 0);
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
    AResizeDialog::OnCancel();
}

void AAreaSelectDlg::OnDestroy()
{
    window_.axisWnd().GetTrackers()->EndTrial();
    AResizeDialog::OnDestroy();
}

}  // namespace pavane
