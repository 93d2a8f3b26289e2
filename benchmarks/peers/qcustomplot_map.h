#pragma once

#include <memory>

/// A colour map of n x n cells in a plot window of the other library, x and y from 0 to 1.
class QCustomPlotMap
{
public:
    QCustomPlotMap(const float* cells, int n, int width, int height);
    ~QCustomPlotMap();
    /// Shows the range and waits until it is on the window.
    void show(double xMin, double xMax, double yMin, double yMax);

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
