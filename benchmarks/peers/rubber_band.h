#pragma once

#include <cstdint>
#include <memory>

/// The toolkit's own rubber band over a label that shows a picture (rows of 0x00RRGGBB).
class RubberBandWindow
{
public:
    RubberBandWindow(const std::uint32_t* pixels, int width, int height);
    ~RubberBandWindow();

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
