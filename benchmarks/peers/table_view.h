#pragma once

#include <memory>

/// The toolkit's table of numbers: rows of 30 and columns of 100 pixels, six digits a number, its
/// model made from row and column.
class TableViewWindow
{
public:
    TableViewWindow(int rows, int columns, int width, int height);
    ~TableViewWindow();
    /// Each until the pixels are on the window.
    void repaint();
    void showRow(int row);  ///< as the first one

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

/// The number of a cell, for both sides of a comparison.
double gridNumber(int row, int column);
