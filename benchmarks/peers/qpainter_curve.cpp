#include "curve_peers.h"

#include <QImage>
#include <QPainter>

#include <vector>

std::uint32_t drawWithQPainter(const double* x, const double* y, std::int64_t n, int width,
                               int height)
{
    // the points are mapped first, as any program that plots has to
    static std::vector<QPoint> points;
    points.resize(static_cast<std::size_t>(n));
    for (std::int64_t i = 0; i < n; ++i)
        points[static_cast<std::size_t>(i)] =
            QPoint(static_cast<int>(x[i] * (width - 1) + 0.5),
                   static_cast<int>((1.2 - y[i]) / 2.4 * (height - 1) + 0.5));
    static QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 0));
    painter.drawPolyline(points.data(), static_cast<int>(n));
    painter.end();
    return image.pixel(width / 2, height / 2);
}
