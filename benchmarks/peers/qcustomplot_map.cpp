#include "qcustomplot_map.h"

#include <cstddef>
#include <QApplication>
#include <qcustomplot.h>

struct QCustomPlotMap::Data {
    QCustomPlot plot;
    QCPColorMap* map = nullptr;
};

QCustomPlotMap::QCustomPlotMap(const float* cells, int n, int width, int height, bool interpolates)
    : data_(std::make_unique<Data>())
{
    QCustomPlot& plot = data_->plot;
    auto* const map = new QCPColorMap(plot.xAxis, plot.yAxis);  // owned by the plot
    data_->map = map;
    map->data()->setSize(n, n);
    map->data()->setRange(QCPRange(0, 1), QCPRange(0, 1));
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x)
            map->data()->setCell(
                x, y,
                static_cast<double>(
                    cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(n) +
                          static_cast<std::size_t>(x)]));
    map->setGradient(QCPColorGradient::gpHot);
    map->setInterpolate(interpolates);
    map->rescaleDataRange(true);
    plot.resize(width, height);
    plot.show();
    QCoreApplication::processEvents();
}

QCustomPlotMap::~QCustomPlotMap() = default;

void QCustomPlotMap::show(double xMin, double xMax, double yMin, double yMax)
{
    data_->plot.xAxis->setRange(xMin, xMax);
    data_->plot.yAxis->setRange(yMin, yMax);
    data_->plot.replot(QCustomPlot::rpImmediateRefresh);
    QCoreApplication::processEvents();
}

void QCustomPlotMap::showColours(int i)
{
    data_->map->setGradient(i % 2 ? QCPColorGradient::gpHot : QCPColorGradient::gpJet);
    data_->plot.replot(QCustomPlot::rpImmediateRefresh);
    QCoreApplication::processEvents();
}

void QCustomPlotMap::showValues(double low, double high)
{
    data_->map->setDataRange(QCPRange(low, high));
    data_->plot.replot(QCustomPlot::rpImmediateRefresh);
    QCoreApplication::processEvents();
}
