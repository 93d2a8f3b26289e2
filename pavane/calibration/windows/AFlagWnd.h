#pragma once

#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/calibration/EditedVisibilities.h"
#include "pavane/calibration/flag_charts.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Amplitude and phase of visibilities against time, a row a baseline, or against distance in the
/// plane of u and v, with those of a model, in which points are flagged and brought back.
///
/// F takes up a tool that flags the points inside rectangles, R one that brings them back, Escape
/// puts it down; Del and Ins do the same to the point that has the focus. B, T and X choose whether
/// that is about the point's baseline, one antenna or all, I and H whether about all IFs and all
/// hands. Ctrl+Z and Ctrl+Shift+Z undo and redo, each rectangle one step. A, P, S, E, V and M
/// switch amplitudes, phases, IFs and hands apart, error bars, flagged points and model; N and
/// Shift+N turn pages.
class PAVANE_API AFlagWnd : public AMultiPlotWnd
{
public:
    enum class Tool : std::uint8_t { zoom, flag, restore };

    AFlagWnd() = default;
    ~AFlagWnd() override;

    /// Shows and edits visibilities, which are not owned and go after the window or another call;
    /// null for none. What others change in them is shown at once.
    void SetData(EditedVisibilities* data);
    EditedVisibilities* GetData() const { return data_; }
    /// Shows something else of them; what is zoomed is forgotten where the panels are others.
    void SetChoice(const FlagChartChoice& choice);
    const FlagChartChoice& GetChoice() const { return choice_; }
    /// What rectangles are about. Of an antenna with the number 0: the one whose baselines are
    /// shown.
    void SetScope(const FlagScope& scope);
    const FlagScope& GetScope() const { return scope_; }
    void SetTool(Tool tool);
    Tool GetTool() const { return tool_; }
    /// Zero as at first: flags can be edited.
    void SetReadOnly(int on) { readOnly_ = on; }
    /// Flags the points that a panel shows in a rectangle, or brings them back, with all that the
    /// scope says, as one step of undo. How many visibilities have changed.
    std::size_t FlagIn(int panel, const FlagRect& rect, int on);

    int RunCommand(unsigned id) override;
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    const char* GetWndClassName() override;
    /// Checks and enables what a menu has of this window's commands.
    void SetUpMenu(CMenu& popup) const;

    /// Something that the user should read and need not answer; heirs show it.
    virtual void OnNotice(const CString& text);
    /// Choice, scope or tool are others.
    virtual void OnChoice();

protected:
    int takesRectangles() const override { return tool_ != Tool::zoom; }
    void takeRectangle(int panel, const CRect& rect) override;
    int takeKey(int key, bool shift, bool control) override;
    int isTime(CommandWhen when) const override;
    int chooseCursor(unsigned hitArea, unsigned message) override;

private:
    void showData();
    int walkHistory(int forward);
    int runScopeCommand(unsigned id);
    int flagFocused(int on);
    void tellChange(std::size_t changed, int on);
    int turnPage(int step);

    EditedVisibilities* data_ = nullptr;
    int listener_ = 0;
    FlagChartChoice choice_;
    FlagScope scope_;
    std::vector<FlagPanel> panels_;
    Tool tool_ = Tool::zoom;
    int readOnly_ = 0;
};

}  // namespace pavane
