#include "pavane/tables/freq/group_look.h"

#include "tessel/uvfits/StoredNumber.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace pavane
{

namespace
{

/// IFs that a message names before it says that there are more.
constexpr int mostNamed = 12;

void appendIf(int index, int count, std::string& list)
{
    if (count < mostNamed)
        list += (list.empty() ? "IF" : ", IF") + std::to_string(index + 1);
    else if (count == mostNamed)
        list += " ...";
}

}  // namespace

std::string groupRangeText(const ABitArray& group)
{
    const int first = group.firstOne();
    const int last = lastOne(group);
    if (first < 0)
        return {};
    const std::string text = "IF" + std::to_string(first + 1);
    return first == last ? text : "  " + text + "..IF" + std::to_string(last + 1);
}

std::string groupNameText(int group) { return "  Frequency group #" + std::to_string(group + 1); }

std::uint32_t groupColor(int group, int dark)
{
    // shades that take turns between blue and yellow, and in lightness
    static constexpr std::array<std::uint32_t, 6> light = {0xf0c89a, 0x8fe4f4, 0xb48fd6,
                                                           0xc8f0d2, 0x6fb0ee, 0xe6e6e6};
    static constexpr std::array<std::uint32_t, 6> deep = {0x824614, 0x005a78, 0x501e3c,
                                                          0x5a6e3c, 0x143c8c, 0x464646};
    const auto& colors = dark ? deep : light;
    return colors[static_cast<std::size_t>(group < 0 ? 0 : group) % colors.size()];
}

std::string megahertzText(double hertz)
{
    if (!std::isfinite(hertz))
        return {};
    constexpr int places = 6;
    std::string text = storedText({hertz, 0}, places);
    if (text.find('e') != std::string::npos)
        return text;
    std::size_t point = text.find('.');
    if (point == std::string::npos) {
        point = text.size();
        text += '.';
    }
    const std::size_t decimals = text.size() - point - 1;
    return decimals < places ? text.append(places - decimals, '0') : text;
}

int areComplete(const AFreqGroupArray& groups, int& hasGroups, std::string& question)
{
    question.clear();
    hasGroups = groups.count() > 0;
    if (!hasGroups) {
        question = "There is no frequency group.";
        return 0;
    }
    std::string none;
    std::string several;
    int nones = 0;
    int severals = 0;
    for (int i = 0; i < groups.FqTbl().ifCount(); ++i) {
        int holders = 0;
        for (int g = 0; g < groups.count(); ++g)
            holders += groups(g).get(i);
        if (holders == 0)
            appendIf(i, nones++, none);
        else if (holders > 1)
            appendIf(i, severals++, several);
    }
    if (nones > 0)
        question = "In no group: " + none + ".";
    if (severals > 0)
        question +=
            (nones > 0 ? "\n" : "") + std::string("In more than one group: ") + several + ".";
    return question.empty();
}

}  // namespace pavane
