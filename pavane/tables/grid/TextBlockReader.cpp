#include "pavane/tables/grid/TextBlockReader.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::string_view fieldEnds = "\t\r\n";

}  // namespace

/// The field that begins with a quote; 0, and nothing taken, when that is never closed. A text has
/// at most one such quote, so the whole costs no more than its length.
int TextBlockReader::takeQuoted()
{
    unquoted_.clear();
    std::size_t at = at_ + 1;
    for (;;) {
        const std::size_t quote = text_.find('"', at);
        if (quote == std::string_view::npos)
            return 0;
        unquoted_.append(text_, at, quote - at);
        at = quote + 1;
        if (at == text_.size() || text_[at] != '"')
            break;
        unquoted_ += '"';
        ++at;
    }
    // what stands between the closing quote and the end of the field belongs to it
    const std::size_t end = std::min(text_.find_first_of(fieldEnds, at), text_.size());
    unquoted_.append(text_, at, end - at);
    field_ = unquoted_;
    at_ = end;
    return 1;
}

int TextBlockReader::next()
{
    if (at_ >= text_.size() && !afterTab_)
        return 0;
    row_ = nextRow_;
    column_ = nextColumn_;
    if (at_ >= text_.size() || text_[at_] != '"' || !takeQuoted()) {
        const std::size_t end = std::min(text_.find_first_of(fieldEnds, at_), text_.size());
        field_ = text_.substr(std::min(at_, text_.size()), end - std::min(at_, text_.size()));
        at_ = end;
    }
    afterTab_ = at_ < text_.size() && text_[at_] == '\t';
    if (afterTab_) {
        ++nextColumn_;
    } else {
        ++nextRow_;
        nextColumn_ = 0;
        if (at_ + 1 < text_.size() && text_[at_] == '\r' && text_[at_ + 1] == '\n')
            ++at_;
    }
    ++at_;
    return 1;
}

}  // namespace pavane
