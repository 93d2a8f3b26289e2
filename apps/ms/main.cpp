// MeasurementSets for the imaging engine: made from UVFITS files and others, corrected, told of.
#include "apps/ms/commands.h"
#include "apps/ms/descriptions.h"
#include "apps/ms/Failure.h"
#include "apps/ms/OutputPath.h"
#include "apps/ms/text.h"
#include "apps/ms/Watch.h"

#include <casacore/casa/Logging/LogIO.h>
#include <casacore/casa/Logging/LogSink.h>
#include <casacore/casa/Logging/NullLogSink.h>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <new>
#include <unistd.h>

namespace pavane_ms
{

void say(const std::string& name, const std::string& value)
{
    std::string text;
    for (const std::string_view field : split(value, '\t'))
        text.append(text.empty() ? "" : "\t").append(plain(field));
    std::printf("%s %s\n", name.c_str(), text.c_str());
}

void say(const std::string& name, std::uint64_t value) { say(name, std::to_string(value)); }

}  // namespace pavane_ms

namespace
{

using namespace pavane_ms;

enum ExitStatus { done = 0, failed = 1, wrongUse = 2 };

struct Command : CommandText {
    void (*run)(const std::vector<std::string>&);
};

constexpr Command commands[] = {
    {{"import",
      "INPUT OUT.ms [--column DATA] [--ifs 1-4,6] [--times START,END] [--hands RR,LL] [--source "
      "NAME] [--leave-out]",
      "Makes a working copy of a UVFITS file or a MeasurementSet. Times are days since 0h of the "
      "reference day. Rows without antenna, time or place fail it, unless they are left out."},
     importData},
    {{"correct",
      "WORK.ms [--form mean|strict|RR|LL|XX|YY|I] [--gains FILE.txt]... [--flags FILE.txt]"
      " [--keep-failed] [--keep-weights]",
      "Makes the corrected data, flags and weights of a working copy anew from the originals."},
     correctData},
    {{"export", "WORK.ms OUT.uvfits --column DATA|CORRECTED_DATA|MODEL_DATA",
      "Writes a column of a working copy as a UVFITS file."},
     exportData},
    {{"facts",
      "DATA [--column DATA] [--ifs 1-4,6] [--times START,END] [--hands RR,LL] [--source NAME] "
      "[--leave-out]",
      "Tells what a file of visibilities holds."},
     showFacts},
#ifdef PAVANE_HDF5
    {{"gains-to-h5", "IN.txt OUT.h5 [--data DATA]", "Writes gains as an H5Parm file."}, gainsToH5},
    {{"gains-from-h5", "IN.h5 OUT.txt [--data DATA] [--direction N]",
      "Reads gains from an H5Parm file."},
     gainsFromH5},
#endif
};

void showHelp(FILE* to)
{
    std::fputs("Makes, corrects and tells of MeasurementSets for an imaging engine.\n", to);
    for (const Command& command : commands)
        std::fprintf(to, "  pavane-ms %s %s\n", command.name, command.words);
}

void complain(const std::string& what)
{
    std::fprintf(stderr, "pavane-ms: %s\n", plain(what).c_str());
}

/// Casacore's objects may fail again when they end, out of which nothing can be thrown.
[[noreturn]] void giveUp()
{
    try {
        if (const std::exception_ptr error = std::current_exception())
            std::rethrow_exception(error);
        complain("something failed twice");
    } catch (const std::exception& error) {
        complain(error.what());
    } catch (...) {
        complain("something failed");
    }
    OutputPath::removeAll();
    ::_exit(failed);
}

int run(const std::vector<std::string>& words)
{
    const std::string name = words.empty() ? "" : words[0];
    if (name == "--help" || name == "-h" || name == "help") {
        showHelp(stdout);
        return done;
    }
    if (name == "--version") {
        std::puts("pavane-ms " PAVANE_VERSION);
        return done;
    }
    // what the build installs beside the program
    if (name == "--man-page" || name == "--bash-completion") {
        const std::vector<CommandText> texts(std::begin(commands), std::end(commands));
        std::fputs((name == "--man-page" ? manPage(texts) : bashCompletion(texts)).c_str(), stdout);
        return done;
    }
    for (const Command& command : commands)
        if (name == command.name) {
            command.run({words.begin() + 1, words.end()});
            return done;
        }
    throw WrongUse(name.empty() ? "which command?" : "there is no command " + name);
}

}  // namespace

int main(int argc, char** argv)
{
    std::set_terminate(giveUp);
    catchSignals();
    int status = failed;
    try {
        casacore::LogSinkInterface* silence = new casacore::NullLogSink;  // NOLINT: taken over
        casacore::LogSink::globalSink(silence);
        status = run({argv + 1, argv + argc});
        if (std::fflush(stdout) != 0)
            throw Failure("its output cannot be written");
    } catch (const WrongUse& error) {
        complain(error.what());
        showHelp(stderr);
        status = wrongUse;
    } catch (const std::bad_alloc&) {
        complain("more memory is needed than there is");
        status = failed;
    } catch (const std::exception& error) {
        complain(error.what());
        status = failed;
    }
    // a failure leaves casacore's objects as they are: what they would write now is of no use
    std::fflush(stdout);
    if (status != done)
        ::_exit(status);
    return status;
}
