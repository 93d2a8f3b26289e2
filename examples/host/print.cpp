// Prints a window: a curve with its axes on a sheet of its own, with a caption, as a PDF file.
#include <pavane/axes/A2DAxis.h>
#include <pavane/axes/AGraphXYLine.h>
#include <pavane/printing/APrinter.h>
#include <platform/CDC.h>
#include <platform/platform.h>

#include <cmath>
#include <cstdio>

using namespace pavane;

class CurveWindow : public ABWindow
{
    CString GetSubscript() override { return "Figure 1. Visibility amplitudes ~C"; }
    void DrawWindow(CDC& dc, CRect& client, CRect&) override
    {
        double hours[200], amplitudes[200];
        for (int i = 0; i < 200; ++i) {
            hours[i] = i * 0.04;
            amplitudes[i] = 0.4 + 0.3 * std::cos(hours[i]) * std::exp(-hours[i] / 6);
        }
        A2DAxis axis(1, 1, nullptr, 0);
        new AGraphXYLine(&axis, hours, amplitudes, 200, nullptr, PS_SOLID, 2, RGB(0, 90, 180), 0);
        axis.setNameOX("Time [hours]");
        axis.setNameOY("Amplitude [%sJy]");
        axis.draw(dc, client);
    }
};

int main(int argc, char** argv)
{
    InitPlatform(argc, argv, PlatformUse::pictures);
    CurveWindow window;
    APrintOut out("Amplitudes");
    out.SetPrintWindow(&window);
    CPrintSettings settings;
    settings.file = "print.pdf";  // or settings.printer = "NAME";
    CString error;
    const int isPrinted = APrinter(nullptr).PrintDirect(out, settings, error);
    if (!isPrinted)
        std::fprintf(stderr, "%s\n", error.c_str());
    ShutdownPlatform();
    return isPrinted ? 0 : 1;
}
