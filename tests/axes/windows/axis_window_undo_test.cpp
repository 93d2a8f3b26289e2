// What undo says that it takes back, and what it leaves selected.
#include "axes/windows/axis_window_fixture.h"
#include "pavane/axes/windows/ATrackerToolBar.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/windows/library_resources.h"
#include "platform/CMenu.h"

#include <functional>
#include <gtest/gtest.h>

using namespace pavane;

namespace
{

struct UndoWindow : AxisWindow {
    ATrackerToolBar bar;
    UndoWindow()
    {
        AddLibraryResources();
        (void)bar.Create(WS_CHILD | WS_VISIBLE, CRect(), &top, 7);
        (void)bar.SetupButtons(0);
        SetToolBar(&bar);
    }
    ~UndoWindow() override { SetToolBar(nullptr); }
    CString menuText(unsigned id)
    {
        CMenu menu;
        (void)menu.LoadMenu(GetMenuID());
        CMenu& popup = *menu.GetSubMenu(0);
        amMenuParse(&popup);
        for (const CMenu::Line& line : popup.lines())
            if (line.id == id)
                return line.text;
        return {};
    }
    void draw(int tool, CPoint from, CPoint to)
    {
        ChooseTool(tool);
        pull(from, to);
    }
    void pull(CPoint from, CPoint to) { drag({from, to}); }
};

}  // namespace

TEST(UndoNames, WhatItTakesBackInMenuTipAndNotice)
{
    UndoWindow w;
    ATrackerArrayInAxis& areas = w.areas();
    const auto corner = [&] { return w.at(5, 50); };
    const struct {
        const char* label;
        std::function<void()> edit;
    } cases[] = {
        {"drawing of Area 1", [&] { w.draw(toolRect, w.at(5, 5), w.at(20, 25)); }},
        {"move of Area 1", [&] { w.pull(w.at(12, 15), w.at(14, 15)); }},
        {"resizing of Area 1", [&] { w.pull(w.at(22, 25), w.at(24, 28)); }},
        {"move of Area 1", [&] { w.key(VK_ESCAPE), w.doubleClick(w.at(15, 15)), w.key(VK_LEFT); }},
        {"resizing of Area 1", [&] { areas.SetFocusAt(&w, 0, 2), w.key(VK_LEFT); }},
        {"edit of Area 1",
         [&] {
             ShapeValues shape;
             (void)areas.GetShape(0, shape);
             shape.rect.left += 1;
             (void)areas.SetShape(&w, 0, shape);
         }},
        {"drawing of Area 2", [&] { w.draw(toolEllipse, w.at(30, 5), w.at(50, 25)); }},
        {"turn of Area 2", [&] { areas.SetFocusAt(&w, 1, 4), w.key(VK_UP); }},
        {"new vertex of the open polygon", [&] { w.ChooseTool(toolArea), w.click(corner()); }},
        {"closing of Area 3",
         [&] {
             for (const CPoint p : {w.at(5, 70), w.at(20, 70)})
                 w.click(p);
             w.key(VK_RETURN);
         }},
        {"move of a vertex of Area 3", [&] { w.pull(corner(), corner() + CPoint(-20, 0)); }},
        {"new vertex of Area 3", [&] { w.key(VK_INSERT); }},
        {"deletion of a vertex of Area 3",
         [&] {
             EXPECT_EQ(w.menuText(ID_TRACK_DELETE), "&Delete area");
             w.key(VK_DELETE);
         }},
        {"copy of Area 3", [&] { w.key('D', MK_CONTROL); }},
        {"move of 4 areas", [&] { w.key('A', MK_CONTROL), w.key(VK_RIGHT); }},
        {"move of 4 areas", [&] { w.pull(w.at(12, 15), w.at(14, 15)); }},
        {"copy of 4 areas", [&] { w.key('A', MK_CONTROL), w.key('D', MK_CONTROL); }},
        {"deletion of 4 areas",
         [&] {
             EXPECT_EQ(w.menuText(ID_TRACK_DELETE), "&Delete area\tDel");
             w.key(VK_DELETE);
         }},
        {"deletion of Area 2", [&] { areas.DeleteItems(1, 1); }},
        {"addition of Area 4", [&] { areas.Add(new ARPRectTracker, 0); }},
        {"dropping of the open polygon",
         [&] { w.ChooseTool(toolArea), w.click(w.at(40, 50)), w.key(VK_ESCAPE); }},
        {"clearing of all areas", [&] { areas.Clear(&w); }},
        {"loading of areas",
         [&] {
             MemoryFile file;
             ASSERT_TRUE(ATrackerArrayInAxis().Store(file) && file.seek(0));
             areas.Add(new ARPRectTracker, 0);
             ASSERT_TRUE(areas.Load(file));
         }},
    };
    std::vector<std::string> labels;
    for (const auto& c : cases) {
        c.edit();
        const std::string text = c.label;
        EXPECT_EQ(w.menuText(ID_TRACK_UNDO), "&Undo " + text + "\tCtrl+Z");
        EXPECT_EQ(w.bar.GetButtonTip(ID_TRACK_UNDO), "Undo " + text + " (Ctrl+Z)");
        w.notices.clear();
        w.key('Z', MK_CONTROL);
        EXPECT_EQ(w.notices, std::vector<CString>{"Undone: " + text});
        EXPECT_EQ(w.menuText(ID_TRACK_REDO), "&Redo " + text + "\tCtrl+Shift+Z");
        EXPECT_EQ(w.bar.GetButtonTip(ID_TRACK_REDO), "Redo " + text + " (Ctrl+Shift+Z)");
        w.RunCommand(ID_TRACK_REDO);
        EXPECT_EQ(w.notices.back(), "Redone: " + text);
    }
    areas.history().clear();
    areas.FillAreasCB(&w);
    w.notices.clear();
    w.key('Z', MK_CONTROL);
    EXPECT_TRUE(w.notices.empty());
    EXPECT_EQ(w.menuText(ID_TRACK_UNDO), "&Undo\tCtrl+Z");
}

TEST(UndoSelection, HoldsAllThatComeBackFromADeletion)
{
    const struct {
        const char* what;
        std::function<void(UndoWindow&)> edit;
        std::vector<int> selected;  ///< after its undo
    } cases[] = {
        {"some",
         [](auto& w) {
             w.areas().SelectItem(&w, 0, 1), w.areas().SelectItem(&w, 2, 1),
                 w.areas().DelteTracker(&w);
         },
         {0, 2}},
        {"all", [](auto& w) { w.key('A', MK_CONTROL), w.key(VK_DELETE); }, {0, 1, 2}},
        {"clear", [](auto& w) { w.areas().Clear(&w); }, {0, 1, 2}},
        {"the current one", [](auto& w) { w.areas().DelteTracker(&w); }, {2}},
        {"another one", [](auto& w) { w.areas().DeleteItems(0, 1); }, {0}},
        {"no deletion", [](auto& w) { w.areas().CopyTracker(&w); }, {2}},
        {"a load",
         [](auto& w) {
             MemoryFile file;
             ATrackerArrayInAxis other;
             other.Add(new ARPRectTracker, 0);
             ASSERT_TRUE(other.Store(file) && file.seek(0) && w.areas().Load(file));
         },
         {2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        UndoWindow w;
        for (const int row : {5, 20, 35})
            w.draw(toolRect, w.at(row, 5), w.at(row + 10, 25));
        c.edit(w);
        w.areas().ClearSelection(&w);
        ASSERT_TRUE(w.areas().Undo(&w));
        EXPECT_EQ(w.areas().trackerCount(), 3);
        EXPECT_EQ(w.areas().SelectedItems(), c.selected);
        // and moves as one
        w.key(VK_LEFT);
        const int n = static_cast<int>(c.selected.size());
        EXPECT_EQ(w.areas().history().undoLabel(),
                  n > 1 ? "Move of " + std::to_string(n) + " areas"
                        : "Move of Area " + std::to_string(c.selected[0] + 1));
    }
}
