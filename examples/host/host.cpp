// The shortest useful host: a curve with its axes, as a PNG file.
#include <pavane/axes/A2DAxis.h>
#include <pavane/axes/AGraphXYLine.h>
#include <platform/picture.h>
#include <platform/platform.h>

#include <cmath>

using namespace pavane;

int main(int argc, char** argv)
{
    InitPlatform(argc, argv, PlatformUse::pictures);
    double hours[200], amplitudes[200];
    for (int i = 0; i < 200; ++i) {
        hours[i] = i * 0.04;
        amplitudes[i] = 0.4 + 0.3 * std::cos(hours[i]) * std::exp(-hours[i] / 6);
    }
    CPicture picture(600, 400);
    {
        const auto dc = picture.dc();
        A2DAxis axis(1, 1, nullptr, 0);
        new AGraphXYLine(&axis, hours, amplitudes, 200, nullptr, PS_SOLID, 2, RGB(0, 90, 180), 0);
        axis.setNameOX("Time [hours]");
        axis.setNameOY("Amplitude [%sJy]");
        CRect all(0, 0, picture.width(), picture.height());
        axis.draw(*dc, all);
    }
    CString error;
    const int saved = SavePNG(picture, "host.png", error);
    ShutdownPlatform();
    return saved ? 0 : 1;
}
