#include "pavane/windows/AResizeDialog.h"
#include "pavane/windows/AResizeSheet.h"
#include "pavane/windows/controls/progress_dialog.h"
#include "platform/profile.h"

#include <gtest/gtest.h>
#include <random>

namespace pavane
{

namespace
{

constexpr unsigned idLate = 77;
constexpr const char* section = "ResizeDialogTest";

/// Seven controls, and one that is made by the dialog itself.
class Resized : public AResizeDialog
{
public:
    explicit Resized(const char* kept = "") : AResizeDialog(progressTemplate)
    {
        SetResizeItems(progressResize);
        SetPlacementSection(kept);
    }
    using AResizeDialog::FoldRows;
    CStatic late;
    CRect place(unsigned id) const
    {
        CRect rect;
        (void)GetDlgItem(id)->GetWindowRect(rect);
        ScreenToClient(rect);
        return rect;
    }
    CSize size() const
    {
        CRect client;
        (void)GetClientRect(client);
        return client.Size();
    }
    void resize(int cx, int cy)
    {
        SetClientSize(cx, cy);
        OnSize(SIZE_RESTORED, size().cx, size().cy);  // told of at once only when it is seen
    }
};

TEST(ResizeDialog, ControlsFollowAtRandomSizesAndNeverShrink)
{
    Resized dialog;
    ASSERT_TRUE(dialog.CreateModeless());
    const CSize least = dialog.GetLeastSize();
    std::vector<CRect> first;
    for (const ResizeItem& item : progressResize)
        first.push_back(dialog.place(item.id));
    std::mt19937 random(11);
    const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    for (int round = 0; round < 100; ++round) {
        dialog.resize(upTo(2000), upTo(1500));
        const CSize size = dialog.size();
        ASSERT_GE(size.cx, least.cx);
        ASSERT_GE(size.cy, least.cy);
        const CRect inside(0, 0, size.cx, size.cy);
        for (std::size_t i = 0; i < first.size(); ++i) {
            const CRect now = dialog.place(progressResize[i].id);
            CRect common;
            (void)common.IntersectRect(now, inside);
            EXPECT_EQ(common, now) << progressResize[i].id;
            EXPECT_GE(now.Width(), first[i].Width());
            EXPECT_GE(now.Height(), first[i].Height());
            for (std::size_t k = 0; k < i; ++k)
                EXPECT_FALSE(common.IntersectRect(now, dialog.place(progressResize[k].id)));
        }
    }
    dialog.resize(least.cx, least.cy);
    EXPECT_EQ(dialog.place(IDCANCEL), first[4]);
}

TEST(ResizeDialog, ControlsThatItMakesItselfFollowFromWhereTheyStand)
{
    Resized dialog;
    ASSERT_TRUE(dialog.CreateModeless());
    const CSize least = dialog.GetLeastSize();
    dialog.resize(least.cx + 100, least.cy);
    ASSERT_TRUE(dialog.late.Create("late", WS_CHILD, CRect(110, 5, 160, 20), &dialog, idLate));
    constexpr ResizeItem items[] = {{idLate, 100, 0, 100, 0}, {4711, 0, 0, 100, 100}};
    dialog.SetResizeItems(items);
    dialog.resize(least.cx + 40, least.cy + 900);
    EXPECT_EQ(dialog.place(idLate), CRect(50, 5, 100, 20));
    EXPECT_EQ(dialog.size(), CSize(least.cx + 40, least.cy)) << "nothing follows down";
}

TEST(ResizeDialog, RowsFoldAwayAndOut)
{
    Resized dialog;
    ASSERT_TRUE(dialog.CreateModeless());
    const CSize least = dialog.GetLeastSize();
    const CRect said = dialog.place(IDC_PROGRESS_SAID);
    const auto fold = [&](int on) {
        dialog.FoldRows(progressJobsTop, progressJobsBottom, on);
        dialog.FoldRows(progressJobsTop, progressJobsBottom, on);
        return least.cy - dialog.GetLeastSize().cy;
    };
    const int height = fold(1);
    EXPECT_GT(height, 0);
    EXPECT_EQ(dialog.size().cy, least.cy - height);
    EXPECT_EQ(dialog.place(IDC_PROGRESS_SAID).top, said.top - height);
    dialog.resize(least.cx + 30, least.cy + 50);
    EXPECT_EQ(fold(0), 0);
    EXPECT_EQ(dialog.size(), CSize(least.cx + 30, least.cy + 50 + height));
    EXPECT_EQ(dialog.place(IDC_PROGRESS_SAID).top, said.top);
}

TEST(ResizeSheet, GrowsWithThePageThatFollowsAndKeepsItsPlace)
{
    struct Page : AResizePage {
        Page() : AResizePage(progressTemplate, "Jobs") { SetResizeItems(progressResize); }
        CRect place(unsigned id) const
        {
            CRect rect;
            (void)GetDlgItem(id)->GetWindowRect(rect);
            ScreenToClient(rect);
            return rect;
        }
    };
    CSize least, grown;
    for (const int again : {0, 1}) {
        Page page;
        AResizeSheet sheet("Jobs");
        sheet.SetPlacementSection(section);
        ASSERT_TRUE(sheet.AddPage(page) && sheet.CreateModeless());
        sheet.ShowWindow(SW_SHOW);
        least = sheet.GetLeastSize();
        const auto size = [&] {
            CRect client;
            (void)sheet.GetClientRect(client);
            return client.Size();
        };
        EXPECT_EQ(size(), again ? grown : least);
        if (again)
            break;
        const CRect cancel = page.place(IDCANCEL), said = page.place(IDC_PROGRESS_SAID);
        for (const CSize more : {CSize{90, 40}, CSize{-30, -30}, CSize{300, 200}}) {
            sheet.SetClientSize(least.cx + more.cx, least.cy + more.cy);
            const int across = std::max(0, more.cx), down = std::max(0, more.cy);
            EXPECT_EQ(size(), CSize(least.cx + across, least.cy + down));
            EXPECT_EQ(page.place(IDCANCEL).left, cancel.left + across);
            EXPECT_EQ(page.place(IDC_PROGRESS_SAID).bottom, said.bottom + down);
            CRect ok;
            (void)sheet.GetDlgItem(IDOK)->GetWindowRect(ok);
            sheet.ScreenToClient(ok);
            EXPECT_LT(ok.bottom, size().cy);
            EXPECT_GT(ok.bottom, size().cy - 20);
        }
        grown = size();
    }
    (void)WriteProfileString(section, "WindowPos", "");
}

TEST(ResizeDialog, KeepsItsPlaceInTheProfile)
{
    const struct {
        const char *kept, *section;
        CSize expected;  ///< beyond the least size
    } rows[] = {
        {"0,1,-1,-1,-1,-1,40,50,1,1", section, {0, 0}},  // smaller than its template
        {"0,1,-1,-1,-1,-1,rubbish", section, {0, 0}},
        {"", "", {0, 0}},
        {nullptr, section, {60, 30}},  // what the dialog before left
    };
    for (const auto& row : rows) {
        if (row.kept)
            (void)WriteProfileString(section, "WindowPos", row.kept);
        Resized dialog(row.section);
        ASSERT_TRUE(dialog.CreateModeless());
        const CSize least = dialog.GetLeastSize();
        EXPECT_EQ(dialog.size(), CSize(least.cx + row.expected.cx, least.cy + row.expected.cy))
            << &row - rows;
        if (&row - rows == 2) {
            dialog.DestroyWindow();
            EXPECT_EQ(GetProfileString(section, "WindowPos"), "");
            dialog.SetPlacementSection(section);
            ASSERT_TRUE(dialog.CreateModeless());
            dialog.resize(least.cx + 60, least.cy + 30);
        }
    }
    (void)WriteProfileString(section, "WindowPos", "");
}

}  // namespace

}  // namespace pavane
