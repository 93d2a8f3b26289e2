#include "qcustomplot_panels.h"

#include <QApplication>
#include <qcustomplot.h>

struct QCustomPlotPanels::Data {
    QCustomPlot plot;
    std::vector<QCPGraph*> graphs;
};

namespace
{

void hand(QCPGraph& graph, const std::vector<double>& x, const std::vector<double>& y)
{
    QVector<QCPGraphData> points(static_cast<int>(x.size()));
    for (std::size_t i = 0; i < x.size(); ++i)
        points[static_cast<int>(i)] = QCPGraphData(x[i], y[i]);
    graph.data()->set(points, true);
}

}  // namespace

QCustomPlotPanels::QCustomPlotPanels(const std::vector<double>& x,
                                     const std::vector<std::vector<double>>& y, int rows, int width,
                                     int height, bool antialiased)
{
    if (!qApp) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "bench-multi";
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
    plot.plotLayout()->clear();
    std::vector<QCPMarginGroup*> columns;
    for (int i = 0; i < static_cast<int>(y.size()); ++i) {
        const int row = i % rows;
        auto* const rect = new QCPAxisRect(&plot);
        plot.plotLayout()->addElement(row, i / rows, rect);
        if (row == 0)
            columns.push_back(new QCPMarginGroup(&plot));
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, columns.back());
        rect->axis(QCPAxis::atBottom)->setTickLabels(row == rows - 1);
        rect->axis(QCPAxis::atBottom)->setRange(0, 1);
        rect->axis(QCPAxis::atLeft)->setRange(-1.2, 1.2);
        rect->axis(QCPAxis::atLeft)->setLabel("Flux");
        rect->axis(QCPAxis::atBottom)->grid()->setVisible(false);
        rect->axis(QCPAxis::atLeft)->grid()->setVisible(false);
        QCPGraph* const graph =
            plot.addGraph(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
        graph->setAdaptiveSampling(true);
        graph->setPen(QPen(Qt::blue, antialiased ? 1 : 0));
        hand(*graph, x, y[static_cast<std::size_t>(i)]);
        data_->graphs.push_back(graph);
    }
}

QCustomPlotPanels::~QCustomPlotPanels() = default;

void QCustomPlotPanels::draw() { data_->plot.replot(QCustomPlot::rpImmediateRefresh); }

void QCustomPlotPanels::change(int panel, const std::vector<double>& x,
                               const std::vector<double>& y)
{
    hand(*data_->graphs[static_cast<std::size_t>(panel)], x, y);
}
