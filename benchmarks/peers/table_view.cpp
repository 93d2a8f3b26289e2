#include "table_view.h"

#include <cmath>
#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

namespace
{

constexpr int rowHeight = 30;
constexpr int columnWidth = 100;

class Numbers : public QAbstractTableModel
{
public:
    Numbers(int rows, int columns) : rows_(rows), columns_(columns) {}
    int rowCount(const QModelIndex&) const override { return rows_; }
    int columnCount(const QModelIndex&) const override { return columns_; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return QString::number(gridNumber(index.row(), index.column()), 'g', 6);
        if (role == Qt::TextAlignmentRole)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    }

private:
    int rows_;
    int columns_;
};

}  // namespace

double gridNumber(int row, int column) { return 1000 * std::sin(row * 12.9898 + column * 78.233); }

struct TableViewWindow::Data {
    Data(int rows, int columns) : model(rows, columns) {}
    Numbers model;
    QTableView view;
};

TableViewWindow::TableViewWindow(int rows, int columns, int width, int height)
    : data_(std::make_unique<Data>(rows, columns))
{
    QTableView& view = data_->view;
    view.setModel(&data_->model);
    view.verticalHeader()->setDefaultSectionSize(rowHeight);
    view.horizontalHeader()->setDefaultSectionSize(columnWidth);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    view.setFixedSize(width, height);
    view.show();
    QApplication::processEvents();
}

TableViewWindow::~TableViewWindow() = default;

void TableViewWindow::repaint()
{
    data_->view.viewport()->repaint();
    data_->view.horizontalHeader()->viewport()->repaint();
    data_->view.verticalHeader()->viewport()->repaint();
}

void TableViewWindow::showRow(int row)
{
    data_->view.verticalScrollBar()->setValue(row);
    QApplication::processEvents();
}
