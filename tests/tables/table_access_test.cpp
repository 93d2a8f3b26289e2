#include "platform/accessibility.h"
#include "tables/table_fixture.h"

#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

constexpr long mostRows = 0x7FFFFFFFL;

std::string heard;
void hear(unsigned event, HWND, AccessId id)
{
    heard += event == EVENT_OBJECT_FOCUS             ? "focus "
             : event == EVENT_OBJECT_VALUECHANGE     ? "value "
             : event == EVENT_OBJECT_SELECTIONWITHIN ? "selection "
             : event == EVENT_OBJECT_REORDER         ? "order "
                                                     : "other ";
    heard += std::to_string(id ? (id - 1) >> 31 : -1) + "; ";
}

struct Told : ShownTable {
    std::string stored;
    Told()
    {
        setOptions(optHeaderRow | optRangeSelect);
        make(mostRows, {{50, 0}, {60, colEdit}, {60, colEdit}, {300, 0}});
        heard.clear();
    }
    ~Told() override { SetAccessListener(nullptr); }
    int isEnableAutoEdit(int row, int) override { return row % 2; }
    int setCellStr(int, int, const CString& text) override { return stored = text, text != "no"; }
};

}  // namespace

TEST(TableAccess, OffersAnyCellAndThoseInViewAsParts)
{
    Told table;
    AccessSource* const source = table.GetAccess();
    ASSERT_TRUE(source && source->IsAccessTable());
    EXPECT_EQ(source->GetAccessRows(), mostRows);
    EXPECT_EQ(source->GetAccessColumns(), 3);
    AccessPart part;
    ASSERT_TRUE(source->GetAccessPart(0, part));
    EXPECT_EQ(part.role, ROLE_SYSTEM_TABLE);
    EXPECT_EQ(part.name, "Table");
    const struct {
        int row, column;
        const char *text, *title;
        unsigned states, not_;
    } cells[] = {
        {0, 0, "11", "col 1 row 1",
         STATE_SYSTEM_EDITABLE | STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED |
             STATE_SYSTEM_FOCUSABLE,
         STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_READONLY},
        {1, 1, "22", "col 2 row 2", STATE_SYSTEM_READONLY,
         STATE_SYSTEM_EDITABLE | STATE_SYSTEM_SELECTED},
        {0x7FFFFFFE, 0, "21474836471", "col 1 row 2147483647",
         STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_EDITABLE, STATE_SYSTEM_FOCUSED},
    };
    for (const auto& c : cells) {
        ASSERT_TRUE(source->GetAccessPart(source->GetAccessCell(c.row, c.column), part)) << c.text;
        EXPECT_EQ(part.role, ROLE_SYSTEM_CELL);
        EXPECT_EQ(part.name, c.text);
        EXPECT_EQ(part.value, c.text);
        EXPECT_EQ(part.description, c.title);
        EXPECT_EQ(part.row, c.row);
        EXPECT_EQ(part.column, c.column);
        EXPECT_EQ(part.state & (c.states | c.not_), c.states) << c.text;
        EXPECT_EQ(part.rect.IsRectEmpty(), (part.state & STATE_SYSTEM_OFFSCREEN) != 0);
    }
    for (const auto& [row, column] : {std::pair(-1, 0), {0, -1}, {0, 3}, {0x7FFFFFFF, 0}})
        EXPECT_EQ(source->GetAccessCell(row, column), 0) << row << ' ' << column;
    EXPECT_FALSE(source->GetAccessPart(-5, part) || source->GetAccessPart(AccessId{1} << 62, part));
    ASSERT_TRUE(source->GetAccessPart(source->GetAccessColumnHeader(2), part));
    EXPECT_EQ(part.role, ROLE_SYSTEM_COLUMNHEADER);
    EXPECT_EQ(part.name, "col 3");
    ASSERT_TRUE(source->GetAccessPart(source->GetAccessRowHeader(0x7FFFFFFE), part));
    EXPECT_EQ(part.role, ROLE_SYSTEM_ROWHEADER);
    EXPECT_EQ(part.name, "row 2147483647");

    // the parts in view are what a pointer meets, in reading order
    std::vector<AccessId> met;
    for (int y = 1; y < 185; ++y)
        for (int x = 1; x < 300; x += 7)
            if (const AccessId id = source->AccessHitTest({x, y}); id) {
                ASSERT_TRUE(source->GetAccessPart(id, part));
                EXPECT_TRUE(part.rect.PtInRect({x, y}));
                if (std::find(met.begin(), met.end(), id) == met.end())
                    met.push_back(id);
            }
    const std::vector<AccessId> children = source->GetAccessChildren();
    EXPECT_TRUE(std::is_sorted(children.begin(), children.end()));
    std::sort(met.begin(), met.end());
    ASSERT_GE(children.size(), met.size());
    EXPECT_TRUE(std::includes(children.begin(), children.end(), met.begin(), met.end()));
    EXPECT_LT(children.size(), 80u);
    table.setRows(0);
    table.SetUpWindow();
    EXPECT_EQ(source->GetAccessFocus(), 0);
    EXPECT_TRUE(source->GetAccessSelection().IsRectEmpty());
    EXPECT_EQ(source->GetAccessChildren().size(), 4u);
}

TEST(TableAccess, DoesWhatTheUserAsksAndTellsWhatChanges)
{
    Told table;
    AccessSource* const source = table.GetAccess();
    table.key(VK_DOWN);
    EXPECT_EQ(heard, "");
    SetAccessListener(hear);
    table.key(VK_DOWN);
    EXPECT_EQ(heard, "focus 3; selection -1; ");
    heard.clear();
    EXPECT_TRUE(source->AccessSetFocus(source->GetAccessCell(1000000, 1)));
    EXPECT_EQ(table.selection(), "1000001,2-1000001,2");
    EXPECT_EQ(source->GetAccessFocus(), source->GetAccessCell(1000000, 1));
    EXPECT_EQ(heard, "focus 1000001; selection -1; ");
    EXPECT_TRUE(source->AccessActivate(source->GetAccessFocus()));
    ASSERT_TRUE(table.field());
    heard.clear();
    table.field()->SetWindowText("5");
    table.field()->SetModify(1);
    EXPECT_TRUE(table.hideEdit());
    EXPECT_EQ(heard.substr(0, 15), "value 1000001; ");
    EXPECT_TRUE(source->AccessSetValue(source->GetAccessCell(2, 0), "7"));
    EXPECT_EQ(table.stored, "7");
    EXPECT_FALSE(source->AccessSetValue(source->GetAccessCell(1, 0), "8"));  // not editable
    EXPECT_FALSE(source->AccessSetValue(source->GetAccessCell(2, 0), "no"));
    EXPECT_TRUE(source->AccessSelect(source->GetAccessColumnHeader(1), 1));
    EXPECT_EQ(table.selection(), "1,2-2147483647,2");
    EXPECT_EQ(source->GetAccessSelection(), CRect(1, 0, 2, 0x7FFFFFFF));
    EXPECT_TRUE(source->AccessSelect(source->GetAccessCell(5, 1), 0));
    EXPECT_EQ(table.selection(), "1,2-1,2");
    table.take();
    EXPECT_TRUE(source->AccessActivate(source->GetAccessColumnHeader(0)));
    EXPECT_EQ(table.take(), "header 0,1;");
    heard.clear();
    table.SetUpWindow();
    EXPECT_EQ(heard, "order -1; ");
}

TEST(TableAccess, LivesThroughHooksThatEndTheTable)
{
    struct Ends : ShownTable {
        int calls = 0, end = 0;
        int isEnableAutoEdit(int, int) override { return step(), 1; }
        CString cellAsStr(int, int, void*) override { return step(), "x"; }
        CString hdrCellAsStr(int, int, void*) override { return step(), "h"; }
        void step()
        {
            if (++calls == end)
                (void)DestroyWindow();
        }
    };
    for (int end = 1; end <= 4; ++end) {
        Ends table;
        table.make(5, {{50, 0}, {60, colEdit}});
        AccessSource* const source = table.GetAccess();
        table.calls = 0;
        table.end = end;
        AccessPart part;
        EXPECT_FALSE(source->GetAccessPart(source->GetAccessCell(1, 0), part)) << end;
        EXPECT_FALSE(table.GetSafeHwnd());
    }
}
