#pragma once

#include "tessel/api.h"

#include <string>

namespace pavane
{

/// Number of this process.
PAVANE_API int processId();
/// When a process was started, in the system's ticks since its own start; 0 when there is none of
/// that number, or one that has ended and was not waited for. With the number it tells a process
/// from another that came to have it later.
PAVANE_API long long processStartTime(int process);
/// Asks a process and its group to end, or, with `kill`, ends them; only the process that started
/// then. Non-zero when it was there.
PAVANE_API int endProcess(int process, long long startTime, int kill);
/// The name of this machine.
PAVANE_API std::string hostName();

/// A file that one program at a time holds, until it is closed or the program ends however it
/// does. Its text, at most 500 bytes, tells others who.
class PAVANE_API FileHold
{
public:
    FileHold() = default;
    FileHold(const FileHold&) = delete;
    FileHold& operator=(const FileHold&) = delete;
    ~FileHold() { release(); }
    /// Takes hold of `name`, which is made when missing. 0 when another has it, or it cannot be
    /// written; `isHeld` tells the one from the other.
    int take(const std::string& name, int& isHeld);
    /// The text in the file; of one that another holds too (`name` as in `take`).
    static std::string textOf(const std::string& name);
    std::string text() const;
    /// Brings another text to the disk.
    int setText(const std::string& text);
    void release();
    int isTaken() const { return file_ >= 0; }

private:
    int file_ = -1;
};

}  // namespace pavane
