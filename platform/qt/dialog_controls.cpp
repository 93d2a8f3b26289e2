#include "platform/qt/dialog_controls.h"

#include "platform/controls.h"
#include "platform/core/dialog_units.h"
#include "platform/progress.h"
#include "platform/qt/Control.h"
#include "platform/slider.h"
#include "platform/up_down.h"

#include <algorithm>
#include <QButtonGroup>
#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace pavane
{

namespace
{

/// What the item becomes: a window object, made in `dialog`; null when it could not be made.
std::unique_ptr<CWnd> makeControl(CWnd& dialog, const DlgItem& item, const CRect& place)
{
    const CString text = item.text ? item.text : "";
    const unsigned style = item.style | WS_CHILD | WS_VISIBLE;
    // the kinds of lists differ in these bits only
    const unsigned listKind = style & CBS_DROPDOWNLIST ? 0 : CBS_DROPDOWNLIST;
    const auto made = [](auto control, auto create) -> std::unique_ptr<CWnd> {
        return create(*control) ? std::move(control) : nullptr;
    };
    const auto button = [&](CButton::Kind kind) {
        return made(std::make_unique<CButton>(), [&](CButton& b) {
            return b.Create(text, kind, style, place, &dialog, item.id);
        });
    };
    switch (item.kind) {
    case ControlKind::staticText:
        return made(std::make_unique<CStatic>(),
                    [&](CStatic& s) { return s.Create(text, style, place, &dialog, item.id); });
    case ControlKind::groupBox:
        return button(CButton::Kind::group);
    case ControlKind::pushButton:
    case ControlKind::defaultButton:
        return button(CButton::Kind::push);
    case ControlKind::checkBox:
        return button(CButton::Kind::check);
    case ControlKind::radioButton:
        return button(CButton::Kind::radio);
    case ControlKind::edit:
        return made(std::make_unique<CEdit>(),
                    [&](CEdit& e) { return e.Create(style | WS_BORDER, place, &dialog, item.id); });
    case ControlKind::comboBox:
        return made(std::make_unique<CComboBox>(), [&](CComboBox& c) {
            return c.Create(style | listKind, place, &dialog, item.id);
        });
    case ControlKind::listBox:
        return made(std::make_unique<CListBox>(),
                    [&](CListBox& l) { return l.Create(style, place, &dialog, item.id); });
    case ControlKind::spin:
        return made(std::make_unique<CSpinButtonCtrl>(),
                    [&](CSpinButtonCtrl& s) { return s.Create(style, place, &dialog, item.id); });
    case ControlKind::upDown:
        return made(std::make_unique<CUpDownCtrl>(), [&](CUpDownCtrl& u) {
            return u.Create(style & ~WS_TABSTOP, place, &dialog, item.id);
        });
    case ControlKind::progress:
        return made(std::make_unique<CProgressCtrl>(), [&](CProgressCtrl& p) {
            return p.Create(style & ~WS_TABSTOP, place, &dialog, item.id);
        });
    case ControlKind::slider:
        return made(std::make_unique<CSliderCtrl>(),
                    [&](CSliderCtrl& s) { return s.Create(style, place, &dialog, item.id); });
    case ControlKind::placeholder:
        return made(std::make_unique<CWnd>(), [&](CWnd& w) {
            auto* const frame = new Control<QFrame>(clientOf(&dialog));
            frame->setFrameShape(QFrame::StyledPanel);
            return attachNative(w, frame, "Placeholder", text, style, place, &dialog, item.id);
        });
    }
    return nullptr;
}

QWidget* widgetOfHandle(HWND hwnd)
{
    const WindowPeer* const peer = peerOf(hwnd);
    return peer ? peer->widget.data() : nullptr;
}

/// The letter of a static text gives the focus to the control behind it.
void setBuddies(const DlgTemplate& dialogTemplate, const DialogControls& controls)
{
    for (std::size_t i = 0; i + 1 < controls.order.size(); ++i) {
        const DlgItem& item = dialogTemplate.items[i];
        auto* const label = qobject_cast<QLabel*>(widgetOfHandle(controls.order[i]));
        if (label && CString(item.text ? item.text : "").find('&') != CString::npos)
            label->setBuddy(widgetOfHandle(controls.order[i + 1]));
    }
}

/// The Tab key enters a choice at the button that is on, when it enters it at all.
void moveTabStop(const QList<QAbstractButton*>& choice, const QAbstractButton* on)
{
    const auto stops = [](const QAbstractButton* b) { return b->focusPolicy() & Qt::TabFocus; };
    if (std::none_of(choice.begin(), choice.end(), stops))
        return;
    for (QAbstractButton* const button : choice)
        button->setFocusPolicy(button == on ? Qt::StrongFocus : Qt::ClickFocus);
}

void groupRadioButtons(QWidget* dialog, const DlgTemplate& dialogTemplate,
                       const DialogControls& controls)
{
    QButtonGroup* group = nullptr;
    for (std::size_t i = 0; i < controls.order.size(); ++i) {
        const DlgItem& item = dialogTemplate.items[i];
        if (item.style & WS_GROUP || !group)
            group = new QButtonGroup(dialog);
        auto* const button = qobject_cast<QAbstractButton*>(widgetOfHandle(controls.order[i]));
        if (item.kind != ControlKind::radioButton || !button)
            continue;
        group->addButton(button);
        QObject::connect(button, &QAbstractButton::toggled, [group, button](bool on) {
            if (on)
                moveTabStop(group->buttons(), button);
        });
    }
}

}  // namespace

int makeControls(CWnd& dialog, const DlgTemplate& dialogTemplate, DialogControls& controls)
{
    const DialogUnits units = dialogUnits();
    const HWND hwnd = dialog.GetSafeHwnd();
    for (int i = 0; i < dialogTemplate.itemCount; ++i) {
        const DlgItem& item = dialogTemplate.items[i];
        auto control = makeControl(dialog, item, units.pixels(item.x, item.y, item.cx, item.cy));
        if (!control || !peerOf(hwnd))
            return 0;
        peerOf(control.get())->exStyle = item.exStyle;
        auto* const arrows = dynamic_cast<CUpDownCtrl*>(control.get());
        if (arrows && !controls.objects.empty())
            arrows->SetBuddy(dynamic_cast<CEdit*>(controls.objects.back().get()));
        controls.order.push_back(control->GetSafeHwnd());
        controls.objects.push_back(std::move(control));
        auto* const button = qobject_cast<QPushButton*>(widgetOfHandle(controls.order.back()));
        if (button && item.kind == ControlKind::defaultButton)
            button->setDefault(true);
    }
    setBuddies(dialogTemplate, controls);
    groupRadioButtons(clientOf(&dialog), dialogTemplate, controls);
    chainControls(controls.order);
    return 1;
}

void chainControls(const std::vector<HWND>& order)
{
    QWidget* before = nullptr;
    for (const HWND hwnd : order) {
        QWidget* const widget = widgetOfHandle(hwnd);
        if (!widget)
            continue;
        if (before)
            QWidget::setTabOrder(before, widget);
        before = widget;
    }
}

}  // namespace pavane
