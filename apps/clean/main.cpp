#include "apps/clean/batch.h"
#include "apps/clean/options.h"
#include "apps/clean/window_program.h"
#include "apps/view/batch_output.h"
#include "tessel/plain_text.h"

#include <csignal>
#include <cstdio>
#include <new>
#include <sstream>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, failed = 2 };

/// The error on a line of its own, and below it what a child said last.
int complain(const std::string& error)
{
    std::istringstream lines(error);
    const char* before = "pavane-clean: ";
    for (std::string line; std::getline(lines, line); before = "    ")
        if (!line.empty())
            std::fprintf(stderr, "%s%s\n", before, plainText(line).c_str());
    return failed;
}

}  // namespace

int main(int argc, char** argv)
{
    // beyond a limit of file size writing fails and is reported, instead of ending the program
    std::signal(SIGXFSZ, SIG_IGN);
    CleanOptions options;
    std::string error;
    if (!parseCleanOptions(std::vector<std::string>(argv + 1, argv + argc), options, error)) {
        (void)complain(error);
        std::fprintf(stderr, "%s\n", usageLine(cleanProgram()).c_str());
        return wrongUse;
    }
    try {
        if (options.help || options.version)
            return printText(options.help ? helpText(cleanProgram()) : versionLine(cleanProgram()),
                             error)
                       ? done
                       : complain(error);
        const int isDone = options.batch ? runCleanBatch(argv, options, error)
                                         : runCleanWindow(argv, options, error);
        return isDone ? done : complain(error);
    } catch (const std::bad_alloc&) {
        return complain("there is not enough memory");
    }
}
