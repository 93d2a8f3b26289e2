#include "apps/clean/CleanRow.h"

#include "apps/clean/clean_menu.h"
#include "platform/accessibility.h"
#include "platform/dialog_ground.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace pavane
{

namespace
{

constexpr unsigned idIterations = 1, idLabel = 2, idCaption = 3;
constexpr int gap = 6;
constexpr int buttonWidth = 76, fieldWidth = 76, labelWidth = 66, radioWidth = 78, blinkWidth = 60;
constexpr double mostIterations = 1e9;
constexpr const char* captions[mapKinds] = {"residual", "restored", "model",
                                            "dirty",    "beam",     "mask"};

}  // namespace

int CleanRow::Create(CWnd* parent, unsigned id)
{
    return CWnd::Create("PavaneCleanRow", "", WS_CHILD | WS_VISIBLE, CRect(), parent, id);
}

int CleanRow::OnCreate(CREATESTRUCT& cs)
{
    constexpr unsigned child = WS_CHILD | WS_VISIBLE, stop = child | WS_TABSTOP;
    if (CWnd::OnCreate(cs) < 0 ||
        !clean_.Create("CLEAN", CButton::Kind::push, stop, CRect(), this, idCleanRound) ||
        !iterations_.Create(stop | WS_BORDER | ES_RIGHT, CRect(), this, idIterations) ||
        !label_.Create("iterations", child, CRect(), this, idLabel) ||
        !stop_.Create("Stop", CButton::Kind::push, stop, CRect(), this, idStopRound) ||
        !caption_.Create("", child, CRect(), this, idCaption) ||
        !blink_.Create("Blink", CButton::Kind::check, stop, CRect(), this, idBlink))
        return -1;
    for (std::size_t i = 0; i < mapKinds; ++i)
        if (!maps_[i].Create(captions[i], CButton::Kind::radio, stop, CRect(), this,
                             idMapKind + static_cast<unsigned>(i)))
            return -1;
    SetAccessName(iterations_.GetSafeHwnd(), "Iterations of the next round");
    iterations_.entered = [this] {
        if (command && clean_.IsWindowEnabled())
            command(idCleanRound);
    };
    return 0;
}

void CleanRow::Field::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    if (static_cast<int>(key) == VK_RETURN && entered)
        return entered();
    CEdit::OnKeyDown(key, repeat, flags);
}

void CleanRow::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    dc.FillSolidRect(client, GetDialogGround());
}

void CleanRow::OnSize(unsigned type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    int left = gap;
    const auto place = [&](CWnd& control, int width, int inset = 3) {
        control.MoveWindow({left, inset, left + width, cy - inset});
        left += width + gap;
    };
    place(clean_, buttonWidth);
    place(iterations_, fieldWidth);
    place(label_, labelWidth, 6);
    place(stop_, buttonWidth);
    left += gap;
    for (CButton& map : maps_)
        place(map, radioWidth);
    place(blink_, blinkWidth);
    place(caption_, std::max(0, cx - left - gap), 6);
}

long long CleanRow::GetIterations() const
{
    double number = 0;
    const int isRead = stoval(iterations_.GetWindowText(), number);
    return isRead && number >= 1 && number <= mostIterations && number == std::floor(number)
               ? std::llround(number)
               : 0;
}

void CleanRow::SetIterations(long long iterations)
{
    iterations_.SetWindowText(std::to_string(iterations));
}

void CleanRow::FocusIterations()
{
    iterations_.SetFocus();
    iterations_.SetSel(0, -1);
}

void CleanRow::SetState(int canClean, int isRunning)
{
    clean_.EnableWindow(canClean);
    iterations_.EnableWindow(canClean);
    stop_.EnableWindow(isRunning);
}

void CleanRow::SetMaps(MapKind shown, const std::array<int, mapKinds>& has, int isBlinking)
{
    for (std::size_t i = 0; i < mapKinds; ++i) {
        maps_[i].EnableWindow(has[i]);
        maps_[i].SetCheck(has[i] && i == static_cast<std::size_t>(shown));
    }
    blink_.SetCheck(isBlinking);
    blink_.EnableWindow(std::count(has.begin(), has.end(), 0) < std::ssize(has));
}

void CleanRow::SetCaption(const CString& text)
{
    if (text != caption_.GetWindowText())
        caption_.SetWindowText(text);
}

void CleanRow::ExplainBy(AToolTip& tips)
{
    (void)tips.AddTool(&clean_, "Clean inside the areas, as a new round (F5)");
    (void)tips.AddTool(&iterations_, "Most iterations of the next round; Enter cleans");
    (void)tips.AddTool(&stop_, "Stop now; the round that runs is dropped (Ctrl+F5)");
    (void)tips.AddTool(
        &blink_,
        "This map and the one that was chosen before, or that of the round compared with, in "
        "turn (B)");
    for (CButton& map : maps_)
        (void)tips.AddTool(&map, "Which map of the round is shown (Ctrl+Page Up, Ctrl+Page Down)");
}

int CleanRow::TakeTab(const MSG& message)
{
    if (message.message != WM_KEYDOWN || message.wParam != WPARAM{VK_TAB} ||
        GetKeyState(VK_CONTROL) < 0)
        return 0;
    std::vector<CWnd*> stops{&clean_, &iterations_, &stop_};
    for (CButton& map : maps_)
        stops.push_back(&map);
    stops.push_back(&blink_);
    const auto at = std::find(stops.begin(), stops.end(), GetFocus());
    if (at == stops.end())
        return 0;
    const auto count = std::ssize(stops);
    const auto step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
    auto next = at - stops.begin();
    for (auto tried = count; tried > 0; --tried) {
        next = (next + step) % count;
        CWnd* const stop = stops[static_cast<std::size_t>(next)];
        if (!stop->IsWindowEnabled())
            continue;
        if (stop == &iterations_)
            FocusIterations();
        else
            stop->SetFocus();
        break;
    }
    return 1;
}

int CleanRow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code != 0 || id == idIterations || !command)
        return CWnd::OnCommand(id, code, control);
    command(id);
    return 1;
}

}  // namespace pavane
