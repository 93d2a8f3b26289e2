#pragma once

#include <memory>

/// A colour map of n x n cells in a plot window of the other library, x and y from 0 to 1. As it
/// comes it interpolates; without, a pixel shows one of the cells that share it.
class QCustomPlotMap
{
public:
    QCustomPlotMap(const float* cells, int n, int width, int height, bool interpolates);
    ~QCustomPlotMap();
    /// Shows the range and waits until it is on the window.
    void show(double xMin, double xMax, double yMin, double yMax);
    /// One of two gradients by turns, or another range of the values, in the same way.
    void showColours(int i);
    void showValues(double low, double high);

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
