#include "platform/core/message_default.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QThread>

namespace pavane
{

namespace
{

/// A longer text, such as the contents of a broken file, would not fit on the screen.
constexpr int maxMessageLength = 2000;

constexpr unsigned buttonBits = 0x000F;
constexpr unsigned iconBits = 0x00F0;

struct Answer {
    QMessageBox::StandardButton button;
    int result;
};

/// The answers of a kind of box, in their order, and the one that Escape and the close box give.
struct AnswerSet {
    std::vector<Answer> answers;
    QMessageBox::StandardButton escape;  ///< NoButton: a choice has to be made
};

AnswerSet answersOf(unsigned type)
{
    const Answer ok{QMessageBox::Ok, IDOK};
    const Answer cancel{QMessageBox::Cancel, IDCANCEL};
    const Answer yes{QMessageBox::Yes, IDYES};
    const Answer no{QMessageBox::No, IDNO};
    switch (type & buttonBits) {
    case MB_OKCANCEL:
        return {{ok, cancel}, QMessageBox::Cancel};
    case MB_YESNOCANCEL:
        return {{yes, no, cancel}, QMessageBox::Cancel};
    case MB_YESNO:
        // where No is the safe answer, a slip may give it
        return {{yes, no}, type & MB_DEFBUTTON2 ? QMessageBox::No : QMessageBox::NoButton};
    default:
        return {{ok}, QMessageBox::Ok};
    }
}

/// A disc with a sign, as fine as the screen of `window`; nothing for a message without icon.
QPixmap iconOf(unsigned type, const QWidget& window)
{
    struct Sign {
        unsigned icon;
        const char* text;
        QRgb color;
    };
    constexpr Sign signs[] = {{MB_ICONERROR, "\xC3\x97", 0xFFC0392Bu},
                              {MB_ICONQUESTION, "?", 0xFF2B6CB0u},
                              {MB_ICONWARNING, "!", 0xFFC77A0Au},
                              {MB_ICONINFORMATION, "i", 0xFF2B6CB0u}};
    constexpr int size = 32;
    const auto* const sign = std::find_if(std::begin(signs), std::end(signs), [&](const Sign& s) {
        return s.icon == (type & iconBits);
    });
    if (sign == std::end(signs))
        return {};
    const double ratio = window.devicePixelRatioF();
    QPixmap icon(QSize(size, size) * ratio);
    icon.setDevicePixelRatio(ratio);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(sign->color));
    painter.drawEllipse(1, 1, size - 2, size - 2);
    QFont font = window.font();
    font.setBold(true);
    font.setPixelSize(size * 5 / 8);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, size, size), Qt::AlignCenter, QString::fromUtf8(sign->text));
    return icon;
}

/// A box that a slip cannot answer: without an answer for Escape it stays.
class MessageBox : public QMessageBox
{
public:
    using QMessageBox::QMessageBox;
    bool mustChoose = false;

protected:
    void keyPressEvent(QKeyEvent* e) override
    {
        if (!mustChoose || e->key() != Qt::Key_Escape)
            QMessageBox::keyPressEvent(e);
    }
    void closeEvent(QCloseEvent* e) override
    {
        if (mustChoose)
            e->ignore();
        else
            QMessageBox::closeEvent(e);
    }
};

QString shownText(const CString& text)
{
    QString shown = textOf(text);
    if (shown.size() > maxMessageLength)
        shown = shown.left(maxMessageLength) + QChar(0x2026);
    return shown;
}

/// Windows, and the pointer in them, belong to the thread of the application object.
bool isThreadOfWindows() { return QThread::currentThread() == qApp->thread(); }

int showMessageBox(const CString& text, unsigned type)
{
    if (!isThreadOfWindows())
        return printMessage(text);
    QWidget* const front = frontWindow();
    const WindowPeer* const owner = peerOf(front);
    const HWND top = owner ? owner->hwnd : 0;
    const AnswerSet set = answersOf(type);
    const QPointer<MessageBox> box = new MessageBox(front);
    box->setTextFormat(Qt::PlainText);  // file names and numbers are no markup
    box->setText(shownText(text));
    if (const QPixmap icon = iconOf(type, *box); !icon.isNull())
        box->setIconPixmap(icon);
    // a title with a file's name in it would be cut
    const QString program = QGuiApplication::applicationDisplayName();
    box->setWindowTitle(program.isEmpty() && front ? front->windowTitle() : program);
    box->mustChoose = set.escape == QMessageBox::NoButton;
    const std::size_t first = type & MB_DEFBUTTON2 && set.answers.size() > 1 ? 1 : 0;
    for (const Answer& answer : set.answers)
        (void)box->addButton(answer.button);
    box->setDefaultButton(set.answers[first].button);
    if (!box->mustChoose)
        box->setEscapeButton(set.escape);
    clearButtonIcons(*box);
    const int pressed = box->exec();
    const auto chosen = std::find_if(set.answers.begin(), set.answers.end(),
                                     [&](const Answer& a) { return a.button == pressed; });
    // gone with its owner: as if it had been closed
    const int result = chosen == set.answers.end() ? set.answers.back().result : chosen->result;
    // at once: hidden it may still be the active window, and the next question's parent
    delete box;
    reactivate(top);
    return result;
}

}  // namespace

void startMessageBox()
{
    setDefaultMessageFunction(showMessageBox);
    setBeforeMessage([] {
        if (isThreadOfWindows())
            cancelCapture();  // a question ends what the pointer was doing
    });
}

void stopMessageBox()
{
    setDefaultMessageFunction(nullptr);
    setBeforeMessage(nullptr);
}

}  // namespace pavane
