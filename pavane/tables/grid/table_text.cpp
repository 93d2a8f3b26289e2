#include "pavane/tables/grid/table_text.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

/// Gathers short texts into blocks.
class BlockWriter
{
public:
    explicit BlockWriter(TextSink& sink) : sink_(sink) { block_.reserve(textBlock); }
    int put(const CString& text)
    {
        if (block_.size() + text.size() > textBlock && !flush())
            return 0;
        if (text.size() > textBlock)
            return sink_.write(text.data(), text.size());
        block_ += text;
        return 1;
    }
    int put(char character)
    {
        if (block_.size() == textBlock && !flush())
            return 0;
        block_ += character;
        return 1;
    }
    int flush()
    {
        const int done = block_.empty() || sink_.write(block_.data(), block_.size());
        block_.clear();
        return done;
    }

private:
    TextSink& sink_;
    CString block_;
};

/// Deliberate: header row and column are written even when the table shows none, and nothing is
/// quoted; what reads these texts counts on both.
int putLine(TableTexts& table, int row, int firstColumn, int lastColumn, CString& text,
            BlockWriter& writer)
{
    if (!table.text({row, 0}, text) || !writer.put(text) || !writer.put('\t'))
        return 0;
    for (int column = firstColumn; column <= lastColumn; ++column) {
        if (column > firstColumn && !writer.put('\t'))
            return 0;
        if (!table.text({row, column}, text) || !writer.put(text))
            return 0;
    }
    return writer.put('\n');
}

}  // namespace

int writeTableText(TableTexts& table, const CellRange& cells, TextSink& sink)
{
    BlockWriter writer(sink);
    CString text;  // one for all cells
    const auto lastColumn = [&] { return std::min(cells.lastColumn, table.extent().lastColumn); };
    if (!putLine(table, 0, cells.firstColumn, lastColumn(), text, writer))
        return 0;
    for (std::int64_t row = cells.firstRow; row <= std::min(cells.lastRow, table.extent().rows);
         ++row)
        if (!putLine(table, static_cast<int>(row), cells.firstColumn, lastColumn(), text, writer))
            return 0;
    return writer.flush();
}

}  // namespace pavane
