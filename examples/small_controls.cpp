// A list of sources, a palette, a value and a job, made of the small controls.
#include "pavane/windows/controls/AColorComboBox.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/platform.h"

using namespace pavane;

struct Frame : ABWindow {
    AListBox sources;
    AColorComboBox palette;
    AStaticText peak;
    AProgressBar job;
    AToolTip tips;

    void SetUpWindow() override
    {
        constexpr unsigned child = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
        sources.Create(child | LBS_CHECKS, {10, 10, 200, 150}, this, 101, "Sources");
        for (const char* name : {"3C 84", "3C 273", "Cygnus A", "M 87"})
            sources.AddString(name);
        sources.SetReorder(1);
        palette.Create(child, {210, 10, 400, 200}, this, 102);
        palette.AddItem({"grey", {RGB(0, 0, 0), RGB(128, 128, 128), RGB(255, 255, 255)}});
        palette.SetMore(1);
        peak.Create("", child, {210, 50, 400, 70}, this, 103);
        peak.SetValue(0.00321, "Jy/beam", 3);
        job.Create(child, {210, 80, 400, 100}, this, 104, "Marked");
        tips.Create(this);
        tips.AddTool(&sources, "Space marks a source,\nAlt with an arrow moves it");
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (code == LBN_CHECKED)
            job.SetFraction(double(sources.GetChecked().size()) / sources.GetCount());
        return ABWindow::OnCommand(id, code, control);
    }
    void OnDestroy() override { PostQuitMessage(0); }
};

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    {
        Frame frame;
        frame.Create("", "Small controls", WS_OVERLAPPEDWINDOW, {99, 99, 509, 259}, nullptr, 0);
        frame.ShowWindow(SW_SHOW);
        RunMessages();
    }
    ShutdownPlatform();
    return 0;
}
