#include "apps/view/PlaneBar.h"

#include "platform/accessibility.h"
#include "platform/dialog_ground.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

namespace
{

constexpr unsigned idPlay = 1, idSlider = 2, idField = 3, idOf = 4, idText = 5;
constexpr unsigned playTimer = 1;
constexpr unsigned playTime = 100;  // ten planes a second
constexpr int playWidth = 56, fieldWidth = 56, ofWidth = 64, textWidth = 200, gap = 6;
constexpr const char* playText = "&Play";
constexpr const char* stopText = "Sto&p";

}  // namespace

int PlaneBar::Create(CWnd* parent, unsigned id)
{
    return CWnd::Create("PavanePlaneBar", "", WS_CHILD, CRect(), parent, id);
}

int PlaneBar::OnCreate(CREATESTRUCT& cs)
{
    constexpr unsigned child = WS_CHILD | WS_VISIBLE;
    if (CWnd::OnCreate(cs) < 0 ||
        !play_.Create(playText, CButton::Kind::push, child | WS_TABSTOP, CRect(), this, idPlay) ||
        !slider_.Create(child | WS_TABSTOP, CRect(), this, idSlider) ||
        !field_.Create(child | WS_TABSTOP | WS_BORDER | ES_RIGHT, CRect(), this, idField) ||
        !of_.Create("", child, CRect(), this, idOf) ||
        !text_.Create("", child, CRect(), this, idText))
        return -1;
    SetAccessName(slider_.GetSafeHwnd(), "Plane");
    SetAccessName(field_.GetSafeHwnd(), "Number of the plane");
    of_.SetDialogGround(1);
    text_.SetDialogGround(1);
    text_.SetName("What the plane is");
    return 0;
}

void PlaneBar::ExplainBy(AToolTip& tips)
{
    (void)tips.AddTool(&play_, "Shows the planes one after another, ten a second");
    (void)tips.AddTool(&slider_, "Arrows: the plane before, the next\n"
                                 "Page Up, Page Down: a tenth of the cube\nHome, End: first, last");
    (void)tips.AddTool(&field_, "The number of a plane, then Enter;\nEscape goes back to the map");
}

int PlaneBar::TakeTab(const MSG& message)
{
    if (message.message != WM_KEYDOWN || message.wParam != WPARAM{VK_TAB} ||
        GetKeyState(VK_CONTROL) < 0)
        return 0;
    CWnd* const stops[] = {&play_, &slider_, &field_};
    const auto* const at = std::find(std::begin(stops), std::end(stops), GetFocus());
    if (at == std::end(stops))
        return 0;
    const auto count = std::ssize(stops);
    const auto step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
    CWnd* const next = stops[(at - std::begin(stops) + step) % count];
    if (next == &field_)
        FocusNumber();
    else
        next->SetFocus();
    return 1;
}

void PlaneBar::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    dc.FillSolidRect(client, GetDialogGround());
}

void PlaneBar::OnSize(unsigned type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    const int top = 3, bottom = cy - 3;
    int right = cx - gap;
    const auto fromRight = [&](int width) {
        const int left = std::max(0, right - width);
        const CRect place(left, top, right, bottom);
        right = left - gap;
        return place;
    };
    // a narrow window keeps the slider and the number
    const int showsText = cx > textWidth * 3;
    text_.ShowWindow(showsText ? SW_SHOW : SW_HIDE);
    if (showsText)
        text_.MoveWindow(fromRight(textWidth));
    of_.MoveWindow(fromRight(ofWidth));
    field_.MoveWindow(fromRight(fieldWidth));
    play_.MoveWindow({gap, top, gap + playWidth, bottom});
    slider_.MoveWindow({2 * gap + playWidth, top, std::max(2 * gap + playWidth, right), bottom});
}

void PlaneBar::SetPlane(int plane, int count, const CString& text)
{
    count_ = std::max(1, count);
    slider_.SetRange(0, count_ - 1);
    slider_.SetPageSize(std::max(1, count_ / 10));
    slider_.SetPos(plane);
    of_.SetText("0 to " + std::to_string(count_ - 1));
    text_.SetText(text);
    fillField();
}

void PlaneBar::fillField()
{
    const CString number = std::to_string(slider_.GetPos());
    filling_ = 1;
    if (field_.GetWindowText() != number)
        field_.SetWindowText(number);
    if (GetFocus() == &field_)
        field_.SetSel(0, -1);  // what is typed takes its place
    filling_ = 0;
}

void PlaneBar::FocusNumber()
{
    field_.SetSel(0, -1);
    field_.SetFocus();
}

int PlaneBar::ask(int plane)
{
    const HWND self = GetSafeHwnd();
    const int shown = owner_.planeWanted(std::clamp(plane, 0, count_ - 1));
    if (!shown && FromHandle(self) == this)
        Play(0);
    return shown;
}

void PlaneBar::Play(int on)
{
    playing_ = on && count_ > 1;
    play_.SetWindowText(playing_ ? stopText : playText);
    if (playing_)
        SetTimer(playTimer, playTime);
    else
        KillTimer(playTimer);
}

void PlaneBar::OnTimer(unsigned id)
{
    if (id != playTimer)
        return CWnd::OnTimer(id);
    if (playing_ && IsWindowVisible())
        (void)ask((slider_.GetPos() + 1) % count_);
}

/// What is no number leaves the plane as it is, and the field says so by its text.
void PlaneBar::fieldEntered()
{
    int plane = 0;
    if (stoval(field_.GetWindowText(), plane))
        (void)ask(plane);
    fillField();
}

int PlaneBar::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == idPlay && code == BN_CLICKED)
        return Play(!playing_), 1;
    if (id == idSlider && code == SLN_MOVED) {
        Play(0);
        if (!ask(slider_.GetPos()))
            fillField();
        return 1;
    }
    if (id == idField && code == EN_CHANGE) {
        if (!filling_)
            Play(0);  // else the next plane would overwrite what is typed
        return 1;
    }
    if (id == idField && code == EN_KILLFOCUS)
        return fillField(), 1;
    return CWnd::OnCommand(id, code, control);
}

void PlaneBar::Field::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    PlaneBar& bar = bar_;
    const HWND self = bar.GetSafeHwnd();
    switch (key) {
    case VK_RETURN:
        bar.Play(0);
        bar.fieldEntered();
        break;
    case VK_ESCAPE:
        bar.fillField();
        break;
    case VK_PRIOR:
    case VK_NEXT:
        return (void)bar.ask(bar.GetPlane() + (key == VK_NEXT ? 1 : -1));
    default:
        return CEdit::OnKeyDown(key, repeat, flags);
    }
    if (FromHandle(self) == &bar)
        bar.owner_.planeBarLeft();
}

}  // namespace pavane
