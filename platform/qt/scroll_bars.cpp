#include "platform/qt/FrameWidget.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>

namespace pavane
{

namespace
{

QScrollBar* barOf(const CWnd* window, int which)
{
    const WindowPeer* const peer = peerOf(window);
    return peer && peer->frame ? peer->frame->bar(which) : nullptr;
}

}  // namespace

void CWnd::SetScrollRange(int bar, int min, int max, int page)
{
    if (QScrollBar* const known = barOf(this, bar)) {
        known->setRange(min, std::max(min, max));
        known->setPageStep(std::max(1, page));
    }
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
    const WindowPeer* const peer = peerOf(this);
    QScrollBar* const known = barOf(this, bar);
    if (!known || known->isHidden() == !show)
        return;
    known->setVisible(show != 0);
    peer->frame->layOut();
}

}  // namespace pavane
