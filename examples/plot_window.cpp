// A curve in a window to look about in: amplitudes of a baseline over a day, with gaps between
// scans. With a folder as argument it draws a rubber band, saves what the window shows then as
// plot-window.png there, and ends.

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "pavane/windows/picture_export.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/window_dc.h"

#include <cmath>
#include <limits>
#include <vector>

using namespace pavane;

namespace
{

struct Curve {
    std::vector<double> seconds, amplitudes;
};

Curve observed()
{
    Curve curve;
    constexpr double step = 30, day = 86400, scan = 1200, cycle = 1500;
    for (double t = 0.1 * day; t < 0.7 * day; t += step) {
        const double hours = t / 3600;
        const double noise = 0.012 * std::sin(37 * hours * hours) + 0.008 * std::sin(911 * hours);
        const int gap = std::fmod(t, cycle) > scan;
        curve.seconds.push_back(t);
        curve.amplitudes.push_back(gap ? std::numeric_limits<double>::quiet_NaN()
                                       : 0.35 + 0.25 * std::cos(hours) * std::exp(-hours / 9) +
                                             noise);
    }
    return curve;
}

class Window : public APlotWnd
{
public:
    /// What the window shows, with the rubber band that lies over it.
    int save(const CString& file)
    {
        CRect client;
        GetClientRect(client);
        const CClientDC shown(this);
        CBitmap picture;
        if (!picture.CreateCompatibleBitmap(shown, client.Width(), client.Height()))
            return 0;
        CMemoryDC memory(picture);
        memory.BitBlt(0, 0, client.Width(), client.Height(), &shown, 0, 0, SRCCOPY);
        return CopyToBMP(memory, client, file);
    }

protected:
    void OnDestroy() override
    {
        APlotWnd::OnDestroy();
        PostQuitMessage(0);
    }
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    Curve curve = observed();
    const auto n = static_cast<int>(curve.seconds.size());
    {
        Window window;
        window.Create("", "Amplitude", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 800, 460),
                      nullptr, 0);
        auto* const axis = new A2DAxis(2, 1, nullptr, 0);
        axis->setNameOX("Time");
        axis->setNameOY("Amplitude [%sJy]");
        new AGraphXYLine(axis, curve.seconds.data(), curve.amplitudes.data(), n, nullptr, PS_SOLID,
                         1, RGB(0, 90, 180), 0);
        window.SetPlot(axis, 1);
        window.UpdateWindow();
        if (argc > 1) {
            const auto at = [](int x, int y) { return MAKELPARAM(x, y); };
            window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, at(250, 60));
            window.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, at(430, 210));
            window.UpdateWindow();
            result = !window.save(CString(argv[1]) + "/plot-window.png");
        } else {
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
