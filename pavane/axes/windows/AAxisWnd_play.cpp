// Colours of an axis window: played with by the right button, and as a part of its views.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/maps/MapDisplay.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/PlayDrag.h"
#include "platform/messages.h"

#include <utility>

namespace pavane
{

void AAxisWnd::OnColorsChanged() {}
void AAxisWnd::SetColorsListener(std::function<void()> heard) { heardColors_ = std::move(heard); }
AColorsGraph* AAxisWnd::GetColorsGraph() const { return dynamic_cast<AColorsGraph*>(map_); }

int AAxisWnd::IsPlaying() const { return play_->isGoing(); }

void AAxisWnd::SetPlayByMouse(int on)
{
    endPlay(0);
    playByMouse_ = on != 0;
}

/// The colours of the map are a part of the views, and so is what else a dialog changes of its
/// display.
void AAxisWnd::watchColors()
{
    endPlay(0);
    if (!GetMap() || !GetAxis())
        return SetViewPart(ViewPart::colours, nullptr, nullptr);
    SetViewPart(
        ViewPart::colours, [this] { return MapDisplay(*GetAxis(), *GetMap()).values(); },
        [this](const ViewValues& values) {
            (void)MapDisplay::of(values).give(*GetAxis(), *GetMap());
            colorsChanged();
        });
}

void AAxisWnd::ShowColorLook(const ColorLook& look)
{
    AColorsGraph* const graph = GetColorsGraph();
    if (!graph)
        return;
    look.give(*graph);
    colorsChanged();
}

/// The pixels of plot and bar show other colours; whoever follows them is told.
void AAxisWnd::colorsChanged()
{
    contentMoved();
    const LifeWatch self(life());
    OnColorsChanged();
    if (self.alive() && heardColors_) {
        const auto heard = heardColors_;  // it may be taken away by what it calls
        heard();
    }
}

void AAxisWnd::playTo(CPoint point, int fine)
{
    AColorsGraph* const graph = GetColorsGraph();
    const int waited = play_->isWaiting();
    if (!graph || !play_->moveTo(point, fine))
        return;
    if (waited) {
        BeginView();
        graph->setPlayGoing(1);
    }
    (void)graph->SetColorPlay(play_->play());
    colorsChanged();
}

/// What the drag made of the colours stays with `keep`; else they are again what they were.
void AAxisWnd::endPlay(int keep)
{
    const int went = play_->isGoing();
    const int waited = play_->isWaiting();
    play_->end();
    if ((went || waited) && GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
    if (!went)
        return;  // the map may be gone
    AColorsGraph* const graph = GetColorsGraph();
    if (graph) {
        graph->setPlayGoing(0);
        if (!keep)
            (void)graph->SetColorPlay(play_->before());
    }
    const LifeWatch self(life());
    if (graph)
        colorsChanged();
    if (self.alive())
        EndView();
}

/// Over a shape that is being dragged the press never comes here: it gives that up.
void AAxisWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    const LifeWatch self(life());
    takenBack_ = 0;
    const int isFree = !GetCapture() && presses() == 0;
    settle();
    APlotWnd::OnRButtonDown(flags, point);
    AColorsGraph* const graph = self.alive() && GetSafeHwnd() ? GetColorsGraph() : nullptr;
    if (!playByMouse_ || !graph || !isFree || GetCapture() || !plotRect().PtInRect(point))
        return;
    SetFocus();  // for Escape
    if (!self.alive() || !GetSafeHwnd() || graph != GetColorsGraph())
        return;
    play_->press(point, plotRect().Size(), graph->GetColorPlay());
    SetCapture();
}

void AAxisWnd::OnRButtonUp(unsigned flags, CPoint point)
{
    const int waited = play_->isWaiting();
    if (play_->isGoing())
        return endPlay(1);  // and no menu
    if (takenBack_ && !waited) {
        takenBack_ = 0;
        return;
    }
    const LifeWatch self(life());
    endPlay(1);
    if (self.alive())
        APlotWnd::OnRButtonUp(flags, point);
}

/// Escape and the left button take a drag back; the release that follows opens no menu.
int AAxisWnd::takePlayBack()
{
    if (!play_->isGoing())
        return 0;
    takenBack_ = 1;
    endPlay(0);
    return 1;
}

void AAxisWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    if (!takePlayBack())
        APlotWnd::OnLButtonDown(flags, point);
}

/// The second of two quick presses may play too.
LRESULT AAxisWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_RBUTTONDBLCLK && playByMouse_)
        message = WM_RBUTTONDOWN;
    return APlotWnd::WindowProc(message, wParam, lParam);
}

/// Pictures are those of what is settled; a drag that goes on is on the screen only.
void AAxisWnd::pictureComing(int begins)
{
    if (AColorsGraph* const graph = play_->isGoing() ? GetColorsGraph() : nullptr)
        (void)graph->SetColorPlay(begins ? play_->before() : play_->play());
}

void AAxisWnd::OnCaptureChanged(CWnd* next)
{
    const LifeWatch self(life());
    if (next != this)
        endPlay(0);
    if (self.alive())
        APlotWnd::OnCaptureChanged(next);
}

void AAxisWnd::OnDestroy()
{
    endPlay(0);
    APlotWnd::OnDestroy();
}

}  // namespace pavane
