// Ten levels of a map, as joined lines (the peers' own way of joining is measured apart).

#include "contour_test_maps.h"
#include "pavane/axes/maps/cells/contour_lines.h"

#include <benchmark/benchmark.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkMarchingSquares.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkStripper.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace
{

using namespace pavane;

/// 0.009 (three times the noise) times powers of 1.7, the first one also negative.
std::vector<double> testLevels()
{
    std::vector<double> levels{-0.009, 0.009};
    while (levels.size() < 10)
        levels.push_back(levels.back() * 1.7);
    return levels;
}

const AMatrix<float>& testMap(int cells, int noisy)
{
    static AMatrix<float> map;
    static int wasNoisy = -1;
    if (map.rows() != cells || noisy != wasNoisy)
        map = contourTestMap(cells, noisy);
    wasNoisy = noisy;
    return map;
}

void pavaneContours(benchmark::State& state, int cells, int noisy)
{
    const AFloatMatrixAccess access(testMap(cells, noisy));
    std::int64_t points = 0;
    for (auto unused : state) {
        ContourLines lines;
        lines.trace(access, testLevels());
        points = lines.pointCount();
        benchmark::DoNotOptimize(lines.lines().data());
    }
    state.counters["points"] = static_cast<double>(points);
}

void vtkContours(benchmark::State& state, int cells, int noisy, int joined)
{
    const AMatrix<float>& map = testMap(cells, noisy);
    vtkNew<vtkFloatArray> values;
    values->SetArray(const_cast<float*>(map.data()), map.cells(), 1);
    vtkNew<vtkImageData> image;
    image->SetDimensions(cells, cells, 1);
    image->GetPointData()->SetScalars(values);
    for (auto unused : state) {
        vtkNew<vtkMarchingSquares> squares;
        squares->SetInputData(image);
        const std::vector<double> levels = testLevels();
        for (std::size_t i = 0; i < levels.size(); ++i)
            squares->SetValue(static_cast<int>(i), levels[i]);
        if (!joined) {
            squares->Update();
            benchmark::DoNotOptimize(squares->GetOutput()->GetNumberOfLines());
            continue;
        }
        vtkNew<vtkStripper> stripper;
        stripper->SetMaximumLength(1 << 30);
        stripper->SetInputConnection(squares->GetOutputPort());
        stripper->Update();
        benchmark::DoNotOptimize(stripper->GetOutput()->GetNumberOfLines());
    }
}

/// Writes a test map as raw floats, so that peers in other processes trace the same one.
int writeMap(const char* file, int cells, int noisy)
{
    const AMatrix<float> map = contourTestMap(cells, noisy);
    std::FILE* out = std::fopen(file, "wb");
    if (!out)
        return 0;
    const std::size_t count = static_cast<std::size_t>(map.cells());
    const std::size_t written = std::fwrite(map.data(), sizeof(float), count, out);
    return std::fclose(out) == 0 && written == count;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 5 && std::strcmp(argv[1], "--write-map") == 0)
        return writeMap(argv[2], std::stoi(argv[3]), std::stoi(argv[4])) ? 0 : 1;
    for (const int cells : {1024, 4096})
        for (const int noisy : {0, 1}) {
            const std::string job =
                "contours/" + std::to_string(cells / 1024) + "k-" + (noisy ? "noisy" : "smooth");
            const auto add = [&](const std::string& who, auto function, auto... parameters) {
                benchmark::RegisterBenchmark((job + who).c_str(), function, cells, noisy,
                                             parameters...)
                    ->Unit(benchmark::kMillisecond);
            };
            add("/pavane", pavaneContours);
            add("/vtk", vtkContours, 0);
            add("/vtk-joined", vtkContours, 1);
        }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
