#pragma once

#include "platform/api.h"
#include "platform/messages.h"
#include "platform/types.h"

#include <memory>
#include <vector>

namespace pavane
{

/// What a program is started with.
struct ProcessCommand {
    std::vector<CString> words;     ///< the program, looked for along PATH, and its arguments
    std::vector<CString> settings;  ///< "NAME=value" each, above the environment of this program
};

/// What a program that runs has to tell.
struct ProcessNews {
    enum Kind : unsigned {
        line,       ///< it wrote a line
        errorLine,  ///< it wrote one to its standard error
        ended       ///< it is gone, and all that it wrote has been told
    };
    Kind kind = line;
    /// Without its end; one longer than 64 KiB comes in pieces. Bytes that are no UTF-8 are U+FFFD.
    CString text;
    int status = -1;  ///< of one that has ended by itself: 0 to 255
};

/// A program that runs beside this one, in a process group of its own: found along PATH, given a
/// list of arguments, never a shell's line. It has nothing to read. What it writes and its end come
/// as messages to a window, in their order, so that nothing here waits. It ends with its group when
/// the object goes and when this program ends, however it does, and leaves no zombie. To be used
/// from the user's thread.
class PAVANE_API CProcess
{
public:
    CProcess();
    CProcess(CProcess&& other) noexcept;
    CProcess& operator=(CProcess&& other) noexcept;
    /// Kills what still runs.
    ~CProcess();

    /// Starts a program, killing the one that ran before. `message` is sent to `window` with the
    /// kind of the news as wParam and a `const ProcessNews*` as lParam, from the message loop and
    /// not within Start; the window may delete this object in it. Non-zero on success, else
    /// `error` is a clause without its subject.
    int Start(const ProcessCommand& command, HWND window, unsigned message, CString& error);
    int IsRunning() const;
    /// Of the program, which is also that of its group; -1 when none runs.
    int GetId() const;
    /// Asks the program and its group to end, and kills them when they have not after so long.
    void Terminate(int milliseconds = 2000);
    /// Kills the program and its group. Its news end here: no message tells of it.
    void Kill();

private:
    class Run;
    std::unique_ptr<Run> run_;
};

/// When a process was started, in the system's ticks since its own start; 0 when there is none of
/// that number. With the number it tells a process from another that came to have it later.
PAVANE_API long long ProcessStartTime(int process);

}  // namespace pavane
