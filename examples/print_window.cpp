// Printing to try by hand: amplitudes of three baselines, a page each, with the print command, page
// set-up and preview in the menu.

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/printing/APrinter.h"
#include "platform/CDC.h"
#include "platform/CMenu.h"
#include "platform/CWinApp.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/window_dc.h"

#include <cmath>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

constexpr unsigned idPrint = 101, idPreview = 102, idSetup = 103, idClose = 104;
constexpr const char* baselines[] = {"Ef-Mc", "Ef-On", "Mc-Wb"};

class Amplitudes : public ABWindow
{
public:
    Amplitudes() { SetFlag(windowBuffered, 1); }
    int GetPages(CDC&) override { return 3; }
    CString GetSubscript() override
    {
        return "Figure %d. Amplitudes of 3C 273 at 5 GHz over the run ~C";
    }
    void DrawWindow(CDC& dc, CRect& client, CRect&) override
    {
        dc.FillSolidRect(client, RGB(255, 255, 255));
        drawBaseline(dc, client, 1);
    }
    void PrintWindow(CDC& dc, CRect& rect, int page) override { drawBaseline(dc, rect, page); }

private:
    static void drawBaseline(CDC& dc, CRect& rect, int number)
    {
        constexpr int count = 400;
        std::vector<double> hours(count), amplitudes(count);
        for (std::size_t i = 0; i < count; ++i) {
            hours[i] = 0.02 * static_cast<double>(i);
            amplitudes[i] = 0.4 + 0.3 * std::cos(number * hours[i]) * std::exp(-hours[i] / 6) +
                            0.01 * std::sin(911 * hours[i]);
        }
        A2DAxis axis(1, 1, nullptr, 0);
        new AGraphXYLine(&axis, hours.data(), amplitudes.data(), count, nullptr, PS_SOLID, 1,
                         RGB(0, 90, 180), 0);
        axis.setNameOX("Time [hours]");
        axis.setNameOY(CString(baselines[number - 1]) + " [%sJy]");
        axis.draw(dc, rect);
    }
};

class Frame : public CWnd
{
public:
    Frame()
    {
        CMenu menu;
        CMenu& file = menu.AppendPopup("&File");
        file.AppendMenu("&Print...\tCtrl+P", idPrint);
        file.AppendMenu("Print pre&view\tCtrl+Shift+P", idPreview);
        file.AppendMenu("Page set-&up...", idSetup);
        file.AppendMenu("&Close", idClose);
        CreateEx(0, "PrintFrame", "Amplitudes", WS_OVERLAPPEDWINDOW, {80, 60, 680, 480}, nullptr,
                 0);
        SetMenu(menu);
        CRect client;
        GetClientRect(client);
        picture_.Create("", "", WS_CHILD | WS_VISIBLE, client, this, 1);
        app_.SetMainWnd(this);
        out_.SetPrintWindow(&picture_);
    }

protected:
    void OnSize(unsigned type, int cx, int cy) override
    {
        CWnd::OnSize(type, cx, cy);
        picture_.MoveWindow({0, 0, cx, cy});
    }
    void OnDestroy() override { PostQuitMessage(0); }
    int OnCommand(unsigned id, unsigned, CWnd*) override
    {
        APrinter printer(&app_);
        if (id == idPrint)
            printer.Printing(&out_);
        else if (id == idPreview)
            printer.Preview(&out_);
        else if (id == idSetup)
            printer.PageSetup(&out_);
        else if (id == idClose)
            DestroyWindow();
        return 1;
    }

private:
    CWinApp app_;
    Amplitudes picture_;
    APrintOut out_{"Amplitudes of 3C 273"};
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int code = 0;
    {
        Frame frame;
        frame.ShowWindow(SW_SHOW);
        code = RunMessages();
    }
    ShutdownPlatform();
    return code;
}
