// Feeds any bytes to the reader of plain FITS images, which needs no process of its own, and to
// that of headers in memory.
#include "tessel/fits_map.h"
#include "tessel/map_header_cards.h"
#include "tessel/rgb_map.h"
#include "tests/fuzz/input_file.h"

#include <algorithm>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::string_view packed = "ZIMAGE";
    if (std::search(data, data + size, packed.begin(), packed.end()) != data + size)
        return -1;  // packed_fuzz.cpp
    pavane::MapHeader header;
    std::string why;
    const std::string cards(reinterpret_cast<const char*>(data), size);
    if (!pavane::readMapHeader(cards, 2, 3, header, why, 0) && why.empty())
        std::abort();
    const pavane::InputFile input(data, size);
    pavane::FitsMap map;
    std::string error;
    (void)pavane::readFitsMap(input.name(), 0, map, error);
    pavane::RgbMap colours;
    (void)pavane::readRgbMap(input.name(), colours, error);
    return 0;
}
