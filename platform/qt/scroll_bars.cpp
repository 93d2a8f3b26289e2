#include "platform/flat_scroll_bars.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>

namespace pavane
{

namespace
{

FrameWidget* frameOf(const CWnd* window, int bar)
{
    const WindowPeer* const peer = peerOf(window);
    return peer && peer->frame && peer->frame->bar(bar) ? peer->frame.data() : nullptr;
}

QScrollBar* barOf(const CWnd* window, int bar)
{
    FrameWidget* const frame = frameOf(window, bar);
    return frame ? frame->bar(bar) : nullptr;
}

}  // namespace

void CWnd::SetScrollRange(int bar, int min, int max, int page)
{
    QScrollBar* const known = barOf(this, bar);
    if (!known)
        return;
    known->setRange(min, std::max(min, max));
    known->setPageStep(std::max(1, page));
    frameOf(this, bar)->setBarNeeded(bar, max > min);  // may be the end of this window
}

int CWnd::GetScrollRange(int bar, int& min, int& max) const
{
    const QScrollBar* const known = barOf(this, bar);
    min = known ? known->minimum() : 0;
    max = known ? known->maximum() : 0;
    return known != nullptr;
}

int CWnd::SetScrollPos(int bar, int position)
{
    QScrollBar* const known = barOf(this, bar);
    if (!known)
        return 0;
    const int before = known->value();
    known->setValue(position);
    return before;
}

int CWnd::GetScrollPos(int bar) const
{
    const QScrollBar* const known = barOf(this, bar);
    return known ? known->value() : 0;
}

void CWnd::ShowScrollBar(int bar, int show)
{
    if (FrameWidget* const frame = frameOf(this, bar))
        frame->setBarWanted(bar, show != 0);
}

int CWnd::IsScrollBarShown(int bar) const
{
    const QScrollBar* const known = barOf(this, bar);
    return known && !known->isHidden();
}

int InitializeFlatSB(HWND window) { return peerOf(window) != nullptr; }
int UninitializeFlatSB(HWND window) { return peerOf(window) != nullptr; }

int FlatSB_SetScrollProp(HWND window, unsigned property, int, int)
{
    const int bar = property == WSB_PROP_VSTYLE ? SB_VERT : SB_HORZ;
    const bool isStyle = property == WSB_PROP_VSTYLE || property == WSB_PROP_HSTYLE;
    return isStyle && barOf(CWnd::FromHandle(window), bar) != nullptr;
}

int FlatSB_GetScrollRange(HWND window, int bar, int& min, int& max)
{
    const CWnd* const object = CWnd::FromHandle(window);
    min = 0;
    max = 0;
    return object ? object->GetScrollRange(bar, min, max) : 0;
}

int FlatSB_SetScrollRange(HWND window, int bar, int min, int max, int)
{
    CWnd* const object = CWnd::FromHandle(window);
    const QScrollBar* const known = barOf(object, bar);
    if (!known)
        return 0;
    object->SetScrollRange(bar, min, max, known->pageStep());
    return 1;
}

int FlatSB_SetScrollInfo(HWND window, int bar, const SCROLLINFO& info, int)
{
    CWnd* const object = CWnd::FromHandle(window);
    const QScrollBar* const known = barOf(object, bar);
    if (!known)
        return 0;
    if (info.fMask & (SIF_RANGE | SIF_PAGE)) {
        const bool setsRange = info.fMask & SIF_RANGE;
        constexpr unsigned mostPage = 1u << 30;
        const int page = info.fMask & SIF_PAGE ? static_cast<int>(std::min(info.nPage, mostPage))
                                               : known->pageStep();
        object->SetScrollRange(bar, setsRange ? info.nMin : known->minimum(),
                               setsRange ? info.nMax : known->maximum(), page);
    }
    CWnd* const still = CWnd::FromHandle(window);  // WM_SIZE may have ended it
    if (still && info.fMask & SIF_POS)
        still->SetScrollPos(bar, info.nPos);
    return still ? still->GetScrollPos(bar) : 0;
}

int FlatSB_GetScrollInfo(HWND window, int bar, SCROLLINFO& info)
{
    const QScrollBar* const known = barOf(CWnd::FromHandle(window), bar);
    if (!known)
        return 0;
    if (info.fMask & SIF_RANGE) {
        info.nMin = known->minimum();
        info.nMax = known->maximum();
    }
    if (info.fMask & SIF_PAGE)
        info.nPage = static_cast<unsigned>(known->pageStep());
    if (info.fMask & SIF_POS)
        info.nPos = known->value();
    if (info.fMask & SIF_TRACKPOS)
        info.nTrackPos = known->sliderPosition();
    return 1;
}

int FlatSB_SetScrollPos(HWND window, int bar, int position, int)
{
    CWnd* const object = CWnd::FromHandle(window);
    return object ? object->SetScrollPos(bar, position) : 0;
}

int FlatSB_GetScrollPos(HWND window, int bar)
{
    const CWnd* const object = CWnd::FromHandle(window);
    return object ? object->GetScrollPos(bar) : 0;
}

int FlatSB_ShowScrollBar(HWND window, int bar, int show)
{
    CWnd* const object = CWnd::FromHandle(window);
    if (!barOf(object, bar))
        return 0;
    object->ShowScrollBar(bar, show);
    return 1;
}

}  // namespace pavane
