#pragma once

#include "pavane/axes/windows/AAxisWnd.h"
#include "tessel/ABitMatrix.h"

#include <functional>

namespace pavane
{

/// The map of pavane-clean with its areas: a cross where the engine is, keys of the maps.
class CleanMap : public AAxisWnd
{
public:
    /// What it tells the window.
    std::function<void(const AxisStatus&)> status;
    std::function<void()> areasOther;
    std::function<void(const CString&)> notice;
    std::function<void()> coloursOther;
    std::function<void()> focused;
    std::function<void(unsigned command)> command;  ///< of clean_menu.h, by a key

    /// What lies over the map beside the areas, and a press with the tool that picks; `update`: the
    /// pixels that are painted, null in pictures. Empty for nothing.
    std::function<void(CDC& dc, const ABAxis& axis, const CRect* update)> drawMarks;
    std::function<void(const ABAxis& axis, CPoint point)> pressMarks;

    /// Shows a cross at a cell (MP); a row below 0: none.
    void SetCross(int row, int column);
    /// The areas were replaced behind the window's back.
    void FollowAreas();

    const char* GetWndClassName() override { return "PavaneCleanMap"; }
    void OnStatus(const AxisStatus& at) override;
    void OnAreasChanged() override;
    void OnNotice(const CString& text) override;
    void OnColorsChanged() override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;

protected:
    void OnSetFocus(CWnd* old) override;
    int takeKey(int key, bool shift, bool control) override;
    int isBare() const override { return AAxisWnd::isBare() && crossRow_ < 0 && !drawMarks; }
    void drawIntoPicture(CDC& dc) override;
    int takePress(unsigned flags, CPoint point) override;

private:
    CRect crossRect();
    int crossRow_ = -1, crossColumn_ = -1;
};

}  // namespace pavane
