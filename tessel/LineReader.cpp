#include "tessel/LineReader.h"

#include <algorithm>
#include <string_view>

namespace pavane
{

/// Brings the next block of the file. 0 when there is none.
int LineReader::fill()
{
    const auto wanted = std::min<std::int64_t>(left_, static_cast<std::int64_t>(longestLine));
    block_.resize(static_cast<std::size_t>(wanted));
    at_ = 0;
    if (wanted > 0 && !file_.read(block_.data(), wanted)) {
        block_.clear();
        fault_ = "cannot be read";
    }
    left_ -= wanted;
    return !block_.empty();
}

int LineReader::next(std::string& line)
{
    line.clear();
    int ended = 0;
    int begun = 0;
    while (!ended && fault_.empty() && (at_ < block_.size() || fill())) {
        begun = 1;
        const auto from = block_.begin() + static_cast<std::ptrdiff_t>(at_);
        const auto end = std::find(from, block_.end(), '\n');
        ended = end != block_.end();
        line.append(from, end);
        at_ += static_cast<std::size_t>(end - from) + static_cast<std::size_t>(ended);
        if (line.size() > longestLine)
            fault_ = "has a line " + std::to_string(number_ + 1) + " of more than 64 KiB";
    }
    if (!begun || !fault_.empty())
        return 0;
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (++number_ == 1 && line.starts_with(mark))
        line.erase(0, mark.size());
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return 1;
}

}  // namespace pavane
