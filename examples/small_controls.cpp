// A window with a list of sources, a palette, a value and a job, made of the small controls.
//   small_controls

#include "pavane/windows/controls/AColorComboBox.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/platform.h"

using namespace pavane;

namespace
{

enum Control : unsigned { idSources = 101, idPalette, idPeak, idJob };
constexpr unsigned child = WS_CHILD | WS_VISIBLE | WS_TABSTOP;

class Frame : public ABWindow
{
protected:
    void SetUpWindow() override
    {
        sources_.Create(child | LBS_EXTENDEDSEL | LBS_CHECKS, {10, 10, 200, 150}, this, idSources,
                        "Sources");
        for (const char* name : {"3C 84", "3C 273", "Cygnus A", "M 87"})
            sources_.AddString(name);
        sources_.SetReorder(1);
        palette_.Create(child, {210, 10, 400, 200}, this, idPalette);
        palette_.AddItem({"grey", {RGB(0, 0, 0), RGB(128, 128, 128), RGB(255, 255, 255)}});
        palette_.AddColor("red", RGB(200, 20, 30));
        palette_.SetMore(1);
        peak_.Create("", child, {210, 50, 400, 70}, this, idPeak);
        peak_.SetValue(0.00321, "Jy/beam", 3);
        job_.Create(child, {210, 80, 400, 100}, this, idJob, "Gridding");
        tips_.Create(this);
        tips_.AddTool(&sources_, "Space marks a source,\nAlt with an arrow moves it");
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (id == idSources && code == LBN_CHECKED)
            job_.SetFraction(double(sources_.GetChecked().size()) / sources_.GetCount());
        return ABWindow::OnCommand(id, code, control);
    }
    void OnDestroy() override { PostQuitMessage(0); }

private:
    AListBox sources_;
    AColorComboBox palette_;
    AStaticText peak_;
    AProgressBar job_;
    AToolTip tips_;
};

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    {
        Frame frame;
        if (frame.Create("", "Small controls", WS_OVERLAPPEDWINDOW, CRect(100, 100, 510, 260),
                         nullptr, 0)) {
            frame.ShowWindow(SW_SHOW);
            result = RunMessages();
        }
    }
    ShutdownPlatform();
    return result;
}
