// A window full of numbers: what the platform's drawing costs a table, beside the toolkit's table.
#include "benchmarks/peers/table_view.h"
#include "pavane/tables/ATableWnd.h"
#include "platform/CWnd.h"
#include "platform/platform.h"
#include "platform/window_dc.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <vector>

namespace
{

using namespace pavane;

constexpr int windowWidth = 1200;
constexpr int windowHeight = 800;
constexpr int rowHeight = 30;
constexpr int columnWidth = 100;
constexpr int tableRows = 1000000;
constexpr int tableColumns = 20;
constexpr COLORREF lineColor = RGB(200, 200, 200);
constexpr COLORREF headerColor = RGB(240, 240, 240);

CString textOf(double number)
{
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 6);
    return {digits, end.ptr};
}

/// Paints a grid as a table does: cell by cell, what the update rectangle touches.
class GridWindow : public CWnd
{
public:
    GridWindow()
    {
        Create("", "grid", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, windowWidth, windowHeight),
               nullptr, 0);
        MSG m;
        while (PeekMessage(m))  // only then is it on the screen
            DispatchMessage(m);
    }
    ~GridWindow() override { DestroyWindow(); }
    void showRow(int row)
    {
        first_ = row;
        Invalidate();
        UpdateWindow();
    }
    /// Shifts by a row and paints the strip.
    void scroll(int rows)
    {
        first_ += rows;
        ScrollWindow(0, -rows * rowHeight, CRect(0, rowHeight, windowWidth, windowHeight));
        UpdateWindow();
    }

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        const CRect& update = dc.paintRect();
        dc.SetBkMode(TRANSPARENT);
        CFont font = GetFont();
        dc.SelectObject(&font);
        // a row's pixels are filled just before they are drawn on
        for (int y = update.top / rowHeight; y * rowHeight < update.bottom; ++y) {
            dc.FillSolidRect({update.left, y * rowHeight, update.right, (y + 1) * rowHeight},
                             y == 0 ? headerColor : RGB(255, 255, 255));
            for (int x = update.left / columnWidth; x * columnWidth < update.right; ++x)
                drawCell(dc, x, y);
        }
    }

private:
    void drawCell(CDC& dc, int x, int y) const
    {
        CRect cell(x * columnWidth, y * rowHeight, (x + 1) * columnWidth - 1,
                   (y + 1) * rowHeight - 1);
        if (x == 0)
            dc.FillSolidRect(cell, headerColor);
        dc.FillSolidRect({cell.right, cell.top, cell.right + 1, cell.bottom + 1}, lineColor);
        dc.FillSolidRect({cell.left, cell.bottom, cell.right, cell.bottom + 1}, lineColor);
        cell.DeflateRect(3, 0);
        const CString text = y == 0   ? std::to_string(x)
                             : x == 0 ? std::to_string(first_ + y)
                                      : textOf(gridNumber(first_ + y - 1, x - 1));
        dc.DrawText(text, cell,
                    DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    }

    int first_ = 0;
};

/// The library's table of the same numbers, of so many rows.
template <long rowCount>
class NumberTable : public ATableWnd
{
public:
    NumberTable()
    {
        std::vector<ATableColumn> columns(tableColumns + 1, {columnWidth, 0});
        setColumnPar(columns.data(), static_cast<long>(columns.size()));
        setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect);
        setRows(rowCount);
        SetCellHeaderUnit(19);  // rows of 30 pixels
        Create("", "grid", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL,
               CRect(0, 0, windowWidth, windowHeight), nullptr, 0);
        SetFocus();
        if (rowCount > tableRows)
            SetSelectOneCell(rowCount, 1);
        UpdateWindow();
    }
    void showRow(int row)
    {
        SetSelectOneCell(row + 1, 1);
        Invalidate();
        UpdateWindow();
    }
    void repaint()
    {
        Invalidate();
        UpdateWindow();
    }
    /// Down and up in turn, so that it never ends.
    void scroll(int)
    {
        (void)((down_ = !down_) ? tableScrollUp() : tableScrollDown());
        UpdateWindow();
    }
    /// Shift+Down and back with everything selected.
    void extendAll()
    {
        const int last = static_cast<int>(rows());
        ASelectRect all{(down_ = !down_) ? last : last - 1, tableColumns, 1, 1};
        ASelectRect before = getSelectRect();
        SetSelectRect(all);
        setSelectCell(before, all.anchorRow, all.anchorColumn);
        UpdateWindow();
    }
    CString cellAsStr(int row, int column, void*) override
    {
        return textOf(gridNumber(row - 1, column - 1));
    }
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override
    {
        ATableWnd::drawHeaderCell(dc, rect, row, column);
        drawCellText(dc, rect, row, column, std::to_string(row ? row : column), 1);
    }
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override
    {
        ATableWnd::drawCell(dc, rect, row, column, state);
        drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), 1);
    }

private:
    bool down_ = false;
};
using MillionRows = NumberTable<tableRows>;
using MostRows = NumberTable<0x7FFFFFFF>;

/// The toolkit's table by the same names.
struct PeerWindow : TableViewWindow {
    PeerWindow() : TableViewWindow(tableRows, tableColumns, windowWidth, windowHeight) {}
    void scroll(int rows) { showRow(row_ += rows); }
    int row_ = 0;
};

void repaint(GridWindow& window) { window.showRow(0); }
void repaint(PeerWindow& window) { window.repaint(); }
void repaint(MillionRows& window) { window.repaint(); }
void repaint(MostRows& window) { window.repaint(); }

template <class Window>
void repaintAll(benchmark::State& state)
{
    Window window;
    for (auto _ : state)
        repaint(window);
}

template <class Window>
void jump(benchmark::State& state)
{
    Window window;
    int i = 0;
    for (auto _ : state)
        window.showRow(++i % 2 ? 500000 : 0);
}

template <class Window>
void scrollRow(benchmark::State& state)
{
    Window window;
    for (auto _ : state)
        window.scroll(1);
}

template <class Window>
void extendAll(benchmark::State& state)
{
    Window window;
    for (auto _ : state)
        window.extendAll();
}

void drawTexts(benchmark::State& state)
{
    CBitmap picture;
    picture.CreateBitmap(windowWidth, windowHeight, 1);
    CMemoryDC dc(picture);
    dc.SetBkMode(TRANSPARENT);
    int i = 0;
    for (auto _ : state) {
        dc.TextOut(i % 1000, i % 700, "-123.456");
        ++i;
    }
}

template <class Window>
void registerAll(const std::string& who)
{
    const auto add = [&](const char* job, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(("grid/" + std::string(job) + "/" + who).c_str(), run)
            ->Unit(benchmark::kMicrosecond);
    };
    add("repaint", repaintAll<Window>);
    add("jump", jump<Window>);
    add("scroll_row", scrollRow<Window>);
}

}  // namespace

BENCHMARK(drawTexts)->Name("grid/one_text/platform");

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    registerAll<GridWindow>("platform");
    registerAll<MillionRows>("pavane");
    registerAll<MostRows>("pavane_2^31_rows");
    registerAll<PeerWindow>("QTableView");
    const auto us = benchmark::kMicrosecond;
    benchmark::RegisterBenchmark("grid/extend_all/pavane", extendAll<MillionRows>)->Unit(us);
    benchmark::RegisterBenchmark("grid/extend_all/pavane_2^31_rows", extendAll<MostRows>)->Unit(us);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
