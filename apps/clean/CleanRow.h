#pragma once

#include "apps/clean/ShownMap.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/controls.h"

#include <array>
#include <functional>

namespace pavane
{

/// The row above the map: how many iterations the next round has, the buttons that clean and stop,
/// and which map of the round is shown.
class CleanRow : public CWnd
{
public:
    std::function<void(unsigned command)> command;  ///< of clean_menu.h

    int Create(CWnd* parent, unsigned id);
    static int height() { return 30; }

    /// Iterations of the next round; 0 when what stands there is no number of them.
    long long GetIterations() const;
    void SetIterations(long long iterations);
    /// Puts the keyboard there, with the text selected.
    void FocusIterations();
    /// What can be done now.
    void SetState(int canClean, int isRunning);
    /// Which map is shown, and which there are.
    void SetMaps(MapKind shown, const std::array<int, mapKinds>& has, int isBlinking);
    /// What is shown, behind the choice: "round 2, residual".
    void SetCaption(const CString& text);
    void ExplainBy(AToolTip& tips);
    /// The Tab key goes round the controls of the row. Non-zero when the message was that.
    int TakeTab(const MSG& message);

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnPaint() override;
    void OnSize(unsigned type, int cx, int cy) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    class Field : public CEdit
    {
    public:
        std::function<void()> entered, left;

    protected:
        void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    };

    CButton clean_, stop_, blink_;
    Field iterations_;
    CStatic label_, caption_;
    std::array<CButton, mapKinds> maps_;
};

}  // namespace pavane
