#include "platform/animation.h"

#include "platform/picture_file.h"
#include "platform/qt/picture_files.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned frameTimer = 1;
constexpr unsigned forEver = 0xFFFF'FFFF;
// Files that ask for less than a screen can show mean "at the usual pace".
constexpr int leastDelay = 20;
constexpr int usualDelay = 100;
constexpr int longestDelay = 60'000;

}  // namespace

struct CAnimateCtrl::Clip {
    CString file;
    std::unique_ptr<QImageReader> reader;
    CPicture picture;
    CSize size;  ///< in units
    int frame = -1;
    int delay = usualDelay;
    bool isPlaying = false;
    unsigned from = 0;
    unsigned to = 0;
    unsigned rounds = 0;  ///< yet to come, this one included

    int rewind()
    {
        CString error;
        reader = std::make_unique<QImageReader>();
        frame = -1;
        return openPicture(*reader, file, error);
    }
    /// Decodes the frame after the present one; 0 at the end, where the present one stays.
    int step()
    {
        const QImage image = reader->read();
        // a clip whose frames differ in size is damaged
        if (image.isNull() || (picture.width() > 0 && (image.width() != picture.width() ||
                                                       image.height() != picture.height())))
            return 0;
        CPicture next;
        if (!copyPicture(image, next))
            return 0;
        picture = std::move(next);
        ++frame;
        const int wanted = reader->nextImageDelay();
        delay = wanted < leastDelay ? usualDelay : std::min(wanted, longestDelay);
        return 1;
    }
};

CAnimateCtrl::CAnimateCtrl() = default;
CAnimateCtrl::~CAnimateCtrl() = default;

int CAnimateCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    return CreateEx(0, "AnimateCtrl", "", style | WS_CHILD, rect, parent, id);
}

int CAnimateCtrl::Open(const CString& file)
{
    clip_.reset();
    if (!GetSafeHwnd())
        return 0;
    KillTimer(frameTimer);
    auto clip = std::make_unique<Clip>();
    clip->file = FinePictureFile(file, GetPixelRatio());
    int pixelsPerUnit = clip->file == file ? 1 : 2;
    if (!clip->rewind() || !clip->step()) {
        // a damaged fine clip leaves the plain one
        clip->file = file;
        clip->picture = CPicture();
        if (pixelsPerUnit == 1 || !clip->rewind() || !clip->step())
            return 0;
        pixelsPerUnit = 1;
    }
    clip->size = {std::max(clip->picture.width() / pixelsPerUnit, 1),
                  std::max(clip->picture.height() / pixelsPerUnit, 1)};
    CRect place;
    GetWindowRect(place);
    CPoint corner(place.left, place.top);
    if (const CWnd* const parent = GetParent())
        parent->ScreenToClient(corner);
    const CSize size = clip->size;
    clip_ = std::move(clip);
    MoveWindow({corner.x, corner.y, corner.x + size.cx, corner.y + size.cy});
    Invalidate();
    return 1;
}

int CAnimateCtrl::nextFrame()
{
    if (!clip_->step())
        return 0;
    Invalidate();
    return 1;
}

/// Shows frame `frame`, or the last one of a shorter clip.
int CAnimateCtrl::goTo(unsigned frame)
{
    Clip& clip = *clip_;
    if (clip.frame > static_cast<int>(std::min(frame, 0x7FFF'FFFFu)) &&
        (!clip.rewind() || !nextFrame()))
        return 0;
    while (clip.frame < static_cast<int>(std::min(frame, 0x7FFF'FFFFu)) && nextFrame()) {
    }
    return clip.frame >= 0;
}

void CAnimateCtrl::startTimer() { SetTimer(frameTimer, static_cast<unsigned>(clip_->delay)); }

int CAnimateCtrl::Play(unsigned from, unsigned to, unsigned repeat)
{
    if (!clip_ || !GetSafeHwnd() || !goTo(from))
        return 0;
    Clip& clip = *clip_;
    clip.from = from;
    clip.to = std::max(from, to);
    clip.rounds = repeat;
    clip.isPlaying = true;
    tell(ACN_START);
    if (repeat == 0)
        end();
    else
        startTimer();
    return 1;
}

int CAnimateCtrl::Stop()
{
    if (!clip_)
        return 0;
    if (clip_->isPlaying)
        end();
    return 1;
}

int CAnimateCtrl::IsPlaying() const { return clip_ && clip_->isPlaying; }
int CAnimateCtrl::GetFrame() const { return clip_ ? clip_->frame : -1; }

void CAnimateCtrl::end()
{
    KillTimer(frameTimer);
    clip_->isPlaying = false;
    tell(ACN_STOP);
}

/// Posted, so that the parent may end the player when it hears of it.
void CAnimateCtrl::tell(unsigned code)
{
    if (CWnd* const parent = GetParent())
        parent->PostMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{code} << 16,
                            static_cast<LPARAM>(GetSafeHwnd()));
}

void CAnimateCtrl::OnTimer(unsigned id)
{
    if (id != frameTimer || !clip_ || !clip_->isPlaying)
        return CWnd::OnTimer(id);
    Clip& clip = *clip_;
    if (static_cast<unsigned>(clip.frame) < clip.to && nextFrame())
        return startTimer();
    if (clip.rounds != forEver)
        --clip.rounds;
    if (clip.rounds == 0 || !goTo(clip.from))
        return end();
    startTimer();
}

void CAnimateCtrl::OnPaint()
{
    CPaintDC dc(this);
    if (!clip_)
        return;
    CPicture& picture = clip_->picture;
    dc.StretchBlt(0, 0, clip_->size.cx, clip_->size.cy, picture.dc().get(), 0, 0, picture.width(),
                  picture.height(), SRCCOPY);
}

LRESULT CAnimateCtrl::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == ACM_PLAY)
        return Play(LOWORD(static_cast<WPARAM>(lParam)), HIWORD(static_cast<WPARAM>(lParam)),
                    static_cast<unsigned>(wParam));
    if (message == ACM_STOP)
        return Stop();
    return CWnd::WindowProc(message, wParam, lParam);
}

}  // namespace pavane
