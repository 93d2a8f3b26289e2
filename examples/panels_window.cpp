// Amplitude and phase of three baselines in panels, to look about in; the title tells what is at
// the pointer.
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/calibration/PanelChart.h"
#include "platform/platform.h"

#include <cmath>

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
    PanelChart chart;
    chart.nameX = "Time";
    chart.isTime = 1;
    const char* const baselines[] = {"EF-WB", "EF-JB", "WB-JB"};
    for (int of = 0; of < 3; ++of) {
        const double turn = 90 + 60 * of;  // degrees an hour
        ChartCurve amplitude, phase;
        amplitude.color = RGB(0, 70, 140);
        phase.color = RGB(150, 60, 0);
        for (int i = 0; i < 700; ++i) {
            const double seconds = 30000 + 20 * (i + 12 * (i / 70));  // scans with gaps between
            amplitude.x.push_back(seconds);
            amplitude.y.push_back(0.4 + 0.1 * std::cos(seconds / 3600 + turn));
            phase.y.push_back(std::remainder(turn * seconds / 3600, 360));
        }
        phase.x = amplitude.x;
        chart.panels.push_back({baselines[of],
                                {{.name = "Amplitude [%sJy]", .curves = {amplitude}},
                                 {"Phase [\u00b0]", -180, 180, 360, {phase}}}});
    }
    {
        Panels window;
        window.SetAxis(newChartAxis(chart), 1);
        window.Create("", "Visibilities", WS_OVERLAPPEDWINDOW, {60, 60, 900, 700}, nullptr, 0);
        window.ShowWindow(SW_SHOW);
        RunMessages();
    }
    ShutdownPlatform();
    return 0;
}
