#include "apps/view/visibility_plot.h"
#include "tests/calibration/made_data.h"

namespace pavane
{

namespace
{

/// "123 124", or "1234" of quads; a subarray but the first behind a slash.
template <class Item>
std::string namesOf(const std::vector<Item>& items)
{
    std::string names;
    for (const Item& item : items) {
        names += names.empty() ? "" : " ";
        for (const int number : item.telescopes)
            names += std::to_string(number);
        if (item.subarray > 1)
            names += "/" + std::to_string(item.subarray);
    }
    return names;
}

}  // namespace

TEST(ViewClosure, ListsNameTrianglesAndQuads)
{
    std::vector<MadeGroup> groups = madeGroups(4, {0, 2});
    // telescope 5 sees 1 and 2 alone
    for (const MadeGroup& g : madeGroups(5, {0, 2}))
        if (g.a + g.b <= 7 && (g.a == 5 || g.b == 5))
            groups.push_back(g);
    for (const MadeGroup& g : madeGroups(4, {0}, 2))
        groups.push_back(g);
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("named.uvfits", groups), error)) << error;
    std::vector<UvBaseline> baselines;
    for (const MadeGroup& g : groups)
        baselines.push_back({g.subarray, g.a, g.b, 1});
    const struct {
        const char *list, *triangles, *quads, *error;
    } cases[] = {
        {"5", "125", "", ""},
        {"1-2", "123 124 125 123/2 124/2", "", ""},
        {"1-2-5,3-4", "125 134 234 134/2 234/2", "", ""},
        {"3-1-4-2", "", "3142 3142/2", ""},
        {"1-5-2-4", "", "", "has nothing of '1-5-2-4'"},
        {"4-1-2-5,2-3-4", "234 234/2", "4125", ""},
        {"1-2-1-3", "", "", "has nothing of '1-2-1-3'"},
        {"1-2-3-4-5", "", "", "has nothing of '1-2-3-4-5'"},
        {"1-2-3-9", "", "", "has no telescope '9' in what is plotted"},
        {"3-5", "", "", "has nothing of '3-5'"},
        {" 1-2 - 5 ,, 1-2-3/2,", "125 123/2", "", ""},
        {"3-1-4-2/2", "", "3142/2", ""},
        {"1-2-5/2", "", "", "has no telescope '5/2' in what is plotted"},
        {",", "", "", "has nothing of ','"},
    };
    for (const auto& c : cases) {
        ClosureChoice choice;
        error.clear();
        EXPECT_EQ(chosenClosures(file, c.list, baselines, choice, error), !*c.error) << c.list;
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(namesOf(choice.triangles), c.triangles) << c.list;
        EXPECT_EQ(namesOf(choice.quads), c.quads) << c.list;
        EXPECT_FALSE(choice.independent);
    }
    ClosureChoice choice;
    EXPECT_TRUE(chosenClosures(file, "", baselines, choice, error));
    EXPECT_TRUE(choice.independent && choice.triangles.size() == 9 && choice.quads.empty());
    EXPECT_FALSE(chosenClosures(file, "", {{1, 1, 2, 1}}, choice, error));
    EXPECT_EQ(error, "has no three telescopes that are all joined");
    EXPECT_TRUE(chosenAmplitudes(baselines, choice, error));
    EXPECT_TRUE(choice.independent && choice.triangles.empty() && choice.quads.size() == 8);
    EXPECT_FALSE(chosenAmplitudes({{1, 1, 2, 1}}, choice, error));

    // triangles that the user chose, of which the marks leave some or none
    const std::vector<ClosureTriangle> chosen = {{1, {1, 2, 3}, 1}, {1, {1, 2, 5}, 1}};
    const std::vector<UvBaseline> few = {{1, 5, 1, 2}, {1, 2, 5, 2}, {1, 1, 2, 2}, {1, 1, 3, 2}};
    EXPECT_TRUE(keepJoined(chosen, few, choice, error));
    EXPECT_EQ(namesOf(choice.triangles), "125");
    EXPECT_FALSE(keepJoined({chosen[0]}, few, choice, error));
    EXPECT_EQ(error, "has none of the chosen triangles in what is marked");

    // a chart has panels of both
    PanelChart chart;
    const PlotWish wish = {DataPlot::closure, 1, "1-2-5,1-2-3-4", 0};
    ASSERT_TRUE(readVisibilityChart(
        file, wish, baselines, {}, madeModel(), [](double) { return 1; }, chart, error))
        << error;
    ASSERT_EQ(chart.panels.size(), 3u);
    EXPECT_EQ(chart.panels[1].caption.substr(0, 7), "1-2-3-4");
    EXPECT_EQ(chart.panels[1].scales[0].name, "ln closure amplitude");
    EXPECT_EQ(chart.panels[1].scales[0].curves.size(), 2u);
}

TEST(ViewClosure, NamesStandBeforeOtherLettersAndThoseBeforeNumbers)
{
    const std::vector<MadeGroup> groups = madeGroups(5, {0});
    const std::string name = savedData("names.uvfits", groups);
    FitsText table;
    TableText antennas("AIPS AN", 1, {{"ANNAME", "8A"}, {"STABXYZ", "3D"}, {"NOSTA", "1J"}});
    int number = 0;
    for (const char* each : {"2", "1", "Br", "BR", "A-B"}) {
        antennas.text(each, 8) << 0.0 << 0.0 << 0.0 << ++number;
        antennas.endRow();
    }
    antennas.write(table, [](FitsText&) {});
    std::ofstream(name, std::ios::binary | std::ios::app) << table.bytes();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(name, error)) << error;
    ASSERT_EQ(file.telescopes().size(), 5u);
    std::vector<UvBaseline> baselines;
    for (const MadeGroup& g : groups)
        baselines.push_back({1, g.a, g.b, 1});
    const struct {
        const char *list, *triangles;
    } cases[] = {{"2-3-4", "134"},
                 {"1-BR-5", "245"},
                 {"1-br-2", "123 124"},
                 {"A-B", "125 135 145 235 245 345"}};
    for (const auto& c : cases) {
        ClosureChoice choice;
        EXPECT_TRUE(chosenClosures(file, c.list, baselines, choice, error)) << error;
        EXPECT_EQ(namesOf(choice.triangles), c.triangles) << c.list;
        // where they stand is not known, so no two of them stand beside each other
        for (const ClosureTriangle& triangle : choice.triangles)
            EXPECT_FALSE(isTrivial(file, triangle));
    }
    // the antenna table tells which triangles there may be
    PanelChart chart;
    ASSERT_TRUE(readVisibilityChart(
        file, {DataPlot::closure, 1, "", 0}, {}, {}, {}, [](double) { return 1; }, chart, error))
        << error;
    EXPECT_EQ(chart.panels.size(), 6u);
}

}  // namespace pavane
