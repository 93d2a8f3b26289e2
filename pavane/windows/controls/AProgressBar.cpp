#include "pavane/windows/controls/AProgressBar.h"

#include "pavane/resources/control_messages.h"
#include "pavane/windows/controls/control_drawing.h"
#include "platform/CDC.h"
#include "platform/system_colors.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr unsigned runTimer = 1;
constexpr unsigned runTime = 40;
constexpr int stepsAcross = 50;
constexpr double blockShare = 0.25;
constexpr auto tellPause = std::chrono::seconds(1);  // readers would not stop speaking

}  // namespace

int AProgressBar::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
                         const CString& name)
{
    name_ = name;
    return CWnd::Create(GetWndClassName(), "", style | WS_CHILD, rect, parent, id);
}

const char* AProgressBar::GetWndClassName() { return "AProgressBar"; }

int AProgressBar::OnCreate(CREATESTRUCT& cs)
{
    SetFlag(windowBuffered | windowNoWaitCursor, 1);
    return ABWindow::OnCreate(cs);
}

void AProgressBar::Restart()
{
    isStarted_ = 0;
    left_ = TimeLeft();
    leftText_.clear();
    SetFraction(0);
}

void AProgressBar::SetPlain(int on)
{
    isPlain_ = on;
    Invalidate();
}

void AProgressBar::SetFraction(double fraction)
{
    const double wanted = fraction >= 0 ? std::fmin(fraction, 1) : -1;
    const bool isKnown = wanted >= 0;
    const auto now = Clock::now();
    if (!isStarted_) {
        isStarted_ = 1;
        start_ = told_ = now;
    }
    left_.add(std::chrono::duration<double>(now - start_).count(), wanted);
    if ((fraction_ >= 0) != isKnown)
        isKnown ? (void)KillTimer(runTimer) : (void)SetTimer(runTimer, runTime);
    fraction_ = wanted;
    show();
}

void AProgressBar::SetText(const CString& text)
{
    if (text == text_)
        return;
    text_ = text;
    shownPixels_ = -1;
    show();
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, GetSafeHwnd(), 0);
}

/// Paints when a pixel would change, or the text, which has seconds.
void AProgressBar::show()
{
    if (!GetSafeHwnd())
        return;
    CRect client;
    GetClientRect(client);
    const int pixels = fraction_ < 0 ? step_ : static_cast<int>(fraction_ * client.Width());
    const auto now = Clock::now();
    const bool isTimeToTell = now - told_ >= tellPause || fraction_ >= 1;
    if (pixels == shownPixels_ && !isTimeToTell)
        return;
    shownPixels_ = pixels;
    if (isTimeToTell)
        leftText_ = fraction_ >= 0 && fraction_ < 1 ? timeLeftText(left_.seconds()) : CString();
    const HWND self = GetSafeHwnd();
    Invalidate();
    UpdateWindow();
    if (FromHandle(self) == this && isTimeToTell) {
        told_ = now;
        NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, self, 0);
    }
}

CString AProgressBar::percent() const
{
    return fraction_ < 0 ? CString(unknownProgress) : valToStr(std::floor(100 * fraction_)) + " %";
}

CString AProgressBar::GetShownText() const
{
    if (isPlain_)
        return {};
    CString text = text_;
    for (const CString& part : {fraction_ < 0 ? CString() : percent(), leftText_}) {
        if (!part.empty())
            text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

CRect AProgressBar::filled(const CRect& inside) const
{
    CRect bar = inside;
    if (fraction_ >= 0) {
        bar.right = bar.left + static_cast<int>(std::lround(fraction_ * inside.Width()));
        return bar;
    }
    // to and fro
    const int half = stepsAcross / 2;
    const int at =
        step_ % stepsAcross < half ? step_ % stepsAcross : stepsAcross - step_ % stepsAcross;
    const int width = static_cast<int>(inside.Width() * blockShare);
    bar.left += (inside.Width() - width) * at / half;
    bar.right = bar.left + width;
    return bar;
}

void AProgressBar::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, GetSysColor(COLOR_BTNSHADOW));
    CRect inside = client;
    inside.DeflateRect(1, 1);
    const CRect bar = filled(inside);
    dc.FillSolidRect(inside, GetSysColor(COLOR_WINDOW));
    dc.FillSolidRect(bar, GetSysColor(COLOR_HIGHLIGHT));
    const ControlFont font(dc, *this);
    const CString text = GetShownText();
    // each letter is read on what is behind it
    const CRect sides[] = {{inside.left, inside.top, bar.left, inside.bottom},
                           bar,
                           {bar.right, inside.top, inside.right, inside.bottom}};
    for (int i = 0; i < 3; ++i) {
        if (sides[i].IsRectEmpty())
            continue;
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(sides[i]);
        dc.SetTextColor(GetSysColor(i == 1 ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        CRect place = inside;
        place.DeflateRect(4, 0);
        dc.DrawText(text, place,
                    DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        dc.RestoreDC(saved);
    }
}

void AProgressBar::OnTimer(unsigned id)
{
    if (id != runTimer)
        return ABWindow::OnTimer(id);
    ++step_;
    show();
}

void AProgressBar::OnSysColorChange() { Invalidate(); }

int AProgressBar::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_PROGRESSBAR;
    part.name = !text_.empty() ? text_ : !name_.empty() ? name_ : CString(progressName);
    part.value = percent();
    part.state = STATE_SYSTEM_READONLY;
    GetClientRect(part.rect);
    return 1;
}

}  // namespace pavane
