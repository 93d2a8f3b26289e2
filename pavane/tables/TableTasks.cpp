#include "pavane/tables/TableTasks.h"

#include "pavane/progress/slices.h"
#include "pavane/resources/table_messages.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <chrono>

namespace pavane
{

namespace
{

constexpr unsigned taskTimer = 12;
constexpr unsigned lineTimer = 13;
constexpr unsigned lineId = 1003;
constexpr std::chrono::milliseconds sliceTime{15};
constexpr std::chrono::milliseconds firstSliceTime{100};  // within the click or key that asked
constexpr int leastSteps = 32;       // short work is done at once, however slow the machine
constexpr unsigned wordTime = 5000;  // ms
constexpr int lineMargin = 6;

}  // namespace

/// A line of text over the lower edge of the table.
class ATableWnd::Tasks::Line : public CWnd
{
public:
    explicit Line(CFont font) : font_(std::move(font)) {}
    CSize needs()
    {
        CClientDC dc(this);
        dc.SelectObject(&font_);
        const CSize text = dc.GetTextExtent(GetWindowText());
        return {text.cx + 2 * lineMargin, text.cy + lineMargin};
    }

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect all;
        GetClientRect(all);
        dc.SelectObject(&font_);
        dc.FillSolidRect(all, GetSysColor(COLOR_WINDOWFRAME));
        all.DeflateRect(1, 1);
        dc.FillSolidRect(all, GetSysColor(COLOR_INFOBK));
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(GetSysColor(COLOR_INFOTEXT));
        all.left += lineMargin - 1;
        (void)dc.DrawText(GetWindowText(), all, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    }

private:
    CFont font_;
};

ATableWnd::Tasks::Tasks(ATableWnd& table) : table_(table) {}
ATableWnd::Tasks::~Tasks() = default;

void ATableWnd::Tasks::start(std::shared_ptr<TableTask> task, bool atOnce)
{
    const TableWatch watch(table_);
    hush();
    if (watch.gone())
        return;
    task_ = std::move(task);
    const AProgress progress;
    job_ = std::make_unique<ProgressJob>(progress, task_->name(), std::chrono::steady_clock::now());
    job_->writer.emplace(progress);
    job_->writer->SetTotal(100);
    percent_ = 0;
    if (!table_.GetSafeHwnd())
        return run(std::chrono::milliseconds::max(), 1);
    (void)table_.SetTimer(taskTimer, 1);
    if (atOnce)
        run(firstSliceTime, leastSteps);
}

int ATableWnd::Tasks::cancel()
{
    if (!task_)
        return 0;
    stop();
    return 1;
}

void ATableWnd::Tasks::stop()
{
    task_.reset();
    job_.reset();
    (void)table_.KillTimer(taskTimer);
    table_.showState({});
}

/// How far the work is, and for how long it will go on.
CString ATableWnd::Tasks::stateText()
{
    const int percent = task_->percent();
    job_->writer->Advance(percent - percent_);
    percent_ = std::max(percent, percent_);
    job_->update(std::chrono::steady_clock::now());
    return job_->name + ": " + job_->stateText() + escapeStops;
}

/// Goes on with the work. Its hooks may end the table, drop the work, or begin another one.
void ATableWnd::Tasks::run(std::chrono::milliseconds time, int steps)
{
    if (!task_ || running_)
        return;
    const LifeWatch life(table_.life_);
    const TableWatch watch(table_);
    const std::shared_ptr<TableTask> task = task_;
    running_ = 1;
    WorkState state = WorkState::goesOn;
    (void)runSlice(
        time,
        [&] {
            state = task->step();
            if (life.alive() && watch.gone())
                state = WorkState::gone;
            return life.alive() && state == WorkState::goesOn && task == task_;
        },
        steps);
    if (!life.alive())
        return;
    running_ = 0;
    if (task != task_)
        return;
    if (state == WorkState::goesOn)
        return table_.showState(stateText());
    stop();
    if (state == WorkState::done && !watch.gone())
        task->finish();
}

int ATableWnd::Tasks::onTimer(unsigned id)
{
    if (id == taskTimer && table_.job_)
        return 1;  // rows must not change places under a copy or a paste
    if (id == taskTimer)
        return run(sliceTime, 1), 1;
    return id == lineTimer ? hush(), 1 : 0;
}

void ATableWnd::Tasks::say(const CString& text)
{
    saying_ = 1;
    (void)table_.SetTimer(lineTimer, wordTime);
    table_.showState(text);
}

void ATableWnd::Tasks::hush()
{
    if (!saying_)
        return;
    saying_ = 0;
    (void)table_.KillTimer(lineTimer);
    table_.showState({});
}

void ATableWnd::Tasks::showLine(const CString& text)
{
    if (!table_.GetSafeHwnd())
        return;
    if (text.empty()) {
        if (line_ && line_->GetSafeHwnd())
            (void)line_->ShowWindow(SW_HIDE);
        return;
    }
    if (!line_ || !line_->GetSafeHwnd()) {
        line_ = std::make_unique<Line>(table_.tableFont());
        if (!line_->Create("ATableLine", text, WS_CHILD, {}, &table_, lineId))
            return line_.reset();
    }
    line_->SetWindowText(text);
    const CSize size = line_->needs();
    const CRect all = table_.client();
    line_->MoveWindow({0, std::max(all.bottom - size.cy, 0), size.cx, all.bottom});
    (void)line_->ShowWindow(SW_SHOW);
    line_->Invalidate();
}

void ATableWnd::Tasks::windowGoes()
{
    task_.reset();
    job_.reset();
    saying_ = 0;
    line_.reset();
}

void ATableWnd::showState(const CString& text) { tasks_->showLine(text); }

int ATableWnd::isWorking() const { return tasks_->now() != nullptr; }

}  // namespace pavane
