#include "platform/core/LineSplitter.h"

#include <algorithm>
#include <utility>

namespace pavane
{

std::vector<std::string> LineSplitter::take(const std::string& piece)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < piece.size();) {
        const std::size_t end = std::min(piece.find('\n', at), piece.size());
        const std::size_t count = std::min(end - at, longest - open_.size());
        open_.append(piece, at, count);
        at += count;
        const bool isEnd = at < piece.size() && at == end;
        if (!isEnd && open_.size() < longest)
            continue;
        if (isEnd) {
            ++at;
            if (open_.ends_with('\r'))
                open_.pop_back();
        }
        lines.push_back(std::exchange(open_, {}));
    }
    return lines;
}

std::vector<std::string> LineSplitter::rest()
{
    std::vector<std::string> lines;
    if (!open_.empty())
        lines.push_back(std::exchange(open_, {}));
    return lines;
}

}  // namespace pavane
