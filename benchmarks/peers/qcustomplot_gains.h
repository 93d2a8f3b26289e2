#pragma once

#include <memory>
#include <utility>
#include <vector>

/// Panels of several curves with points and lines each, column by column, over one x direction.
class QCustomPlotGains
{
public:
    struct Curve {
        int panel;
        unsigned color;  ///< 0xRRGGBB
        std::vector<double> x, y;
    };
    /// `ranges`: low and high of panels in turn. Points are squares of so many pixels, with 0
    /// single pixels.
    QCustomPlotGains(const std::vector<Curve>& curves, int panels, int rows, double xLow,
                     double xHigh, const std::vector<std::pair<double, double>>& ranges, int width,
                     int height, int marker);
    ~QCustomPlotGains();
    void draw();

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
