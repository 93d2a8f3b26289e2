// The window of pavane-clean without a screen, with programs that stand for the engine and make
// maps in no time, well or badly.
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDialog.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::vector<std::string> boxes;

int tell(const CString& text, unsigned)
{
    boxes.push_back(text);
    return IDOK;
}

/// Ends the loop of messages when something has come true, or after so long.
class Waiting : public CWnd
{
public:
    int until(const std::function<bool()>& test)
    {
        test_ = &test;
        end_ = Clock::now() + std::chrono::seconds(30);
        (void)Create("Waiting", "", WS_POPUP, CRect(), nullptr, 0);
        (void)SetTimer(1, 5);
        (void)RunMessages();
        (void)DestroyWindow();
        return test();
    }

private:
    void OnTimer(unsigned) override
    {
        if (!(*test_)() && Clock::now() < end_)
            return;
        KillTimer(1);
        PostQuitMessage(0);
    }
    const std::function<bool()>* test_ = nullptr;
    Clock::time_point end_;
};

class CleanedWindow : public testing::Test
{
protected:
    CleanedWindow()
        : folder_(fs::path(testing::TempDir()) / "it's a \"clean\" window" /
                  testing::UnitTest::GetInstance()->current_test_info()->name())
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        SetProfileFile((folder_ / "profile.ini").string());
        SetMessageFunction(tell);
        SetDialogAnswer([](CDialog&) { return int{IDCANCEL}; });
        boxes.clear();
        std::ofstream(data()) << "visibilities";
        options_.engine = options_.ms = {SCRIPTED_PROGRAMS};
        options_.parameters.width = options_.parameters.height = 32;
        options_.parameters.cell = 0.2;
    }
    ~CleanedWindow() override
    {
        window_.reset();
        (void)unsetenv("PAVANE_MISCHIEF");
        SetMessageFunction(nullptr);
        SetDialogAnswer(nullptr);
        SetProfileFile("");
        PostQuitMessage(0);  // a closed window has asked for the end
        (void)RunMessages();
    }
    std::string data() const { return (folder_ / "-o'ne two.uvfits").string(); }
    std::string study() const { return (folder_ / "-o'ne two.pavane").string(); }
    void open()
    {
        window_.reset();
        PostQuitMessage(0);
        (void)RunMessages();
        window_ = std::make_unique<CleanWindow>();
        ASSERT_TRUE(window_->Create(options_));
        window_->Show();
        ASSERT_TRUE(window_->Open(data()));
        ASSERT_TRUE(rests());
    }
    int rests()
    {
        return Waiting().until([this] { return !session().isRunning() && !session().isLoading(); });
    }
    CleanSession& session() { return window_->session(); }
    std::size_t rounds() { return session().study().rounds().size(); }
    void command(unsigned id) { window_->SendMessage(WM_COMMAND, id); }
    void clean()
    {
        command(idCleanRound);
        ASSERT_TRUE(rests());
    }
    int parent(int round) { return session().study().round(round)->parent; }

    fs::path folder_;
    CleanOptions options_;
    std::unique_ptr<CleanWindow> window_;
};

TEST_F(CleanedWindow, RoundsBranchesAndTheStudyComeBack)
{
    open();
    ASSERT_EQ(rounds(), 1U);
    auto* const area = new ARPRectTracker;
    area->SetRect({1e-3, 1e-3, -1e-3, -1e-3});
    ATrackerArrayInAxis& areas = *window_->map().GetTrackers();
    areas.ChangeActiveTrack(&window_->map(), areas.Add(area));
    clean();
    clean();
    ASSERT_EQ(rounds(), 3U) << (boxes.empty() ? "" : boxes.front());
    EXPECT_GT(session().study().round(1)->numbers.maskCells, 0);
    EXPECT_NE(window_->shown().file().find("0002/residual.fits"), std::string::npos);
    // a branch from the first, without areas
    window_->rounds().chosen(1);
    EXPECT_NE(window_->shown().file().find("0001/residual.fits"), std::string::npos);
    areas.Clear(&window_->map());
    clean();
    ASSERT_EQ(rounds(), 4U);
    EXPECT_EQ(parent(3), 1);
    EXPECT_EQ(session().study().round(3)->numbers.maskCells, 0);
    open();
    EXPECT_EQ(rounds(), 4U);
    EXPECT_EQ(session().shown(), 3);
    EXPECT_TRUE(boxes.empty()) << boxes.front();
}

TEST_F(CleanedWindow, WhatAnEngineDoesWrongIsToldAndLeavesTheRounds)
{
    open();
    const struct {
        const char *mischief, *told;  // in a box
    } rows[] = {{"silent", "without a good map"},
                {"cut", "ends before its image"},
                {"nan", "no cell with a value"},
                {"kill", "by a signal"},
                {"locked", "the table is locked by another program"}};
    for (const auto& row : rows) {
        boxes.clear();
        (void)setenv("PAVANE_MISCHIEF", row.mischief, 1);
        clean();
        ASSERT_EQ(boxes.size(), 1U) << row.mischief;
        EXPECT_NE(boxes.front().find(row.told), std::string::npos) << boxes.front();
        EXPECT_EQ(rounds(), 1U) << row.mischief;
        EXPECT_FALSE(fs::exists(study() + "/work/new")) << row.mischief;
    }
    // one that floods: the round is well, and little is kept
    boxes.clear();
    (void)setenv("PAVANE_MISCHIEF", "flood", 1);
    clean();
    EXPECT_TRUE(boxes.empty()) << boxes.front();
    EXPECT_EQ(rounds(), 2U);
    EXPECT_LT(fs::file_size(session().logOf(1)), 2U << 20U);
    // and one that is not there
    options_.engine = {"no-such-engine"};
    open();
    clean();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_NE(boxes.front().find("no-such-engine"), std::string::npos) << boxes.front();
    EXPECT_EQ(rounds(), 2U);
}

TEST_F(CleanedWindow, AnEngineThatHangsIsStopped)
{
    open();
    (void)setenv("PAVANE_MISCHIEF", "hang", 1);
    command(idCleanRound);
    ASSERT_TRUE(Waiting().until([this] { return fs::exists(study() + "/work/new"); }));
    const auto began = Clock::now();
    command(idStopRound);
    ASSERT_TRUE(rests());
    EXPECT_LT(Clock::now() - began, std::chrono::milliseconds(2500));
    EXPECT_EQ(rounds(), 1U);
    EXPECT_FALSE(fs::exists(study() + "/work/new"));
    EXPECT_TRUE(boxes.empty()) << boxes.front();
    (void)unsetenv("PAVANE_MISCHIEF");
    clean();
    EXPECT_EQ(rounds(), 2U);
}

}  // namespace

}  // namespace pavane
