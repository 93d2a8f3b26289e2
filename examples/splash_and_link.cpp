// Shows a splash over a window that starts, and a dialog with links.
//   splash_and_link PICTURE          a picture (PNG, BMP, GIF) for three seconds
//   splash_and_link --clip CLIP.gif  a clip, once

#include "pavane/windows/AHttpCallWnd.h"
#include "pavane/windows/ASplash.h"
#include "platform/CDialog.h"
#include "platform/message_translator.h"
#include "platform/platform.h"
#include "platform/window_dc.h"

#include <cstring>
#include <iterator>

using namespace pavane;

namespace
{

enum Control : unsigned { idTitle = 101, idPage, idArchive, idMail };

constexpr DlgItem items[] = {
    {ControlKind::staticText, idTitle,
     "Links of an observatory, by mouse, Tab, Enter or Space:", 10, 8, 180, 9},
    {ControlKind::staticText, idPage, "VLBA", 10, 26, 40, 10},
    {ControlKind::staticText, idArchive, "Archive of observations", 10, 42, 110, 10},
    {ControlKind::staticText, idMail, "Write to R&D", 10, 58, 70, 10},
    {ControlKind::defaultButton, IDOK, "OK", 140, 76, 50, 14, WS_TABSTOP},
};
constexpr DlgTemplate about{1, "About", 200, 97, items, std::size(items)};

class AboutDialog : public CDialog
{
public:
    explicit AboutDialog(CWnd* parent) : CDialog(about, parent) {}

protected:
    int OnInitDialog() override
    {
        const char* const addresses[] = {"https://public.nrao.edu/telescopes/vlba/",
                                         "https://data.nrao.edu/", "mailto:user@example.org"};
        for (unsigned i = 0; i < std::size(links_); ++i) {
            links_[i].SetHttp(addresses[i]);
            links_[i].UpDateControl("", this, idPage + i);
        }
        return 1;
    }

private:
    AHttpCallWnd links_[3];
};

/// A press shows the dialog.
class Frame : public CWnd
{
protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect client;
        GetClientRect(client);
        dc.FillSolidRect(client, RGB(255, 255, 255));
        dc.DrawText("Press for the dialog with links.", client,
                    DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    void OnLButtonDown(unsigned, CPoint) override { (void)AboutDialog(this).DoModal(); }
    void OnDestroy() override { PostQuitMessage(0); }
};

int translate(const MSG& message) { return ASplash::PreTranslateAppMessage(&message); }

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    int result = 0;
    {
        Frame frame;
        frame.Create("", "Splash and link", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                     CRect(30, 40, 830, 740), nullptr, 0);
        SetMessageTranslator(translate);
        ASplash::EnableSplashScreen(1);
        const bool isClip = argc > 2 && std::strcmp(argv[1], "--clip") == 0;
        if (argc > 1)
            ASplash::ShowSplashScreen(argv[argc - 1], isClip, &frame);
        result = RunMessages();
    }
    ShutdownPlatform();
    return result;
}
