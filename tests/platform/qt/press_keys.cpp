#include "platform/qt/press_keys.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDialog>
#include <QKeySequence>
#include <QStringList>
#include <QTest>
#include <QTimer>

namespace pavane
{

namespace
{

void press(QWidget& widget, const QString& key)
{
    if (key.startsWith(u'\'')) {
        QTest::keyClicks(&widget, key.mid(1, key.size() - 2));
        return;
    }
    const QKeyCombination stroke = QKeySequence(key)[0];
    QTest::keyClick(&widget, stroke.key(), stroke.keyboardModifiers());
}

/// The next one is arranged for before a key is pressed, which may open a dialog and wait for it.
/// After the last one a dialog that is still there ends.
void pressFirst(const QStringList& keys, int delay, int tries)
{
    QTimer::singleShot(delay, qApp, [=] {
        QWidget* const front = QApplication::activeModalWidget();
        const bool isReady = front && front->isVisible() && front->isActiveWindow();
        const std::string key = keys.isEmpty() ? "the end" : keys.first().toStdString();
        if (tries == 0 && (front || !keys.isEmpty()))
            ADD_FAILURE() << (front ? "a dialog stays open at " : "no dialog for ") << key;
        if (tries == 0 && front)
            static_cast<QDialog*>(front)->done(QDialog::Rejected);
        if (tries == 0)
            return;
        if (!isReady || keys.isEmpty()) {
            if (front || !keys.isEmpty())
                pressFirst(keys, 5, tries - 1);
            return;
        }
        // a button that a letter presses stays down for a while
        const bool isSlow = keys.first().startsWith(QLatin1String("Alt+"));
        pressFirst(keys.mid(1), isSlow ? 150 : 5, 400);
        press(front->focusWidget() ? *front->focusWidget() : *front, keys.first());
    });
}

}  // namespace

void pressKeys(const std::string& keys)
{
    // what still watches the end of an earlier dialog would take this one for that
    if (!QApplication::activeModalWidget())
        QTest::qWait(20);
    pressFirst(QString::fromStdString(keys).split(u' ', Qt::SkipEmptyParts), 5, 400);
}

}  // namespace pavane
