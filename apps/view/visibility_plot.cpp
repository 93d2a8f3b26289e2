#include "apps/view/visibility_plot.h"

#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <tuple>

namespace pavane
{

namespace
{

std::vector<std::string> splitAt(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
        end = text.find(at, start);
        parts.push_back(text.substr(start, end == std::string::npos ? end : end - start));
    }
    return parts;
}

/// The telescopes that a name or number stands for, in every subarray that has it.
std::vector<ClosureTelescope> telescopesNamed(const std::vector<ClosureTelescope>& known,
                                              const AUVXFile& file, const std::string& name)
{
    std::vector<ClosureTelescope> found;
    int number = 0;
    const int isNumber = stoval(name, number);
    for (const ClosureTelescope& telescope : known)
        if (telescopeName(file, telescope) == name || (isNumber && telescope.number == number))
            found.push_back(telescope);
    return found;
}

/// Keeps the items whose telescopes hold all those of one entry of the list.
template <class Item, class Telescopes>
int choose(const AUVXFile& file, const std::string& list, std::vector<Item>& items,
           const Telescopes& telescopesOfItem, std::string& error)
{
    std::vector<ClosureTelescope> known;
    for (const Item& item : items)
        for (const ClosureTelescope& telescope : telescopesOfItem(item))
            known.push_back(telescope);
    std::sort(known.begin(), known.end());
    known.erase(std::unique(known.begin(), known.end()), known.end());
    std::vector<char> taken(items.size());
    for (const std::string& entry : splitAt(list, ',')) {
        std::vector<std::vector<ClosureTelescope>> named;
        // a name may itself have a dash
        std::vector<std::string> names = {entry};
        if (telescopesNamed(known, file, entry).empty())
            names = splitAt(entry, '-');
        for (const std::string& name : names) {
            named.push_back(telescopesNamed(known, file, name));
            if (named.back().empty()) {
                error = "has no telescope '" + plainText(name) + "' in what is plotted";
                return 0;
            }
        }
        for (std::size_t i = 0; i < items.size(); ++i) {
            const auto mine = telescopesOfItem(items[i]);
            const auto isMine = [&](const ClosureTelescope& one) {
                return std::find(mine.begin(), mine.end(), one) != mine.end();
            };
            taken[i] = static_cast<char>(
                taken[i] || std::all_of(named.begin(), named.end(), [&](const auto& each) {
                    return std::any_of(each.begin(), each.end(), isMine);
                }));
        }
    }
    std::vector<Item> left;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (taken[i])
            left.push_back(items[i]);
    items = std::move(left);
    if (items.empty())
        error = "has nothing of '" + plainText(list) + "'";
    return !items.empty();
}

std::vector<std::size_t> firstIndices(std::size_t count)
{
    std::vector<std::size_t> indices(count);
    std::iota(indices.begin(), indices.end(), std::size_t{0});
    return indices;
}

/// Steps a reader to its end.
template <class Reader>
int readAll(Reader& reader, const std::function<int(double)>& isGoing, std::string& error)
{
    while (reader.step())
        if (!isGoing(reader.done())) {
            error = "was not read to its end";
            return 0;
        }
    error = reader.error();
    return error.empty();
}

}  // namespace

int chosenBaselines(const AUVXFile& file, const std::string& list,
                    std::vector<UvBaseline>& baselines, std::string& error)
{
    std::erase_if(baselines, [](const UvBaseline& b) { return b.first == b.second; });
    // stored either way a baseline is one
    std::map<std::tuple<int, int, int>, UvBaseline> each;
    for (const UvBaseline& b : baselines) {
        const auto [low, high] = std::minmax(b.first, b.second);
        UvBaseline& one = each[{b.subarray, low, high}];
        one = {b.subarray, low, high, one.groups + b.groups};
    }
    baselines.clear();
    for (const auto& [key, baseline] : each)
        baselines.push_back(baseline);
    if (baselines.empty()) {
        error = "has no baselines";
        return 0;
    }
    const auto telescopes = [](const UvBaseline& b) {
        return std::array<ClosureTelescope, 2>{{{b.subarray, b.first}, {b.subarray, b.second}}};
    };
    return list.empty() || choose(file, list, baselines, telescopes, error);
}

int chosenTriangles(const AUVXFile& file, const std::string& list,
                    std::vector<ClosureTriangle>& triangles, std::string& error)
{
    if (triangles.empty()) {
        error = "has no three telescopes that are all joined";
        return 0;
    }
    if (list.empty()) {
        triangles = independentTriangles(triangles);
        return 1;
    }
    const auto telescopes = [](const ClosureTriangle& t) {
        std::array<ClosureTelescope, 3> found;
        for (std::size_t k = 0; k < 3; ++k)
            found[k] = {t.subarray, t.telescopes[k]};
        return found;
    };
    return choose(file, list, triangles, telescopes, error);
}

int readVisibilityChart(AUVXFile& file, const PlotWish& wish,
                        const std::vector<UvBaseline>& baselines, const UvMarks& marks,
                        const AComponents& model, const std::function<int(double)>& isGoing,
                        PanelChart& chart, std::string& error)
{
    if (wish.kind == DataPlot::closure) {
        auto triangles = closureTriangles(telescopesOf(baselines), baselines);
        if (!chosenTriangles(file, wish.baselines, triangles, error))
            return 0;
        const auto all = firstIndices(triangles.size());
        ClosureReader reader(file, std::move(triangles), marks, {}, model);
        if (!readAll(reader, isGoing, error))
            return 0;
        chart = closureChart(file, reader, all);
        return 1;
    }
    std::vector<UvBaseline> chosen = baselines;
    if (!chosenBaselines(file, wish.baselines, chosen, error))
        return 0;
    const BaselinePlot plot =
        wish.kind == DataPlot::time ? BaselinePlot::time : BaselinePlot::channels;
    BaselineReader reader(file, std::move(chosen), plot, marks, model);
    if (!readAll(reader, isGoing, error))
        return 0;
    chart = baselineChart(file, reader, plot, firstIndices(reader.baselines().size()));
    return 1;
}

}  // namespace pavane
