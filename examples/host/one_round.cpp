// Makes one round of a study without a window. The engine is scripted: this program itself, which
// knows a sky of one point, run as the child that a job asks for; so is what reads the data.
//   one_round DATA STUDY.pavane
#include <pavane/imaging/AStudy.h>
#include <pavane/imaging/StudyJob.h>
#include <tessel/fits_map.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace pavane;

namespace
{

/// Says how the program is run for each job, and what its lines mean.
class PointEngine : public AImagingEngine
{
public:
    explicit PointEngine(const std::string& program) : program_(program) {}

    std::vector<EngineStep> dirty(const EngineTask& task) const override
    {
        return {step("dirty", task, {EngineFile::dirty, EngineFile::beam})};
    }
    std::vector<EngineStep> residual(const EngineTask& task) const override
    {
        return {step("residual", task, {EngineFile::residual, EngineFile::model})};
    }
    std::vector<EngineStep> round(const EngineTask& task) const override
    {
        return {
            step("round", task, {EngineFile::residual, EngineFile::model, EngineFile::restored})};
    }
    std::vector<EngineStep> predict(const EngineTask& task) const override
    {
        return {step("predict", task, {})};
    }
    std::vector<EngineStep> restore(const EngineTask& task) const override
    {
        return {step("restore", task, {EngineFile::restored})};
    }
    int readLine(const std::string& line, EngineNews& news) const override
    {
        return std::sscanf(line.c_str(), "iteration %lld peak %lf", &news.iterations, &news.peak) ==
                   2 &&
               (news.hasPeak = 1);
    }

    static const char* nameOf(EngineFile file)
    {
        constexpr const char* names[] = {"dirty", "beam", "model", "residual", "restored"};
        return names[static_cast<int>(file)];
    }

private:
    EngineStep step(const char* job, const EngineTask& task,
                    const std::vector<EngineFile>& made) const
    {
        EngineStep step;
        step.text = job;
        step.words = {program_,
                      "--engine",
                      task.folder,
                      std::to_string(task.parameters.width),
                      std::to_string(task.parameters.height),
                      std::to_string(task.iterations)};
        for (const EngineFile file : made) {
            step.words.emplace_back(nameOf(file));
            step.outputs.push_back({file, task.folder + "/" + nameOf(file) + ".fits"});
        }
        step.writesModel = std::string(job) != "dirty" && std::string(job) != "restore";
        return step;
    }
    std::string program_;
};

/// The engine's side: FOLDER WIDTH HEIGHT ITERATIONS FILE...
int runEngine(int count, char** words)
{
    const int width = std::atoi(words[1]), height = std::atoi(words[2]);
    double left = 1;
    for (int i = 1; i <= std::atoi(words[3]); ++i)
        std::printf("iteration %d peak %g\n", i, left *= 0.9);
    for (int i = 4; i < count; ++i) {
        const std::string name = words[i];
        FitsMap map;
        std::string error;
        if (!map.cells.allocate(height, width))
            return 1;
        map.cells.fill(0);
        map.header.axes = {{width, "RA---SIN", "deg", 187.7, width / 2 + 1.0, -1e-7, 0},
                           {height, "DEC--SIN", "deg", 12.4, height / 2 + 1.0, 1e-7, 0}};
        map.header.hasCelestialAxes = 1;
        map.header.bunit = "JY/BEAM";
        map.cells(height / 2, width / 2) = static_cast<float>(name == "model"      ? 1 - left
                                                              : name == "residual" ? left
                                                                                   : 1);
        if (!writeFitsMap(std::string(words[0]) + "/" + name + ".fits", map.cells, map.header,
                          error))
            return std::fprintf(stderr, "%s\n", error.c_str()), 1;
    }
    return 0;
}

/// The side of what reads data: "import INPUT MS", "facts MS", "correct MS ...".
int runData(int count, char** words)
{
    const std::string job = count > 0 ? words[0] : "";
    std::error_code error;
    if (job == "import")
        std::filesystem::create_directories(words[2], error);
    else if (job == "facts")
        std::puts("source 1\tM87\t187.7\t12.4");
    return error ? 1 : 0;
}

/// Runs a child, and tells the job of its lines and its end. A window has CProcess for it.
void run(const JobCommand& command, StudyJob& job)
{
    int ends[2];
    if (pipe(ends) != 0)
        return job.ended(-1, "there is no pipe");
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> words;
        for (const std::string& word : command.words)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        (void)dup2(ends[1], 1);
        (void)close(ends[0]);
        (void)close(ends[1]);
        (void)execvp(words[0], words.data());
        _exit(127);
    }
    (void)close(ends[1]);
    char line[1024];
    std::FILE* const output = fdopen(ends[0], "r");
    while (output && std::fgets(line, sizeof line, output)) {
        std::string text = line;
        text.erase(text.find_last_not_of('\n') + 1);
        job.line(text);
    }
    if (output)
        (void)std::fclose(output);
    int status = 0;
    (void)waitpid(child, &status, 0);
    job.ended(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
}

/// Non-zero when the job has done its work.
int finish(StudyJob& job)
{
    JobCommand command;
    JobTurn turn;
    while ((turn = job.next(command)) == JobTurn::start)
        run(command, job);
    if (turn != JobTurn::done)
        std::fprintf(stderr, "one_round: %s\n", job.fault().c_str());
    return turn == JobTurn::done;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "--engine" && argc > 5)
        return runEngine(argc - 2, argv + 2);
    if (first == "--data")
        return runData(argc - 2, argv + 2);
    if (argc != 3) {
        std::fprintf(stderr, "usage: one_round DATA STUDY.pavane\n");
        return 1;
    }
    const std::string self = std::filesystem::absolute("/proc/self/exe").string();
    const std::string program = std::filesystem::read_symlink(self).string();
    AStudy study;
    if (!study.create(argv[2], argv[1])) {
        std::fprintf(stderr, "one_round: %s %s\n", argv[2], study.fault().c_str());
        return 1;
    }
    const PointEngine engine(program);
    JobPrograms programs;
    programs.engine = &engine;
    programs.data = {program, "--data"};
    StudyJob import(study, programs);
    import.import({});
    CleanParameters parameters;
    parameters.width = parameters.height = 64;
    parameters.cell = 0.36;
    parameters.iterations = 20;
    if (!finish(import))
        return 1;
    StudyJob job(study, programs);
    job.clean(-1, parameters, "");  // from the dirty map, which it makes first; everywhere
    if (!finish(job))
        return 1;
    const StudyRound& round = *study.round(job.result());
    std::printf("round %d of %lld iterations: model %.3f Jy, residual's peak %.3f Jy/beam\n",
                round.id, round.numbers.iterations, round.numbers.modelFlux, round.numbers.peak);
    return 0;
}
