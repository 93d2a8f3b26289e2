#include "apps/clean/batch.h"
#include "apps/clean/options.h"
#include "apps/clean/window_program.h"
#include "apps/view/batch_output.h"
#include "tessel/plain_text.h"

#include <csignal>
#include <cstdio>
#include <new>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, failed = 2 };

int complain(const std::string& error)
{
    std::fprintf(stderr, "pavane-clean: %s\n", plainText(error).c_str());
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
