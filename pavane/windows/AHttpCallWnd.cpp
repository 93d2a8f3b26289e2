#include "pavane/windows/AHttpCallWnd.h"

#include "pavane/windows/link_opening.h"
#include "platform/CDC.h"
#include "platform/CDialog.h"
#include "platform/dialog_ground.h"
#include "platform/system_colors.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr COLORREF linkColor = RGB(0, 0, 192);
constexpr COLORREF linkColorOnDark = RGB(140, 170, 255);
constexpr unsigned unseenTimer = 1;
constexpr unsigned unseenTime = 100;
constexpr unsigned openingTimer = 2;
constexpr unsigned openingPause = 50;
constexpr auto pause = std::chrono::milliseconds(2);
// How long a call may take: a moment for the user. Where no timer can go on with it, an opener that
// runs longer has found a browser, and the other steps have limits of their own.
constexpr int shortWait = 1000;
constexpr int openerWait = 2000;

// Fields of the label's font.
constexpr unsigned char anyAlphabet = 204;
constexpr unsigned char outTrueType = 4;
constexpr unsigned char clipStroke = 2;
constexpr unsigned char proofQuality = 2;
constexpr unsigned char variableSwiss = 2 | 2 << 4;

/// What the window is drawn on, as it has no ground of its own.
COLORREF groundOf(const CWnd& window)
{
    const CWnd* const parent = window.GetParent();
    return parent && parent->IsDialog() ? GetDialogGround() : GetSysColor(COLOR_WINDOW);
}

}  // namespace

class AHttpCallWnd::Opening : public LinkOpening
{
public:
    using LinkOpening::LinkOpening;
};

AHttpCallWnd::AHttpCallWnd()
{
    const WebHandler handler = FindWebHandler("http");
    command_ = handler.command;
    ddeApplication_ = handler.service;
    ddeTopic_ = handler.object;
    opening_ = std::make_unique<Opening>(handler);
}

AHttpCallWnd::~AHttpCallWnd() = default;

int AHttpCallWnd::Create(CWnd* parent, const CRect& rect)
{
    const unsigned style = WS_CHILD | WS_GROUP | WS_TABSTOP;
    return CreateEx(0, GetWndClassName(), "", visible_ ? style | WS_VISIBLE : style, rect, parent,
                    0);
}

int AHttpCallWnd::UpDateControl(const CString&, CWnd* dialog, unsigned controlId)
{
    if (!dialog || !dialog->IsDialog())
        return 0;
    const int before = std::exchange(visible_, 1);
    auto* const form = static_cast<CDialog*>(dialog);
    const int made =
        form->ReplaceControl(controlId, *this, GetWndClassName(), form->GetDlgItemText(controlId),
                             WS_CHILD | WS_VISIBLE | WS_GROUP | WS_TABSTOP);
    if (made)
        SetFlag(windowReplaced, 1);
    else
        visible_ = before;
    return made;
}

const char* AHttpCallWnd::GetWndClassName() { return "AHTTPCALLWND_"; }

int AHttpCallWnd::GetClassParms(WNDCLASSA& wc)
{
    if (!ABWindow::GetClassParms(wc))
        return 0;
    wc.cursor = LoadCursor(IDC_LINK);
    return 1;
}

int AHttpCallWnd::OnCreate(CREATESTRUCT& cs)
{
    if (ABWindow::OnCreate(cs) == -1)
        return -1;
    if (!visible_)
        SetTimer(unseenTimer, unseenTime);
    return 0;
}

// Opening

int AHttpCallWnd::GotoURL() { return open(1); }

int AHttpCallWnd::open(int withOpener)
{
    const CString address = CheckedWebAddress(url_);
    if (address.empty())
        return 0;
    server_ = 0;
    opening_->begin(address, withOpener);
    return goOn(GetSafeHwnd() ? shortWait : openerWait);
}

/// Lets the opening go on, so long at most, and then by the timer.
int AHttpCallWnd::goOn(int milliseconds)
{
    using Step = LinkOpening::Step;
    const HWND self = GetSafeHwnd();
    const auto limit = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (Step step = opening_->poll(); step != Step::idle; step = opening_->poll()) {
        if (step == Step::answered) {
            if (self)
                SendMessage(WM_DDE_ACK, self);
            else
                acknowledged(1);
            if (self && FromHandle(self) != this)
                return 1;  // whoever hears of it may end the link
            opening_->decline();
            continue;
        }
        if (Clock::now() >= limit && (self || step == Step::opener)) {
            SetTimer(openingTimer, openingPause);
            return 1;
        }
        std::this_thread::sleep_for(pause);
    }
    KillTimer(openingTimer);
    const int succeeded = opening_->hasSucceeded();
    if (opening_->hasExecuted() && !visible_)
        PostMessage(WM_CLOSE);
    return succeeded;
}

/// The service has answered: it gets the address, once for each time that it was asked.
void AHttpCallWnd::acknowledged(HWND server)
{
    if (opening_->step() != LinkOpening::Step::answered)
        return;
    server_ = server;
    opening_->execute(linkCommand(ddeExec_, opening_->address()));
}

LRESULT AHttpCallWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DDE_ACK)
        return acknowledged(wParam), 0;
    return ABWindow::WindowProc(message, wParam, lParam);
}

void AHttpCallWnd::OnTimer(unsigned id)
{
    if (id == unseenTimer)
        KillTimer(unseenTimer);
    else if (id == openingTimer)
        (void)goOn(0);  // nobody waits for the result
    else
        ABWindow::OnTimer(id);
}

// The label

void AHttpCallWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    ABWindow::OnLButtonDown(flags, point);
    if (FromHandle(self) == this)
        (void)open(0);  // a link that leads nowhere says nothing
}

void AHttpCallWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    constexpr unsigned heldBefore = 1u << 14;
    if ((key == VK_RETURN || key == VK_SPACE) && !(flags & heldBefore))
        return (void)open(0);
    CWnd* const parent = GetParent();
    if (key == VK_ESCAPE && parent && parent->IsDialog())
        return (void)parent->PostMessage(WM_COMMAND, IDCANCEL);
    ABWindow::OnKeyDown(key, repeat, flags);
}

void AHttpCallWnd::OnSetFocus(CWnd* old)
{
    Invalidate();
    ABWindow::OnSetFocus(old);
}

void AHttpCallWnd::OnKillFocus(CWnd* next)
{
    Invalidate();
    ABWindow::OnKillFocus(next);
}

CString AHttpCallWnd::OnToolTip(CPoint) { return url_; }

void AHttpCallWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    const COLORREF ground = groundOf(*this);
    dc.FillSolidRect(update, ground);
    constexpr double readable = 3;
    dc.SetTextColor(ContrastRatio(linkColor, ground) < readable ? linkColorOnDark : linkColor);
    drawLabel(dc, client);
}

void AHttpCallWnd::PrintWindow(CDC& dc, CRect& rect, int)
{
    constexpr int screenDots = 96;
    CRect label;
    GetClientRect(label);
    const int height = MulDiv(label.Height(), dc.GetDeviceCaps(LOGPIXELSY), screenDots);
    CRect top = rect;
    if (height > 0)
        top.bottom = std::min(rect.bottom, rect.top + height);
    dc.SetTextColor(linkColor);
    drawLabel(dc, top);
}

/// Letters as high as the label, whatever part of it is drawn.
void AHttpCallWnd::drawLabel(CDC& dc, CRect& rect)
{
    LOGFONT log;
    log.lfHeight = rect.Height();
    log.lfUnderline = 1;
    log.lfCharSet = anyAlphabet;
    log.lfOutPrecision = outTrueType;
    log.lfClipPrecision = clipStroke;
    log.lfQuality = proofQuality;
    log.lfPitchAndFamily = variableSwiss;
    log.lfFaceName = "MS Sans Serif";
    CFont font;
    font.CreateFontIndirect(log);
    CFont* const before = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    PaintText(dc, rect);
    dc.SelectObject(before);
}

void AHttpCallWnd::PaintText(CDC& dc, CRect& rect)
{
    dc.DrawText(GetWindowText(), rect, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void AHttpCallWnd::ServiceDraw(CDC& dc, CRect& client, CRect&)
{
    if (GetFocus() != this)
        return;
    dc.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    dc.DrawFocusRect(client);
}

// Screen readers

int AHttpCallWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_LINK;
    part.name = GetWindowText();
    part.value = url_;
    part.state = STATE_SYSTEM_FOCUSABLE;
    GetClientRect(part.rect);
    return 1;
}

int AHttpCallWnd::AccessActivate(AccessId id) { return id == 0 && open(0); }

int AHttpCallWnd::AccessSetFocus(AccessId id)
{
    if (id == 0)
        SetFocus();
    return id == 0;
}

}  // namespace pavane
