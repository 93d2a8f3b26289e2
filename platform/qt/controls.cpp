#include "platform/controls.h"

#include "platform/qt/Control.h"
#include "platform/qt/fonts.h"

#include <algorithm>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyle>

namespace pavane
{

namespace
{

constexpr int maxEditLength = 128;

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

QAbstractButton* newButton(CButton::Kind kind, QWidget* parent)
{
    switch (kind) {
    case CButton::Kind::check:
        return new Control<QCheckBox>(parent);
    case CButton::Kind::radio:
        return new Control<QRadioButton>(parent);
    default:
        auto* const push = new Control<QPushButton>(parent);
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
        auto* const box = new Control<QGroupBox>(textOf(text), client);
        box->lower();  // else it covers what stands in it
        if (!attachNative(*this, box, "Button", text, style, rect, parent, id))
            return 0;
        setTextAccess(
            *this, [box](const CString& t) { box->setTitle(textOf(t)); },
            [box] { return box->title().toStdString(); });
        return 1;
    }
    QAbstractButton* const button = newButton(kind, client);
    button->setText(textOf(text));
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
    const auto* const button = qobject_cast<QAbstractButton*>(widgetOf<QWidget>(this));
    return button && button->isChecked() ? 1 : 0;
}

void CButton::SetCheck(int on)
{
    if (auto* const button = qobject_cast<QAbstractButton*>(widgetOf<QWidget>(this)))
        setButtonChecked(*button, on != 0);
}

int CEdit::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const edit = new Control<QLineEdit>(client);
    edit->setMaxLength(maxEditLength);
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
