#pragma once

#include <memory>

/// A map as a coloured surface drawn by VTK into a window of 1200 x 800 that is never shown.
class VtkSurface
{
public:
    VtkSurface(const float* cells, int size);
    ~VtkSurface();
    /// Turns by some degrees and draws; waits until the picture is there.
    void turn(double degrees);

private:
    struct Pipeline;
    std::unique_ptr<Pipeline> pipeline_;
};
