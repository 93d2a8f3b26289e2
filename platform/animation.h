#pragma once

#include "platform/CWnd.h"

#include <memory>

namespace pavane
{

// Codes of WM_COMMAND that a clip player posts to its parent.
inline constexpr unsigned ACN_START = 1, ACN_STOP = 2;
/// Messages to a player: wParam how often, lParam MAKELPARAM(from, to), to 65535 for the last.
inline constexpr unsigned ACM_PLAY = WM_USER + 101, ACM_STOP = WM_USER + 102;

/// Plays a clip (GIF; a still picture is a clip of one frame). Frames count from 0. A clip is read
/// frame by frame while it plays, so that memory does not grow with it, and its own loops do not
/// count: it is played as often as Play says.
class PAVANE_API CAnimateCtrl : public CWnd
{
public:
    CAnimateCtrl();
    ~CAnimateCtrl() override;

    /// A child window; `style` with WS_VISIBLE to be seen. Non-zero on success.
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Shows the first frame of a clip and takes its size, one unit a pixel; a file "name@2x.gif"
    /// beside it serves screens of two pixels to a unit. Non-zero on success; 0 without a frame
    /// that can be read, and no clip is open then.
    int Open(const CString& file);
    /// Plays from a frame to another (both included; beyond the last means the last) `repeat`
    /// times, for ever with 0xFFFFFFFF. ACN_STOP is posted when the last frame had its time.
    int Play(unsigned from, unsigned to, unsigned repeat);
    /// Stays at the frame that is shown and posts ACN_STOP when it was playing.
    int Stop();
    int IsPlaying() const;
    /// The frame that is shown, -1 without a clip.
    int GetFrame() const;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

protected:
    void OnPaint() override;
    void OnTimer(unsigned id) override;

private:
    struct Clip;
    int nextFrame();
    int goTo(unsigned frame);
    void startTimer();
    void end();
    void tell(unsigned code);

    std::unique_ptr<Clip> clip_;
};

}  // namespace pavane
