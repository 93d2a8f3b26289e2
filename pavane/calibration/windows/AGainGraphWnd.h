#pragma once

#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/calibration/EditedGains.h"
#include "pavane/calibration/gain_charts.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Gains against time: a row an antenna, amplitudes and phases beside each other, a colour for each
/// group of IFs and hand, as points and lines; x zooms in all panels together. Flagged solutions
/// are grey crosses, failed ones oblique red ones.
///
/// F takes up a tool that flags the solutions inside rectangles, R one that brings them back,
/// Escape puts it down; Ctrl+Z and Ctrl+Shift+Z undo and redo, each rectangle one step. L, E, A and
/// P switch lines, error bars, amplitudes and phases, N and Shift+N turn pages.
class PAVANE_API AGainGraphWnd : public AMultiPlotWnd
{
public:
    enum class Tool : std::uint8_t { zoom, flag, restore };

    AGainGraphWnd() = default;
    ~AGainGraphWnd() override;

    /// Shows and edits gains, which are not owned and go after the window or another call; null for
    /// none. What others change in them is shown at once.
    void SetGains(EditedGains* gains);
    EditedGains* GetGains() const { return gains_; }
    /// Other antennas, columns and rows; what is zoomed is forgotten where the panels are others.
    void SetChoice(const GainChartChoice& choice);
    const GainChartChoice& GetChoice() const { return choice_; }
    void SetTool(Tool tool);
    Tool GetTool() const { return tool_; }
    /// Flags the solutions that a panel shows in a rectangle, or takes flags back, as one step of
    /// undo. How many have changed.
    std::size_t FlagIn(int panel, const GainRect& rect, int on);

    int RunCommand(unsigned id) override;
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    const char* GetWndClassName() override;

    /// Something that the user should read and need not answer; heirs show it.
    virtual void OnNotice(const CString& text);

protected:
    int takesRectangles() const override { return tool_ != Tool::zoom; }
    void takeRectangle(int panel, const CRect& rect) override;
    int takeKey(int key, bool shift, bool control) override;
    int isTime(CommandWhen when) const override;
    int chooseCursor(unsigned hitArea, unsigned message) override;

private:
    void showGains();
    int walkHistory(int forward);

    EditedGains* gains_ = nullptr;
    int listener_ = 0;
    GainChartChoice choice_;
    std::vector<GainPanel> panels_;
    Tool tool_ = Tool::zoom;
};

}  // namespace pavane
