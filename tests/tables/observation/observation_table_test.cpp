#include "pavane/tables/observation/AObservationSelector.h"
#include "pavane/tables/observation/observation_tables.h"
#include "platform/CMenu.h"
#include "tests/tessel/uvfits_text.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>

using namespace pavane;

namespace
{

/// What a parent is told, by identifier and code.
struct Frame : CWnd {
    int marks = 0, filling = 0;
    Frame() { CreateEx(0, "", "Frame", WS_POPUP | WS_VISIBLE, {0, 0, 600, 300}, nullptr, 0); }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        marks += id == 7 && code == MTN_MARKS && control;
        filling += id == 7 && code == OTN_FILLING && control;
        return 1;
    }
};

/// A file whose first half has baseline 2-3 only, and whose second all of three telescopes.
std::string growingFile()
{
    const float pairs[] = {258, 259, 515};
    std::vector<TestGroup> groups(10000, {0, 515});
    for (int i = 0; i < 10000; ++i)
        groups.push_back({100.0f * float(i % 7), pairs[i % 3]});
    return saved("growing.uvfits", groupsHdu(groups) + antennaHdu());
}

template <class Table>
CString textOf(Table& table)
{
    std::ostringstream stream;
    EXPECT_TRUE(table.CopyAsTextInStream(stream, 0));
    return stream.str();
}

void fill(AObservationTbl& table)
{
    for (int i = 0; i < 100 && !table.GetObservation()->isWhole(table.table()); ++i)
        (void)table.SendMessage(WM_TIMER, 4001);
}

CString menuTexts;
unsigned noteMenu(const CMenu& menu, CPoint)
{
    menuTexts.clear();
    for (const CMenu::Line& line : menu.lines())
        menuTexts += line.text + ";";
    return 0;
}

}  // namespace

TEST(ObservationTables, ExportWhatTheObservationWrites)
{
    UvObservation observation;
    std::string error;
    ASSERT_TRUE(observation.open(growingFile(), error)) << error;
    std::unique_ptr<AObservationTbl> tables[] = {
        std::make_unique<ATelescopesTbl>(),  std::make_unique<ABaselinesTbl>(),
        std::make_unique<ASourcesTbl>(),     std::make_unique<AStokesTbl>(),
        std::make_unique<AFrequenciesTbl>(), std::make_unique<AScansTbl>()};
    int i = 0;
    for (const auto& table : tables) {
        EXPECT_EQ(table->table(), uvTables[i++]);
        table->Create("", "", WS_POPUP | WS_VISIBLE | WS_VSCROLL, {0, 0, 500, 200}, nullptr, 0);
        EXPECT_EQ(table->GetWindowText(), uvTableLook(table->table()).title);
        table->SetObservation(&observation);
        fill(*table);
        std::ostringstream stream;
        EXPECT_TRUE(observation.writeTsv(table->table(), stream));
        EXPECT_EQ(textOf(*table), stream.str());
        AObservationSelector selector(table->table());
        selector.SetObservation(&observation);
        EXPECT_EQ(textOf(selector.table()), stream.str());
        EXPECT_GT(table->rows(), 0);
        double value = 0;
        for (int column = 1; column <= table->columns(); ++column)
            EXPECT_TRUE(!table->isTextRight(column) ||
                        table->cellAsStr(1, column, nullptr).empty() ||
                        table->cellNumber(1, column, value))
                << column;
    }
}

TEST(ObservationTables, AreFilledWhileTheWindowLives)
{
    UvObservation observation;
    std::string error;
    ASSERT_TRUE(observation.open(growingFile(), error)) << error;
    Frame frame;
    ABaselinesTbl table(MarkItems::rows);
    table.SetObservation(&observation);
    table.Create("", "", WS_CHILD | WS_VISIBLE, {0, 0, 500, 200}, &frame, 7);
    EXPECT_EQ(table.hdrCellAsStr(0, 0, nullptr), "0 %");
    (void)observation.step(1);
    ASSERT_EQ(table.rows(), 1);
    EXPECT_GT(frame.filling, 0);
    table.ToggleMark(0);
    ASelectRect focus{1, 4, 1, 4};
    table.SetSelectRect(focus);
    EXPECT_TRUE(table.SortRows({5, SortDirection::falling}));

    (void)SetMenuAnswer(noteMenu);
    (void)table.SendMessage(WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_TRUE(observation.isStopped());
    const CString part = textOf(table).substr(0, 5);
    EXPECT_NE(part.find(" %\t"), CString::npos) << part;
    EXPECT_NE(table.StateText().find("stopped"), CString::npos);
    (void)table.SendMessage(WM_TIMER, 4001);
    EXPECT_EQ(table.rows(), 1);
    table.amContextMenu({5, 5}, static_cast<unsigned>(table.GetMenuID()));
    EXPECT_NE(menuTexts.find("Go on rea&ding;"), CString::npos) << menuTexts;
    (void)table.SendMessage(WM_COMMAND, ID_FILLING_GO_ON);
    table.amContextMenu({5, 5}, static_cast<unsigned>(table.GetMenuID()));
    EXPECT_NE(menuTexts.find("Sto&p reading"), CString::npos) << menuTexts;
    fill(table);
    table.amContextMenu({5, 5}, static_cast<unsigned>(table.GetMenuID()));
    EXPECT_EQ(menuTexts.find("reading"), CString::npos);
    (void)SetMenuAnswer(nullptr);

    // the marked baseline, which has the focus, is the last record now and has most visibilities
    ASSERT_EQ(table.rows(), 3);
    EXPECT_EQ(table.hdrCellAsStr(0, 0, nullptr), "");
    EXPECT_TRUE(table.isMarked(2) && table.markedCount() == 1);
    EXPECT_EQ(table.recordOf(1), 3);
    EXPECT_EQ(table.getSelectRect().anchorRow, 1);
    EXPECT_TRUE(table.isMarked(table.itemOf(1, 1)));
}

TEST(ObservationTables, SurviveTheirObservation)
{
    AScansTbl table(MarkItems::rows);
    table.Create("", "", WS_POPUP | WS_VISIBLE, {0, 0, 500, 200}, nullptr, 0);
    EXPECT_EQ(textOf(table).substr(0, 17), "\tSource\tSubarray\t");
    std::string error;
    {
        UvObservation observation;
        ASSERT_TRUE(observation.open(growingFile(), error)) << error;
        table.SetObservation(&observation);
        fill(table);
        ASSERT_GT(table.rows(), 0);
        table.cmMarkAll();
        ASSERT_TRUE(observation.open(growingFile(), error)) << error;
        EXPECT_EQ(table.markedCount(), 0);  // of a file that is another one
    }
    (void)table.SendMessage(WM_TIMER, 4001);
    EXPECT_EQ(table.rows(), 0);
    EXPECT_EQ(table.markCount(), 0);
}

TEST(ObservationSelector, MarksRecords)
{
    UvObservation observation;
    std::string error;
    ASSERT_TRUE(observation.open(growingFile(), error)) << error;
    while (observation.step()) {
    }
    Frame frame;
    AObservationSelector selector(UvTable::baselines);
    selector.SetObservation(&observation);
    ASSERT_TRUE(selector.Create("", "", WS_CHILD | WS_VISIBLE, {0, 0, 600, 200}, &frame, 7));
    EXPECT_EQ(selector.GetWindowText(), "Choose baselines");
    ABitArray marks(3);
    marks.set(1);
    selector.SetMark(marks);
    EXPECT_EQ(frame.marks, 1);
    EXPECT_EQ(selector.CountText(), "1 of 3 marked");
    // buttons, by which the keyboard goes back to the table
    const struct {
        unsigned id;
        const char* count;
    } presses[] = {{ID_MARK_INVERT, "2 of 3 marked"},
                   {ID_MARK_ALL, "3 of 3 marked"},
                   {ID_MARK_NONE, "0 of 3 marked"}};
    for (const auto& press : presses) {
        CWnd* const button = selector.GetDlgItem(press.id);
        ASSERT_TRUE(button);
        (void)button->SetFocus();
        (void)selector.SendMessage(WM_COMMAND, press.id,
                                   static_cast<LPARAM>(button->GetSafeHwnd()));
        EXPECT_EQ(selector.CountText(), press.count);
        EXPECT_EQ(selector.GetDlgItem(2)->GetWindowText(), press.count);
        EXPECT_EQ(CWnd::GetFocus(), &selector.table());
        EXPECT_NE(button->OnToolTip({1, 1}), "");
    }
    EXPECT_EQ(frame.marks, 4);
    // in whatever order they are shown, marks belong to baselines
    selector.SetMark(marks);
    for (const unsigned sort : {ID_TABLE_SORT_DOWN, ID_TABLE_SORT_UP, ID_TABLE_SORT_STORED}) {
        ASelectRect length{1, 5, 1, 5};
        selector.table().SetSelectRect(length);
        (void)selector.table().RunTableCommand(sort);
        for (int row = 1; row <= 3; ++row)
            EXPECT_EQ(selector.table().isMarked(selector.table().itemOf(row, 1)) != 0,
                      selector.table().cellAsStr(row, 6, nullptr) == "1" &&
                          selector.table().cellAsStr(row, 7, nullptr) == "3");
    }
    EXPECT_TRUE(selector.GetMark() == marks);
}
