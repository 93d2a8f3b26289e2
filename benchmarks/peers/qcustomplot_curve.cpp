#include "curve_peers.h"

#include <QApplication>
#include <qcustomplot.h>

struct QCustomPlotCurve::Data {
    QCustomPlot plot;
};

QCustomPlotCurve::QCustomPlotCurve(const double* x, const double* y, std::int64_t n, int width,
                                   int height, bool antialiased, bool dots)
{
    if (!qApp) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "bench-curves";
        static char* argv[] = {name, nullptr};
        new QApplication(argc, argv);  // lives as long as the program
    }
    data_ = std::make_unique<Data>();
    QCustomPlot& plot = data_->plot;
    plot.resize(width, height);
    if (antialiased)
        plot.setAntialiasedElements(QCP::aeAll);
    else
        plot.setNotAntialiasedElements(QCP::aeAll);
    plot.xAxis->setVisible(false);
    plot.yAxis->setVisible(false);
    plot.axisRect()->setAutoMargins(QCP::msNone);
    plot.axisRect()->setMargins(QMargins(0, 0, 0, 0));
    QCPGraph* const graph = plot.addGraph();
    graph->setAdaptiveSampling(true);
    graph->setPen(QPen(Qt::black, antialiased ? 1 : 0));
    QVector<QCPGraphData> points(static_cast<int>(n));
    for (int i = 0; i < points.size(); ++i)
        points[i] = QCPGraphData(x[i], y[i]);
    graph->data()->set(points, !dots);
    if (dots) {
        graph->setLineStyle(QCPGraph::lsNone);
        graph->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssSquare, Qt::black, Qt::black, 2));
    }
    plot.xAxis->setRange(0, 1);
    plot.yAxis->setRange(-1.2, 1.2);
}

QCustomPlotCurve::~QCustomPlotCurve() = default;

void QCustomPlotCurve::draw() { data_->plot.replot(QCustomPlot::rpImmediateRefresh); }
