// Several windows on a page.
#include "pavane/windows/AWindowSheet.h"
#include "platform/picture.h"

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>

using namespace pavane;

namespace
{

/// A window of some pages that notes what it prints.
struct Printed : ABWindow {
    Printed(char name, int pages, std::string& log) : name_(name), pages_(pages), log_(log) {}
    int GetPages(CDC& dc) override
    {
        (void)dc.GetClipBox(room);
        return pages_;
    }
    CString GetSubscript() override { return CString("Own %d ") + name_; }
    void PrintWindow(CDC&, CRect& rect, int page) override
    {
        place = rect;
        log_ += name_ + std::to_string(page) + ' ';
        if (then)
            then();
    }
    CRect room, place;
    std::function<void()> then;

private:
    char name_;
    int pages_;
    std::string& log_;
};

}  // namespace

TEST(WindowSheet, FillsPagesRowByRow)
{
    const struct {
        int rows, columns;
        std::vector<int> windows;  // their pages
        int pages, page;
        const char* printed;
    } cases[] = {
        {1, 1, {}, 1, 1, ""},
        {1, 1, {1, 1}, 2, 2, "b1 "},
        {2, 2, {1, 1, 1}, 1, 1, "a1 b1 c1 "},
        {2, 2, {1, 3, 2}, 2, 1, "a1 b1 b2 b3 "},
        {2, 2, {1, 3, 2}, 2, 2, "c1 c2 "},
        {2, 2, {1, 3, 2}, 2, 3, ""},
        {2, 2, {1, 3, 2}, 2, 0, ""},
        {0, -5, {1, 1}, 2, 1, "a1 "},     // at least 1 each
        {2, 1, {-1, 0, 1}, 2, 2, "c1 "},  // pages below 1 count as one
        {1, 1, {0x7FFFFFFF, 0x7FFFFFFF}, 0x7FFFFFFF, 0x7FFFFFFF, "a2147483647 "},
        {1, 2, {0x7FFFFFFF, 0x7FFFFFFF}, 0x7FFFFFFF, 0x7FFFFFFF, "b2147483646 b2147483647 "},
    };
    for (const auto& c : cases) {
        std::string log;
        std::vector<std::unique_ptr<Printed>> windows;
        AWindowSheet sheet;
        sheet.SetGrid(c.rows, c.columns);
        for (const int pages : c.windows) {
            const auto name = static_cast<char>('a' + windows.size());
            windows.push_back(std::make_unique<Printed>(name, pages, log));
            EXPECT_TRUE(sheet.AddWindow(windows.back().get()));
        }
        for (const int unit : {1, 12}) {
            SCOPED_TRACE(c.printed);
            log.clear();
            CPageFile page(CPageFile::Format::svg, 400, 600, "", unit);
            EXPECT_EQ(sheet.GetPages(page.dc()), c.pages);
            CRect rect(0, 0, 400 * unit, 580 * unit);
            sheet.PrintWindow(page.dc(), rect, c.page);
            EXPECT_EQ(log, c.printed);
            if (log != "a1 b1 c1 ")
                continue;
            EXPECT_EQ(windows[2]->place.left, 0);
            EXPECT_EQ(windows[1]->place.right, 400 * unit);
            EXPECT_EQ(windows[1]->place.left - windows[0]->place.right, 10 * unit);
            EXPECT_EQ(windows[2]->place.top - windows[0]->place.top, 295 * unit);
            EXPECT_EQ(windows[0]->room.Size(), CSize(195 * unit, 295 * unit));
        }
    }
}

TEST(WindowSheet, PrintsACaptionForEach)
{
    std::string log;
    Printed a('a', 1, log), b('b', 2, log);
    AWindowSheet sheet;
    sheet.SetGrid(2, 2);
    sheet.AddWindow(&a);
    sheet.AddWindow(&b, "Scan %d~C ~U");
    const CString file = ::testing::TempDir() + "sheet.svg";
    CPageFile page(CPageFile::Format::svg, 600, 600, "", 12);
    CRect rect(0, 0, 7200, 7200);
    sheet.PrintWindow(page.dc(), rect, 1);
    EXPECT_EQ(a.place.top, 0);
    EXPECT_GT(b.place.top, 12 * 12);
    CString error;
    ASSERT_TRUE(page.Close(file, error)) << error;
    std::ifstream in(file);
    const std::string text(std::istreambuf_iterator<char>(in), {});
    for (const char* const caption : {">Own 1 a<", ">Scan 1 <", ">Scan 2(Continued) <"})
        EXPECT_NE(text.find(caption), text.npos) << caption;
}

TEST(WindowSheet, OutlivesItsWindowsAndHoldsNoCircles)
{
    std::string log;
    auto a = std::make_unique<Printed>('a', 1, log);
    auto b = std::make_unique<Printed>('b', 1, log);
    auto sheet = std::make_unique<AWindowSheet>();
    AWindowSheet other;
    EXPECT_FALSE(sheet->AddWindow(nullptr) || sheet->AddWindow(nullptr, "") ||
                 sheet->AddWindow(sheet.get()));
    sheet->SetGrid(2, 2);
    for (ABWindow* window : {static_cast<ABWindow*>(a.get()), static_cast<ABWindow*>(b.get()),
                             static_cast<ABWindow*>(&other)})
        EXPECT_TRUE(sheet->AddWindow(window));
    other.AddWindow(sheet.get());
    CPicture picture(300, 300);
    const auto dc = picture.dc();
    CRect rect(0, 0, 300, 300);
    const auto print = [&] {
        log.clear();
        sheet->PrintWindow(*dc, rect, 1);
        return log;
    };
    EXPECT_EQ(print(), "a1 b1 ");
    a->then = [&] { b = nullptr; };
    EXPECT_EQ(print(), "a1 ");
    EXPECT_EQ(sheet->GetWindowCount(), 2);
    EXPECT_EQ(sheet->GetPages(*dc), 1);
    a->then = [&] {
        sheet->RemoveAllWindows();
        EXPECT_FALSE(sheet->RemoveWindow(a.get()));
    };
    EXPECT_EQ(print(), "a1 ");
    EXPECT_TRUE(sheet->AddWindow(a.get()));
    a->then = [&] { sheet = nullptr; };
    EXPECT_EQ(print(), "a1 ");
    EXPECT_EQ(sheet, nullptr);
}
