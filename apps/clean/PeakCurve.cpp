#include "apps/clean/PeakCurve.h"

#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"

#include <cmath>
#include <memory>
#include <utility>

namespace pavane
{

namespace
{

constexpr COLORREF peakColor = RGB(0, 70, 140), fluxColor = RGB(170, 70, 0);
constexpr int markerSize = 3;
constexpr int labelHeight =
    11;  ///< pixels: the plot is flat, letters in proportion could not be read

}  // namespace

PeakCurve::PeakCurve()
{
    auto axis = std::make_unique<A2DAxisMulti>(1, 1, nullptr, axisGridX | axisGridY);
    axis->setNameOX("Iterations");
    axis->setNameOY("Peak [%sJy/beam]");
    AYScale peak = axis->getScale(0);
    peak.name = "Peak [%sJy/beam]";
    peak.direct = 0;
    peak.side = 1;
    axis->setScale(0, peak);
    AYScale flux;
    flux.name = "Flux [%sJy]";
    flux.side = 2;
    fluxScale_ = axis->addScale(flux);
    axis->setWholeX(1);
    axis->setWantedFHeight(labelHeight);
    SetAxis(axis.release(), 1);
}

void PeakCurve::SetRounds(std::vector<PeakPoint> points)
{
    points_ = std::move(points);
    show();
}

void PeakCurve::Add(const PeakPoint& point)
{
    points_.push_back(point);
    show();
}

void PeakCurve::show()
{
    A2DAxisMulti* const axis = GetAxis();
    if (!axis)
        return;
    const auto fill = [&] {
        for (AGraph* const graph : graphs_)
            (void)axis->deleteGraph(graph);
        graphs_.clear();
        for (std::vector<double>* const values : {&peakAt_, &peaks_, &fluxAt_, &fluxes_})
            values->clear();
        for (const PeakPoint& point : points_) {
            if (point.peak > 0) {
                peakAt_.push_back(point.iterations);
                peaks_.push_back(point.peak);
            }
            if (std::isfinite(point.flux)) {
                fluxAt_.push_back(point.iterations);
                fluxes_.push_back(point.flux);
            }
        }
        const auto add = [&](std::vector<double>& at, std::vector<double>& values, COLORREF color,
                             int scale) {
            const int count = static_cast<int>(values.size());
            if (count == 0)
                return;
            auto* const line = new AGraphXYLine(axis, at.data(), values.data(), count, nullptr,
                                                PS_SOLID, 1, color, 0);
            auto* const marks = new AGraphXYPoint(axis, at.data(), values.data(), count, nullptr,
                                                  graphPointDot, markerSize, color, 0);
            for (AGraph* const graph : {static_cast<AGraph*>(line), static_cast<AGraph*>(marks)}) {
                (void)axis->setScaleOf(graph, scale);
                graphs_.push_back(graph);
            }
        };
        add(peakAt_, peaks_, peakColor, 0);
        add(fluxAt_, fluxes_, fluxColor, fluxScale_);
    };
    // what the user has zoomed stays; all that is shown is all that there is
    if (IsRangeZoomed())
        return FillAxis(fill);
    fill();
    axis->resetRanges();
    DataChanged();
}

}  // namespace pavane
