// A table of a million rows of ten numbers as text in a file, beside fmt.
#include "benchmarks/peers/fmt_lines.h"
#include "pavane/tables/ATableWnd.h"
#include "tessel/value_text.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <fstream>
#include <vector>

namespace
{

using namespace pavane;

constexpr int rowCount = 1000000;
constexpr int columnCount = 10;
constexpr const char* file = "/tmp/pavane_export_bench.txt";

const std::vector<double>& numbers()
{
    static const std::vector<double> cells = [] {
        std::vector<double> all;
        for (int i = 0; i < rowCount * columnCount; ++i)
            all.push_back(1e3 * std::sin(0.001 * i));
        return all;
    }();
    return cells;
}

class Numbers : public ATableWnd
{
public:
    /// Texts by the library's function or by the C++ library's.
    explicit Numbers(bool library) : library_(library)
    {
        std::vector<ATableColumn> columns(columnCount + 1, {60, 0});
        setColumnPar(columns.data(), columnCount + 1);
        setRows(rowCount);
    }
    CString hdrCellAsStr(int row, int, void*) override { return std::to_string(row); }
    CString cellAsStr(int row, int column, void*) override
    {
        const std::size_t at = static_cast<std::size_t>(row - 1) * columnCount;
        const double number = cells_[at + static_cast<std::size_t>(column) - 1];
        if (library_)
            return valToStr(number);
        char digits[32];
        return CString(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    }

private:
    bool library_;
    const std::vector<double>& cells_ = numbers();
};

template <bool library>
void exportTable(benchmark::State& state)
{
    Numbers table(library);
    for (auto _ : state) {
        std::ofstream stream(file, std::ios::binary);
        (void)table.CopyAsTextInStream(stream, 0);
    }
}

void exportWithFmt(benchmark::State& state)
{
    (void)numbers();
    for (auto _ : state)
        writeWithFmt(numbers(), columnCount, file);
}

}  // namespace

BENCHMARK(exportTable<true>)->Name("table_text/1e6x10/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(exportTable<false>)->Name("table_text/1e6x10/to_chars")->Unit(benchmark::kMillisecond);
BENCHMARK(exportWithFmt)->Name("table_text/1e6x10/fmt")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
