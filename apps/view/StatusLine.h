#pragma once

#include "apps/view/status_text.h"
#include "pavane/windows/ABWindow.h"
#include "platform/accessibility.h"
#include "platform/gdi_objects.h"

namespace pavane
{

class AToolTip;

/// The line at the foot of the main window: one pane for each text, as wide as the longest text
/// that it had, so that nothing jumps about (panes that do not fit are left out); or a message in
/// place of them for a while.
class StatusLine : public ABWindow, public AccessSource
{
public:
    StatusLine();
    int Create(CWnd* parent, unsigned id);
    /// Height that the line wants.
    static int height();

    void SetTexts(const StatusTexts& texts);
    const StatusTexts& GetTexts() const { return texts_; }
    /// Empties the panes and forgets how wide their texts were.
    void Reset();
    /// Shows a message until the next texts come.
    void SetMessage(const CString& message);
    /// What the panes tell, for tips and screen readers.
    void SetNames(const StatusTexts& names) { names_ = names; }
    /// Tips say what a pane tells, and a message that has no room.
    void ExplainBy(AToolTip& tips);

    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    std::vector<AccessId> GetAccessChildren() const override;
    AccessId AccessHitTest(CPoint point) const override;

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "PavaneStatusLine"; }

protected:
    unsigned OnGetDlgCode() override { return 0; }
    void OnSysColorChange() override { Invalidate(); }

private:
    int paneAt(CPoint point) const;
    CString tipAt(CPoint point, CRect& pane);
    CRect paneRect(int pane, const CRect& client) const;
    int widen(const StatusTexts& texts);

    CFont font_;
    StatusTexts texts_;
    StatusWidths widths_{};
    StatusTexts names_;
    CString message_;
};

}  // namespace pavane
