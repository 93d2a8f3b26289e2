#include "platform/animation.h"
#include "platform/CMenu.h"
#include "platform/message_translator.h"
#include "platform/picture_file.h"
#include "platform/test_window.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <string>

using namespace pavane;

namespace
{

std::vector<unsigned> offered;
bool swallowsAll = false;

int note(const MSG& message)
{
    offered.push_back(message.message);
    return swallowsAll;
}

/// The translator is there while this lives.
struct Translated {
    explicit Translated(bool swallows)
    {
        settle();
        offered.clear();
        swallowsAll = swallows;
        before = SetMessageTranslator(note);
    }
    ~Translated() { SetMessageTranslator(before); }
    MessageTranslator before;
    std::vector<unsigned> taken() const
    {
        std::vector<unsigned> kinds;
        for (const unsigned m : std::exchange(offered, {}))
            if (m != WM_MOUSEMOVE)
                kinds.push_back(m);
        return kinds;
    }
};

QWidget* widgetAt(const CWnd& window)
{
    CRect rect;
    window.GetClientRect(rect);
    window.ClientToScreen(rect);
    return QApplication::widgetAt(rect.left + 5, rect.top + 5);
}

std::string clipFile(const char* name, const std::string& bytes)
{
    std::string file = std::string(std::getenv("TEST_TMPDIR")) + "/" + name;
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

/// A GIF of `frames` frames of one pixel, 20 ms each, red and blue in turn, that asks to be
/// repeated for ever.
std::string clip(int frames, const std::string& size = std::string("\1\0\1\0", 4))
{
    std::string gif = "GIF89a" + size +
                      std::string("\x80\0\0\xFF\0\0\0\0\xFF\x21\xFF\x0BNETSCAPE2.0\3\1\0\0\0", 28);
    for (int i = 0; i < frames; ++i)
        gif += std::string("\x21\xF9\4\0\2\0\0\0,\0\0\0\0\1\0\1\0\0\2\2", 20) +
               static_cast<char>(i % 2 ? 0x4C : 0x44) + std::string("\1\0", 2);
    return gif + ";";
}

}  // namespace

TEST(MessageTranslator, SeesEachInputEventOfEveryWindowOnce)
{
    TestWindow window(nullptr, WS_VISIBLE, {50, 60, 250, 200});
    static constexpr MenuItem undo[] = {{"Undo\tCtrl+Z", 77, nullptr, 0}};
    static constexpr MenuItem bars[] = {{"Edit", 0, undo, 1}};
    CMenu bar;
    ASSERT_TRUE(bar.LoadMenu(MenuTemplate{1, bars, 1}));
    window.SetMenu(bar);
    QDialog dialog;
    QLineEdit edit(&dialog);
    dialog.show();
    settle();
    for (const bool swallows : {false, true}) {
        QWidget* const client = widgetAt(window);
        ASSERT_TRUE(client);
        const Translated translated(swallows);
        window.seen.clear();
        QTest::mouseClick(client, Qt::RightButton, {}, QPoint(5, 5));
        EXPECT_EQ(translated.taken(), (std::vector<unsigned>{WM_RBUTTONDOWN, WM_RBUTTONUP}));
        EXPECT_EQ(window.count(WM_RBUTTONDOWN), !swallows);
        // a key that the edit does not want goes on to the dialog
        edit.clear();
        QTest::keyClick(dialog.windowHandle(), Qt::Key_F3);
        QTest::keyClick(&edit, 'x');
        EXPECT_EQ(translated.taken(),
                  (std::vector<unsigned>{WM_KEYDOWN, WM_KEYUP, WM_KEYDOWN, WM_KEYUP}));
        EXPECT_EQ(edit.text(), swallows ? "" : "x");
        // the key of a short cut
        window.SetFocus();
        settle();
        offered.clear();
        window.seen.clear();
        QTest::keyClick(client->window()->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        settle();
        EXPECT_EQ(translated.taken().front(), WM_KEYDOWN);
        EXPECT_EQ(window.count(WM_COMMAND), !swallows);
        window.PostMessage(WM_USER + 5);
        QTest::qWait(1);
        EXPECT_EQ(translated.taken(), std::vector<unsigned>{WM_USER + 5});
        EXPECT_EQ(window.count(WM_USER + 5), !swallows);
    }
}

TEST(CAnimateCtrl, PlaysAClipAsOftenAsItIsTold)
{
    struct Case {
        unsigned from, to, repeat;
        int last;
    };
    for (const auto& [from, to, repeat, last] :
         {Case{0, 65535, 1, 2}, Case{0, 1, 1, 1}, Case{1, 2, 3, 2}, Case{9, 9, 1, 2},
          Case{0, 9, 0, 0}}) {
        TestWindow parent(nullptr, WS_VISIBLE, {0, 0, 100, 80});
        CAnimateCtrl player;
        ASSERT_TRUE(player.Create(WS_VISIBLE, {3, 2, 5, 5}, &parent, 100));
        ASSERT_TRUE(player.Open(clipFile("three.gif", clip(3))));
        CRect rect;
        player.GetClientRect(rect);
        EXPECT_EQ(rect, CRect(0, 0, 1, 1));
        EXPECT_EQ(player.GetFrame(), 0);
        ASSERT_TRUE(player.Play(from, to, repeat));
        (void)QTest::qWaitFor([&] { return parent.count(WM_COMMAND) == 2; }, 5000);
        EXPECT_EQ(parent.count(WM_COMMAND), 2) << "start and stop";
        EXPECT_EQ(player.GetFrame(), last);
        EXPECT_FALSE(player.IsPlaying());
        player.UpdateWindow();
        CClientDC dc(&player);
        EXPECT_EQ(dc.GetPixel(0, 0), last % 2 ? RGB(0, 0, 255) : RGB(255, 0, 0));
    }
}

TEST(CAnimateCtrl, OpensNothingThatIsNoClip)
{
    const std::string whole = clip(2);
    struct Case {
        const char* name;
        std::string bytes;
    } cases[] = {{"empty.gif", ""},
                 {"header.gif", whole.substr(0, 13)},
                 {"cut.gif", whole.substr(0, 45)},
                 {"no-frames.gif", clip(0)},
                 {"text.gif", "GIF89a is what it says"},
                 {"huge.gif", clip(1, "\xFF\xFF\xFF\xFF")}};
    TestWindow parent(nullptr, WS_VISIBLE, {0, 0, 100, 80});
    CAnimateCtrl player;
    ASSERT_TRUE(player.Create(WS_VISIBLE, {0, 0, 5, 5}, &parent, 100));
    for (const auto& [name, bytes] : cases) {
        const std::string file = clipFile(name, bytes);
        EXPECT_FALSE(player.Open(file)) << name;
        EXPECT_FALSE(player.Play(0, 65535, 1)) << name;
        CPicture picture;
        CString error;
        EXPECT_FALSE(LoadPicture(file, picture, error)) << name;
        EXPECT_NE(error, "") << name;
    }
    EXPECT_FALSE(player.Open("/nowhere/clip.gif"));
    EXPECT_FALSE(player.Open("/dev/zero"));
    // one that is cut after its first frame ends with it
    ASSERT_TRUE(player.Open(clipFile("one.gif", whole.substr(0, whole.size() - 20))));
    ASSERT_TRUE(player.Play(0, 65535, 0xFFFFFFFF));
    QTest::qWait(100);
    EXPECT_TRUE(player.IsPlaying());
    EXPECT_TRUE(player.Stop());
    QTest::qWait(1);
    EXPECT_EQ(parent.count(WM_COMMAND), 2);
}
