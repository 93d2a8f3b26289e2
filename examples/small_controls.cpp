// Sources with marks, a palette and a value, with a tip; Tab goes from one to the next.
#include "pavane/windows/controls/AColorComboBox.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/platform.h"

using namespace pavane;

struct Frame : ABWindow {
    AListBox sources;
    AColorComboBox palette;
    AStaticText peak;
    AToolTip tips;

    void SetUpWindow() override
    {
        constexpr unsigned child = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
        sources.Create(child | LBS_CHECKS, {10, 10, 260, 110}, this, 101, "Sources");
        for (const char* name : {"3C 84", "3C 273", "Cygnus A", "M 87"})
            sources.AddString(name);
        sources.SetReorder(1);
        palette.Create(child, {10, 120, 260, 280}, this, 102);
        palette.AddItem({"grey", {RGB(0, 0, 0), RGB(128, 128, 128), RGB(255, 255, 255)}});
        palette.SetMore(1);
        peak.Create("", child, {10, 150, 260, 170}, this, 103);
        peak.SetValue(0.00321, "Jy/beam", 3);
        tips.Create(this);
        tips.AddTool(&sources, "Space marks a source,\nAlt with an arrow moves it");
    }
    void OnSetFocus(CWnd*) override { sources.SetFocus(); }
    void OnDestroy() override { PostQuitMessage(0); }
};

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    {
        Frame frame;
        frame.Create("", "Small controls", WS_OVERLAPPEDWINDOW, {99, 99, 369, 279}, nullptr, 0);
        frame.ShowWindow(SW_SHOW);
        RunMessages();
    }
    ShutdownPlatform();
    return 0;
}
