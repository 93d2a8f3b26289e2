// What a user waits for in a table with a million rows or ten: one edit and its undo, sorting.
#include "pavane/tables/ATableWnd.h"
#include "platform/platform.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

namespace
{

using namespace pavane;

/// A table of numbers in a window, in no order.
class EditedTable : public ATableWnd
{
public:
    explicit EditedTable(int rowCount)
    {
        for (int i = 0; i < rowCount; ++i)
            numbers_.push_back(1e3 * std::sin(12.9898 * i));
        ATableColumn columns[] = {{100, 0}, {100, colEdit}};
        setColumnPar(columns, 2);
        setOptions(optHeaderRow | optVertLines | optHorzLines | optSort);
        setRows(rowCount);
        Create("", "edits", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_VSCROLL, CRect(0, 0, 1200, 800),
               nullptr, 0);
        SetSelectOneCell(rowCount / 2, 1);
        UpdateWindow();
    }
    void edit(double value)
    {
        const int row = getSelectRect().anchorRow;
        beginEdits("edit");
        (void)editCell(row, 1, [&] { return setCellStr(row, 1, valToStr(value)); });
        endEdits();
        UpdateWindow();
    }
    double& at(int row) { return numbers_[static_cast<std::size_t>(recordOf(row)) - 1]; }
    int isBusy() const { return isWorking(); }

    int setCellStr(int row, int, const CString& text) override { return stoval(text, at(row)); }
    CString strCell(int row, int) override { return valToStr(at(row)); }
    CString cellAsStr(int row, int, void*) override { return valToStr(at(row)); }
    int cellNumber(int row, int, double& value) override { return value = at(row), 1; }
    int isEnableAutoEdit(int, int) override { return 1; }
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override
    {
        ATableWnd::drawCell(dc, rect, row, column, state);
        drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), 1);
    }

private:
    std::vector<double> numbers_;
};

/// The repaint of what changed is part of both.
void editAndUndo(benchmark::State& state)
{
    EditedTable table(1000000);
    int i = 0;
    for (auto _ : state) {
        table.edit(++i);
        if (!table.Undo()) {
            state.SkipWithError("nothing to undo");
            break;
        }
        table.UpdateWindow();
    }
}

/// From the click to the rows in their new order, in slices as a user sees it.
void sortRows(benchmark::State& state)
{
    EditedTable table(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        (void)table.SortRows({1, SortDirection::rising});
        MSG message;
        while (table.isBusy())
            if (PeekMessage(message))
                DispatchMessage(message);
        state.PauseTiming();
        if (table.at(1) > table.at(2))
            state.SkipWithError("not sorted");
        (void)table.SortRows({});
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(editAndUndo)->Name("table/edit_and_undo")->Unit(benchmark::kMicrosecond);
BENCHMARK(sortRows)
    ->Name("table/sort")
    ->Arg(1000000)
    ->Arg(10000000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
