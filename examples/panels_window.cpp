// Amplitude and phase of three baselines in panels, to look about in; a line below tells what is at
// the pointer. With a folder as argument it saves what the window shows as multi-window.png there,
// and ends.

#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/windows/picture_export.h"
#include "platform/controls.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/window_dc.h"

#include <cmath>
#include <vector>

using namespace pavane;

namespace
{

constexpr int baselines = 3, points = 700;
constexpr const char* names[baselines] = {"EF-WB", "EF-JB", "WB-JB"};

struct Visibilities {
    std::vector<double> seconds, amplitudes[baselines], phases[baselines];
};

Visibilities observed()
{
    Visibilities data;
    for (int i = 0; i < points; ++i) {
        data.seconds.push_back(30000 + 20 * (i + 12 * (i / 70)));  // scans with gaps between
        const double t = data.seconds.back() / 3600;
        for (int b = 0; b < baselines; ++b) {
            const double noise = std::sin(911 * t * t + b) + std::sin(377 * t + 5 * b);
            data.amplitudes[b].push_back(0.4 + 0.1 * b + 0.1 * std::cos(t + b) + 0.01 * noise);
            data.phases[b].push_back(std::remainder(150 * t * (1 + 0.6 * b) + 6 * noise, 360));
        }
    }
    return data;
}

void addCurve(A2DAxisMulti& axis, int panel, Visibilities& data, int baseline, int isPhase)
{
    AYScale scale{isPhase ? "Phase [deg]" : "Amp [%sJy]", {}, 1, panel};
    if (isPhase) {
        scale.range = {-180, 180};
        scale.period = 360;
    }
    auto& y = isPhase ? data.phases[baseline] : data.amplitudes[baseline];
    auto* const graph = new AGraphXYPoint(&axis, data.seconds.data(), y.data(), points, nullptr,
                                          graphPointCross, 1, RGB(0, 90, 180), 0);
    axis.setScaleOf(graph, axis.addScale(scale));
    axis.setPanelCaption(panel, names[baseline]);
}

class Panels : public AMultiPlotWnd
{
public:
    CStatic line;
    void OnMultiStatus(const MultiStatus& status) override
    {
        line.SetWindowText(statusText(*GetAxis(), status));
    }
};

class Frame : public CWnd
{
public:
    Panels panels;
    int save(const CString& file)
    {
        CRect client;
        panels.GetClientRect(client);
        const CClientDC shown(&panels);
        CBitmap picture;
        if (!picture.CreateCompatibleBitmap(shown, client.Width(), client.Height()))
            return 0;
        CMemoryDC memory(picture);
        memory.BitBlt(0, 0, client.Width(), client.Height(), &shown, 0, 0, SRCCOPY);
        return CopyToBMP(memory, client, file);
    }

protected:
    void OnSize(unsigned, int cx, int cy) override
    {
        constexpr int lineHeight = 22;
        if (!panels.GetSafeHwnd())
            return;
        panels.MoveWindow(CRect(0, 0, cx, cy - lineHeight));
        panels.line.MoveWindow(CRect(6, cy - lineHeight, cx, cy));
    }
    void OnSetFocus(CWnd*) override { panels.SetFocus(); }
    void OnDestroy() override { PostQuitMessage(0); }
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    Visibilities data = observed();
    {
        Frame frame;
        frame.Create("", "Visibilities", WS_OVERLAPPEDWINDOW, CRect(60, 60, 860, 660), nullptr, 0);
        const CRect none(0, 0, 9, 9);
        frame.panels.line.Create("", WS_CHILD | WS_VISIBLE, none, &frame, 2);
        frame.panels.Create("", "Visibilities", WS_CHILD | WS_VISIBLE | WS_TABSTOP, none, &frame,
                            1);
        auto* const axis = new A2DAxisMulti(2, 1, nullptr, axisGridX);
        axis->setNameOX("Time");
        for (int b = 0; b < baselines; ++b)
            for (const int isPhase : {0, 1})
                addCurve(*axis, 2 * b + isPhase, data, b, isPhase);
        frame.panels.SetAxis(axis, 1);
        frame.MoveWindow(CRect(60, 60, 900, 700));
        frame.ShowWindow(1);
        frame.panels.SetFocus();
        frame.UpdateWindow();
        if (argc > 1) {
            frame.panels.SendMessage(WM_KEYDOWN, VK_F6);
            frame.panels.SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(420, 150));
            frame.panels.UpdateWindow();
            result = !frame.save(CString(argv[1]) + "/multi-window.png");
        } else {
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
