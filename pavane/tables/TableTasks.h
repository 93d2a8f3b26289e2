#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/table_values.h"
#include "pavane/windows/controls/ProgressJob.h"

#include <memory>

namespace pavane
{

/// Long work on a table that is done in slices, so that its window lives on.
class TableTask
{
public:
    virtual ~TableTask() = default;
    /// A piece that takes a few milliseconds at most.
    virtual WorkState step() = 0;
    virtual int percent() const = 0;
    /// What the user is told that the table does.
    virtual const char* name() const = 0;
    /// Takes the result over; the task is no longer the table's then.
    virtual void finish() = 0;
};

/// The work that a table has in hand, at most one at a time, and the line that tells of it.
class ATableWnd::Tasks
{
public:
    explicit Tasks(ATableWnd& table);
    ~Tasks();
    /// Begins a work in place of the one in hand. With `atOnce` what is soon done is done at once;
    /// the rest, and all in a table without a window, see there.
    void start(std::shared_ptr<TableTask> task, bool atOnce);
    /// Drops the work in hand; 0 when there is none.
    int cancel();
    const TableTask* now() const { return task_.get(); }
    /// Timers of these; 0 for one of another.
    int onTimer(unsigned id);
    /// Tells a word for some seconds, or till the next key.
    void say(const CString& text);
    void hush();
    /// The line at the lower edge of the window; empty for none.
    void showLine(const CString& text);
    /// The window goes.
    void windowGoes();

private:
    class Line;
    /// As long as that, and at least so many steps.
    void run(std::chrono::milliseconds time, int steps);
    void stop();
    CString stateText();

    ATableWnd& table_;
    std::shared_ptr<TableTask> task_;
    std::unique_ptr<ProgressJob> job_;  ///< how far the task is
    int percent_ = 0;                   ///< that it was told last
    int running_ = 0;
    int saying_ = 0;
    std::unique_ptr<Line> line_;
};

}  // namespace pavane
