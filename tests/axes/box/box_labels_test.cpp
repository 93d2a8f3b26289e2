#include "pavane/axes/box/BoxLabels.h"

#include "pavane/axes/box/BoxView.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace pavane;

namespace
{

constexpr int letter = 7;

std::vector<CPointF> cornersOf(const BoxView& view)
{
    std::vector<CPointF> corners;
    for (const double p : {-0.5, 0.5})
        for (const double q : {-0.5, 0.5})
            for (const double s : {-0.5, 0.5})
                corners.push_back(view.project({p, q, s}));
    return corners;
}

LabelledEdge edgeOf(const BoxView& view, const BoxEdge& edge, const char* title, TMnMx range)
{
    LabelledEdge labelled;
    labelled.from = view.project(edge.from);
    labelled.to = view.project(edge.to);
    labelled.upright = edge.from.s != edge.to.s;
    labelled.ticks = [=](int n) { return linearTicks({title, range, n, 1, 2, true}); };
    labelled.place = [=](double v) { return (v - range.min) / (range.max - range.min); };
    return labelled;
}

/// Some place of the text is inside one of the faces of the box as it is seen: a dense comb of
/// places, each tried against every triangle of three corners, which together fill the hull.
bool liesOn(const BoxText& text, const std::vector<CPointF>& corners)
{
    const auto side = [](const CPointF& a, const CPointF& b, const CPointF& p) {
        return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    };
    for (int i = 1; i < 8; ++i)
        for (int j = 1; j < 4; ++j) {
            const CPointF p{text.centre.x + text.width * (i / 8.0 - 0.5),
                            text.centre.y + text.height * (j / 4.0 - 0.5)};
            for (std::size_t a = 0; a < 8; ++a)
                for (std::size_t b = a + 1; b < 8; ++b)
                    for (std::size_t c = b + 1; c < 8; ++c) {
                        const double u = side(corners[a], corners[b], p);
                        const double v = side(corners[b], corners[c], p);
                        const double w = side(corners[c], corners[a], p);
                        if ((u > 1 && v > 1 && w > 1) || (u < -1 && v < -1 && w < -1))
                            return true;
                    }
        }
    return false;
}

}  // namespace

TEST(BoxLabels, NoTextLiesOnAnotherOrOnTheBoxHoweverItIsSeen)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> share(0, 1);
    int titles = 0, labels = 0;
    for (int i = 0; i < 120; ++i) {
        BoxView view;
        view.setView(360 * share(random), i % 10 == 0 ? 90.0 * (i % 20 == 0) : 90 * share(random));
        view.setHeight(0.2 + share(random));
        if (i % 7 == 0)
            view.setOblique(180 * share(random), share(random));
        const int width = 200 + static_cast<int>(800 * share(random));
        const CRect picture(0, 0, width, 200 + static_cast<int>(600 * share(random)));
        view.fit(CRect(100, 40, picture.right - 100, picture.bottom - 60));
        const std::vector<CPointF> corners = cornersOf(view);
        BoxLabels box(
            corners, picture, 12,
            [](const CString& text) {
                return CSize{letter * static_cast<int>(text.size()), 14};
            },
            [](const CString& text, int) { return text; });
        const double scale = std::pow(10, 12 * share(random) - 6);
        const BoxEdges edges = view.edges();
        box.place({edgeOf(view, edges.z, "[%sJy/beam]", {-scale, 3 * scale}),
                   edgeOf(view, edges.z2, "Polarised", {0, scale}),
                   edgeOf(view, edges.x, "Right ascension [%sas]", {-scale, scale}),
                   edgeOf(view, edges.y, "Declination", {share(random), 2})});
        const std::vector<BoxText>& texts = box.texts();
        for (std::size_t a = 0; a < texts.size(); ++a) {
            SCOPED_TRACE(testing::Message() << texts[a].text << " at azimuth " << view.azimuth()
                                            << ", elevation " << view.elevation());
            titles += texts[a].isTitle;
            labels += !texts[a].isTitle;
            EXPECT_FALSE(liesOn(texts[a], corners));
            EXPECT_EQ(texts[a].turned,
                      texts[a].isTitle && (texts[a].text[0] == '[' || texts[a].text[0] == 'P'));
            for (std::size_t b = 0; b < a; ++b)
                EXPECT_FALSE(std::fabs(texts[a].centre.x - texts[b].centre.x) * 2 <
                                 texts[a].width + texts[b].width &&
                             std::fabs(texts[a].centre.y - texts[b].centre.y) * 2 <
                                 texts[a].height + texts[b].height)
                    << texts[b].text;
        }
    }
    EXPECT_GT(titles, 120 * 3);
    EXPECT_GT(labels, 120 * 12);
}
