// The small controls in a light, a dark and a high-contrast palette; with PAVANE_PICTURES=FOLDER
// their pictures go there.
#include "pavane/windows/controls/AColorComboBox.h"
#include "pavane/windows/controls/AComboBox.h"
#include "pavane/windows/controls/AImageList.h"
#include "pavane/windows/controls/AInfoText.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/ASplitterWnd.h"
#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/qt/WindowPeer.h"
#include "platform/slider.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <QAccessible>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QTest>

namespace pavane
{

namespace
{

constexpr unsigned shown = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
const char* const star[] = {"    #    ", "    #    ", "#########", " ####### ",
                            "  #####  ", "  #####  ", " ### ### ", " #     # "};
const char* const lobe[] = {"         ", "  #####  ", " #+++++# ", "#+++++++#",
                            "#+++++++#", " #+++++# ", "  #####  "};

std::vector<COLORREF> ramp(COLORREF from, COLORREF to)
{
    std::vector<COLORREF> colors;
    const auto mixed = [](int a, int b, int i) { return a + (b - a) * i / 63; };
    for (int i = 0; i < 64; ++i)
        colors.push_back(RGB(mixed(GetRValue(from), GetRValue(to), i),
                             mixed(GetGValue(from), GetGValue(to), i),
                             mixed(GetBValue(from), GetBValue(to), i)));
    return colors;
}

/// Every small control once.
struct Gallery : CWnd {
    Gallery()
    {
        images.Create(12, 10);
        images.AddNamed("star", star, 8);
        images.AddNamed("lobe", lobe, 7);
        images.FollowDesktop();
        CreateEx(0, "Gallery", "Small controls", WS_OVERLAPPEDWINDOW, {10, 10, 630, 320}, nullptr,
                 0);
        split.Create(CSplitterWnd::Split::columns, shown, {10, 10, 610, 160}, this, 1);
        list.Create(shown | LBS_EXTENDEDSEL | LBS_CHECKS, {0, 0, 10, 10}, &split, 2, "Sources");
        info.Create(shown | WS_BORDER, {0, 0, 10, 10}, &split, 3, "Log");
        split.SetPanes(&list, &info);
        split.SetShare(0.4);
        for (const char* source : {"3C 273", "3C 84", "Cygnus A", "M 87", "Virgo A"}) {
            const int line = list.AddString(source);
            list.SetItemImage(line, images, line % 2);
            list.SetCheck(line, line != 3);
        }
        list.SetSel(1);
        list.SetSel(2);
        for (int i = 1; i <= 12; ++i)
            info.Append("IF " + std::to_string(i) + ": 36 baselines, 1284 visibilities");
        (void)info.Find("1284");
        source.Create(shown, {10, 172, 200, 300}, this, 4, "Source");
        source.AddString("3C 273");
        source.SetWindowText("3C 2");
        palette.Create(shown, {210, 172, 400, 300}, this, 5);
        palette.AddItem({"heat", ramp(RGB(20, 0, 0), RGB(255, 230, 120))});
        palette.SetCurSel(0);
        colour.Create(shown, {410, 172, 610, 300}, this, 6);
        colour.AddColor("Contours", RGB(0x1F, 0x6F, 0xC8));
        colour.SetMore(1);
        colour.SetCurSel(0);
        value.Create("", shown, {10, 210, 200, 230}, this, 7);
        value.SetName("Peak");
        value.SetValue(0.0032147, "Jy/beam");
        cut.Create("Restored with the beam of the dirty map, uniform weights", shown,
                   {210, 210, 400, 230}, this, 8);
        slider.Create(shown, {410, 208, 610, 232}, this, 9);
        slider.SetPos(40);
        done.Create(WS_CHILD | WS_VISIBLE, {10, 270, 300, 290}, this, 10);
        done.SetText("Gridding");
        done.SetFraction(0.45);
        running.Create(WS_CHILD | WS_VISIBLE, {310, 270, 610, 290}, this, 11);
        running.SetText("Reading");
        running.SetFraction(-1);
        tips.Create(this);
        tips.AddTool(
            &cut,
            "Restored with the beam of the dirty map,\nuniform weights:\n1.2 x 0.9 mas at 34 deg");
        tips.SetDelay(0);
        ShowWindow(SW_SHOW);
        (void)QTest::qWaitForWindowActive(peerOf(this)->outer());
        cut.SetFocus();
        for (int i = 0; i < 2; ++i)
            tips.SendMessage(WM_TIMER, 1);
    }
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect client;
        GetClientRect(client);
        dc.FillSolidRect(client, GetSysColor(COLOR_WINDOW));
    }
    AImageList images;
    AListBox list;
    AInfoText info;
    ASplitterWnd split;
    AComboBox source;
    AColorComboBox palette, colour;
    AStaticText value, cut;
    CSliderCtrl slider;
    AProgressBar done, running;
    AToolTip tips;
};

/// The greatest contrast of a pixel with the commonest colour.
double contrastIn(const QImage& image)
{
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    const auto less = [](const auto& a, const auto& b) { return a.second < b.second; };
    const QRgb ground = std::max_element(counts.begin(), counts.end(), less)->first;
    const auto color = [](QRgb c) { return RGB(qRed(c), qGreen(c), qBlue(c)); };
    double contrast = 1;
    for (const auto& [pixel, count] : counts)
        contrast = std::max(contrast, ContrastRatio(color(pixel), color(ground)));
    return contrast;
}

QPalette paletteOf(QColor window, QColor text, QColor accent, QColor onAccent)
{
    QPalette palette(window, window);
    palette.setColor(QPalette::Base, window);
    palette.setColor(QPalette::ToolTipBase, window);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, onAccent);
    return palette;
}

}  // namespace

TEST(SmallControls, AreReadInEveryPalette)
{
    const QPalette light = QApplication::palette();
    const struct {
        const char* name;
        QPalette palette;
    } rows[] = {
        {"light", light},
        {"dark", paletteOf({0x24, 0x27, 0x2C}, {0xE6, 0xE8, 0xEA}, {0x4A, 0x8F, 0xD8}, Qt::black)},
        {"contrast", paletteOf(Qt::black, Qt::white, Qt::yellow, Qt::black)}};
    const char* const folder = std::getenv("PAVANE_PICTURES");
    for (const auto& row : rows) {
        QApplication::setPalette(row.palette);
        Gallery gallery;
        QWidget* const widget = peerOf(&gallery)->widget;
        QTest::qWait(30);
        QImage picture = widget->grab().toImage();
        for (const CWnd* const control :
             {static_cast<const CWnd*>(&gallery.value), static_cast<const CWnd*>(&gallery.cut),
              static_cast<const CWnd*>(&gallery.info), static_cast<const CWnd*>(&gallery.done),
              static_cast<const CWnd*>(&gallery.running),
              static_cast<const CWnd*>(&gallery.list)}) {
            QWidget* const shownWidget = peerOf(control)->widget;
            EXPECT_GT(contrastIn(shownWidget->grab().toImage()), 4.5)
                << row.name << ' ' << control->GetDlgCtrlID();
        }
        EXPECT_NE(gallery.tips.GetTip().GetText().find("mas"), CString::npos);
        for (QWidget* const top : QApplication::topLevelWidgets()) {
            if (top->windowType() != Qt::ToolTip || !top->isVisible())
                continue;
            EXPECT_GT(contrastIn(top->grab().toImage()), 4.5) << row.name;
            QPainter painter(&picture);
            painter.drawPixmap(widget->mapFromGlobal(top->pos()), top->grab());
        }
        if (folder) {
            EXPECT_TRUE(picture.save(QString("%1/small-controls-%2-%3.png")
                                         .arg(folder)
                                         .arg(row.name)
                                         .arg(picture.devicePixelRatio())));
        }
    }
    QApplication::setPalette(light);
}

TEST(SmallControls, StandInTheAccessibleTree)
{
    Gallery gallery;
    const struct {
        const CWnd* control;
        QAccessible::Role role;
        const char *name, *value;
        int children;
    } rows[] = {{&gallery.list, QAccessible::List, "Sources", "Sources", 5},
                {&gallery.info, QAccessible::EditableText, "Log", "1284", 0},
                {&gallery.source, QAccessible::ComboBox, "3C 2", "3C 2", -1},
                {&gallery.palette, QAccessible::ComboBox, "heat", "heat", -1},
                {&gallery.value, QAccessible::StaticText, "Peak", "3.215 mJy/beam", 0},
                {&gallery.slider, QAccessible::Slider, "Depth", "40", 0},
                {&gallery.done, QAccessible::ProgressBar, "Gridding", "45 %", 0},
                {&gallery.running, QAccessible::ProgressBar, "Reading", "under way", 0},
                {&gallery.split, QAccessible::Separator, "Divider", "40 %", 2}};
    SetAccessName(gallery.slider.GetSafeHwnd(), "Depth");
    for (const auto& row : rows) {
        QAccessibleInterface* const part =
            QAccessible::queryAccessibleInterface(peerOf(row.control)->widget);
        ASSERT_TRUE(part && part->isValid()) << row.name;
        EXPECT_EQ(part->role(), row.role) << row.name;
        EXPECT_EQ(part->text(QAccessible::Name), row.name);
        const QString value = part->valueInterface()
                                  ? part->valueInterface()->currentValue().toString()
                                  : part->text(QAccessible::Value);
        EXPECT_EQ(value, row.value) << row.name;
        if (row.children >= 0) {
            EXPECT_EQ(part->childCount(), row.children) << row.name;
        }
    }
    // a combo box is called what is chosen in it
    EXPECT_EQ(QAccessible::queryAccessibleInterface(peerOf(&gallery.source)->widget)
                  ->text(QAccessible::Description),
              "Source");
    for (QWidget* const top : QApplication::topLevelWidgets())
        if (top->windowType() == Qt::ToolTip && top->isVisible()) {
            QAccessibleInterface* const tip = QAccessible::queryAccessibleInterface(top);
            ASSERT_TRUE(tip);
            EXPECT_EQ(tip->role(), QAccessible::StaticText);
            EXPECT_EQ(tip->text(QAccessible::Name),
                      QString::fromStdString(gallery.tips.GetTip().GetText()));
        }
    EXPECT_TRUE(gallery.tips.GetTip().IsVisible());
}

}  // namespace pavane
