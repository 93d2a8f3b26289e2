#include "pavane/windows/ASplash.h"

#include "pavane/resources/window_messages.h"
#include "pavane/windows/window_centre.h"
#include "platform/message.h"
#include "platform/message_translator.h"
#include "platform/picture_file.h"
#include "platform/screens.h"
#include "platform/show_at_once.h"
#include "platform/window_dc.h"

namespace pavane
{

namespace
{

constexpr const char* className = "ASPLASHWND_";
constexpr unsigned playerId = 100;
constexpr unsigned pictureTimer = 1;
constexpr unsigned clipTimer = 2;
constexpr unsigned pictureTime = 3000;
constexpr unsigned timeAfterClip = 1000;
constexpr unsigned lastFrame = 65535;  // beyond the last of any clip

// One splash for the whole program.
int isEnabled = 0;
ASplash* theSplash = nullptr;

}  // namespace

ASplash::~ASplash()
{
    if (theSplash == this)
        theSplash = nullptr;
}

void ASplash::EnableSplashScreen(int on) { isEnabled = on; }

void ASplash::ShowSplashScreen(const CString& file, int animationMode, CWnd* parent)
{
    if (!isEnabled || theSplash)
        return;
    auto* const made = new ASplash;
    theSplash = made;
    made->SetBMPFileName(file);
    made->animationMode_ = animationMode;
    // a window that was made and has gone again has taken its object with it
    if (!made->create(parent) && theSplash == made)
        delete made;
}

int ASplash::create(CWnd* parent)
{
    owner_ = parent ? parent->GetSafeHwnd() : 0;
    CString error;
    if (!animationMode_ && !LoadPicture(fileName_, picture_, error))
        return 0;
    size_ = {picture_.width(), picture_.height()};
    WNDCLASSA wc;
    wc.className = className;
    if (!GetClassInfo(className, wc) && !AfxRegisterClass(wc))
        return 0;
    // shown when it has its place, so that it never jumps
    if (!CreateEx(WS_EX_TOPMOST, className, "", WS_POPUP, {0, 0, size_.cx, size_.cy}, parent, 0))
        return 0;
    const HWND self = GetSafeHwnd();
    if (animationMode_ && !startClip()) {
        // unless it has gone while its message was shown
        if (CWnd* const window = FromHandle(self))
            window->DestroyWindow();
        return 0;
    }
    (void)ShowAtOnce(*this);
    // messages ran, and may have ended it
    if (FromHandle(self) == this && animationMode_)
        animation_.Play(0, lastFrame, 1);
    return 1;
}

int ASplash::startClip()
{
    if (!animation_.Create(WS_CHILD | WS_VISIBLE, {0, 0, 1, 1}, this, playerId)) {
        AfxMessageBox(splashNotCreated);
        return 0;
    }
    if (!animation_.Open(fileName_))
        return 0;
    CRect clip;
    animation_.GetWindowRect(clip);
    size_ = {clip.Width(), clip.Height()};
    centre();
    return 1;
}

int ASplash::OnCreate(CREATESTRUCT& cs)
{
    if (CWnd::OnCreate(cs) == -1)
        return -1;
    if (animationMode_)
        return 0;
    loadFinePicture();
    centre();
    SetTimer(pictureTimer, pictureTime);
    return 0;
}

/// Takes the pixels of the finer picture where the screen has them and it is one of this picture.
void ASplash::loadFinePicture()
{
    const CString file = FinePictureFile(fileName_, GetPixelRatio());
    CPicture fine;
    CString error;
    if (file != fileName_ && LoadPicture(file, fine, error) && fine.width() == 2 * size_.cx &&
        fine.height() == 2 * size_.cy)
        picture_ = std::move(fine);
}

void ASplash::centre()
{
    CRect about;
    const CWnd* const owner = FromHandle(owner_);
    const CWnd* const frame = owner ? owner->GetTopLevelParent() : nullptr;
    if (frame && frame->IsWindowVisible() && !frame->IsIconic())
        frame->GetWindowRect(about);
    MoveWindow(centredRect(size_, about, GetScreenRects()));
}

void ASplash::OnPaint()
{
    CPaintDC dc(this);
    if (picture_.width() > 0)
        dc.StretchBlt(0, 0, size_.cx, size_.cy, picture_.dc().get(), 0, 0, picture_.width(),
                      picture_.height(), SRCCOPY);
}

void ASplash::clipStopped()
{
    if (!isEnding_)
        SetTimer(clipTimer, timeAfterClip);
    isEnding_ = 1;
}

int ASplash::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (animationMode_ && id == playerId && code == ACN_STOP)
        return clipStopped(), 1;
    return CWnd::OnCommand(id, code, control);
}

void ASplash::OnTimer(unsigned id)
{
    if (id == pictureTimer || id == clipTimer)
        hide();
    else
        CWnd::OnTimer(id);
}

/// Ends the window and this object, and brings what was below up to date.
void ASplash::hide()
{
    const HWND owner = owner_;
    DestroyWindow();
    CWnd* const below = FromHandle(owner);
    if (CWnd* const frame = below ? below->GetTopLevelParent() : nullptr)
        frame->UpdateWindow();
}

void ASplash::PostNcDestroy()
{
    CWnd::PostNcDestroy();
    delete this;
}

void ASplash::CloseSplashScreen()
{
    if (theSplash)
        theSplash->hide();
}

int ASplash::PreTranslateAppMessage(const MSG* msg)
{
    if (!theSplash || !msg)
        return 0;
    switch (msg->message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_NCMBUTTONDOWN:
        theSplash->hide();
        return 1;
    case WM_COMMAND:
        if (theSplash->animationMode_ && msg->hwnd == theSplash->GetSafeHwnd() &&
            LOWORD(msg->wParam) == playerId && HIWORD(msg->wParam) == ACN_STOP)
            theSplash->clipStopped();
        return 0;
    default:
        return 0;
    }
}

}  // namespace pavane
