#include "platform/core/message_default.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

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
        return {{yes, no}, QMessageBox::NoButton};
    default:
        return {{ok}, QMessageBox::Ok};
    }
}

QMessageBox::Icon iconOf(unsigned type)
{
    switch (type & iconBits) {
    case MB_ICONERROR:
        return QMessageBox::Critical;
    case MB_ICONQUESTION:
        return QMessageBox::Question;
    case MB_ICONWARNING:
        return QMessageBox::Warning;
    case MB_ICONINFORMATION:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
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

int showMessageBox(const CString& text, unsigned type)
{
    QWidget* const front = frontWindow();
    const WindowPeer* const owner = peerOf(front);
    const HWND top = owner ? owner->hwnd : 0;
    const AnswerSet set = answersOf(type);
    const QPointer<MessageBox> box = new MessageBox(front);
    box->setTextFormat(Qt::PlainText);  // file names and numbers are no markup
    box->setText(shownText(text));
    box->setIcon(iconOf(type));
    box->setWindowTitle(front ? front->windowTitle() : QGuiApplication::applicationDisplayName());
    box->mustChoose = set.escape == QMessageBox::NoButton;
    const std::size_t first = type & MB_DEFBUTTON2 && set.answers.size() > 1 ? 1 : 0;
    for (const Answer& answer : set.answers)
        (void)box->addButton(answer.button);
    box->setDefaultButton(set.answers[first].button);
    if (!box->mustChoose)
        box->setEscapeButton(set.escape);
    const int pressed = box->exec();
    const auto chosen = std::find_if(set.answers.begin(), set.answers.end(),
                                     [&](const Answer& a) { return a.button == pressed; });
    // gone with its owner: as if it had been closed
    const int result = chosen == set.answers.end() ? set.answers.back().result : chosen->result;
    if (box)
        box->deleteLater();
    reactivate(top);
    return result;
}

}  // namespace

void startMessageBox() { setDefaultMessageFunction(showMessageBox); }
void stopMessageBox() { setDefaultMessageFunction(nullptr); }

}  // namespace pavane
