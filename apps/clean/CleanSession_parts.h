#pragma once

#include "apps/clean/CalibrationRun.h"
#include "apps/clean/CleanSession.h"
#include "apps/clean/ExportRun.h"
#include "pavane/imaging/study_export.h"
#include "platform/CWnd.h"
#include "platform/process.h"

#include <chrono>
#include <string>

namespace pavane
{

// What the pieces of CleanSession share.

/// Of work between two looks at what the user does.
inline constexpr int sliceMilliseconds = 15;

/// The files of a round on their way out.
struct CleanSession::FileExport {
    StudyExport work;
    AProgress progress;
    AProgressWriter writer{progress};
    int told = 0;
};

/// A map that was just made, on its way to the window.
struct CleanSession::MapLoading {
    std::string file, fault;  ///< of the job that has ended
    MapContentReader reader;
};

/// Starts what the job asks for and tells it what became of it, from the message loop.
class CleanSession::Runner : public CWnd
{
public:
    explicit Runner(CleanSession& session) : session_(session) {}
    ~Runner() override { DestroyWindow(); }

    int Create() { return CWnd::Create("PavaneRunner", "", WS_POPUP, CRect(), nullptr, 0); }
    /// The next child of the job, or its end; from a message, so that nothing is deeper within.
    /// By a timer: messages that are posted one after another are all sent before the user is
    /// heard.
    void Advance()
    {
        if (!isAdvancing_)
            isAdvancing_ = SetTimer(advanceTimer, 0) != 0;
    }
    void Terminate() { process_.Terminate(); }
    void Kill() { process_.Kill(); }
    int IsRunning() const { return process_.IsRunning(); }
    /// Seconds since the last line of the child that runs; 0 when none does.
    long long Silence() const
    {
        return process_.IsRunning() ? std::chrono::duration_cast<std::chrono::seconds>(
                                          std::chrono::steady_clock::now() - lastWord_)
                                          .count()
                                    : 0;
    }

    void OnTimer(unsigned id) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    static constexpr unsigned lookTimer = 1, advanceTimer = 2;
    static constexpr unsigned lookPause = 100;  ///< milliseconds
    static constexpr std::chrono::milliseconds reportPause{50};
    /// Bytes of a line that are told; the log of the round has all.
    static constexpr std::size_t longestSaid = 4000;

    void next();
    void hear(const ProcessNews& news);
    void report();

    CleanSession& session_;
    CProcess process_;
    std::chrono::steady_clock::time_point lastWord_, lastReport_;
    std::string heard_;    ///< lines that have not been told
    int isAdvancing_ = 0;  ///< its message is on its way
};

}  // namespace pavane
