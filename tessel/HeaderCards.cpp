#include "tessel/HeaderCards.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{

namespace
{

constexpr std::size_t cardBytes = 80;
constexpr std::size_t keyBytes = 8;
constexpr std::size_t blockBytes = 2880;
/// Of a header; the longest histories have some ten thousand cards.
constexpr std::size_t mostHeaderBytes = std::size_t{64} << 20;

/// Where the text that starts with a quote ends, behind its closing quote.
std::size_t endOfText(std::string_view field)
{
    for (std::size_t i = 1; i < field.size(); ++i)
        if (field[i] == '\'' && field.substr(i + 1, 1) != "'")
            return i + 1;
        else if (field[i] == '\'')
            ++i;
    return field.size();
}

}  // namespace

std::string_view withoutBlanks(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view valueField(std::string_view card)
{
    const std::string_view key = withoutBlanks(card.substr(0, keyBytes));
    // the blank that belongs behind '=' is left out by some writers
    if (card.size() <= keyBytes + 1 || card[keyBytes] != '=' || key.empty() || key == "COMMENT" ||
        key == "HISTORY" || key == "CONTINUE")
        return {};
    const std::string_view field = withoutBlanks(card.substr(keyBytes + 1));
    if (field.empty() || field[0] == '/')
        return {};
    if (field[0] == '\'')
        return field.substr(0, endOfText(field));
    return field.substr(0, field.find_first_of(" /"));
}

std::string fieldText(std::string_view field)
{
    if (field.empty() || field[0] != '\'')
        return std::string(field);
    std::string text;
    for (std::size_t i = 1; i < field.size(); ++i) {
        if (field[i] == '\'' && ++i >= field.size())
            break;
        text += field[i];
    }
    return std::string(withoutBlanks(text));
}

int fieldNumber(std::string_view field, double& value)
{
    std::string text(field);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == 'D' || c == 'd'; }, 'E');
    double number = 0;
    if (!stoval(text, number) || !std::isfinite(number))
        return 0;
    value = number;
    return 1;
}

void HeaderCards::clear()
{
    cards_.clear();
    first_.clear();
}

int HeaderCards::add(std::string_view card)
{
    if (withoutBlanks(card.substr(0, keyBytes)) == "END")
        return 0;
    cards_.emplace_back(card).resize(cardBytes, ' ');
    return 1;
}

void HeaderCards::finish()
{
    while (!cards_.empty() && withoutBlanks(cards_.back()).empty())
        cards_.pop_back();
    for (std::size_t i = 0; i < cards_.size(); ++i)
        first_.emplace(withoutBlanks(std::string_view(cards_[i]).substr(0, keyBytes)), i);
}

int HeaderCards::read(AFile& file, std::int64_t start, std::int64_t end)
{
    clear();
    std::array<char, blockBytes> block{};
    if (!file.seek(start))
        return 0;
    int ended = 0;
    for (std::int64_t at = start; at < end && !ended; at += static_cast<std::int64_t>(blockBytes)) {
        if (!file.read(block.data(), static_cast<std::int64_t>(blockBytes)))
            return 0;
        for (std::size_t i = 0; i < blockBytes && !ended; i += cardBytes)
            ended = !add({block.data() + i, cardBytes});
    }
    finish();
    return ended;
}

int HeaderCards::take(std::string_view text, std::string& error)
{
    clear();
    if (text.size() > mostHeaderBytes) {
        error = "has a header that is too long";
        return 0;
    }
    // a stray line end may stand in a card of a file, but not before its second card begins
    const bool inLines = text.substr(0, cardBytes + 2).find('\n') != std::string_view::npos;
    for (std::size_t at = 0, next = 0; at < text.size(); at = next) {
        std::string_view card = text.substr(at, cardBytes);
        next = at + cardBytes;
        if (inLines) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            card = text.substr(at, end - at);
            next = end + 1;
            if (card.ends_with('\r'))
                card.remove_suffix(1);
            // what fills the last block behind END is a line too
            const std::size_t length = card.find_last_not_of(' ') + 1;
            card = card.substr(0, std::max(length, std::min(card.size(), cardBytes)));
        }
        const bool isLast = withoutBlanks(card) == "END" || withoutBlanks(card).empty();
        if (inLines ? card.size() > cardBytes : card.size() < cardBytes && !isLast) {
            error = inLines ? "has a header with a line of more than 80 characters"
                            : "has a header that is cut off";
            clear();
            return 0;
        }
        if (!add(card))
            break;
    }
    finish();
    return 1;
}

std::string HeaderCards::value(const std::string& key) const
{
    const auto found = first_.find(key);
    return std::string(found == first_.end() ? std::string_view{}
                                             : valueField(cards_[found->second]));
}

std::string HeaderCards::text(const std::string& key) const { return fieldText(value(key)); }

int HeaderCards::number(const std::string& key, double& value) const
{
    return fieldNumber(this->value(key), value);
}

}  // namespace pavane
