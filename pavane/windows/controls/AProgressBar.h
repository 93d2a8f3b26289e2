#pragma once

#include "pavane/progress/TimeLeft.h"
#include "pavane/windows/ABWindow.h"
#include "platform/accessibility.h"

#include <chrono>

namespace pavane
{

/// A bar that fills while something goes on, with what goes on and how long it will still take; or,
/// when the amount is not known, a block that runs along it. It paints at once, so that it moves in
/// a loop without messages too.
class PAVANE_API AProgressBar : public ABWindow, public AccessSource
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
               const CString& name = CString());
    /// Fraction done, 0 to 1; what is below 0 or no number is an amount that is not known. The
    /// clock of the time left begins at the first call, and again with Restart.
    void SetFraction(double fraction);
    double GetFraction() const { return fraction_; }
    /// What is being done; the time left stands behind it.
    void SetText(const CString& text);
    void Restart();
    /// What is written in the bar now.
    CString GetShownText() const;
    /// Nothing is written in the bar: where that stands beside it.
    void SetPlain(int on);
    /// What screen readers call it while it has no text.
    void SetName(const CString& name) { name_ = name; }

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnTimer(unsigned id) override;
    void OnSysColorChange() override;

private:
    using Clock = std::chrono::steady_clock;
    CRect filled(const CRect& inside) const;
    CString percent() const;
    void show();

    CString name_, text_;
    double fraction_ = 0;
    int step_ = 0;  ///< of the block that runs
    int isPlain_ = 0;
    int isStarted_ = 0;
    int shownPixels_ = -1;
    Clock::time_point start_, told_;
    TimeLeft left_;
    CString leftText_;  ///< as it was told last
};

}  // namespace pavane
