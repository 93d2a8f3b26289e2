#pragma once

#include "tessel/map_header_cards.h"

#include <algorithm>
#include <string>

namespace pavane
{

/// A card a line, as "KEY=value;KEY=value" names them.
inline std::string cardsOf(const std::string& text)
{
    std::string cards, key;
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        end = std::min(text.find(';', at), text.size());
        const std::size_t equal = text.find('=', at);
        key = text.substr(at, equal - at);
        key.resize(8, ' ');
        cards += key + "= " + text.substr(equal + 1, end - equal - 1) + '\n';
    }
    return cards;
}

}  // namespace pavane
