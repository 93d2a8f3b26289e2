#include "pavane/trackers/regions/region_label.h"

#include "pavane/trackers/regions/region_values.h"

#include <algorithm>

namespace pavane
{

int takeLabelProperty(std::string_view key, std::string_view value, std::string_view nameKey,
                      AreaLabel& label, RegionNotes& notes)
{
    if (sameWord(key, nameKey)) {
        label.name = fittingName(value);
        return 1;
    }
    if (!sameWord(key, "color"))
        return 0;
    if (!areaColourOf(value, label.colour))
        notes.addOnce(RegionNotes::Kind::changed,
                      "the colour " + quoted(value) + " is not known and not kept");
    return 1;
}

std::string quotedName(const AreaLabel& label, std::string_view quotes, RegionNotes& notes)
{
    std::string name = label.name;
    const auto holds = [&](std::string_view pair) { return name.find_first_of(pair) != name.npos; };
    std::string_view pair = quotes.substr(0, 2);
    for (std::size_t i = 0; i < quotes.size() && holds(pair); i += 2)
        pair = quotes.substr(i, 2);
    if (holds(pair)) {
        pair = quotes.substr(0, 2);
        for (char& c : name)
            c = pair.find(c) == pair.npos ? c : ' ';
        notes.addOnce(RegionNotes::Kind::changed,
                      "names with quotes of all kinds are written with blanks for some of them");
    }
    return pair[0] + name + pair[1];
}

}  // namespace pavane
