#include "platform/core/lines.h"
#include "platform/core/text_layout.h"

#include "dc_replay.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace pavane
{

namespace
{

const JsonValue& recorded()
{
    static const JsonValue all = [] {
        std::ifstream file(PAVANE_SOURCE_DIR "/tests/platform/dc_vectors.json", std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), {});
        return JsonReader(text).value();
    }();
    return all;
}

}  // namespace

TEST(RecordedDrawings, ComeOutPixelByPixelWhereTheyAreFirm)
{
    std::map<std::string, CPicture> pictures;
    for (const JsonValue& test : recorded()["cases"].items)
        pictures[test["name"].text] = recordedPicture(test);
    int firm = 0;
    for (const JsonValue& test : recorded()["cases"].items) {
        const std::string difference = replay(test, pictures);
        if (test["level"].text == "firm") {
            ++firm;
            EXPECT_EQ(difference, "") << test["name"].text;
        }
    }
    EXPECT_EQ(firm, 365);
}

TEST(RecordedLines, HaveTheirPixelsInOrderFromStartToEnd)
{
    const CRect all(-100, -100, 100, 100);
    for (const JsonValue& line : recorded()["lines"].items) {
        std::set<std::pair<int, int>> wanted, got;
        for (const CPoint& p : pointsOf(line["pixels"]))
            wanted.insert({p.x, p.y});
        std::int64_t index = 0;
        thinLine({0, 0}, {line["to"][0].asInt(), line["to"][1].asInt()}, all,
                 [&](const LineRun& r) {
                     EXPECT_EQ(r.index, index);
                     index += r.count;
                     for (int k = 0; k < r.count; ++k)
                         got.insert(r.horizontal ? std::pair(r.x + k * r.step, r.y)
                                                 : std::pair(r.x, r.y + k * r.step));
                 });
        EXPECT_EQ(got, wanted) << line["to"][0].number << ' ' << line["to"][1].number;
    }
}

TEST(RecordedRegions, ContainTheSamePoints)
{
    for (const JsonValue& test : recorded()["regions"].items) {
        const std::vector<CPoint> points = pointsOf(test["points"]);
        CRgn region, combined;
        region.CreatePolygonRgn(points.data(), static_cast<int>(points.size()),
                                test["mode"].text == "WINDING" ? WINDING : ALTERNATE);
        combined.CombineRgn(region, CRgn(), RGN_OR);  // by its rows instead of its corners
        for (std::size_t j = 0; j < test["rows"].size(); ++j) {
            const std::string& row = test["rows"][j].text;
            for (std::size_t i = 0; i < row.size(); ++i) {
                const CPoint p(test["x0"].asInt() + static_cast<int>(i),
                               test["y0"].asInt() + static_cast<int>(j));
                ASSERT_EQ(region.PtInRegion(p.x, p.y), row[i] == '#') << test["name"].text;
                ASSERT_EQ(combined.PtInRegion(p.x, p.y), row[i] == '#') << test["name"].text;
            }
        }
    }
    for (const JsonValue& test : recorded()["regionsBig"].items) {
        const std::vector<CPoint> points = pointsOf(test["points"]);
        CRgn region;
        region.CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE);
        for (const JsonValue& p : test["tests"].items)
            ASSERT_EQ(region.PtInRegion(p[0].asInt(), p[1].asInt()), p[2].asInt());
    }
}

TEST(RecordedRectangles, CombineAsTheyDid)
{
    for (const JsonValue& test : recorded()["rects"].items) {
        if (test.has("pt")) {
            EXPECT_EQ(
                rectOf(test["ptInRect"]).PtInRect({test["pt"][0].asInt(), test["pt"][1].asInt()}),
                test["in"].asInt());
            continue;
        }
        const CRect a = rectOf(test["a"]);
        const CRect b = rectOf(test["b"]);
        CRect r;
        EXPECT_EQ(r.IntersectRect(a, b), test["intersect"][0].asInt());
        EXPECT_EQ(r, rectOf(test["intersect"][1]));
        EXPECT_EQ(r.UnionRect(a, b), test["union"][0].asInt());
        EXPECT_EQ(r, rectOf(test["union"][1]));
        EXPECT_EQ(r.SubtractRect(a, b), test["subtract"][0].asInt());
        EXPECT_EQ(r, rectOf(test["subtract"][1]));
        EXPECT_EQ(a == b, test["equal"].asInt());
        EXPECT_EQ(a.IsRectEmpty(), test["emptyA"].asInt());
    }
    for (const JsonValue& t : recorded()["mulDiv"].items)
        EXPECT_EQ(MulDiv(t[0].asInt(), t[1].asInt(), t[2].asInt()), t[3].asInt());
}

TEST(RecordedTexts, BreakAndAlignAsTheyDid)
{
    const std::map<std::string, unsigned> flags = {
        {"CENTER", DT_CENTER},         {"RIGHT", DT_RIGHT},         {"VCENTER", DT_VCENTER},
        {"BOTTOM", DT_BOTTOM},         {"WORDBREAK", DT_WORDBREAK}, {"NOPREFIX", DT_NOPREFIX},
        {"SINGLELINE", DT_SINGLELINE}, {"NOCLIP", DT_NOCLIP}};
    const std::vector<JsonValue>& texts = recorded()["text"].items;
    const int cellWidth = texts[0]["cell"][0].asInt();
    const int cellHeight = texts[0]["cell"][1].asInt();
    int firm = 0;
    for (const JsonValue& test : texts) {
        if (!test.has("flags") || test["level"].text != "firm")
            continue;
        ++firm;
        unsigned format = 0;
        for (const JsonValue& flag : test["flags"].items)
            format |= flags.at(flag.text);
        const CRect rect = rectOf(test["rect"]);
        const TextLayout layout =
            layOutText(test["text"].text, rect, format, cellHeight,
                       [&](std::string_view s) { return static_cast<int>(s.size()) * cellWidth; });
        if (test.has("calc")) {
            EXPECT_EQ(layout.width, test["calc"]["size"][0].asInt()) << test["text"].text;
            EXPECT_EQ(layout.height, test["calc"]["size"][1].asInt()) << test["text"].text;
        }
        std::vector<std::string> got, wanted;
        for (const TextLine& line : layout.lines) {
            if (!line.text.empty())
                got.push_back(std::to_string(line.at.x - rect.left) + ' ' +
                              std::to_string(line.at.y - rect.top) + ' ' + line.text);
        }
        for (const JsonValue& line : test["draw"]["lines"].items)
            wanted.push_back(std::to_string(line[0].number) + ' ' + std::to_string(line[1].number) +
                             ' ' + line[2].text);
        EXPECT_EQ(got, wanted) << test["text"].text;
    }
    EXPECT_GT(firm, 60);
}

}  // namespace pavane
