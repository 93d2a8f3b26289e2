#include "platform/accessibility.h"
#include "platform/qt/command_frame.h"

#include <QAccessible>

namespace pavane
{

namespace
{

constexpr int allRows = 2000000000;

/// A table of 2e9 x 3 cells, 10 x 20 pixels each, of which the first five rows are in view. Parts:
/// 4 * (row + 1) + column + 1, row and column -1 being headers.
struct TableWindow : CWnd, AccessSource {
    AccessId focus = idOf(1, 2);
    CRect selected{0, 1, 3, 3};
    CString stored;
    std::vector<AccessId> activated;

    static AccessId idOf(int row, int column) { return 4LL * (row + 1LL) + column + 1; }
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override
    {
        part = {};
        if (id == 0)
            return part.name = "Sources", 1;
        part.row = static_cast<int>(id / 4) - 1;
        part.column = static_cast<int>(id % 4) - 1;
        if (id < 0 || part.row >= allRows)
            return 0;
        part.role = part.row < 0      ? ROLE_SYSTEM_COLUMNHEADER
                    : part.column < 0 ? ROLE_SYSTEM_ROWHEADER
                                      : ROLE_SYSTEM_CELL;
        part.value = std::to_string(part.row) + "/" + std::to_string(part.column);
        const bool isSelected = selected.PtInRect({part.column, part.row});
        part.state = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE |
                     (id == focus ? STATE_SYSTEM_FOCUSED : 0) |
                     (isSelected ? STATE_SYSTEM_SELECTED : 0) |
                     (part.column == 2 ? STATE_SYSTEM_EDITABLE : STATE_SYSTEM_READONLY);
        if (part.row < 5)
            part.rect = {10 * part.column, 20 * part.row, 10 * part.column + 10,
                         20 * part.row + 20};
        else
            part.state |= STATE_SYSTEM_OFFSCREEN;
        return 1;
    }
    std::vector<AccessId> GetAccessChildren() const override
    {
        std::vector<AccessId> shown;
        for (int row = 0; row < 5; ++row)
            for (int column = 0; column < 3; ++column)
                shown.push_back(idOf(row, column));
        return shown;
    }
    AccessId AccessHitTest(CPoint p) const override { return idOf(p.y / 20, p.x / 10); }
    AccessId GetAccessFocus() const override { return focus; }
    int AccessActivate(AccessId id) override { return activated.push_back(id), 1; }
    int AccessSetValue(AccessId, const CString& value) override { return stored = value, 1; }
    int AccessSelect(AccessId id, int on) override
    {
        const int row = static_cast<int>(id / 4) - 1;
        return selected = on ? CRect(0, row, 3, row + 1) : CRect(), 1;
    }
    int IsAccessTable() const override { return 1; }
    int GetAccessRows() const override { return allRows; }
    int GetAccessColumns() const override { return 3; }
    AccessId GetAccessCell(int row, int column) const override
    {
        return row < 0 || row >= allRows || column < 0 || column > 2 ? 0 : idOf(row, column);
    }
    AccessId GetAccessColumnHeader(int column) const override { return idOf(-1, column); }
    AccessId GetAccessRowHeader(int row) const override { return idOf(row, -1); }
    CRect GetAccessSelection() const override { return selected; }
};

std::vector<std::pair<unsigned, AccessId>> heard;

void hear(unsigned event, HWND, AccessId part) { heard.emplace_back(event, part); }

}  // namespace

TEST(Accessibility, OffersATableWithCellsByRowAndColumn)
{
    CommandFrame frame;
    auto window = std::make_unique<TableWindow>();
    window->Create("T", "", shown, {20, 30, 120, 130}, &frame, 0);
    CEdit editor;
    ASSERT_TRUE(editor.Create(WS_CHILD | WS_VISIBLE, {20, 20, 30, 40}, window.get(), 1));
    window->SetFocus();
    QAccessibleInterface* const top =
        QAccessible::queryAccessibleInterface(widgetOfWindow(*window));
    ASSERT_TRUE(top && top->isValid());
    EXPECT_EQ(top->role(), QAccessible::Table);
    EXPECT_EQ(top->text(QAccessible::Name), "Sources");
    EXPECT_EQ(top->childCount(), 16);
    EXPECT_EQ(top->child(15)->role(), QAccessible::EditableText);
    SetAccessName(editor.GetSafeHwnd(), "Flux 3");
    EXPECT_EQ(top->child(15)->text(QAccessible::Name), "Flux 3");
    EXPECT_EQ(top->indexOfChild(top->child(15)), 15);
    EXPECT_EQ(top->indexOfChild(top->child(4)), 4);
    EXPECT_EQ(top->focusChild()->text(QAccessible::Name), "1/2");

    QAccessibleTableInterface* const table = top->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), allRows);
    EXPECT_EQ(table->columnCount(), 3);
    EXPECT_EQ(table->selectedRows(), (QList<int>{1, 2}));
    EXPECT_EQ(table->selectedCellCount(), 6);
    EXPECT_EQ(table->selectedCells().size(), 6);
    EXPECT_EQ(table->selectedColumnCount(), 0);
    EXPECT_EQ(table->columnDescription(1), "-1/1");
    EXPECT_EQ(table->cellAt(allRows, 0), nullptr);
    QAccessibleInterface* const far = table->cellAt(allRows - 1, 2);
    ASSERT_NE(far, nullptr);
    EXPECT_TRUE(far->state().offscreen && far->state().editable && !far->state().selected);
    EXPECT_EQ(far, table->cellAt(allRows - 1, 2));
    QAccessibleTableCellInterface* const cell = far->tableCellInterface();
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->rowIndex(), allRows - 1);
    EXPECT_EQ(cell->columnHeaderCells().value(0)->text(QAccessible::Name), "-1/2");
    EXPECT_EQ(cell->rowHeaderCells().value(0)->role(), QAccessible::RowHeader);
    EXPECT_EQ(cell->table(), top);

    const QRect place = table->cellAt(2, 1)->rect();
    EXPECT_EQ(place, QRect(widgetOfWindow(*window)->mapToGlobal(QPoint(10, 40)), QSize(10, 20)));
    EXPECT_EQ(top->childAt(place.x() + 1, place.y() + 1), table->cellAt(2, 1));
    EXPECT_TRUE(table->selectRow(4) && table->isRowSelected(4) && !table->isRowSelected(1));
    far->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(window->activated, (std::vector<AccessId>{TableWindow::idOf(allRows - 1, 2)}));
    far->setText(QAccessible::Value, "7");
    EXPECT_EQ(window->stored, "7");
    window.reset();
    EXPECT_FALSE(CWnd::FromHandle(editor.GetSafeHwnd()));
}

TEST(Accessibility, TellsWhoListens)
{
    CommandFrame frame;
    TableWindow window;
    window.Create("T", "", shown, {20, 30, 120, 130}, &frame, 0);
    EXPECT_FALSE(IsAccessActive());
    EXPECT_EQ(SetAccessListener(hear), nullptr);
    EXPECT_TRUE(IsAccessActive());
    NotifyWinEvent(EVENT_OBJECT_FOCUS, window.GetSafeHwnd(), 7);
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, 0, 7);  // of no window
    SetAccessListener(nullptr);
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window.GetSafeHwnd(), 7);
    EXPECT_EQ(heard, (std::vector<std::pair<unsigned, AccessId>>{{EVENT_OBJECT_FOCUS, 7}}));
}

}  // namespace pavane
