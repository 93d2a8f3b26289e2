#pragma once

#include "platform/animation.h"
#include "platform/CWnd.h"
#include "platform/picture.h"

namespace pavane
{

/// The window that a program shows while it starts: a picture (PNG, BMP, GIF) for three seconds, or
/// a clip (GIF) that is played once and stays for another second. A key or a press of the mouse
/// anywhere in the program ends it sooner. There is one at a time; it belongs to itself.
///
///     ASplash::EnableSplashScreen(1);
///     SetMessageTranslator([](const MSG& m) { return ASplash::PreTranslateAppMessage(&m); });
///     ASplash::ShowSplashScreen("logo.png", 0, &frame);
class PAVANE_API ASplash : public CWnd
{
public:
    ASplash() = default;
    ~ASplash() override;

    /// The switch for the whole program, off at first.
    static void EnableSplashScreen(int on);
    /// Shows `file`, as a clip with `animationMode`, above `parent` (not owned, may be null): in
    /// its middle, or in that of the screen while it is hidden. The window is as large as the
    /// picture, one unit a pixel; a file "name@2x.png" beside it serves screens of two pixels to a
    /// unit. Nothing happens while the switch is off or a splash is shown. A file that cannot be
    /// shown leaves no splash and says nothing.
    static void ShowSplashScreen(const CString& file, int animationMode, CWnd* parent);
    /// To be called with every message of the program (SetMessageTranslator). 1 when a key or a
    /// press ended the splash and must not reach its window, else 0.
    static int PreTranslateAppMessage(const MSG* msg);
    /// Ends the splash, if there is one.
    static void CloseSplashScreen();

    /// The file that will be shown.
    void SetBMPFileName(const CString& file) { fileName_ = file; }
    void PostNcDestroy() override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnPaint() override;
    void OnTimer(unsigned id) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    int create(CWnd* parent);
    int startClip();
    void loadFinePicture();
    void centre();
    void clipStopped();
    void hide();

    CPicture picture_;
    CString fileName_;
    CAnimateCtrl animation_;
    int animationMode_ = 0;
    CSize size_;  ///< in units
    int isEnding_ = 0;
    HWND owner_ = 0;
};

}  // namespace pavane
