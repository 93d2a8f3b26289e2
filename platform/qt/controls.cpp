#include "platform/controls.h"

#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"

#include <algorithm>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcutEvent>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyle>

namespace pavane
{

namespace
{

constexpr int maxEditLength = 128;
constexpr int endless = 0x7FFF'FFFF;

Qt::Alignment alignment(unsigned style)
{
    return style & 2 ? Qt::AlignRight : style & 1 ? Qt::AlignHCenter : Qt::AlignLeft;
}

/// A label that can cut its text short.
class Label : public Control<QLabel>
{
public:
    using Control<QLabel>::Control;
    bool cutsShort = false;

protected:
    void paintEvent(QPaintEvent* e) override
    {
        if (!cutsShort) {
            QLabel::paintEvent(e);
            return;
        }
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        style()->drawItemText(&painter, rect(), static_cast<int>(QLabel::alignment()), palette(),
                              isEnabled(), shown, foregroundRole());
    }
    QSize minimumSizeHint() const override { return {}; }
};

/// A frame with a title in its upper line, and nothing inside.
class GroupFrame : public Control<QWidget>
{
public:
    using Control<QWidget>::Control;
    QString title;

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr int inset = 6;
        constexpr int gap = 3;
        constexpr double round = 3;
        QPainter painter(this);
        const int height = fontMetrics().height();
        const int wide = fontMetrics().horizontalAdvance(QString(title).remove(QLatin1Char('&')));
        const QRect text(inset + gap, 0, std::min(wide, width() - 2 * (inset + gap)), height);
        style()->drawItemText(&painter, text, Qt::AlignLeft | Qt::TextShowMnemonic, palette(),
                              isEnabled(), title, QPalette::WindowText);
        QRegion around = rect();
        if (!title.isEmpty())
            around -= text.adjusted(-gap, 0, gap, 0);
        painter.setClipRegion(around);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor(0xC4, 0xC9, 0xD0));
        const double top = title.isEmpty() ? 0 : height / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, top + 0.5, -0.5, -0.5), round, round);
    }
};

/// Alt and its letter press it at once, as other keys do: the toolkit would hold it down for a
/// moment first, and what is typed meanwhile would come before the press.
template <class Base>
class Button : public Control<Base>
{
public:
    using Control<Base>::Control;

protected:
    bool event(QEvent* e) override
    {
        if (e->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(e)->isAmbiguous())
            return Control<Base>::event(e);
        if (this->isCheckable())
            this->setFocus(Qt::ShortcutFocusReason);
        this->click();  // the last that this object may do
        return true;
    }
};

/// Controls with a background of their own would show the window's picture through it.
void coverPicture(QWidget* control, const CWnd* parent)
{
    const WindowPeer* const peer = peerOf(parent);
    control->setAutoFillBackground(peer && !peer->isNative());
    // check boxes and radio buttons would have the ground of push buttons
    if (!qobject_cast<QPushButton*>(control))
        control->setBackgroundRole(QPalette::Window);
}

QAbstractButton* newButton(CButton::Kind kind, QWidget* parent)
{
    switch (kind) {
    case CButton::Kind::check:
        return new Button<QCheckBox>(parent);
    case CButton::Kind::radio:
        return new Button<QRadioButton>(parent);
    default:
        auto* const push = new Button<QPushButton>(parent);
        push->setAutoDefault(false);
        return push;
    }
}

}  // namespace

int CStatic::Create(const CString& text, unsigned style, const CRect& rect, CWnd* parent,
                    unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const label = new Label(client);
    label->setTextFormat(Qt::PlainText);  // names of files and sources are no markup
    label->setText(textOf(text));
    coverPicture(label, parent);
    label->cutsShort = (style & SS_ENDELLIPSIS) != 0;
    const bool isHigh = rect.Height() >= 2 * label->fontMetrics().height();
    label->setWordWrap(isHigh && !label->cutsShort);
    label->setAlignment(alignment(style) | (isHigh ? Qt::AlignTop : Qt::AlignVCenter));
    if (!attachNative(*this, label, "Static", text, style, rect, parent, id))
        return 0;
    setTextAccess(
        *this, [label](const CString& t) { label->setText(textOf(t)); },
        [label] { return label->text().toStdString(); });
    return 1;
}

int CButton::Create(const CString& text, Kind kind, unsigned style, const CRect& rect, CWnd* parent,
                    unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    if (kind == Kind::group) {
        auto* const box = new GroupFrame(client);
        box->title = textOf(text);
        box->lower();  // else it covers what stands in it
        coverPicture(box, parent);
        if (!attachNative(*this, box, "Button", text, style, rect, parent, id))
            return 0;
        setTextAccess(
            *this,
            [box](const CString& t) {
                box->title = textOf(t);
                box->update();
            },
            [box] { return box->title.toStdString(); });
        return 1;
    }
    QAbstractButton* const button = newButton(kind, client);
    button->setText(textOf(text));
    coverPicture(button, parent);
    QObject::connect(button, &QAbstractButton::clicked,
                     [button] { notifyFrom(button, BN_CLICKED); });
    if (!attachNative(*this, button, "Button", text, style, rect, parent, id))
        return 0;
    setTextAccess(
        *this, [button](const CString& t) { button->setText(textOf(t)); },
        [button] { return button->text().toStdString(); });
    return 1;
}

int CButton::GetCheck() const
{
    const auto* const button = widgetOf<QAbstractButton>(this);
    return button && button->isChecked() ? 1 : 0;
}

void CButton::SetCheck(int on)
{
    if (auto* const button = widgetOf<QAbstractButton>(this))
        setButtonChecked(*button, on != 0);
}

int CEdit::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const edit = new Control<QLineEdit>(client);
    edit->setMaxLength(style & ES_NOLIMIT ? endless : maxEditLength);
    edit->setFrame((style & WS_BORDER) != 0);
    edit->setAlignment(alignment(style) | Qt::AlignVCenter);
    edit->setReadOnly((style & ES_READONLY) != 0);
    edit->notices = {EN_SETFOCUS, EN_KILLFOCUS};
    QObject::connect(edit, &QLineEdit::textChanged, [edit] { notifyFrom(edit, EN_CHANGE); });
    if (!attachNative(*this, edit, "Edit", CString(), style, rect, parent, id))
        return 0;
    setTextAccess(
        *this, [edit](const CString& t) { edit->setText(textOf(t)); },
        [edit] { return edit->text().toStdString(); });
    return 1;
}

void CEdit::SetSel(int first, int last)
{
    auto* const edit = widgetOf<QLineEdit>(this);
    if (!edit)
        return;
    const int length = static_cast<int>(edit->text().size());
    const int begin = std::clamp(first, 0, length);
    const int end = last < 0 ? length : std::clamp(last, begin, length);
    edit->setSelection(begin, end - begin);
}

void CEdit::GetSel(int& first, int& last) const
{
    const auto* const edit = widgetOf<QLineEdit>(this);
    first = last = 0;
    if (!edit)
        return;
    const bool isRange = edit->hasSelectedText();
    first = isRange ? edit->selectionStart() : edit->cursorPosition();
    last = isRange ? edit->selectionEnd() : first;
}

int CEdit::GetModify() const
{
    const auto* const edit = widgetOf<QLineEdit>(this);
    return edit && edit->isModified() ? 1 : 0;
}

void CEdit::SetModify(int on)
{
    if (auto* const edit = widgetOf<QLineEdit>(this))
        edit->setModified(on != 0);
}

void CEdit::LimitText(int characters)
{
    if (auto* const edit = widgetOf<QLineEdit>(this))
        edit->setMaxLength(characters > 0 ? characters : endless);
}

void CEdit::SetReadOnly(int on)
{
    if (auto* const edit = widgetOf<QLineEdit>(this))
        edit->setReadOnly(on != 0);
}

int CSpinButtonCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const spin = new Control<QSpinBox>(client);
    spin->keepsWheel = false;
    spin->setLocale(QLocale::c());
    QObject::connect(spin, &QSpinBox::valueChanged, [spin] { notifyFrom(spin, ID_SPIN_CHANGED); });
    if (!attachNative(*this, spin, "Spin", CString(), style, rect, parent, id))
        return 0;
    setTextAccess(
        *this,
        [spin](const CString& t) {
            const QSignalBlocker quiet(spin);
            bool isNumber = false;
            const int value = textOf(t).toInt(&isNumber);
            if (isNumber)
                spin->setValue(value);
        },
        [spin] { return spin->text().toStdString(); });
    return 1;
}

void CSpinButtonCtrl::SetRange(int min, int max)
{
    if (auto* const spin = widgetOf<QSpinBox>(this)) {
        const QSignalBlocker quiet(spin);
        spin->setRange(min, std::max(min, max));
    }
}

void CSpinButtonCtrl::SetPos(int value)
{
    if (auto* const spin = widgetOf<QSpinBox>(this)) {
        const QSignalBlocker quiet(spin);
        spin->setValue(value);
    }
}

int CSpinButtonCtrl::GetPos() const
{
    auto* const spin = widgetOf<QSpinBox>(this);
    if (!spin)
        return 0;
    spin->interpretText();  // what was typed and not yet taken over
    return spin->value();
}

}  // namespace pavane
