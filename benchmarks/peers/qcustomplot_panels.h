#pragma once

#include <memory>
#include <vector>

/// Panels of one curve each, column by column, in a grid of axis rectangles; labels of x at the
/// bottom only. The data are handed over when it is made.
class QCustomPlotPanels
{
public:
    QCustomPlotPanels(const std::vector<double>& x, const std::vector<std::vector<double>>& y,
                      int rows, int width, int height, bool antialiased);
    ~QCustomPlotPanels();
    void draw();
    void change(int panel, const std::vector<double>& x, const std::vector<double>& y);

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
