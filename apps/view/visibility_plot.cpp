#include "apps/view/visibility_plot.h"

#include "pavane/tables/grid/text_fold.h"
#include "tessel/plain_text.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

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

/// The telescopes that a name stands for, else a name in other letters, else a number, in every
/// subarray that has it; "BR/2" is that of subarray 2, as captions have it.
std::vector<ClosureTelescope> telescopesNamed(const std::vector<ClosureTelescope>& known,
                                              const AUVXFile& file, const std::string& text)
{
    const std::string name(trimmed(text, " "));
    const std::string small = smallLetters(name);
    std::vector<ClosureTelescope> found;
    const auto look = [&](const auto& isNamed) {
        if (found.empty())
            std::copy_if(known.begin(), known.end(), std::back_inserter(found), isNamed);
    };
    int number = 0;
    look([&](const ClosureTelescope& t) { return telescopeName(file, t) == name; });
    look([&](const ClosureTelescope& t) { return smallLetters(telescopeName(file, t)) == small; });
    if (stoval(name, number))
        look([&](const ClosureTelescope& t) { return t.number == number; });
    const std::size_t slash = name.rfind('/');
    if (found.empty() && slash != std::string::npos && stoval(name.substr(slash + 1), number)) {
        found = telescopesNamed(known, file, name.substr(0, slash));
        std::erase_if(found, [&](const ClosureTelescope& t) { return t.subarray != number; });
    }
    return found;
}

/// What stands between two commas of a list: telescopes, each with all that it may be.
using Entry = std::vector<std::vector<ClosureTelescope>>;

int readEntries(const AUVXFile& file, const std::string& list,
                const std::vector<ClosureTelescope>& known, std::vector<Entry>& entries,
                std::string& error)
{
    for (const std::string& text : splitAt(list, ',')) {
        if (trimmed(text, " ").empty())
            continue;
        Entry& entry = entries.emplace_back();
        // a name may itself have a dash
        std::vector<std::string> names = {text};
        if (telescopesNamed(known, file, text).empty())
            names = splitAt(text, '-');
        for (const std::string& name : names) {
            entry.push_back(telescopesNamed(known, file, name));
            if (entry.back().empty()) {
                error = "has no telescope '" + plainText(name) + "' in what is plotted";
                return 0;
            }
        }
    }
    return 1;
}

/// Keeps the items whose telescopes hold all those of one entry of the list.
template <class Item, class Telescopes>
void keepNamed(const std::vector<Entry>& entries, std::vector<Item>& items,
               const Telescopes& telescopesOfItem)
{
    std::erase_if(items, [&](const Item& item) {
        const auto mine = telescopesOfItem(item);
        const auto isMine = [&](const ClosureTelescope& one) {
            return std::find(mine.begin(), mine.end(), one) != mine.end();
        };
        return std::none_of(entries.begin(), entries.end(), [&](const Entry& entry) {
            return std::all_of(entry.begin(), entry.end(), [&](const auto& each) {
                return std::any_of(each.begin(), each.end(), isMine);
            });
        });
    });
}

/// Groups of a baseline, stored either way.
std::int64_t groupsOf(const std::vector<UvBaseline>& baselines, int subarray, int a, int b)
{
    std::int64_t groups = 0;
    for (const UvBaseline& one : baselines)
        if (one.subarray == subarray && std::minmax(one.first, one.second) == std::minmax(a, b))
            groups += one.groups;
    return groups;
}

/// The quads that an entry of four telescopes names, in its order, in each subarray that has them.
void addQuads(const Entry& entry, const std::vector<UvBaseline>& baselines,
              std::vector<ClosureQuad>& quads)
{
    for (const ClosureTelescope& first : entry.front()) {
        ClosureQuad quad = {first.subarray, {-1, -1, -1, -1}, 0};
        for (std::size_t k = 0; k < quad.telescopes.size(); ++k)
            for (const ClosureTelescope& one : entry[k])
                if (one.subarray == first.subarray)
                    quad.telescopes[k] = one.number;
        quad.telescopes[0] = first.number;
        const auto [a, b, c, d] = quad.telescopes;
        const std::set<int> different = {a, b, c, d};
        const auto groups = [&](int from, int to) {
            return groupsOf(baselines, quad.subarray, from, to);
        };
        quad.points = std::min({groups(a, b), groups(c, d), groups(a, c), groups(b, d)});
        if (quad.points > 0 && different.size() == quad.telescopes.size())
            quads.push_back(quad);
    }
}

std::string nothingOf(const std::string& list)
{
    return "has nothing of '" + plainText(list) + "'";
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
    std::vector<Entry> entries;
    if (list.empty() || !readEntries(file, list, telescopesOf(baselines), entries, error))
        return list.empty();
    keepNamed(entries, baselines, [](const UvBaseline& b) {
        return std::array<ClosureTelescope, 2>{{{b.subarray, b.first}, {b.subarray, b.second}}};
    });
    if (baselines.empty())
        error = nothingOf(list);
    return !baselines.empty();
}

namespace
{

std::array<ClosureTelescope, 3> telescopesOfTriangle(const ClosureTriangle& t)
{
    std::array<ClosureTelescope, 3> found;
    for (std::size_t k = 0; k < 3; ++k)
        found[k] = {t.subarray, t.telescopes[k]};
    return found;
}

}  // namespace

int chosenClosures(const AUVXFile& file, const std::string& list,
                   const std::vector<UvBaseline>& baselines, ClosureChoice& choice,
                   std::string& error)
{
    const std::vector<ClosureTelescope> telescopes = telescopesOf(baselines);
    choice = ClosureChoice();
    std::vector<Entry> entries;
    if (list.empty())
        choice.independent = 1;
    else if (!readEntries(file, list, telescopes, entries, error))
        return 0;
    for (const Entry& entry : entries)
        if (entry.size() == 4)
            addQuads(entry, baselines, choice.quads);
    std::erase_if(entries, [](const Entry& entry) { return entry.size() == 4; });
    if (list.empty() || !entries.empty()) {
        choice.triangles = closureTriangles(telescopes, baselines);
        if (choice.triangles.empty()) {
            error = whyNoTriangles(baselines);
            return 0;
        }
    }
    if (!list.empty())
        keepNamed(entries, choice.triangles, telescopesOfTriangle);
    const int isSome = !choice.triangles.empty() || !choice.quads.empty();
    if (!isSome)
        error = nothingOf(list);
    return isSome;
}

int keepJoined(const std::vector<ClosureTriangle>& chosen, const std::vector<UvBaseline>& baselines,
               ClosureChoice& choice, std::string& error)
{
    std::set<std::tuple<int, int, int>> joined;
    for (const UvBaseline& b : baselines)
        if (b.groups > 0)
            joined.emplace(b.subarray, std::min(b.first, b.second), std::max(b.first, b.second));
    choice = ClosureChoice(chosen);
    std::erase_if(choice.triangles, [&](const ClosureTriangle& t) {
        const auto isJoined = [&](std::size_t i, std::size_t k) {
            const auto [low, high] = std::minmax(t.telescopes[i], t.telescopes[k]);
            return joined.contains({t.subarray, low, high});
        };
        return !isJoined(0, 1) || !isJoined(1, 2) || !isJoined(0, 2);
    });
    if (choice.triangles.empty())
        error = "has none of the chosen triangles in what is marked";
    return !choice.triangles.empty();
}

int chosenAmplitudes(const std::vector<UvBaseline>& baselines, ClosureChoice& choice,
                     std::string& error)
{
    choice = ClosureChoice(closureQuads(telescopesOf(baselines), baselines), 1);
    if (choice.quads.empty())
        error = whyNoQuads(baselines);
    return !choice.quads.empty();
}

int readVisibilityChart(AUVXFile& file, const PlotWish& wish,
                        const std::vector<UvBaseline>& baselines, const UvMarks& marks,
                        const AComponents& model, const std::function<int(double)>& isGoing,
                        PanelChart& chart, std::string& error)
{
    if (wish.kind == DataPlot::closure) {
        ClosureChoice choice = ClosureChoice::ofFile();
        if (!wish.baselines.empty() &&
            !chosenClosures(file, wish.baselines, baselines, choice, error))
            return 0;
        const ClosureAveraging averaging = {{wish.colour == UvColour::ifs, 0}, wish.seconds};
        ClosureReader reader(file, std::move(choice), marks, averaging, model);
        if (!readAll(reader, isGoing, error))
            return 0;
        chart = closureChart(file, reader, firstIndices(reader.triangles().size()));
        addAmplitudePanels(file, reader, firstIndices(reader.quads().size()), chart);
        return 1;
    }
    std::vector<UvBaseline> chosen = baselines;
    if (!chosenBaselines(file, wish.baselines, chosen, error))
        return 0;
    const BaselinePlot plot =
        wish.kind == DataPlot::time ? BaselinePlot::time : BaselinePlot::channels;
    BaselineReader reader(file, std::move(chosen), plot, marks, model, BaselineReader::usualSums,
                          wish.division());
    if (!readAll(reader, isGoing, error))
        return 0;
    chart = baselineChart(file, reader, plot, firstIndices(reader.baselines().size()));
    return 1;
}

}  // namespace pavane
