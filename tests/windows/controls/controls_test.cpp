#include "pavane/windows/controls/AColorComboBox.h"
#include "pavane/windows/controls/AColorMenu.h"
#include "pavane/windows/controls/AComboBox.h"
#include "pavane/windows/controls/AImageList.h"
#include "pavane/windows/controls/AInfoText.h"
#include "pavane/windows/controls/AListBox.h"
#include "pavane/windows/controls/AProgressBar.h"
#include "pavane/windows/controls/ASplitterWnd.h"
#include "pavane/windows/controls/AStaticText.h"
#include "pavane/windows/controls/AToolTip.h"
#include "platform/clipboard.h"
#include "platform/color_dialog.h"
#include "platform/message_translator.h"
#include "platform/profile.h"
#include "platform/test_window.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

constexpr unsigned shown = WS_CHILD | WS_VISIBLE | WS_TABSTOP;

struct Frame : TestWindow {
    Frame() : TestWindow(nullptr, WS_VISIBLE, {0, 0, 400, 300}) {}
    int OnCommand(unsigned id, unsigned code, CWnd*) override
    {
        return commands.emplace_back(id, code), 1;
    }
    std::vector<std::pair<unsigned, unsigned>> commands;
};

void press(CWnd& window, int key, int held = 0)
{
    SetKeyStateOverride(held);
    window.SendMessage(WM_KEYDOWN, static_cast<WPARAM>(key));
    SetKeyStateOverride(-1);
}

void drag(CWnd& window, CPoint from, CPoint to)
{
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    window.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
    window.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
}

/// What a screen reader is told of the window as a whole.
AccessPart told(CWnd& window)
{
    AccessPart part;
    EXPECT_TRUE(window.GetAccess() && window.GetAccess()->GetAccessPart(0, part));
    AccessPart none;
    EXPECT_FALSE(window.GetAccess()->GetAccessPart(1, none));
    return part;
}

struct ProfileFile {
    ProfileFile()
    {
        const char* const folder = std::getenv("TEST_TMPDIR");
        file_ = CString(folder ? folder : "/tmp") + "/controls_test.ini";
        (void)std::remove(file_.c_str());  // that of a run before
        SetProfileFile(file_);
    }
    ~ProfileFile() { SetProfileFile(""); }

private:
    CString file_;
};

}  // namespace

TEST(AListBox, MovesChosenLinesAsBlocks)
{
    const struct {
        std::vector<int> chosen;
        int step;
        const char* after;  // five lines, those chosen in capitals
    } rows[] = {{{0}, -1, "Abcde"},
                {{2}, -1, "aCbde"},
                {{2}, 1, "abdCe"},
                {{4}, 1, "abcdE"},
                {{0, 1}, -1, "ABcde"},
                {{0, 2}, -1, "ACbde"},
                {{1, 2}, 1, "adBCe"},
                {{3, 4}, 1, "abcDE"},
                {{0, 3, 4}, 1, "bAcDE"},
                {{}, 1, "abcde"},
                {{0, 1, 2, 3, 4}, -1, "ABCDE"}};
    Frame frame;
    for (const auto& row : rows) {
        AListBox list;
        ASSERT_TRUE(list.Create(shown | LBS_EXTENDEDSEL, {0, 0, 100, 200}, &frame, 1, "Sources"));
        for (const char* text : {"a", "b", "c", "d", "e"})
            list.AddString(text);
        for (const int line : row.chosen)
            list.SetSel(line);
        (void)list.MoveSelection(row.step);
        CString after;
        for (int i = 0; i < list.GetCount(); ++i)
            after += list.GetSel(i) ? static_cast<char>(list.GetText(i)[0] - 'a' + 'A')
                                    : list.GetText(i)[0];
        EXPECT_EQ(after, row.after);
    }
}

TEST(AComboBox, KeepsItsLastEntriesInTheProfile)
{
    const ProfileFile profile;
    Frame frame;
    const auto lines = [](const AComboBox& combo) {
        CString all;
        for (int i = 0; i < combo.GetCount(); ++i)
            all += combo.GetLBText(i) + ' ';
        return all;
    };
    {
        AComboBox combo;
        ASSERT_TRUE(combo.Create(shown, {0, 0, 100, 200}, &frame, 1, "Source"));
        combo.AddString("fixed");
        EXPECT_FALSE(combo.Remember());  // nowhere to
        ASSERT_TRUE(combo.SetHistory("Test", 2));
        for (const char* text : {"one", "two", " ", "one", "three"}) {
            combo.SetWindowText(text);
            EXPECT_EQ(combo.Remember(), text[0] != ' ') << text;
        }
        EXPECT_EQ(lines(combo), "three one fixed ");
        combo.ResetContent();  // what a host proposes is no entry
        combo.AddString("proposed");
        EXPECT_EQ(lines(combo), "three one proposed ");
        static_cast<CComboBox&>(combo).ResetContent();
        combo.AddString("proposed");
        combo.SetWindowText("one");
        EXPECT_TRUE(combo.Remember());
        EXPECT_EQ(lines(combo), "one three proposed ");
    }
    AComboBox combo;
    ASSERT_TRUE(combo.Create(shown, {0, 0, 100, 200}, &frame, 2));
    ASSERT_TRUE(combo.SetHistory("Test", 5));
    EXPECT_EQ(lines(combo), "one three ");
    EXPECT_TRUE(combo.Forget());
    EXPECT_EQ(combo.GetCount(), 0);
    EXPECT_EQ(GetProfileString("Test", "Entry1"), "");
}

TEST(AColorMenu, ReturnsTheChosenColour)
{
    Frame frame;
    AColorMenu menu;
    menu.Add("Red", RGB(255, 0, 0));
    menu.AddSeparator();
    menu.Add({"heat", {0, RGB(255, 0, 0), RGB(255, 255, 255)}});
    menu.SetMore(1);
    menu.SetCurrent(2);
    const struct {
        MenuAnswer answer;
        int index, count;
    } rows[] = {{[](const CMenu&, CPoint) { return 1u; }, 0, 3},
                {[](const CMenu&, CPoint) { return 0u; }, -1, 3},
                {[](const CMenu& m, CPoint) { return m.lines()[2].checked ? 3u : 0u; }, 2, 3},
                {[](const CMenu& m, CPoint) { return m.lines()[4].id; }, 3, 4}};
    SetColorDialogAnswer([](COLORREF& color) { return color = RGB(0x1F, 0x6F, 0xC8), 1; });
    for (const auto& row : rows) {
        SetMenuAnswer(row.answer);
        EXPECT_EQ(menu.Track({0, 0}, &frame), row.index);
        EXPECT_EQ(menu.GetCount(), row.count);
    }
    AColorMenu odd;
    (void)odd.Add("R&D", 0);
    CMenu popup;
    EXPECT_EQ(odd.AppendTo(popup, 7), 1);
    EXPECT_EQ(popup.lines().front().text, "R&&D");  // no letter of the menu
    EXPECT_EQ(menu.GetItem(3)->name, "#1F6FC8");
    EXPECT_EQ(menu.GetItem(4), nullptr);
    SetMenuAnswer(nullptr);
}

namespace
{

COLORREF askedFrom = 0;

}  // namespace

TEST(AColorComboBox, ComesBackToItsChoiceFromMore)
{
    const COLORREF red = RGB(255, 0, 0), blue = RGB(0, 0, 255), other = RGB(0x1F, 0x6F, 0xC8);
    const struct {
        void (*choose)(AColorComboBox& combo);
        int chosen;  // line
        COLORREF color;
    } rows[] = {{[](AColorComboBox&) {}, -1, 0},
                {[](AColorComboBox& c) { c.SetColor(RGB(0, 0, 255)); }, 1, blue},
                {[](AColorComboBox& c) { c.SetCurSel(0); }, 0, red},
                {[](AColorComboBox& c) { c.SetCurSel(1), (void)c.OnSelChosen(1); }, 1, blue},
                {[](AColorComboBox& c) { c.SetColor(1), c.SetCurSel(-1); }, -1, 0}};
    for (const auto& row : rows)
        for (const int agrees : {0, 1}) {
            Frame frame;
            AColorComboBox combo;
            ASSERT_TRUE(combo.Create(shown, {0, 0, 100, 200}, &frame, 1));
            combo.AddColor("Red", red);
            EXPECT_TRUE(combo.SetMore(1) && combo.SetMore(1));
            EXPECT_EQ(combo.AddColor("Blue", blue), 1);
            row.choose(combo);
            SetColorDialogAnswer(agrees ? [](COLORREF& c) { return c = RGB(0x1F, 0x6F, 0xC8), 1; }
                                        : [](COLORREF& c) { return askedFrom = c, 0; });
            const int more = combo.GetCount() - 1;
            (void)static_cast<CComboBox&>(combo).SetCurSel(more);  // as the user does
            EXPECT_EQ(combo.OnSelChosen(more), agrees);
            EXPECT_EQ(combo.GetCurSel(), agrees ? more : row.chosen);
            COLORREF color = 0;
            EXPECT_EQ(combo.GetColor(color), agrees || row.chosen >= 0);
            EXPECT_EQ(color, agrees ? other : row.color);
            EXPECT_EQ(askedFrom, row.color);
        }
    SetColorDialogAnswer(nullptr);
}

TEST(AStaticText, IsCutSelectedAndCopied)
{
    Frame frame;
    AStaticText text;
    ASSERT_TRUE(
        text.Create("3C 273 at 8.4 GHz, uniform weights", shown, {0, 0, 60, 20}, &frame, 1));
    EXPECT_TRUE(text.IsCut());
    EXPECT_EQ(text.OnToolTip({}), text.GetText());
    const auto picture = [&](int from, int to) {
        CBitmap bitmap;
        EXPECT_TRUE(bitmap.CreateBitmap(60, 20, 1));
        CMemoryDC dc(bitmap);
        CRect all(0, 0, 60, 20);
        text.DrawWindow(dc, all, all);
        std::vector<std::uint32_t> pixels;
        for (int i = 0; i < 60 * 20; ++i)
            if (i % 60 >= from && i % 60 < to)
                pixels.push_back(bitmap.bits()[i]);
        return pixels;
    };
    const auto unseen = picture(0, 60);
    text.SetFocus();
    EXPECT_EQ(picture(0, 60), unseen);  // the dots are there with the focus too
    press(text, VK_END);
    const auto dots = picture(0, 8);  // before the end of the text as well: little ink
    const auto ink =
        std::count_if(dots.begin(), dots.end(), [&](auto p) { return p != unseen[0]; });
    EXPECT_TRUE(ink > 0 && ink < 16) << ink;
    const struct {
        int key, held;
        const char* chosen;
    } rows[] = {{VK_HOME, 0, ""},           {VK_RIGHT, MK_SHIFT, "3"}, {VK_RIGHT, MK_SHIFT, "3C"},
                {VK_LEFT, MK_SHIFT, "3"},   {VK_END, 0, ""},           {VK_LEFT, MK_SHIFT, "s"},
                {'A', MK_CONTROL, nullptr}, {VK_HOME, MK_SHIFT, ""}};
    for (const auto& row : rows) {
        press(text, row.key, row.held);
        EXPECT_EQ(text.GetSelectedText(), row.chosen ? CString(row.chosen) : text.GetText())
            << row.key;
    }
    CString copied;
    press(text, 'C', MK_CONTROL);
    EXPECT_TRUE(GetClipboardText(copied));
    EXPECT_EQ(copied, text.GetText());
    text.SetValue(0.00321, "Jy/beam", 3);
    EXPECT_EQ(text.GetText(), "3.21 mJy/beam");
    text.MoveWindow({0, 0, 300, 20});
    EXPECT_FALSE(text.IsCut());
    drag(text, {2, 10}, {290, 10});
    EXPECT_EQ(text.GetSelectedText(), "3.21 mJy/beam");
    text.SetName("Peak");
    EXPECT_EQ(told(text).name + told(text).value, "Peak3.21 mJy/beam");
}

TEST(AInfoText, ScrollsFindsAndCopies)
{
    Frame frame;
    AInfoText info;
    ASSERT_TRUE(info.Create(shown, {0, 0, 200, 100}, &frame, 1, "Log"));
    for (int i = 1; i <= 200; ++i)
        info.Append("line " + std::to_string(i));
    const int end = info.GetScrollPos(SB_VERT);
    EXPECT_GT(end, 180);  // the end stays in view
    info.SendMessage(WM_MOUSEWHEEL, WPARAM{50 * WHEEL_DELTA} << 16);
    EXPECT_LT(info.GetScrollPos(SB_VERT), end - 100);
    const int back = info.GetScrollPos(SB_VERT);
    info.Append("another");
    EXPECT_EQ(info.GetScrollPos(SB_VERT), back);  // who reads is not disturbed
    EXPECT_TRUE(info.Find("LINE 77"));
    const int at = info.GetScrollPos(SB_VERT);
    EXPECT_TRUE(at <= 76 && at > 60);
    EXPECT_TRUE(info.Copy());
    CString copied;
    EXPECT_TRUE(GetClipboardText(copied));
    EXPECT_EQ(copied, "line 77");
    EXPECT_EQ(told(info).value, "line 77");
    press(info, VK_HOME, MK_CONTROL);
    press(info, VK_DOWN, MK_SHIFT);
    EXPECT_EQ(info.GetLines().selectedText(), "line 1\n");
    press(info, 'F', MK_CONTROL);
    CWnd* const field = info.GetDlgItem(1);
    ASSERT_TRUE(field && field->IsWindowVisible());
    field->SetWindowText("199");
    EXPECT_EQ(info.GetLines().caret().line, 198);
    press(*field, VK_ESCAPE);
    EXPECT_FALSE(field->IsWindowVisible());
    drag(info, {3, 10}, {190, 10});
    EXPECT_TRUE(info.GetLines().hasSelection());
    AStaticText value;
    CWnd none;
    ASSERT_TRUE(none.Create("", "", WS_CHILD | WS_VISIBLE, {0, 100, 9, 110}, &frame, 2) &&
                value.Create("1 Jy", shown, {0, 110, 99, 130}, &frame, 3));
    (void)info.SetFocus();
    for (CWnd* const next : {static_cast<CWnd*>(&value), static_cast<CWnd*>(&info)}) {
        press(*CWnd::GetFocus(), VK_TAB, next == &info ? MK_SHIFT : 0);
        EXPECT_EQ(CWnd::GetFocus(), next);
    }
    info.SetColumn(100);
    info.SetText("F1\tshows the keys");
    for (const auto& [from, chosen] : {std::pair{104, "show"}, std::pair{4, "F1\tshow"}}) {
        drag(info, {from, 10}, {134, 10});  // from the edge of a column into the second
        EXPECT_EQ(info.GetLines().selectedText().substr(0, CString(chosen).size()), chosen);
    }
    info.SetText(CString(3000, 'x'));
    info.SendMessage(WM_HSCROLL, SB_BOTTOM);
    EXPECT_GT(info.GetScrollPos(SB_HORZ), 1000);
    info.Clear();
    press(info, VK_NEXT);
    EXPECT_EQ(info.GetLines().count(), 0);
}

TEST(AProgressBar, TellsAmountAndText)
{
    Frame frame;
    AProgressBar bar;
    ASSERT_TRUE(bar.Create(WS_CHILD | WS_VISIBLE, {0, 0, 200, 20}, &frame, 1, "Gridding"));
    const struct {
        double fraction;
        const char* text;
        const char* value;
        const char* shown;
    } rows[] = {{0.25, "", "25 %", "25 %"},
                {0.5, "IF 3", "50 %", "IF 3, 50 %"},
                {-1, "IF 4", "under way", "IF 4"},
                {7, "", "100 %", "100 %"},
                {std::nan(""), "", "under way", ""}};
    for (const auto& row : rows) {
        bar.SetText(row.text);
        bar.SetFraction(row.fraction);
        EXPECT_EQ(told(bar).value, row.value);
        EXPECT_EQ(told(bar).name, *row.text ? row.text : "Gridding");
        EXPECT_EQ(bar.GetShownText(), row.shown);
    }
}

TEST(ASplitterWnd, KeepsItsShareAndEvensOut)
{
    const ProfileFile profile;
    Frame frame;
    for (const double kept : {-1.0, 0.5}) {
        ASplitterWnd split;
        ASSERT_TRUE(split.Create(CSplitterWnd::Split::columns, shown, {0, 0, 400, 100}, &frame, 1));
        EXPECT_EQ(split.SetProfile("Test"), kept >= 0);
        if (kept >= 0) {
            EXPECT_EQ(split.GetShare(), kept);
        }
        press(split, VK_HOME);
        EXPECT_LT(split.GetShare(), 0.2);
        EXPECT_EQ(GetProfileString("Test", "Splitter").substr(0, 2), "0.");
        const CPoint bar = split.GetBarRect().CenterPoint();
        split.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(bar.x, bar.y));
        EXPECT_EQ(told(split).value, "50 %");
        EXPECT_EQ(GetProfileString("Test", "Splitter"), "0.5");
    }
}

TEST(AImageList, FindsItsPicturesByName)
{
    const char* const rows[] = {"##", "#+"};
    AImageList images;
    ASSERT_TRUE(images.Create(4, 4));
    EXPECT_EQ(images.Add(rows, 2), 0);
    EXPECT_EQ(images.AddNamed("corner", rows, 2), 1);
    EXPECT_EQ(images.AddNamed("corner", rows, 2), -1);
    EXPECT_EQ(images.Find("corner"), 1);
    EXPECT_EQ(images.Find(""), -1);
    images.FollowDesktop();
    CBitmap drawn[2];
    for (int enabled = 0; enabled < 2; ++enabled) {
        ASSERT_TRUE(drawn[enabled].CreateBitmap(8, 8, 1));
        CMemoryDC dc(drawn[enabled]);
        EXPECT_TRUE(images.DrawIn(dc, 1, {0, 0, 8, 8}, enabled));
        EXPECT_NE(drawn[enabled].bits()[2 * 8 + 2], drawn[enabled].bits()[0]);
        EXPECT_FALSE(images.DrawIn(dc, 2, {0, 0, 8, 8}, enabled));
    }
    EXPECT_NE(drawn[0].bits()[2 * 8 + 2], drawn[1].bits()[2 * 8 + 2]);
}

TEST(AToolTip, ComesByFocusAndGoesWithEscape)
{
    Frame frame;
    AStaticText text;
    ASSERT_TRUE(text.Create("Beam", shown, {20, 20, 120, 40}, &frame, 1));
    AToolTip tips;
    ASSERT_TRUE(tips.Create(&frame));
    EXPECT_FALSE(tips.AddTool(nullptr, "nothing"));
    ASSERT_TRUE(tips.AddTool(&text, "The restoring beam:\nmajor, minor, angle"));
    tips.SetDelay(0);
    text.SetFocus();
    const auto offer = [&](unsigned message, int key) {
        MSG m;
        m.hwnd = text.GetSafeHwnd();
        m.message = message;
        m.wParam = static_cast<WPARAM>(key);
        (void)OfferToTranslator(m);
        tips.SendMessage(WM_TIMER, 1);
    };
    offer(WM_KEYUP, VK_TAB);
    tips.SendMessage(WM_TIMER, 1);
    EXPECT_EQ(tips.GetTip().GetText(), "The restoring beam:\nmajor, minor, angle");
    CRect around, common;
    text.GetWindowRect(around);
    EXPECT_FALSE(common.IntersectRect(tips.GetTip().GetRect(), around));
    offer(WM_KEYDOWN, VK_ESCAPE);
    EXPECT_FALSE(tips.GetTip().IsVisible());
    tips.RemoveTools(&text);
    offer(WM_KEYUP, VK_TAB);
    EXPECT_FALSE(tips.GetTip().IsVisible());
}

namespace
{

MessageTranslator below = nullptr;
int above = 0;

int callsBelow(const MSG& message) { return ++above < 100 && below ? below(message) : 0; }

}  // namespace

TEST(AToolTip, StandsInTheChainOfTranslatorsOnce)
{
    Frame frame;
    auto first = std::make_unique<AToolTip>();
    below = SetMessageTranslator(callsBelow);
    first.reset();
    AToolTip second;
    (void)OfferToTranslator(MSG());
    EXPECT_EQ(above, 2);  // once of the second tip, which asks who is there
    SetMessageTranslator(below);
}

TEST(AToolTip, LetsItsCallbackDoAnything)
{
    for (const int ends : {0, 1, 2}) {
        Frame frame;
        AStaticText text;
        ASSERT_TRUE(text.Create("Beam", shown, {0, 0, 400, 300}, &frame, 1));
        auto tips = std::make_unique<AToolTip>();
        ASSERT_TRUE(tips->Create(&frame));
        const CString said(100, 'x');
        int asked = 0;
        ASSERT_TRUE(tips->AddTool(&text, [&, said](CPoint, CRect&) {
            ++asked;
            if (ends == 0) {
                tips->RemoveTools(&text);
                (void)tips->AddTool(&text, "another");
            } else if (ends == 1) {
                (void)text.DestroyWindow();
            } else {
                (void)frame.DestroyWindow();
            }
            return said;
        }));
        CRect place;
        text.GetWindowRect(place);
        SetCursorPos(place.CenterPoint());
        tips->SendMessage(WM_TIMER, 1);
        EXPECT_EQ(asked, 1) << ends;
    }
}
