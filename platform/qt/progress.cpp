#include "platform/progress.h"

#include "platform/qt/Control.h"

#include <algorithm>
#include <QProgressBar>

namespace pavane
{

int CProgressCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const bar = new Control<QProgressBar>(client);
    bar->setFocusPolicy(Qt::NoFocus);
    bar->setTextVisible(false);
    bar->setRange(0, 100);
    bar->setValue(0);
    return attachNative(*this, bar, "Progress", CString(), style, rect, parent, id);
}

void CProgressCtrl::SetRange(int min, int max)
{
    if (auto* const bar = widgetOf<QProgressBar>(this)) {
        const int at = GetPos();
        const int end = std::max(min, max);
        // an empty range that is not 0 would count as full
        bar->setRange(min == end ? 0 : min, min == end ? 0 : end);
        bar->setValue(std::clamp(at, bar->minimum(), bar->maximum()));
    }
}

void CProgressCtrl::GetRange(int& min, int& max) const
{
    const auto* const bar = widgetOf<QProgressBar>(this);
    min = bar ? bar->minimum() : 0;
    max = bar ? bar->maximum() : 0;
}

int CProgressCtrl::SetPos(int position)
{
    const int before = GetPos();
    if (auto* const bar = widgetOf<QProgressBar>(this))
        bar->setValue(std::clamp(position, bar->minimum(), bar->maximum()));
    return before;
}

int CProgressCtrl::GetPos() const
{
    const auto* const bar = widgetOf<QProgressBar>(this);
    return bar ? bar->value() : 0;
}

}  // namespace pavane
