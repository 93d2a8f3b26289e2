#include "pavane/calibration/uv_colours.h"

#include "pavane/calibration/visibility_charts.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <tuple>

namespace pavane
{

namespace
{

/// Any two, and the grey of what has none, differ by 24 in CIELAB at least, to eyes without each
/// kind of cones, too (the model of color_vision.cpp); dark on white.
constexpr COLORREF classColors[mostUvColours] = {
    RGB(0, 70, 140), RGB(255, 120, 0), RGB(195, 0, 0),     RGB(105, 180, 255),
    RGB(75, 30, 0),  RGB(120, 0, 240), RGB(180, 120, 75),  RGB(0, 120, 225),
    RGB(45, 45, 60), RGB(45, 0, 150),  RGB(105, 120, 150), RGB(105, 90, 75)};
constexpr COLORREF othersColor = RGB(190, 190, 190);

constexpr const char* colourNames[] = {"none", "baseline", "telescope", "if", "source"};

CString nameOf(const AUVXFile& file, UvColour by, const UvPair& what)
{
    switch (by) {
    case UvColour::baseline:
        return baselineName(file, {what.subarray, what.first, what.second, 0});
    case UvColour::telescope: {
        const CString name = telescopeName(file, {what.subarray, what.first});
        return what.subarray == 1 ? name : name + "/" + std::to_string(what.subarray);
    }
    case UvColour::ifs:
        return "IF " + std::to_string(what.first + 1);
    case UvColour::source: {
        const UvSource* const source = file.source(what.first);
        const CString name = source ? plainText(source->name) : CString();
        if (what.first < 0)
            return "unknown";
        return name.empty() ? "source " + std::to_string(what.first) : name;
    }
    case UvColour::none:
        break;
    }
    return {};
}

auto orderOf(const UvPair& what) { return std::tuple(what.subarray, what.first, what.second); }

}  // namespace

std::vector<std::size_t> UvColourKey::drawingOrder() const
{
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        const int isOthersA = entries[a].color == othersColor;
        const int isOthersB = entries[b].color == othersColor;
        return isOthersA != isOthersB ? isOthersA > isOthersB
                                      : entries[a].points > entries[b].points;
    });
    return order;
}

UvColourKey uvColours(const AUVXFile& file, UvColour by, const std::vector<UvClass>& classes)
{
    UvColourKey key;
    std::vector<std::size_t> chosen(classes.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    const auto isBefore = [&](std::size_t a, std::size_t b) {
        return orderOf(classes[a].what) < orderOf(classes[b].what);
    };
    if (classes.size() > mostUvColours) {
        std::sort(chosen.begin(), chosen.end(), [&](std::size_t a, std::size_t b) {
            return classes[a].points != classes[b].points ? classes[a].points > classes[b].points
                                                          : isBefore(a, b);
        });
        chosen.resize(mostUvColours);
    }
    std::sort(chosen.begin(), chosen.end(), isBefore);
    key.entryOfClass.assign(classes.size(), static_cast<std::uint8_t>(chosen.size()));
    for (const std::size_t i : chosen) {
        key.entryOfClass[i] = static_cast<std::uint8_t>(key.entries.size());
        key.entries.push_back({classColors[key.entries.size()], nameOf(file, by, classes[i].what),
                               classes[i].points});
    }
    if (classes.size() == chosen.size())
        return key;
    UvColourKey::Entry others = {othersColor,
                                 std::to_string(classes.size() - chosen.size()) + " others", 0};
    for (std::size_t i = 0; i < classes.size(); ++i)
        if (key.entryOfClass[i] == chosen.size())
            others.points += classes[i].points;
    key.entries.push_back(std::move(others));
    return key;
}

const char* uvColourName(UvColour by) { return colourNames[static_cast<std::size_t>(by)]; }

int uvColourOf(const std::string& name, UvColour& by)
{
    const auto* const found = std::find(std::begin(colourNames), std::end(colourNames), name);
    if (found == std::end(colourNames))
        return 0;
    by = static_cast<UvColour>(found - std::begin(colourNames));
    return 1;
}

}  // namespace pavane
