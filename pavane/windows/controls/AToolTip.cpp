#include "pavane/windows/controls/AToolTip.h"

#include "platform/message_translator.h"

#include <algorithm>
#include <chrono>

namespace pavane
{

namespace
{

constexpr unsigned lookTimer = 1;
constexpr unsigned lookTime = 50;

std::vector<AToolTip*>& all()
{
    static std::vector<AToolTip*> tips;
    return tips;
}

MessageTranslator before = nullptr;
int seen = 0;  ///< messages

std::int64_t milliseconds()
{
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

CRect onScreen(const CWnd& window, CRect rect)
{
    window.ClientToScreen(rect);
    return rect;
}

/// The window that the pointer is on, when it is one of `frame`: the innermost.
const CWnd* windowUnder(const CWnd& frame, CPoint screen)
{
    CRect place;
    if (!frame.IsWindowVisible() || !frame.GetWindowRect(place) || !place.PtInRect(screen))
        return nullptr;
    const std::vector<CWnd*> children = frame.GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (!((*child)->GetStyle() & WS_CHILD))
            continue;
        if (const CWnd* const inner = windowUnder(**child, screen))
            return inner;
    }
    return &frame;
}

}  // namespace

/// One translator for all tips, which stays when they go: a host's that was set after it may call
/// it, so it must never come a second time before that one. It is set anew only where nobody calls
/// it any more, which a message that means nothing tells.
AToolTip::AToolTip()
{
    if (all().empty()) {
        const int seenBefore = seen;
        (void)OfferToTranslator(MSG());
        if (seen == seenBefore)
            before = SetMessageTranslator(seeMessage);
    }
    all().push_back(this);
}

AToolTip::~AToolTip() { std::erase(all(), this); }

int AToolTip::Create(CWnd* frame)
{
    return frame && CWnd::Create("AToolTip", "", WS_CHILD, CRect(), frame, 0);
}

int AToolTip::AddTool(CWnd* window, const CString& text)
{
    if (!window || !window->GetSafeHwnd())
        return 0;
    tools_.push_back({window->GetSafeHwnd(), text, {}, 1, {}});
    return 1;
}

int AToolTip::AddTool(CWnd* window, const CString& text, const CRect& rect)
{
    if (!window || !window->GetSafeHwnd() || rect.IsRectEmpty())
        return 0;
    tools_.push_back({window->GetSafeHwnd(), text, rect, 0, {}});
    return 1;
}

int AToolTip::AddTool(CWnd* window, Ask ask)
{
    if (!window || !window->GetSafeHwnd() || !ask)
        return 0;
    tools_.push_back({window->GetSafeHwnd(), {}, {}, 0, std::move(ask)});
    return 1;
}

void AToolTip::RemoveTools(const CWnd* window)
{
    Hide();
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    std::erase_if(tools_, [&](const Tool& tool) { return tool.window == handle; });
}

void AToolTip::Hide()
{
    timing_.dismiss();
    tip_.Hide();
}

int AToolTip::seeMessage(const MSG& message)
{
    ++seen;
    const std::vector<AToolTip*> tips = all();
    for (AToolTip* const tip : tips) {
        if (std::find(all().begin(), all().end(), tip) != all().end())
            tip->offer(message);
    }
    return before ? before(message) : 0;
}

/// Nothing runs while nothing happens: what the user does starts the timer, which ends by itself.
void AToolTip::offer(const MSG& message)
{
    const HWND self = GetSafeHwnd();
    if (!self)
        return;
    switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (message.wParam == WPARAM{VK_ESCAPE} || message.wParam == WPARAM{VK_RETURN})
            Hide();
        break;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        look();  // so that it knows what the press is on
        if (FromHandle(self) != this)
            return;
        Hide();
        break;
    case WM_MOUSEMOVE:
    case WM_KEYUP:
        break;
    default:
        return;
    }
    SetTimer(lookTimer, lookTime);
}

/// A callback may do anything: end the windows, add tools, take them away.
AToolTip::Found AToolTip::pointedTool() const
{
    const CPoint screen = GetCursorPos();
    const CWnd* const frame = GetTopLevelParent();
    const CWnd* const under = frame ? windowUnder(*frame, screen) : nullptr;
    if (!under || GetCapture())
        return {};
    const HWND self = GetSafeHwnd();
    const HWND window = under->GetSafeHwnd();
    CPoint point = screen;
    under->ScreenToClient(point);
    for (std::size_t i = 0; i < tools_.size(); ++i) {
        if (tools_[i].window != window)
            continue;
        const Tool tool = tools_[i];
        CRect rect = tool.rect;
        if (tool.isWhole || tool.ask)
            under->GetClientRect(rect);
        if (!rect.PtInRect(point))
            continue;
        const CString text = tool.ask ? tool.ask(point, rect) : tool.text;
        if (FromHandle(self) != this || FromHandle(window) != under)
            return {};
        if (!text.empty())
            return {static_cast<int>(i), text, onScreen(*under, rect)};
    }
    return {};
}

AToolTip::Found AToolTip::focusedTool() const
{
    const CWnd* const focus = GetFocus();
    for (std::size_t i = 0; focus && i < tools_.size(); ++i) {
        const Tool& tool = tools_[i];
        CRect place;
        if (tool.isWhole && tool.window == focus->GetSafeHwnd() && focus->GetWindowRect(place))
            return {static_cast<int>(i), tool.text, place};
    }
    return {};
}

void AToolTip::look()
{
    const HWND self = GetSafeHwnd();
    const Found pointed = pointedTool();
    if (FromHandle(self) != this)
        return;  // the callback may end the window
    const Found focused = focusedTool();
    const int shownBefore = timing_.shown();
    const int overTip = tip_.IsVisible() && tip_.GetRect().PtInRect(GetCursorPos());
    const int shown =
        timing_.see(milliseconds(), {overTip ? -1 : pointed.index, focused.index, overTip});
    const Found& wanted = shown == pointed.index ? pointed : focused;
    if (shown < 0) {
        tip_.Hide();
    } else if (!overTip && shown == wanted.index &&
               (shown != shownBefore || wanted.text != tip_.GetText())) {
        tip_.Show(wanted.text, wanted.place, this);
    }
}

void AToolTip::OnTimer(unsigned id)
{
    if (id != lookTimer)
        return CWnd::OnTimer(id);
    const HWND self = GetSafeHwnd();
    look();
    if (FromHandle(self) == this && !timing_.waits())
        KillTimer(lookTimer);
}

}  // namespace pavane
