#include "rubber_band.h"

#include <QLabel>
#include <QMouseEvent>
#include <QRubberBand>

namespace
{

class BandLabel : public QLabel
{
public:
    void mousePressEvent(QMouseEvent* event) override
    {
        origin_ = event->pos();
        band_.setGeometry(QRect(origin_, QSize()));
        band_.show();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        band_.setGeometry(QRect(origin_, event->pos()).normalized());
    }
    void mouseReleaseEvent(QMouseEvent*) override { band_.hide(); }

private:
    QPoint origin_;
    QRubberBand band_{QRubberBand::Rectangle, this};
};

}  // namespace

struct RubberBandWindow::Data {
    BandLabel label;
};

RubberBandWindow::RubberBandWindow(const std::uint32_t* pixels, int width, int height)
    : data_(std::make_unique<Data>())
{
    const QImage image(reinterpret_cast<const uchar*>(pixels), width, height, width * 4,
                       QImage::Format_RGB32);
    data_->label.setPixmap(QPixmap::fromImage(image.copy()));
    data_->label.setFixedSize(width, height);
    data_->label.move(0, 0);
    data_->label.show();
}

RubberBandWindow::~RubberBandWindow() = default;
