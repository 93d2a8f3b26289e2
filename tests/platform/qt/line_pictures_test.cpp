#include "platform/color_dialog.h"
#include "platform/core/tip_place.h"
#include "platform/image_list.h"
#include "platform/picture.h"
#include "platform/qt/command_frame.h"
#include "platform/slider.h"
#include "platform/tip_window.h"

#include <QMenu>

namespace pavane
{

namespace
{

constexpr QRgb red = 0xFFE01020, blue = 0xFF1020E0;

CPicture swatch(QRgb color, int width, int height)
{
    CPicture picture(width, height);
    for (int y = 0; y < height; ++y)
        std::fill_n(picture.row(y), width, color & 0xFFFFFF);
    return picture;
}

/// How many units of a widget's picture have exactly that colour.
double unitsOf(QWidget* widget, QRgb color)
{
    const QImage image = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
    double count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color;
    return count / (image.devicePixelRatio() * image.devicePixelRatio());
}

}  // namespace

TEST(LinePictures, AreSeenInTheirColoursBeforeTheText)
{
    CommandFrame frame;
    CListBox list;
    CComboBox combo;
    ASSERT_TRUE(list.Create(shown, {10, 10, 210, 110}, &frame, 1));
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, {10, 120, 210, 300}, &frame, 2));
    for (const char* text : {"none", "red", "blue"}) {
        list.AddString(text);
        combo.AddString(text);
    }
    const CPicture strip = swatch(red, 60, 12);
    EXPECT_TRUE(list.SetItemPicture(1, strip) && combo.SetItemPicture(1, strip));
    EXPECT_TRUE(list.SetItemPicture(2, swatch(blue, 48, 24), 2));  // two pixels to a unit
    EXPECT_FALSE(list.SetItemPicture(3, strip) || combo.SetItemPicture(-1, strip));
    list.SetCurSel(1);  // which does not tint it
    combo.SetCurSel(1);
    EXPECT_EQ(unitsOf(widgetOfWindow(list), red), 60 * 12);
    EXPECT_EQ(unitsOf(widgetOfWindow(list), blue), 24 * 12);
    EXPECT_EQ(unitsOf(widgetOfWindow(combo), red), 60 * 12);
    const char* const dots[] = {"##", "+#"};
    CImageList images;
    ASSERT_TRUE(images.Create(8, 4) && images.Add(dots, 2) == 0);
    images.SetColors(RGB(0xE0, 0x10, 0x20), RGB(0x10, 0x20, 0xE0), 0);
    EXPECT_TRUE(list.SetItemImage(0, images, 0));
    EXPECT_FALSE(list.SetItemImage(0, images, 1));
    EXPECT_NEAR(unitsOf(widgetOfWindow(list), red), 60 * 12 + 3, 0.8);
    EXPECT_TRUE(list.SetItemPicture(1, CPicture()));
    EXPECT_LT(unitsOf(widgetOfWindow(list), red), 10);
    EXPECT_EQ(frame.taken(), Commands());
}

TEST(LinePictures, StandInMenusInTheirOwnSize)
{
    CommandFrame frame;
    CMenu menu;
    menu.AppendMenu("plain", 7);
    menu.AppendMenu("strip", 8);
    EXPECT_TRUE(menu.SetItemPicture(8, MF_BYCOMMAND, swatch(red, 60, 12)));
    EXPECT_FALSE(menu.SetItemPicture(9, MF_BYCOMMAND, swatch(red, 60, 12)));
    whenShown<QMenu>(QApplication::activePopupWidget, [](QMenu& shownMenu) {
        EXPECT_EQ(unitsOf(&shownMenu, red), 60 * 12);
        EXPECT_LT(shownMenu.height(), 100);
        QTest::keyClick(&shownMenu, Qt::Key_Down);
        QTest::keyClick(&shownMenu, Qt::Key_Down);
        EXPECT_EQ(unitsOf(&shownMenu, red), 60 * 12);  // chosen: the same
        QTest::keyClick(&shownMenu, Qt::Key_Return);
    });
    EXPECT_EQ(menu.Clone().TrackPopupMenu(TPM_RETURNCMD, {100, 100}, &frame), 8);
}

TEST(CListBox, ChoosesSeveralMarksAndMoves)
{
    CommandFrame frame;
    CListBox list;
    ASSERT_TRUE(list.Create(shown | LBS_EXTENDEDSEL | LBS_CHECKS, {10, 10, 210, 210}, &frame, 1));
    for (const char* text : {"Alpha", "Beta", "Gamma", "Delta", "Delphi"})
        list.AddString(text);
    QWidget* const widget = widgetOfWindow(list);
    list.SetFocus();
    list.SetCurSel(0);
    using Lines = std::vector<int>;
    const Qt::KeyboardModifiers none;
    const struct {
        int key;
        Qt::KeyboardModifiers held;
        Lines chosen, marked;
    } rows[] = {
        {Qt::Key_Down, none, {1}, {}},      {Qt::Key_Down, Qt::ShiftModifier, {1, 2}, {}},
        {Qt::Key_Space, none, {1, 2}, {2}}, {Qt::Key_A, Qt::ControlModifier, {0, 1, 2, 3, 4}, {2}},
        {Qt::Key_Home, none, {0}, {2}},     {Qt::Key_D, none, {3}, {2}}};
    for (const auto& row : rows) {
        frame.taken();
        const Lines before = list.GetSelItems();
        QTest::keyClick(widget, static_cast<Qt::Key>(row.key), row.held);
        EXPECT_EQ(list.GetSelItems(), row.chosen) << row.key;
        Lines marked;
        for (int i = 0; i < list.GetCount(); ++i)
            if (list.GetCheck(i))
                marked.push_back(i);
        EXPECT_EQ(marked, row.marked) << row.key;
        const unsigned code = before == row.chosen ? LBN_CHECKED : LBN_SELCHANGE;
        EXPECT_EQ(frame.taken(), (Commands{{1, code}})) << row.key;
    }
    EXPECT_TRUE(list.SetSel(1) && list.SetSel(3, 0) && list.SetCheck(1, 1));
    EXPECT_TRUE(list.MoveItem(1, 4));
    EXPECT_FALSE(list.MoveItem(1, 5) || list.MoveItem(-1, 0) || list.SetSel(5));
    EXPECT_EQ(list.GetText(4) + list.GetText(1), "BetaGamma");
    EXPECT_EQ(list.GetSelItems(), (Lines{4}));
    EXPECT_TRUE(list.GetCheck(4) && list.GetCheck(1) && !list.GetCheck(0));
    EXPECT_TRUE(list.SetSel(-1));
    EXPECT_EQ(list.GetSelCount(), 5);
    EXPECT_EQ(list.SelectString(2, "de"), 3);
    EXPECT_EQ(list.ItemFromPoint(list.GetItemRect(3).CenterPoint()), 3);
    EXPECT_EQ(frame.taken(), Commands());
}

TEST(CComboBox, FiltersByWhatIsTyped)
{
    CommandFrame frame;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWN, {10, 10, 210, 210}, &frame, 1));
    for (const char* text : {"3C 273", "Cygnus A", "3C 84", "Virgo A"})
        combo.AddString(text);
    EXPECT_EQ(combo.InsertString(1, "3C 48"), 1);
    ASSERT_TRUE(combo.SetFilter(1));
    combo.SetFocus();
    QTest::keyClicks(widgetOfWindow(combo), "a");
    QWidget* const popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(combo.GetWindowText(), "Virgo A");
    EXPECT_EQ(combo.GetCurSel(), 4);
    EXPECT_EQ(frame.commands.back(), (CommandFrame::Command{1, CBN_SELCHANGE}));
}

TEST(CSliderCtrl, IsMovedByKeysAndPointer)
{
    CommandFrame frame;
    CSliderCtrl slider;
    ASSERT_TRUE(slider.Create(shown, {10, 10, 210, 34}, &frame, 1));
    slider.SetRange(0, 63);
    slider.SetPageSize(16);
    slider.SetFocus();
    const struct {
        int key, after;
    } rows[] = {{Qt::Key_Right, 1},  {Qt::Key_PageUp, 17},   {Qt::Key_End, 63},
                {Qt::Key_Right, 63}, {Qt::Key_PageDown, 47}, {Qt::Key_Home, 0},
                {Qt::Key_Left, 0}};
    for (const auto& row : rows) {
        const int before = slider.GetPos();
        QTest::keyClick(widgetOfWindow(slider), static_cast<Qt::Key>(row.key));
        EXPECT_EQ(slider.GetPos(), row.after) << row.key;
        EXPECT_EQ(frame.taken(), before == row.after ? Commands() : (Commands{{1, SLN_MOVED}}));
    }
    EXPECT_EQ(slider.SetPos(99), 0);
    EXPECT_EQ(slider.SetPos(0), 63);
    slider.SetRange(5, 3);
    EXPECT_EQ(slider.GetPos(), 5);
    slider.SetRange(0, 63);
    slider.SetPos(0);
    EXPECT_EQ(frame.taken(), Commands());
    QTest::mousePress(widgetOfWindow(slider), Qt::LeftButton, {}, {6, 12});
    QTest::mouseMove(widgetOfWindow(slider), {199, 12});
    EXPECT_TRUE(slider.IsDragged());
    QTest::mouseRelease(widgetOfWindow(slider), Qt::LeftButton, {}, {199, 12});
    EXPECT_EQ(slider.GetPos(), 63);
    EXPECT_EQ(frame.commands.back(), (CommandFrame::Command{1, SLN_RELEASED}));
}

TEST(CTipWnd, NeverLiesOverWhatItExplains)
{
    const CRect screen(0, 0, 800, 600);
    const struct {
        CRect around;
        CSize size;
        CRect tip;
    } rows[] = {{{100, 100, 150, 120}, {200, 40}, {100, 124, 300, 164}},  // below
                {{700, 100, 750, 120}, {200, 40}, {600, 124, 800, 164}},  // moved into the screen
                {{100, 570, 150, 590}, {200, 40}, {100, 526, 300, 566}},  // above
                {{0, 0, 300, 600}, {200, 40}, {304, 0, 504, 40}},         // right
                {{500, 0, 800, 600}, {200, 40}, {296, 0, 496, 40}},       // left
                {{5, 5, 795, 500}, {900, 300}, {0, 504, 800, 600}},       // what fits
                {{0, 0, 800, 600}, {200, 40}, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(placeTip(row.size, row.around, screen), row.tip) << row.around.left;
    CommandFrame frame;
    CEdit edit;
    ASSERT_TRUE(edit.Create(shown, {10, 10, 110, 30}, &frame, 1));
    edit.SetFocus();
    CTipWnd tip;
    CRect around;
    edit.GetWindowRect(around);
    EXPECT_FALSE(tip.Show("", around, &frame));
    ASSERT_TRUE(tip.Show("one <b>line</b>\nand another", around, &frame));
    EXPECT_TRUE(tip.IsVisible() && CWnd::GetFocus() == &edit);
    CRect common;
    EXPECT_FALSE(common.IntersectRect(tip.GetRect(), around));
    const int two = tip.GetRect().Height();
    ASSERT_TRUE(tip.Show(CString(300, 'm') + " " + CString(40, 'm'), around, &frame));
    ASSERT_TRUE(tip.Show("one", around, &frame));
    EXPECT_LT(tip.GetRect().Height(), two);
    frame.DestroyWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(tip.IsVisible());
}

TEST(ColorDialog, IsAnsweredByATest)
{
    SetColorDialogAnswer([](COLORREF& color) { return color = RGB(1, 2, 3), 1; });
    COLORREF color = 0;
    EXPECT_TRUE(AskColor(color, "Colour"));
    EXPECT_EQ(color, RGB(1, 2, 3));
    SetColorDialogAnswer(nullptr);
}

}  // namespace pavane
