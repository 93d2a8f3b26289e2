#include "platform/tip_window.h"

#include "platform/core/tip_place.h"
#include "platform/CWnd.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QPointer>
#include <QScreen>
#include <QToolTip>
#include <utility>

namespace pavane
{

namespace
{

constexpr int tipMargin = 4;
constexpr int greatestWidth = 420;

/// The desktop's colours of tips as those of a label; they may change while the program runs.
QPalette tipPalette()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, palette.color(QPalette::ToolTipBase));
    palette.setColor(QPalette::WindowText, palette.color(QPalette::ToolTipText));
    return palette;
}

}  // namespace

struct CTipWnd::Data {
    QPointer<QLabel> label;
    CString text;

    QLabel* labelFor(QWidget* owner)
    {
        if (label && label->parentWidget() != owner)
            delete std::exchange(label, nullptr).data();
        if (!label) {
            label = new QLabel(owner, Qt::ToolTip);
            label->setTextFormat(Qt::PlainText);
            label->setAttribute(Qt::WA_ShowWithoutActivating);
            label->setFocusPolicy(Qt::NoFocus);
            label->setFrameStyle(QFrame::Box | QFrame::Plain);
            label->setMargin(tipMargin);
            label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        }
        return label;
    }
};

CTipWnd::CTipWnd() : data_(std::make_unique<Data>()) {}

CTipWnd::~CTipWnd() { delete data_->label; }

int CTipWnd::Show(const CString& text, const CRect& around, CWnd* owner)
{
    QWidget* const client = clientOf(owner);
    if (text.empty() || !client || !canShowWindows()) {
        Hide();
        return 0;
    }
    QLabel* const label = data_->labelFor(client->window());
    label->setPalette(tipPalette());
    label->setFont(QToolTip::font());
    label->setWordWrap(false);
    label->setText(textOf(text));
    if (label->sizeHint().width() > greatestWidth)
        label->setWordWrap(true);
    const int width = std::min(label->sizeHint().width(), greatestWidth);
    const int height =
        label->wordWrap() ? label->heightForWidth(width) : label->sizeHint().height();
    const CPoint middle = around.CenterPoint();
    const QScreen* screen = QGuiApplication::screenAt({middle.x, middle.y});
    if (!screen)
        screen = client->screen();
    const QRect room = screen->availableGeometry();
    const CRect at =
        placeTip({width, height}, around,
                 {room.x(), room.y(), room.x() + room.width(), room.y() + room.height()});
    if (at.IsRectEmpty()) {
        Hide();
        return 0;
    }
    data_->text = text;
    label->setAccessibleName(textOf(text));
    label->setGeometry(at.left, at.top, at.Width(), at.Height());
    label->show();
    label->raise();
    if (QAccessible::isActive()) {
        QAccessibleEvent told(label, QAccessible::Alert);
        QAccessible::updateAccessibility(&told);
    }
    return 1;
}

void CTipWnd::Hide()
{
    data_->text.clear();
    if (data_->label)
        data_->label->hide();
}

int CTipWnd::IsVisible() const { return data_->label && data_->label->isVisible() ? 1 : 0; }

CRect CTipWnd::GetRect() const
{
    if (!IsVisible())
        return {};
    const QRect r = data_->label->geometry();
    return {r.x(), r.y(), r.x() + r.width(), r.y() + r.height()};
}

CString CTipWnd::GetText() const { return IsVisible() ? data_->text : CString(); }

}  // namespace pavane
