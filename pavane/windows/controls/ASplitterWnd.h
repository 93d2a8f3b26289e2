#pragma once

#include "platform/accessibility.h"
#include "platform/splitter.h"

namespace pavane
{

/// A splitter whose place is kept in the profile as a share, so that it fits a window of any size;
/// a double click makes both panes equal. With WS_TABSTOP the arrow keys move the bar.
class PAVANE_API ASplitterWnd : public CSplitterWnd, public AccessSource
{
public:
    /// Keeps the place in `section`, entry `entry`, and takes the one that is there. Non-zero when
    /// there was one.
    int SetProfile(const CString& section, const CString& entry = "Splitter");
    /// What screen readers call the bar.
    void SetName(const CString& name) { name_ = name; }
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    int AccessSetFocus(AccessId id) override;

protected:
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

private:
    void moved();

    CString section_, entry_, name_;
};

}  // namespace pavane
