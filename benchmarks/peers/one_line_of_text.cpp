// Draws one line of text into a picture of the same size and saves it: what any program pays that
// draws with this toolkit at all.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    QImage image(1000, 900, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.drawText(50, 50, "one line of text");
    }
    return argc > 1 && image.save(argv[1]) ? 0 : 1;
}
