#pragma once

// The window of pavane-view without a screen, with a map of its own and answers to what it asks.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/images/palettes.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDialog.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/fits_map.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace pavane
{

namespace fs = std::filesystem;

// What boxes said, and what the user answers to them.
inline std::vector<std::string> said;
inline int answer = IDOK;
inline std::string fileAnswer;
inline int dialogAnswer = IDCANCEL;

inline int tell(const CString& text, unsigned)
{
    said.push_back(text);
    return answer;
}

inline int chooseFile(CString& name, const CString&, int)
{
    name = fileAnswer;
    return !name.empty();
}

inline int answerDialog(CDialog&) { return dialogAnswer; }

class ViewWindow : public testing::Test
{
protected:
    ViewWindow()
    {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(testing::TempDir()) / "view-window" / info->name();
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        SetProfileFile(path("profile/pavane-view.ini"));
        fs::create_directories(folder_ / "profile");
        SetMessageFunction(tell);
        SetFileDialogAnswer(chooseFile);
        SetDialogAnswer(answerDialog);
        said.clear();
        answer = IDOK;  // whatever the test before left
        fileAnswer.clear();
        dialogAnswer = IDCANCEL;
        LoadBuiltInPalette();
        writeMap("map.fits");
    }
    ~ViewWindow() override
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        SetDialogAnswer(nullptr);
        SetProfileFile("");
        forgetQuit();
    }
    /// A closed window has asked for the end: the next loop shall run.
    static void forgetQuit()
    {
        PostQuitMessage(0);
        (void)RunMessages();
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void writeMap(const std::string& name)
    {
        AMatrix<float> cells(48, 64);
        for (int i = 0; i < 48 * 64; ++i)
            cells.data()[i] = std::sin(static_cast<float>(i) * 0.01f);
        MapHeader header;
        header.axes = {{64, "RA---SIN", "deg", 187.7, 32, -1e-8, 0},
                       {48, "DEC--SIN", "deg", 12.4, 24, 1e-8, 0}};
        header.hasCelestialAxes = 1;
        std::string error;
        ASSERT_TRUE(writeFitsMap(path(name), cells, header, error)) << error;
    }
    void open(MainWindow& window)
    {
        ASSERT_TRUE(window.Create(ViewOptions()));
        ASSERT_TRUE(window.OpenMap(path("map.fits"), -1));
        window.Show();
        window.view().UpdateWindow();
    }
    static CRect clientOf(const CWnd& window)
    {
        CRect client;
        window.GetClientRect(client);
        return client;
    }
    static ATrackerArrayInAxis& areas(MainWindow& window) { return *window.view().GetTrackers(); }
    static void addArea(MainWindow& window, double size)
    {
        auto* const rect = new ARPRectTracker;
        rect->SetRect({size * 1e-5, size * 1e-5, -size * 1e-5, -size * 1e-5});
        areas(window).ChangeActiveTrack(&window.view(), areas(window).Add(rect));
    }
    std::size_t copies() const
    {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(folder_ / "profile"))
            count += entry.path().extension() == ".areas";
        return count;
    }

    fs::path folder_;
};

}  // namespace pavane
