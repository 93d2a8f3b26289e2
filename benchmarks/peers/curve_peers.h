#pragma once

#include <cstdint>
#include <memory>

/// Draws n points (x 0 to 1, y -1.2 to 1.2) as one polyline, one pixel wide, into an image of its
/// own; the returned pixel keeps the work from being dropped.
std::uint32_t drawWithQPainter(const double* x, const double* y, std::int64_t n, int width,
                               int height);

/// A plot of the same curve, or of its points as dots of two pixels, adaptive sampling on, with a
/// hard or an antialiased pen. The data are handed over, and sorted along x, when it is made.
class QCustomPlotCurve
{
public:
    QCustomPlotCurve(const double* x, const double* y, std::int64_t n, int width, int height,
                     bool antialiased = false, bool points = false);
    ~QCustomPlotCurve();
    void draw();

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
