#pragma once

#include "pavane/axes/maps/BeamLook.h"
#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/windows/ABWindow.h"
#include "platform/accessibility.h"

namespace pavane
{

/// A beam as large as it fits, with north up and east at the left, for dialogs.
class PAVANE_API ABeamViewWnd : public ABWindow, private AccessSource
{
public:
    ABeamViewWnd() { SetFlag(windowNoWaitCursor | windowBuffered, 1); }
    /// `text` tells screen readers of the beam. Without one, or with the fill `none`, the view is
    /// empty.
    void SetBeam(const MapBeam& beam, BeamFill fill, const CString& text);
    const MapBeam& beam() const { return beam_; }

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "ABeamViewWnd"; }
    int GetMenuID() override { return 0; }
    AccessSource* GetAccess() override { return this; }

protected:
    int GetAccessPart(AccessId id, AccessPart& part) const override;

private:
    MapBeam beam_;
    BeamFill fill_ = BeamFill::hatched;
    CString text_;
};

}  // namespace pavane
