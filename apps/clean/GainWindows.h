#pragma once

#include "pavane/calibration/EditedGains.h"
#include "pavane/calibration/windows/AGainGraphWnd.h"
#include "pavane/calibration/windows/AGainTbl.h"
#include "pavane/calibration/windows/AMeanGainWnd.h"

#include <functional>
#include <string>

namespace pavane
{

/// The gains of one link of a study's chain in windows of their own: graph, table, means. What is
/// flagged and edited there is kept by the host when the last of them closes.
class GainWindows
{
public:
    enum class Kind { graph, table, means };

    GainWindows();
    GainWindows(const GainWindows&) = delete;
    GainWindows& operator=(const GainWindows&) = delete;
    ~GainWindows();

    /// The user closed a window, and the gains have edits that nobody has kept.
    std::function<void()> left;

    /// Shows gains of a file in the windows that are open; `name` is that of the link. Non-zero on
    /// success, else `error` is a line.
    int open(const std::string& file, const std::string& name, std::string& error);
    /// Closes all of them without a word.
    void close();
    int show(Kind kind, CWnd* owner);
    const std::string& file() const { return file_; }
    const AGains& gains() const { return gains_; }
    int isModified() const { return edited_.isModified(); }
    void markKept() { edited_.history().markSaved(); }

private:
    template <class Window>
    class Closing : public Window
    {
    public:
        std::function<void()> closed;

    protected:
        void OnClose() override
        {
            const std::function<void()> tell = closed;
            Window::OnClose();
            if (tell)
                tell();
        }
    };
    void closed();

    std::string file_, name_;
    AGains gains_;
    EditedGains edited_;
    Closing<AGainGraphWnd> graph_;
    Closing<AGainTbl> table_;
    Closing<AMeanGainWnd> means_;
};

}  // namespace pavane
