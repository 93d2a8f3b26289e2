// Amplitude and phase of three baselines in panels, to look about in; the title tells what is at
// the pointer.
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "platform/platform.h"

#include <cmath>
#include <vector>

using namespace pavane;

class Panels : public AMultiPlotWnd
{
    void OnMultiStatus(const MultiStatus& status) override
    {
        SetWindowText("Visibilities   " + statusText(*GetAxis(), status));
    }
    void OnDestroy() override { PostQuitMessage(0); }
};

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    std::vector<double> seconds, y[6];  // amplitude and phase of each baseline
    for (int i = 0; i < 700; ++i) {
        seconds.push_back(30000 + 20 * (i + 12 * (i / 70)));  // scans with gaps between
        for (int of = 0; of < 6; ++of) {
            const double t = seconds[i] / 3600, noise = std::sin(911 * t * t + of);
            y[of].push_back(of % 2 ? std::remainder(150 * t * (1 + 0.3 * of) + 9 * noise, 360)
                                   : 0.4 + 0.05 * of + 0.1 * std::cos(t + of) + 0.01 * noise);
        }
    }
    auto* const axis = new A2DAxisMulti(2, 1, nullptr, axisGridX);
    axis->setNameOX("Time");
    for (int of = 0; of < 6; ++of) {
        AYScale scale{of % 2 ? "Phase [deg]" : "Amp [%sJy]", {}, 1, of};
        scale.period = of % 2 ? 360 : 0;
        auto* const graph = new AGraphXYPoint(axis, seconds.data(), y[of].data(), 700, nullptr,
                                              graphPointCross, 1, RGB(0, 90, 180), 0);
        axis->setScaleOf(graph, axis->addScale(scale));
        axis->setPanelCaption(of, std::vector{"EF-WB", "EF-JB", "WB-JB"}[of / 2]);
    }
    {
        Panels window;
        window.SetAxis(axis, 1);
        window.Create("", "Visibilities", WS_OVERLAPPEDWINDOW, {60, 60, 900, 700}, nullptr, 0);
        window.ShowWindow(SW_SHOW);
        RunMessages();
    }
    ShutdownPlatform();
    return 0;
}
