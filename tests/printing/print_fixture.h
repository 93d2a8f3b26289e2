#pragma once

#include "pavane/printing/APrinter.h"
#include "platform/CDC.h"
#include "platform/CDialog.h"
#include "platform/CWinApp.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
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
        answers().clear();
        (void)SetDialogAnswer([](CDialog& dialog) {
            const auto at = answers().find(dialog.GetWindowText());
            if (at == answers().end())
                return IDCANCEL;
            const auto act = at->second;
            act(dialog);
            return IDCANCEL;
        });
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
        (void)SetDialogAnswer(nullptr);
        (void)SetMessageFunction(before_);
        (void)SetFileDialogAnswer(nullptr);
        SetProfileFile("");
        chosenFile().clear();
    }
    /// What is done in the dialogs that come, by their titles; they are cancelled behind it.
    static std::map<CString, std::function<void(CDialog&)>>& answers()
    {
        static std::map<CString, std::function<void(CDialog&)>> known;
        return known;
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

/// The text of each page as an independent reader finds it, a blank between words.
inline std::vector<std::string> textsOf(const std::string& file)
{
    std::vector<std::string> pages;
    std::istringstream all(outputOf("pdftotext '" + file + "' - 2>/dev/null"));
    for (std::string page; std::getline(all, page, '\f');) {
        pages.emplace_back();
        std::istringstream words(page);
        for (std::string word; words >> word;)
            pages.back() += (pages.back().empty() ? "" : " ") + word;
    }
    return pages;
}

/// Left, top, right and bottom of the black part of a picture, millimetres: the longest runs along
/// its middle lines, since captions are thin.
inline std::vector<double> blackOf(int width, int height, double dpi,
                                   const std::function<bool(int, int)>& isBlack)
{
    const auto longest = [](int length, const std::function<bool(int)>& isBlackAt) {
        std::pair<int, int> best;
        for (int i = 0, start = 0; i <= length; ++i) {
            if (i < length && isBlackAt(i))
                continue;
            if (i - start > best.second - best.first)
                best = {start, i};
            start = i + 1;
        }
        return best;
    };
    const auto x = longest(width, [&](int at) { return isBlack(at, height / 2); });
    const auto y = longest(height, [&](int at) { return isBlack(width / 2, at); });
    const double mm = 25.4 / dpi;
    return {x.first * mm, y.first * mm, x.second * mm, y.second * mm};
}

inline std::vector<double> blackOf(const std::string& file, int page)
{
    const std::string number = std::to_string(page);
    const std::string picture = outputOf("pdftoppm -r 508 -gray -aa no -aaVector no -f " + number +
                                         " -l " + number + " '" + file + "' 2>/dev/null");
    std::istringstream head(picture);
    std::string kind;
    int width = 0;
    int height = 0;
    int most = 0;
    head >> kind >> width >> height >> most;
    const auto start = static_cast<std::size_t>(head.tellg()) + 1;
    return blackOf(width, height, 508, [&](int x, int y) {
        const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
        return static_cast<unsigned char>(picture[start + at + static_cast<std::size_t>(x)]) < 64;
    });
}

}  // namespace pavane
