#include "pavane/dialogs/layout/dialog_layout.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/resources/dialogs.h"
#include "pavane/windows/controls/progress_dialog.h"

#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <random>

namespace pavane
{

namespace
{

constexpr CSize least{200, 100};
constexpr CRect place{10, 20, 60, 40};

TEST(DialogLayout, EdgesFollowInPerCentOfTheGrowth)
{
    const struct {
        ResizeItem item;
        CSize size;
        CRect expected;
    } rows[] = {
        {{1, 0, 0, 0, 0}, {400, 300}, place},
        {{1, 0, 0, 100, 100}, {300, 150}, {10, 20, 160, 90}},
        {{1, 100, 100, 100, 100}, {300, 150}, {110, 70, 160, 90}},
        {{1, 50, 0, 100, 0}, {301, 150}, {60, 20, 161, 40}},
        // below the least size, and shares that make no sense
        {{1, 100, 100, 100, 100}, {20, -5}, place},
        {{1, 100, 100, 0, 0}, {300, 150}, {110, 70, 160, 90}},
        {{1, -7, 0, 900, 0}, {300, 100}, {10, 20, 160, 40}},
        {{1, 0, 0, 100, 0}, {INT_MAX, 100}, {10, 20, 60 + INT_MAX / 2, 40}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(grownPlace(row.item, place, least, row.size), row.expected) << &row - rows;
        EXPECT_EQ(ungrownPlace(row.item, row.expected, least, row.size), place) << &row - rows;
    }
}

TEST(DialogLayout, NeighboursNeverMeetAtRandomSizesAndShares)
{
    std::mt19937 random(7);
    const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    for (int round = 0; round < 100; ++round) {
        const int middle = upTo(100);
        const ResizeItem items[] = {{1, 0, 0, middle, 100}, {2, middle, 0, 100, 100}};
        const CRect places[] = {{0, 0, 100, 100}, {100, 0, 200, 100}};
        const CSize size{200 + upTo(3000), 100 + upTo(2000)};
        const auto now = layOutDialog(items, places, least, size);
        ASSERT_EQ(now.size(), 2U);
        EXPECT_EQ(now[0].right, now[1].left);
        EXPECT_EQ(now[0].TopLeft(), CPoint());
        EXPECT_EQ(now[1].BottomRight(), CPoint(size.cx, size.cy));
    }
}

/// The controls of a template at a size in its units, each with its kind.
std::vector<CRect> placed(const DlgTemplate& dialog, std::span<const ResizeItem> items, CSize size)
{
    constexpr int line = 14;
    std::vector<CRect> all;
    for (int i = 0; i < dialog.itemCount; ++i) {
        const DlgItem& item = dialog.items[i];
        // of a list that opens only the line stands in the dialog
        const int cy = item.kind == ControlKind::comboBox ? line : item.cy;
        all.emplace_back(item.x, item.y, item.x + item.cx, item.y + cy);
        for (const ResizeItem& one : items)
            if (one.id == item.id)
                all.back() = grownPlace(one, all.back(), {dialog.cx, dialog.cy}, size);
    }
    return all;
}

TEST(DialogLayout, InDialogsOfTheLibraryNothingOverlapsOrIsCutAtRandomSizes)
{
    const auto library = [](unsigned id) -> const DlgTemplate& {
        return *std::find_if(std::begin(libraryDialogs), std::end(libraryDialogs),
                             [&](const DlgTemplate& one) { return one.id == id; });
    };
    const struct {
        const DlgTemplate& dialog;
        std::span<const ResizeItem> items;
    } dialogs[] = {
        {library(IDD_AREA_SELECT), areaSelectResize},
        {library(IDD_TABLE_FIND), tableFindResize},
        {library(IDD_TABLE_NUMBER), tableNumberResize},
        {printTemplate, printResize},
        {printingTemplate, printingResize},
        {subscriptTemplate, subscriptResize},
        {propertiesTemplate, propertiesResize},
        {pageSetupTemplate, pageSetupResize},
        {previewTemplate, previewResize},
        {progressTemplate, progressResize},
        {timeCountDialog, timeCountResize},
    };
    std::mt19937 random(3);
    const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    for (const auto& [dialog, items] : dialogs) {
        for (const ResizeItem& item : items)
            EXPECT_EQ(std::count_if(dialog.items, dialog.items + dialog.itemCount,
                                    [&](const DlgItem& one) { return one.id == item.id; }),
                      1)
                << dialog.title << ' ' << item.id;
        const auto first = placed(dialog, items, {0, 0});
        for (int round = 0; round < 100; ++round) {
            const CSize size{dialog.cx + (growsAcross(items) ? upTo(900) : 0),
                             dialog.cy + (growsDown(items) ? upTo(700) : 0)};
            const auto now = placed(dialog, items, size);
            for (std::size_t i = 0; i < now.size(); ++i) {
                const CString what = CString(dialog.title) + ", item " + std::to_string(i);
                CRect common;
                (void)common.IntersectRect(now[i], CRect(0, 0, size.cx, size.cy));
                ASSERT_EQ(common, now[i]) << what;
                ASSERT_TRUE(now[i].Width() >= first[i].Width() &&
                            now[i].Height() >= first[i].Height())
                    << what;
                // a box around controls stays around them, and around no other
                for (std::size_t k = 0; k < i; ++k) {
                    CRect before;
                    (void)before.IntersectRect(first[i], first[k]);
                    (void)common.IntersectRect(now[i], now[k]);
                    ASSERT_EQ(common == now[i], before == first[i]) << what << " in " << k;
                    ASSERT_EQ(common.IsRectEmpty(), before.IsRectEmpty()) << what << " on " << k;
                }
            }
        }
    }
}

TEST(DialogLayout, KeptPlacesAreMadeReachable)
{
    const CRect screens[] = {{0, 0, 1000, 800}, {1000, 0, 1600, 600}};
    const struct {
        CRect kept, expected;
    } rows[] = {
        {{100, 100, 500, 400}, {100, 100, 500, 400}},      // as it was
        {{100, 100, 110, 101}, {100, 100, 300, 200}},      // smaller than the template
        {{900, 700, 1300, 1000}, {600, 500, 1000, 800}},   // beyond the corner
        {{5000, 9000, 5300, 9200}, {350, 300, 650, 500}},  // on a screen that is gone
        {{-50, -40, 9000, 9000}, {0, 0, 1000, 800}},       // larger than any
    };
    for (const auto& row : rows) {
        EXPECT_EQ(reachablePlace(row.kept, least, screens), row.expected) << &row - rows;
    }
    EXPECT_EQ(reachablePlace(place, least, {}), place);
}

}  // namespace

}  // namespace pavane
