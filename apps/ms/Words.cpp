#include "apps/ms/Words.h"

#include "apps/ms/Failure.h"
#include "apps/ms/text.h"

#include <algorithm>

namespace pavane_ms
{

Words::Words(const std::vector<std::string>& words, const std::vector<std::string>& known,
             std::size_t fewest, std::size_t most)
{
    const auto isKnown = [&](const std::string& name) {
        return std::find(known.begin(), known.end(), name) != known.end();
    };
    int isOver = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (isOver || word.compare(0, 2, "--") != 0) {
            names_.push_back(word);
            continue;
        }
        if (word == "--") {
            isOver = 1;
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(2, equals == std::string::npos ? equals : equals - 2);
        if (isKnown(name) && equals == std::string::npos)
            values_[name].emplace_back();
        else if (!isKnown(name + '='))
            throw WrongUse("there is no option " + word);
        else if (equals != std::string::npos)
            values_[name].push_back(word.substr(equals + 1));
        else if (i + 1 < words.size())
            values_[name].push_back(words[++i]);
        else
            throw WrongUse("the option " + word + " needs a value");
    }
    if (names_.size() < fewest || names_.size() > most)
        throw WrongUse(names_.size() < fewest ? "a name is missing"
                                              : "there is a name too many: " + names_[most]);
    for (const std::string& name : names_)
        if (name.empty())
            throw WrongUse("a name is empty");
}

std::string Words::value(const std::string& option) const
{
    const auto found = values_.find(option);
    return found == values_.end() ? std::string() : found->second.back();
}

std::vector<std::string> Words::all(const std::string& option) const
{
    const auto found = values_.find(option);
    return found == values_.end() ? std::vector<std::string>() : found->second;
}

Selection::Selection(const Words& words)
{
    if (words.has("column"))
        column = words.value("column");
    if (words.has("ifs")) {
        ifs = readNumbers(words.value("ifs"));
        if (ifs.empty())
            throw WrongUse("--ifs takes numbers such as 1-4,6, not " + words.value("ifs"));
    }
    if (words.has("times")) {
        const std::string text = words.value("times");
        const auto parts = split(text, ',');
        if (parts.size() != 2 || (!parts[0].empty() && !readNumber(parts[0], start)) ||
            (!parts[1].empty() && !readNumber(parts[1], end)) || !(start < end))
            throw WrongUse("--times takes two days, START,END, not " + text);
    }
    if (words.has("hands")) {
        const std::string text = words.value("hands");
        for (const std::string_view hand : split(text, ','))
            hands.emplace_back(trimmed(hand));
        if (std::count(hands.begin(), hands.end(), std::string()) > 0)
            throw WrongUse("--hands takes hands such as RR,LL, not " + text);
    }
    source = words.value("source");
    leavesOut = words.has("leave-out");
}

std::string safePath(const std::string& name)
{
    return name.empty() || name[0] == '/' || name.compare(0, 2, "./") == 0 ? name : "./" + name;
}

}  // namespace pavane_ms
