#include "platform/qt/BarWidget.h"

namespace pavane
{

namespace
{

BarWidget* barOf(const CToolBar* bar) { return widgetOf<BarWidget>(bar); }

BarButton* buttonOf(const CToolBar* bar, unsigned id)
{
    const BarWidget* const widget = barOf(bar);
    return widget ? widget->button(id) : nullptr;
}

}  // namespace

int CToolBar::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const bar = new BarWidget(client);
    bar->setFocusPolicy(Qt::NoFocus);  // its buttons have one of their own
    return attachNative(*this, bar, "ToolBar", CString(), style, rect, parent, id);
}

void CToolBar::SetOwner(CWnd* owner)
{
    if (BarWidget* const bar = barOf(this))
        bar->owner = owner ? owner->GetSafeHwnd() : 0;
}

int CToolBar::AddButton(const ToolButton& button)
{
    BarWidget* const bar = barOf(this);
    if (!bar)
        return 0;
    if (button.id == 0)
        bar->addSeparator();
    else
        bar->addButton(button);
    return 1;
}

int CToolBar::AddControl(CWnd* control, int width)
{
    BarWidget* const bar = barOf(this);
    if (!bar || !control || control->GetParent() != this)
        return 0;
    bar->addControl(control->GetSafeHwnd(), width);
    return 1;
}

int CToolBar::EnableButton(unsigned id, int on)
{
    BarButton* const button = buttonOf(this, id);
    if (!button)
        return 0;
    // the keyboard stays on the bar when the button under it goes grey
    if (!on && button->hasFocus())
        barOf(this)->moveFocus(button, 1);
    if (!on && button->hasFocus())
        barOf(this)->moveFocus(button, -1);
    button->setEnabled(on != 0);
    barOf(this)->checkStop();
    return 1;
}

int CToolBar::CheckButton(unsigned id, int on)
{
    BarButton* const button = buttonOf(this, id);
    if (!button || !button->isCheckable())
        return 0;
    setButtonChecked(*button, on != 0);
    return 1;
}

int CToolBar::IsButtonEnabled(unsigned id) const
{
    const BarButton* const button = buttonOf(this, id);
    return button && button->isEnabled() ? 1 : 0;
}

int CToolBar::SetButtonTip(unsigned id, const CString& tip)
{
    BarButton* const button = buttonOf(this, id);
    if (!button)
        return 0;
    button->setTip(tip);
    return 1;
}

CString CToolBar::GetButtonTip(unsigned id) const
{
    const BarButton* const button = buttonOf(this, id);
    return button ? button->tip() : CString();
}

int CToolBar::IsButtonChecked(unsigned id) const
{
    const BarButton* const button = buttonOf(this, id);
    return button && button->isChecked() ? 1 : 0;
}

CRect CToolBar::GetButtonRect(unsigned id) const
{
    const BarButton* const button = buttonOf(this, id);
    if (!button)
        return {};
    const QRect r = button->geometry();
    return {r.x(), r.y(), r.x() + r.width(), r.y() + r.height()};
}

int CToolBar::GetBarHeight(int width) const
{
    BarWidget* const bar = barOf(this);
    return bar ? bar->layOut(width > 0 ? width : bar->width(), false) : 0;
}

LRESULT CToolBar::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    const BarWidget* const bar = barOf(this);
    switch (message) {
    case TB_ENABLEBUTTON:
        return EnableButton(static_cast<unsigned>(wParam), lParam != 0);
    case TB_CHECKBUTTON:
        return CheckButton(static_cast<unsigned>(wParam), lParam != 0);
    case WM_COMMAND: {
        // of a control inside
        const WindowPeer* const peer = peerOf(this);
        if (!bar || !peer)
            return 0;
        return sendTo(peerOf(bar->owner) ? bar->owner : peer->parent, message, wParam, lParam);
    }
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}

}  // namespace pavane
