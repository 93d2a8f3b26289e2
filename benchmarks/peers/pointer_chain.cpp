#include "pointer_chain.h"

#include <chrono>
#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace
{

/// Lets the window's own update events pace the moves.
class Chain : public QObject
{
public:
    Chain(QWidget& widget, int moves, const std::function<ChainPoint(int)>& place)
        : widget_(widget), moves_(moves), place_(place)
    {
        qApp->installEventFilter(this);
    }

    void postMouse(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        const ChainPoint p = place_(step_);
        const QPointF at(p.x, p.y);
        QCoreApplication::postEvent(&widget_, new QMouseEvent(type, at, widget_.mapToGlobal(at),
                                                              button, buttons, Qt::NoModifier));
    }

    void postNext()
    {
        waiting_ = true;
        ++step_;
        if (step_ <= moves_)
            postMouse(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
        else
            postMouse(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::UpdateRequest && waiting_ && step_ <= moves_) {
            waiting_ = false;
            // behind the update that is beginning now
            QMetaObject::invokeMethod(
                this, [this] { postNext(); }, Qt::QueuedConnection);
        }
        if (event->type() == QEvent::MouseButtonRelease)
            done_ = true;
        return false;
    }

    bool done() const { return done_; }

private:
    QWidget& widget_;
    int moves_;
    const std::function<ChainPoint(int)>& place_;
    int step_ = 0;
    bool waiting_ = false;
    bool done_ = false;
};

}  // namespace

void letEventsRun() { QCoreApplication::processEvents(); }

double secondsPerMove(ChainPoint at, int moves, const std::function<ChainPoint(int)>& place)
{
    QCoreApplication::processEvents();
    QWidget* const widget = QApplication::widgetAt(at.x, at.y);
    if (!widget)
        return 0;
    Chain chain(*widget, moves, place);
    const auto start = std::chrono::steady_clock::now();
    chain.postMouse(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    QMetaObject::invokeMethod(
        &chain, [&chain] { chain.postNext(); }, Qt::QueuedConnection);
    while (!chain.done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    QCoreApplication::processEvents();
    return took.count() / moves;
}
