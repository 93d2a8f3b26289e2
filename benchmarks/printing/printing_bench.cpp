// Pages of text and long curves on a printer's context, beside the toolkit's PDF writer.

#include "benchmarks/peers/printed_table.h"
#include "platform/platform.h"
#include "platform/preview_dc.h"
#include "platform/printer_dc.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{

using namespace pavane;

constexpr CSize a4{21000, 29700};
constexpr int rows = 65;
constexpr int columns = 9;

std::string outFile()
{
    return (std::filesystem::temp_directory_path() / "pavane-bench.pdf").string();
}

/// Greatest memory of the process so far, in MiB; the kernel forgets it on request.
double peakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) / 1024;
    }
    return 0;
}

void forgetPeak() { std::ofstream("/proc/self/clear_refs") << 5; }

void drawTablePage(CDC& dc, int page)
{
    CPen pen(PS_SOLID, 3, 0);
    dc.SelectObject(&pen);
    dc.SetBkMode(TRANSPARENT);
    LOGFONT font;
    font.lfHeight = 75;
    font.lfFaceName = "Arial";
    CFont made;
    made.CreateFontIndirect(font);
    dc.SelectObject(&made);
    for (const PlacedText& text : tablePage(page * rows, rows, columns)) {
        // as tables do: each cell is clipped where its text does not fit
        CRect cell(text.x, text.y, text.x + 400, text.y + 90);
        dc.DrawText(text.text, cell, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    }
    for (int row = 0; row < rows; ++row) {
        dc.MoveTo(500, 385 + row * 95);
        dc.LineTo(4550, 385 + row * 95);
    }
}

void printTable(benchmark::State& state)
{
    const auto pages = static_cast<int>(state.range(0));
    for (auto _ : state) {
        forgetPeak();
        const double before = peakMemory();
        CPrinterDC dc(a4);
        CString error;
        int ok = dc.StartDoc("Table", outFile(), error);
        for (int page = 0; page < pages && ok; ++page) {
            ok = dc.StartPage();
            drawTablePage(dc, page);
            ok = ok && dc.EndPage();
        }
        if (!ok || !dc.EndDoc(error))
            state.SkipWithError(error.c_str());
        state.counters["more_MiB"] = peakMemory() - before;
    }
    state.counters["file_MiB"] =
        static_cast<double>(std::filesystem::file_size(outFile())) / 1048576;
}

void printTableToolkit(benchmark::State& state)
{
    for (auto _ : state)
        printWithToolkit(outFile().c_str(), static_cast<int>(state.range(0)), rows, columns);
    state.counters["file_MiB"] =
        static_cast<double>(std::filesystem::file_size(outFile())) / 1048576;
}

std::chrono::steady_clock::time_point pressed;
int askedUntil;
int stopsLater(CDC&)
{
    if (--askedUntil > 0)
        return 1;
    pressed = std::chrono::steady_clock::now();
    return 0;
}

/// From the press of Cancel in the middle of a page with a curve of 1e7 points to no file.
void cancelCurve(benchmark::State& state)
{
    std::vector<CPointF> curve(10000000);
    for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = {double(i) * 4960 / double(curve.size()),
                    3500 + 3000 * std::sin(double(i) * 0.7)};
    for (auto _ : state) {
        CPrinterDC dc(a4);
        CString error;
        askedUntil = static_cast<int>(state.range(0));
        dc.SetAbortProc(stopsLater);
        if (!dc.StartDoc("Curve", outFile(), error) || !dc.StartPage())
            state.SkipWithError(error.c_str());
        dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
        if (!dc.isAborted())
            state.SkipWithError("not cancelled");
        dc.AbortDoc();
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - pressed).count());
    }
}

void previewTable(benchmark::State& state)
{
    const CPrinterDC printer(a4);
    int page = 0;
    for (auto _ : state) {
        CPicture picture(794, 1123);
        drawTablePage(*CreatePreviewDC(picture, printer, {0, 0, 794, 1123}), page++);
        benchmark::DoNotOptimize(picture.row(0));
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    for (const int pages : {1, 1000, 3000})
        benchmark::RegisterBenchmark(
            ("table_to_pdf/" + std::to_string(pages) + "_pages/pavane").c_str(), printTable)
            ->Arg(pages)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("table_to_pdf/1000_pages/QPdfWriter", printTableToolkit)
        ->Arg(1000)
        ->Unit(benchmark::kMillisecond);
    for (const int asked : {2, 10})
        benchmark::RegisterBenchmark(
            ("cancel_curve/after_" + std::to_string(asked) + "/pavane").c_str(), cancelCurve)
            ->Arg(asked)
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("preview_of_table/page/pavane", previewTable)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::remove(outFile().c_str());
    ShutdownPlatform();
    return 0;
}
