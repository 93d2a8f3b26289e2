#pragma once

#include "pavane/progress/AProgress.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/AStaticText.h"

namespace pavane
{

/// How the work that runs stands: a bar, and what it does.
class RunStrip : public CWnd
{
public:
    int Create(CWnd* parent, unsigned id);
    static int height() { return 26; }
    /// Shows a job until another one comes.
    void Follow(const AProgress& progress, const CString& name);
    /// What is told while nothing runs: what the next round would do.
    void SetIdle(const CString& text);
    /// The job has ended.
    void End(const CString& text);
    /// What is known beside the bar: peak, place, cycle.
    void SetNumbers(const CString& text) { numbers_.SetText(text); }
    CString GetNumbers() const { return numbers_.GetText(); }

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnPaint() override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnTimer(unsigned id) override;

private:
    void show();
    void layOut();

    AProgressBar bar_;
    AStaticText numbers_;
    AProgress progress_;
    CString name_, ended_, idle_;
    int isFollowing_ = 0;
};

}  // namespace pavane
