#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace pavane
{

/// Offers input events to the program's message translator, each once: what a widget does not take
/// comes again for its parents, and a key comes first as a question about short cuts. It has to see
/// events before every other filter of ours.
class InputTranslation : public QObject
{
public:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Seen {
        QPointer<QWidget> widget;
        QEvent::Type type = QEvent::None;
        quint64 time = 0;
    };
    bool travelsOn(QWidget* widget, const QEvent& event);
    bool swallows(QWidget* widget, QEvent& event);
    bool swallowsShortcut(QWidget* widget, QEvent& event);

    Seen last_;
    Seen lastQuestion_;
    struct {
        int key = 0;  ///< 0: none was asked about
        quint64 time = 0;
        bool isSwallowed = false;
    } asked_;
};

void startTranslation();
void stopTranslation();
/// Brings it before a filter that was installed just now.
void raiseTranslation();

}  // namespace pavane
