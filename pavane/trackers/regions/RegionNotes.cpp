#include "pavane/trackers/regions/RegionNotes.h"

#include <algorithm>

namespace pavane
{

void RegionNotes::add(Kind kind, const char* what, long long number, const std::string& text)
{
    ++(kind == Kind::leftOut ? leftOut : kind == Kind::damaged ? damaged : changed);
    const std::string line =
        number < 1 ? text : std::string(what) + ' ' + std::to_string(number) + ": " + text;
    if (kind != Kind::changed && firstLoss.empty())
        firstLoss = line;
    if (static_cast<int>(lines.size()) >= mostLines)
        ++more;
    else
        lines.push_back(line);
}

void RegionNotes::addOnce(Kind kind, const std::string& text)
{
    if (std::find(once_.begin(), once_.end(), text) != once_.end())
        return;
    once_.push_back(text);
    add(kind, "", 0, text);
}

std::string excerpt(std::string_view text)
{
    constexpr std::size_t most = 40;
    std::string shown(text.substr(0, most));
    for (char& c : shown)
        if (c < ' ' || c > '~')
            c = '?';
    return text.size() > most ? shown + "..." : shown;
}

std::string quoted(std::string_view text)
{
    std::string marked(1, '"');
    marked += excerpt(text);
    marked += '"';
    return marked;
}

}  // namespace pavane
