#pragma once

#include "apps/clean/round_lines.h"
#include "pavane/tables/ATableWnd.h"

#include <functional>
#include <vector>

namespace pavane
{

/// The rounds of a study, a row each. Up and down and the pointer choose one, Return makes it the
/// start of the next.
class RoundTable : public ATableWnd
{
public:
    RoundTable();

    /// Shows these rounds and chooses the one of `number`, without telling; -1: none.
    void SetLines(std::vector<RoundLine> lines, int number);
    /// Marks the round that others are compared with; -1: none.
    void SetCompared(int number);
    /// The number of the chosen round; -1 for none.
    int selected() const;

    std::function<void(int number)> chosen;    ///< another one
    std::function<void(int number)> goesOn;    ///< a double click, or Return
    std::function<void(int number)> compares;  ///< Space
    std::function<void()> blinks;              ///< B
    std::function<void(int number, const std::string& note)> noted;

    const char* GetWndClassName() override { return "PavaneRoundTable"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    int isEnableAutoEdit(int row, int column) override;
    int setCellStr(int row, int column, const CString& text) override;
    int isSortable(int) override { return 0; }
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;
    void kbEnter(int count, int shift) override;

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;

private:
    const RoundLine* lineAt(int row) const;

    std::vector<RoundLine> lines_;
    int current_ = -1;
    int compared_ = -1;
    int telling_ = 1;
};

}  // namespace pavane
