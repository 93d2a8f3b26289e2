#include "qcustomplot_gains.h"

#include <QApplication>
#include <qcustomplot.h>

struct QCustomPlotGains::Data {
    QCustomPlot plot;
};

QCustomPlotGains::QCustomPlotGains(const std::vector<Curve>& curves, int panels, int rows,
                                   double xLow, double xHigh,
                                   const std::vector<std::pair<double, double>>& ranges, int width,
                                   int height, int marker)
{
    if (!qApp) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "bench-gains";
        static char* argv[] = {name, nullptr};
        new QApplication(argc, argv);  // lives as long as the program
    }
    data_ = std::make_unique<Data>();
    QCustomPlot& plot = data_->plot;
    plot.resize(width, height);
    plot.setNotAntialiasedElements(QCP::aeAll);
    plot.plotLayout()->clear();
    std::vector<QCPAxisRect*> rects;
    std::vector<QCPMarginGroup*> columns;
    for (int i = 0; i < panels; ++i) {
        auto* const rect = new QCPAxisRect(&plot);
        plot.plotLayout()->addElement(i % rows, i / rows, rect);
        if (i % rows == 0)
            columns.push_back(new QCPMarginGroup(&plot));
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, columns.back());
        rect->axis(QCPAxis::atBottom)->setTickLabels(i % rows == rows - 1);
        rect->axis(QCPAxis::atBottom)->setRange(xLow, xHigh);
        const auto& range = ranges[static_cast<std::size_t>(i) % ranges.size()];
        rect->axis(QCPAxis::atLeft)->setRange(range.first, range.second);
        rect->axis(QCPAxis::atBottom)->grid()->setVisible(false);
        rect->axis(QCPAxis::atLeft)->grid()->setVisible(false);
        rects.push_back(rect);
    }
    for (const Curve& curve : curves) {
        QCPAxisRect* const rect = rects[static_cast<std::size_t>(curve.panel)];
        QCPGraph* const graph =
            plot.addGraph(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
        graph->setAdaptiveSampling(true);
        graph->setPen(QPen(QColor(QRgb(curve.color)), 0));
        const QColor color{QRgb(curve.color)};
        graph->setScatterStyle(
            marker ? QCPScatterStyle(QCPScatterStyle::ssSquare, color, color, marker)
                   : QCPScatterStyle(QCPScatterStyle::ssDot));
        QVector<QCPGraphData> points(static_cast<int>(curve.x.size()));
        for (std::size_t i = 0; i < curve.x.size(); ++i)
            points[static_cast<int>(i)] = QCPGraphData(curve.x[i], curve.y[i]);
        graph->data()->set(points, true);
    }
}

QCustomPlotGains::~QCustomPlotGains() = default;

void QCustomPlotGains::draw() { data_->plot.replot(QCustomPlot::rpImmediateRefresh); }
