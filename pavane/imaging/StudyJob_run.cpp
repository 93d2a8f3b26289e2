#include "pavane/imaging/StudyJob_work.h"
#include "tessel/folders.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

/// Kept of what a child writes; one that floods fills no memory.
constexpr std::size_t mostLog = std::size_t{1} << 20U;
constexpr std::size_t mostLines = 400, mostLine = 4000;
constexpr std::size_t mostText = std::size_t{16} << 20U;
constexpr std::int64_t progressSteps = 1000;

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

/// "37 %".
int percentOf(const std::string& line)
{
    const std::size_t sign = line.find(" %");
    if (sign == std::string::npos || sign == 0 || sign > 3 || sign + 2 != line.size())
        return -1;
    int percent = 0;
    for (std::size_t i = 0; i < sign; ++i) {
        if (line[i] < '0' || line[i] > '9')
            return -1;
        percent = percent * 10 + (line[i] - '0');
    }
    return std::min(percent, 100);
}

}  // namespace

int StudyJob::Work::startStep()
{
    std::vector<Task> list;
    for (const EngineStep::Copy& each : steps.front().before)
        if (each.from != each.to)
            list.emplace_back([this, each] { return copy(each.from, each.to); });
    list.emplace_back([this] { return launch(); });
    before(std::move(list));
    return 1;
}

int StudyJob::Work::launch()
{
    const EngineStep& step = steps.front();
    if (step.writesModel && !study.setModelTag({}))
        return fail("the study: it " + study.fault());
    for (const EngineStep::Output& each : step.outputs) {
        std::string why;
        // what lies there is not what the child makes; a model is what it begins with
        const bool isInput =
            std::any_of(step.before.begin(), step.before.end(),
                        [&each](const EngineStep::Copy& input) { return input.to == each.file; });
        if (!isInput && !removeAll(path(each.file), why))
            return fail(each.file + " " + why);
    }
    command.words = {"env", "-C", study.folder()};
    command.words.insert(command.words.end(), step.words.begin(), step.words.end());
    command.settings = step.settings;
    noteCommand(step.words);
    state.doing = step.text;
    isEngine = isPending = 1;
    return 1;
}

int StudyJob::Work::runSteps(std::vector<EngineStep> which, Task after)
{
    steps = std::move(which);
    then = std::move(after);
    maps.clear();
    files.clear();
    if (steps.empty())
        return fail("the engine cannot do this");
    return startStep();
}

int StudyJob::Work::runData(const std::vector<std::string>& words, const std::string& what,
                            Task after)
{
    steps.clear();
    text.clear();
    then = std::move(after);
    command.words = {"env", "-C", study.folder()};
    command.words.insert(command.words.end(), programs.data.begin(), programs.data.end());
    command.words.insert(command.words.end(), words.begin(), words.end());
    command.settings.clear();
    state.doing = what;
    isEngine = 0;
    isPending = 1;
    return 1;
}

/// What the child has made, before it counts: read, measured and on the disk.
int StudyJob::Work::takeOutput(const EngineStep::Output& output)
{
    const int wantsNoise = output.kind == EngineFile::residual ||
                           (output.kind == EngineFile::dirty && made.kind == RoundKind::dirty);
    return read(
        output.file, wantsNoise, [this, output](const MeasuredMap* map, const std::string& why) {
            if (!map)
                return fail("the engine ended without a good map: " + output.file + " " + why);
            maps[output.kind] = *map;
            files[output.kind] = output.file;
            return sync(output.file);
        });
}

int StudyJob::Work::endStep()
{
    const Task goOn = [this] {
        const Task after = std::move(then);
        then = nullptr;
        return !after || after();
    };
    if (!isEngine)
        return goOn();
    if (steps.front().makesMaps && state.news.visibilities == 0)
        return fail("no visibility is left for the map: all are flagged or not selected");
    std::vector<Task> list;
    for (const EngineStep::Output& each : steps.front().outputs)
        list.emplace_back([this, each] { return takeOutput(each); });
    list.emplace_back([this, goOn] {
        steps.erase(steps.begin());
        return steps.empty() ? goOn() : startStep();
    });
    before(std::move(list));
    return 1;
}

void StudyJob::Work::takeLine(const std::string& line, int isError)
{
    const std::string plain = plainText(line);
    if (logText.size() + plain.size() < mostLog)
        logText += plain + "\n";
    else
        ++linesLost;
    log.push_back(plain.substr(0, mostLine));
    if (log.size() > 2 * mostLines)
        log.erase(log.begin(), log.end() - static_cast<std::ptrdiff_t>(mostLines));
    if (isError && !plain.empty())
        lastError = plain;
    if (!isEngine) {
        if (const int percent = percentOf(line); percent >= 0)
            state.fraction = percent / 100.0;
        else if (!isError && keepsText && text.size() + line.size() < mostText)
            text += line + "\n";
        showProgress();
        return;
    }
    if (!programs.engine->readLine(line, state.news))
        return;
    const EngineNews& news = state.news;
    if (state.cleans) {
        state.iterations = doneBefore + news.iterations;
        state.cycle = cyclesBefore + news.cycle;
        if (news.hasPeak) {
            state.peak = std::abs(news.peak);
            if (state.firstPeak < 0)
                state.firstPeak = state.peak;
            std::vector<RoundPoint>& course = made.course;
            if (course.empty() || state.iterations > course.back().iterations)
                course.push_back({state.iterations, state.peak});
            else if (course.size() > 1)
                course.back().peak = state.peak;
        }
    }
    showProgress();
}

void StudyJob::Work::showProgress()
{
    if (state.cleans) {
        double byPeak = 0, byCount = 0;
        if (state.threshold > 0 && state.firstPeak > state.threshold && state.peak > 0)
            byPeak = std::log(state.firstPeak / std::max(state.peak, state.threshold)) /
                     std::log(state.firstPeak / state.threshold);
        if (state.limit > 0)
            byCount = static_cast<double>(state.iterations) / static_cast<double>(state.limit);
        state.fraction = std::clamp(std::max({byPeak, byCount, state.fraction}), 0.0, 1.0);
    }
    if (!(state.fraction >= 0) || !writer)
        return;
    if (told == 0)
        writer->SetTotal(progressSteps);
    const auto now = static_cast<std::int64_t>(state.fraction * progressSteps);
    if (now > told) {
        writer->Advance(now - told);
        told = now;
    }
}

std::string StudyJob::Work::faultOfEnd(int status, const std::string& why) const
{
    if (!why.empty())
        return why;
    // words begin with env, -C and the folder
    const std::string program = command.words.size() > 3 ? command.words[3] : "the program";
    if (isEngine && !state.news.fault.empty())
        return program + ": " + state.news.fault;
    if (status == 127 || status == 126)
        return program + " cannot be started" + (lastError.empty() ? "" : ": " + lastError);
    const std::string name = program.substr(program.rfind('/') + 1) + ": ";
    if (lastError.compare(0, name.size(), name) == 0)
        return lastError;  // a program that says who it is has said all
    const std::string end =
        program + (status < 0 ? " was ended by a signal, perhaps for want of memory"
                              : " ended with status " + std::to_string(status));
    return end + (lastError.empty() ? "" : ": " + lastError);
}

void StudyJob::Work::finish(JobTurn how)
{
    if (hasEnded)
        return;
    hasEnded = 1;
    end = how;
    tasks.clear();
    then = nullptr;
    maps.clear();
    steps.clear();
    isPending = isRunning = 0;
    state.cleans = 0;
    if (study.isOpen() && !study.isReadOnly()) {
        (void)study.setChild(0, 0);
        // without this the next job writes the columns again, and no more is lost
        (void)study.leaveData();
        study.sweep(how == JobTurn::done ? keptFile : std::string());
    }
    if (how == JobTurn::done)
        (void)writer->Finish();
    else if (how == JobTurn::failed)
        (void)writer->Fail(fault);
    writer.reset();
}

// --- what the host calls

StudyJob::StudyJob(AStudy& study, const JobPrograms& programs)
    : work_(std::make_unique<Work>(study, programs))
{
}

StudyJob::~StudyJob()
{
    if (work_->hasBegun)
        work_->finish(JobTurn::stopped);
}

JobTurn StudyJob::next(JobCommand& command)
try {
    Work& w = *work_;
    if (!w.hasEnded && !w.hasBegun) {
        w.hasBegun = 1;
        w.began = std::chrono::steady_clock::now();
        if (!w.begin())
            w.finish(JobTurn::failed);
    }
    if (w.isRunning)
        return JobTurn::more;
    const auto turnBegan = std::chrono::steady_clock::now();
    for (int tasks = 0; !w.hasEnded; ++tasks) {
        if (w.isStopping) {
            w.finish(JobTurn::stopped);
        } else if (w.isPending) {
            w.isPending = 0;
            w.isRunning = 1;
            w.lastError.clear();
            w.log.clear();
            const MapBeam beam = w.state.news.beam;
            w.state.news = {};
            w.state.news.beam = beam;
            command = w.command;
            w.writer->SetText(w.state.doing);
            return JobTurn::start;
        } else if (w.tasks.empty()) {
            w.finish(JobTurn::done);
        } else if (tasks > 0 && w.programs.slice > 0 &&
                   millisecondsSince(turnBegan) >= w.programs.slice) {
            return JobTurn::more;
        } else {
            const Work::Task task = std::move(w.tasks.front());
            w.tasks.pop_front();
            if (!task())
                w.finish(JobTurn::failed);
        }
    }
    return w.end;
} catch (const std::bad_alloc&) {
    work_->fault = "there is not enough memory";
    work_->finish(JobTurn::failed);
    return JobTurn::failed;
}

void StudyJob::started(int process, long long startTime)
{
    if (work_->isRunning)
        (void)work_->study.setChild(process, startTime);
}

void StudyJob::line(const std::string& text, int isError)
try {
    if (work_->isRunning)
        work_->takeLine(text, isError);
} catch (const std::bad_alloc&) {
    work_->isStopping = 1;
}

void StudyJob::ended(int status, const std::string& fault)
try {
    Work& w = *work_;
    if (!w.isRunning)
        return;
    w.isRunning = 0;
    (void)w.study.setChild(0, 0);
    if (w.isStopping)
        return w.finish(JobTurn::stopped);
    if (status != 0 || !fault.empty()) {
        w.fault = w.faultOfEnd(status, fault);
        return w.finish(JobTurn::failed);
    }
    w.state.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - w.began).count();
    w.before([&w] { return w.endStep(); });
} catch (const std::bad_alloc&) {
    work_->fault = "there is not enough memory";
    work_->finish(JobTurn::failed);
}

void StudyJob::stop()
{
    work_->isStopping = 1;
    if (!work_->isRunning && work_->hasBegun)
        work_->finish(JobTurn::stopped);
}

int StudyJob::canFinishCycle() const
{
    return !work_->hasEnded && work_->made.parameters.stopsEachCycle && work_->state.cleans;
}

int StudyJob::finishCycle()
{
    if (!canFinishCycle())
        return 0;
    work_->isFinishing = 1;
    return 1;
}

const JobState& StudyJob::state() const
{
    if (work_->hasBegun && !work_->hasEnded)
        work_->state.seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - work_->began).count();
    return work_->state;
}

const AProgress& StudyJob::progress() const { return work_->progress; }
int StudyJob::result() const { return work_->end == JobTurn::done ? work_->result : -1; }
const std::string& StudyJob::fault() const { return work_->fault; }
const std::vector<std::string>& StudyJob::log() const { return work_->log; }
const std::vector<std::string>& StudyJob::notes() const { return work_->notes; }

}  // namespace pavane
