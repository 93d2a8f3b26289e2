// Shows one line of text in a window and ends when it has been painted: what any program with a
// window of this toolkit pays.
#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

namespace
{

class OneLine : public QWidget
{
public:
    void paintEvent(QPaintEvent*) override
    {
        QPainter(this).drawText(50, 50, "one line of text");
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    }
};

}  // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    OneLine window;
    window.resize(1200, 800);
    window.show();
    return application.exec();
}
