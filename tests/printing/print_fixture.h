#pragma once

#include "pavane/printing/APrinter.h"
#include "platform/CDC.h"
#include "platform/CWinApp.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace pavane
{

/// A window that paints its page black, and beyond it, with its number in white.
class PageWindow : public ABWindow
{
public:
    int pages = 1;
    CString caption = "Figure 7 ~C.";
    std::function<void(CDC&, int)> onPage;
    CRect clip, asked, rect;  ///< clip while it was asked for pages; the last rectangle
    int askedTimes = 0;

    int GetPages(CDC& dc) override
    {
        ++askedTimes;
        (void)dc.GetClipBox(asked);
        return pages;
    }
    CString GetSubscript() override { return caption; }
    void PrintWindow(CDC& dc, CRect& place, int page) override
    {
        rect = place;
        if (onPage)
            onPage(dc, page);
        CRect beyond = place;
        beyond.InflateRect(500, 500);
        dc.FillSolidRect(beyond, RGB(0, 0, 0));
        dc.SetTextColor(RGB(255, 255, 255));
        dc.SetBkMode(TRANSPARENT);
        dc.TextOut(place.left + 50, place.top + 50, "sheet" + std::to_string(page));
    }
};

/// Folder, profile and messages of one test.
class PrintTest : public testing::Test
{
protected:
    PrintTest()
    {
        const char* const root = std::getenv("TEST_TMPDIR");
        folder = std::string(root ? root : testing::TempDir()) + "/print-" +
                 testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        SetProfileFile(folder + "/profile.ini");
        messages().clear();
        before_ = SetMessageFunction([](const CString& text, unsigned) {
            messages().push_back(text);
            return IDNO;
        });
        (void)SetFileDialogAnswer([](CString& name, const CString&, int) {
            name = chosenFile();
            return static_cast<int>(!name.empty());
        });
    }
    ~PrintTest() override
    {
        (void)SetMessageFunction(before_);
        (void)SetFileDialogAnswer(nullptr);
        SetProfileFile("");
        chosenFile().clear();
    }
    static std::vector<CString>& messages()
    {
        static std::vector<CString> shown;
        return shown;
    }
    static CString& chosenFile()
    {
        static CString name;
        return name;
    }
    /// Files of the folder but for the profile.
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().filename() != "profile.ini")
                names.push_back(entry.path().filename());
        return names;
    }
    std::string folder;

private:
    MessageFunction before_;
};

inline std::string outputOf(const std::string& command)
{
    std::string text;
    if (FILE* const pipe = popen(command.c_str(), "r")) {
        char block[4096];
        for (std::size_t n = 0; (n = fread(block, 1, sizeof block, pipe)) > 0;)
            text.append(block, n);
        (void)pclose(pipe);
    }
    return text;
}

/// A word of a page; millimetres.
struct Word {
    std::string text;
    double left, top, right, bottom;
};

/// The pages of a PDF as an independent reader finds them.
inline std::vector<std::vector<Word>> wordsOf(const std::string& file)
{
    constexpr double point = 25.4 / 72;
    std::vector<std::vector<Word>> pages;
    std::istringstream lines(outputOf("pdftotext -bbox '" + file + "' - 2>/dev/null"));
    for (std::string line; std::getline(lines, line);) {
        if (line.find("<page ") != std::string::npos)
            pages.emplace_back();
        const auto at = line.find("<word ");
        if (at == std::string::npos || pages.empty())
            continue;
        Word word{};
        double* const sides[] = {&word.left, &word.top, &word.right, &word.bottom};
        auto place = at;
        for (double* const side : sides) {
            place = line.find('"', place) + 1;
            *side = std::strtod(line.c_str() + place, nullptr) * point;
            place = line.find('"', place) + 1;
        }
        place = line.find('>', place) + 1;
        word.text = line.substr(place, line.find('<', place) - place);
        pages.back().push_back(word);
    }
    return pages;
}

inline std::string textOf(const std::vector<Word>& words)
{
    std::string text;
    for (const Word& word : words)
        text += (text.empty() ? "" : " ") + word.text;
    return text;
}

/// The black part of a page in millimetres: left, top, right, bottom.
inline std::vector<double> blackOf(const std::string& file, int page)
{
    constexpr int dpi = 508;
    const std::string number = std::to_string(page);
    std::istringstream picture(outputOf("pdftoppm -r 508 -gray -aa no -aaVector no -f " + number +
                                        " -l " + number + " '" + file + "' 2>/dev/null"));
    std::string kind;
    int width = 0;
    int height = 0;
    int most = 0;
    picture >> kind >> width >> height >> most;
    picture.get();
    std::string row(static_cast<std::size_t>(width), ' ');
    int left = width;
    int right = 0;
    int top = -1;
    int bottom = 0;
    for (int y = 0; y < height && picture.read(row.data(), width); ++y) {
        int first = -1;
        int last = -1;
        int count = 0;
        for (int x = 0; x < width; ++x)
            if (static_cast<unsigned char>(row[static_cast<std::size_t>(x)]) < 64) {
                first = first < 0 ? x : first;
                last = x;
                ++count;
            }
        // captions are thin, the picture is not
        if (count < width / 4)
            continue;
        left = std::min(left, first);
        right = std::max(right, last + 1);
        top = top < 0 ? y : top;
        bottom = y + 1;
    }
    const double mm = 25.4 / dpi;
    return {left * mm, top * mm, right * mm, bottom * mm};
}

}  // namespace pavane
