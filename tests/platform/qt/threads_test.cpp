#include "platform/CDC.h"
#include "platform/gdi_objects.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace pavane
{

namespace
{

/// Text of many sizes, upright and turned, letters that join and letters that a font borrows.
void drawTexts(CDC& dc)
{
    const char* const texts[] = {"18h 36m 56.3s", "-0.5 \xE2\x88\x92 12\xC2\xB0",
                                 "\xCE\xB1\xCE\xB2 A\xCC\x81 \xE6\xBC\xA2",
                                 "Rel. declination (mas)"};
    int y = 0;
    for (int height = 9; height < 40; ++height) {
        LOGFONT shape;
        shape.lfHeight = height % 2 ? height : -height;
        shape.lfFaceName = height % 3 ? "Arial" : "Times New Roman";
        shape.lfWeight = height % 4 ? FW_NORMAL : FW_BOLD;
        shape.lfItalic = height % 5 == 0;
        shape.lfEscapement = height % 7 == 0 ? 900 : 0;
        CFont font;
        font.CreateFontIndirect(shape);
        CFont* const before = dc.SelectObject(&font);
        const CString text = texts[height % 4];
        dc.TextOut(10 + dc.GetTextExtent(text).cx % 17, y, text);
        dc.SelectObject(before);
        y += height;
    }
}

struct Drawn {
    std::vector<std::uint32_t> pixels;
    std::string page;
    bool operator==(const Drawn&) const = default;
};

Drawn draw(int thread)
{
    Drawn drawn;
    CPicture picture(400, 800);
    drawTexts(*picture.dc());
    for (int y = 0; y < picture.height(); ++y)
        drawn.pixels.insert(drawn.pixels.end(), picture.row(y), picture.row(y) + picture.width());
    const std::string file =
        testing::TempDir() + "threads-" + std::to_string(thread) + (thread % 2 ? ".pdf" : ".svg");
    CPageFile page(thread % 2 ? CPageFile::Format::pdf : CPageFile::Format::svg, 400, 800, "texts");
    drawTexts(page.dc());
    CString error;
    EXPECT_TRUE(page.Close(file, error)) << error;
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    drawn.page = text.str();
    (void)std::remove(file.c_str());
    return drawn;
}

}  // namespace

// Faces that are there already would hide what happens when two threads make the same.
TEST(Threads, DrawTextsAndPagesAtOnceAsOneAfterTheOther)
{
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    constexpr int count = 4;
    for (int round = 0; round < 3; ++round) {
        std::vector<Drawn> alone(2);
        for (int i = 0; i < 2; ++i)
            alone[static_cast<std::size_t>(i)] = draw(i);
        ASSERT_FALSE(alone[0].page.empty());
        ASSERT_FALSE(alone[1].page.empty());
        ShutdownPlatform();
        ASSERT_TRUE(InitPlatform(1, arguments, PlatformUse::pictures));
        std::vector<Drawn> together(count);
        std::vector<std::thread> threads;
        for (int i = 0; i < count; ++i)
            threads.emplace_back([&, i] { together[static_cast<std::size_t>(i)] = draw(i); });
        for (std::thread& thread : threads)
            thread.join();
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_TRUE(together[i].pixels == alone[i % 2].pixels) << i;
            EXPECT_TRUE(together[i].page == alone[i % 2].page) << i;
        }
    }
}

}  // namespace pavane
