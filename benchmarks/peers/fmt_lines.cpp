#include "fmt_lines.h"

#include <fmt/format.h>

#include <cstdio>

namespace
{

constexpr std::size_t blockSize = 64 * 1024;

}  // namespace

/// Lines of shortest digits into blocks of memory, each written when it is full.
void writeWithFmt(const std::vector<double>& cells, int columns, const char* file)
{
    std::FILE* const out = std::fopen(file, "wb");
    if (!out)
        return;
    fmt::memory_buffer block;
    const auto rows = cells.size() / static_cast<std::size_t>(columns);
    for (std::size_t r = 0; r < rows; ++r) {
        fmt::format_to(std::back_inserter(block), "{}", r + 1);
        for (int c = 0; c < columns; ++c)
            fmt::format_to(
                std::back_inserter(block), "\t{}",
                cells[r * static_cast<std::size_t>(columns) + static_cast<std::size_t>(c)]);
        block.push_back('\n');
        if (block.size() >= blockSize) {
            (void)std::fwrite(block.data(), 1, block.size(), out);
            block.clear();
        }
    }
    (void)std::fwrite(block.data(), 1, block.size(), out);
    (void)std::fclose(out);
}
