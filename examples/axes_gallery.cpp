#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/AGraphYLine.h"
#include "pavane/axes/AStatHistGraph.h"
#include "pavane/axes/graph_styles.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

// Draws every kind of plot into the folder given as the first argument: PNG files in two sizes,
// plain and smooth and from a raster, and PDF pages.

using namespace pavane;

namespace
{

/// A plot and the arrays that its graphs read.
struct Plot {
    std::string name;
    std::vector<std::vector<double>> data;
    AArray<double> bins;
    std::unique_ptr<A2DAxis> axis;

    double* add(std::size_t n, const std::function<double(double)>& value)
    {
        std::vector<double> values(n);
        for (std::size_t i = 0; i < n; ++i)
            values[i] = value(static_cast<double>(i) / static_cast<double>(n - 1));
        data.push_back(std::move(values));
        return data.back().data();
    }
    A2DAxis* start(const std::string& file, int xDirect, int yDirect, const CString& x,
                   const CString& y)
    {
        name = file;
        axis = std::make_unique<A2DAxis>(xDirect, yDirect, nullptr, 0);
        axis->setNameOX(x);
        axis->setNameOY(y);
        return axis.get();
    }
};

using Plots = std::vector<std::unique_ptr<Plot>>;

Plot& next(Plots& plots)
{
    plots.push_back(std::make_unique<Plot>());
    return *plots.back();
}

void addCurve(Plots& plots, const std::string& name, int xDirect, int yDirect,
              const CString& xTitle, const CString& yTitle, const std::function<double(double)>& x,
              const std::function<double(double)>& y, int n = 500)
{
    Plot& plot = next(plots);
    A2DAxis* const axis = plot.start(name, xDirect, yDirect, xTitle, yTitle);
    double* const xs = plot.add(static_cast<std::size_t>(n), x);
    double* const ys = plot.add(static_cast<std::size_t>(n), y);
    new AGraphXYLine(axis, xs, ys, n, nullptr, PS_SOLID, 1, axis->workColor(9), 0);
}

void addPointsAndDashes(Plots& plots)
{
    Plot& plot = next(plots);
    A2DAxis* const axis =
        plot.start("points", 1, 1, "Baseline length [%s\u03bb]", "Correlated flux [%sJy]");
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 0.004);
    const auto model = [](double t) { return 0.05 + 0.25 * std::exp(-4 * t * t); };
    double* const x = plot.add(150, [](double t) { return 2e8 * t; });
    double* const y = plot.add(150, [&](double t) { return model(t) + noise(random); });
    double* const curve = plot.add(150, model);
    axis->setFlag(axisGridX | axisGridY, 1);
    new AGraphXYPoint(axis, x, y, 50, nullptr, graphPointCross, 1, axis->workColor(9), 0);
    new AGraphXYPoint(axis, x + 50, y + 50, 50, nullptr, graphPointDot, 1, axis->workColor(7), 0);
    new AGraphXYPoint(axis, x + 100, y + 100, 50, nullptr, graphPointBar, 1, axis->workColor(8), 0);
    new AGraphXYLine(axis, x, curve, 150, nullptr, PS_DASH, 1, axis->workColor(1), 0);
}

void addHistogram(Plots& plots)
{
    Plot& plot = next(plots);
    A2DAxis* const axis = plot.start("histogram", 1, 1, "Residual [%sJy/beam]", "Pixels");
    std::mt19937 random(3);
    std::normal_distribution<double> noise(0, 1.2e-4);
    TMnMx range{-5e-4, 5e-4};
    plot.bins.GrowBy(41);
    plot.bins = 0.0;
    for (int i = 0; i < 40000; ++i) {
        const double bin = (noise(random) - range.min) / (range.max - range.min) * 41;
        if (bin >= 0 && bin < 41)
            plot.bins(static_cast<int>(bin)) += 1;
    }
    auto* const graph = new AStatHistGraph(axis, 0);
    graph->SetParameters(&plot.bins, range, 0, 1.44e-8, axis->workColor(3), axis->workColor(7));
}

void addGapsAndNoise(Plots& plots)
{
    Plot& plot = next(plots);
    A2DAxis* const axis = plot.start("gaps", 1, 1, "Channel", "Phase [deg]");
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0, 30);
    double* const y = plot.add(100000, [&](double t) {
        return t > 0.4 && t < 0.45 ? std::nan("") : 100 * std::sin(12 * t) + noise(random);
    });
    axis->setFlag(axisTicksInside, 1);
    new AGraphYLine(axis, y, 100000, nullptr, PS_SOLID, 0, 0.01, 0, axis->workColor(9), 0);
}

Plots makePlots()
{
    Plots plots;
    const auto wave = [](double t) { return std::sin(20 * t) * std::exp(-2 * t); };
    addCurve(
        plots, "linear", 1, 1, "Time ~[s]", "Amplitude", [](double t) { return 10 * t; }, wave);
    addCurve(
        plots, "reversed", -1, -1, "Right ascension [%sas]", "Declination [%sas]",
        [](double t) { return 0.004 * (2 * t - 1); }, [](double t) { return 0.003 * t * t; });
    addCurve(
        plots, "loglog", 0, 0, "Frequency [%sHz]", "Flux density [%sJy]",
        [](double t) { return 1e8 * std::pow(10, 3.3 * t); },
        [](double t) { return 5 * std::pow(10, -2.1 * t); });
    addCurve(
        plots, "lognarrow", 0, 0, "Frequency [MHz]", "Flux density [Jy]",
        [](double t) { return 250 + 500 * t; }, [](double t) { return 8 - 6 * t; });
    addCurve(
        plots, "logwide", 0, 0, "x", "y", [](double t) { return std::pow(10, -20 + 40 * t); },
        [](double t) { return std::pow(10, -150 + 300 * t * t); });
    addCurve(
        plots, "time", 2, 1, "UT", "Elevation [deg]", [](double t) { return 70000 + 29000 * t; },
        [](double t) { return 60 * std::sin(3 * t) + 5; });
    addCurve(
        plots, "negative", 1, 1, "Offset", "Value", [](double t) { return -1000.5 - t; },
        [](double t) { return -1e-5 * (1 + t); });
    addCurve(
        plots, "tiny", 1, 1, "x", "y", [](double t) { return 1 + 3e-9 * t; },
        [](double t) { return 1e-280 * t; });
    addCurve(
        plots, "huge", 1, 1, "x", "y", [](double t) { return 1e300 * (t - 0.5); },
        [wave](double t) { return 123456789 + 1000 * wave(t); }, 50);
    addCurve(
        plots, "longlabels", 1, 1, "Frequency [Hz]", "Power",
        [wave](double t) { return 1.4e9 + 1000 * t; }, wave);
    addPointsAndDashes(plots);
    addHistogram(plots);
    addGapsAndNoise(plots);
    return plots;
}

int savePicture(Plot& plot, const std::string& file, int width, int height, int smooth, int raster)
{
    CPicture picture(width, height);
    const auto dc = picture.dc();
    dc->SetSmooth(smooth);
    plot.axis->setFlag(axisBitmapMode, raster);
    CRect rect(0, 0, width, height);
    plot.axis->draw(*dc, rect);
    plot.axis->setFlag(axisBitmapMode, 0);
    plot.axis->setPalette(nullptr);
    CString error;
    if (SavePNG(picture, file, error))
        return 1;
    std::fprintf(stderr, "%s: %s\n", file.c_str(), error.c_str());
    return 0;
}

int savePage(Plot& plot, const std::string& file)
{
    constexpr int width = 600;
    constexpr int height = 400;
    constexpr int scale = 12;
    CPageFile page(CPageFile::Format::pdf, width, height, plot.name, scale);
    CRect rect(0, 0, width * scale, height * scale);
    plot.axis->draw(page.dc(), rect);
    CString error;
    if (page.Close(file, error))
        return 1;
    std::fprintf(stderr, "%s: %s\n", file.c_str(), error.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: axes_gallery FOLDER\n");
        return 1;
    }
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 2;
    const std::string folder = std::string(argv[1]) + "/";
    int result = 1;
    for (const auto& plot : makePlots()) {
        const std::string stem = folder + plot->name;
        result &= savePicture(*plot, stem + "_plain.png", 600, 400, 0, 0);
        result &= savePicture(*plot, stem + "_raster.png", 600, 400, 0, 1);
        result &= savePicture(*plot, stem + "_smooth.png", 1000, 800, 1, 0);
        result &= savePage(*plot, stem + ".pdf");
    }
    ShutdownPlatform();
    return result ? 0 : 2;
}
