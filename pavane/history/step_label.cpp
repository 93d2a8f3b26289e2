#include "pavane/history/step_label.h"

#include <algorithm>

namespace pavane
{

std::string withStep(std::string_view text, std::string_view end, std::string_view step)
{
    const std::size_t at = std::min(text.find(end), text.size());
    std::string whole(text.substr(0, at));
    if (!step.empty()) {
        whole += ' ';
        whole += step;
        char& first = whole[at + 1];
        if (first >= 'A' && first <= 'Z')
            first = static_cast<char>(first - 'A' + 'a');
    }
    whole += text.substr(at);
    return whole;
}

std::string menuTextOfStep(std::string_view text, std::string_view step)
{
    std::string name;
    for (const char c : step) {
        name += (c >= 0 && c < ' ') || c == '\x7f' ? ' ' : c;
        if (c == '&')
            name += c;
    }
    return withStep(text, "\t", name);
}

}  // namespace pavane
