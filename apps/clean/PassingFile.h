#pragma once

#include "tessel/paths.h"

#include <cstdio>
#include <string>

namespace pavane
{

/// A name in a folder for a file that is only there to be written by somebody and read again; what
/// lies there goes with it.
class PassingFile
{
public:
    PassingFile(const std::string& folder, const std::string& ending)
        : name_(GetTempFileNameA(folder, "gains") + ending)
    {
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() { (void)std::remove(name_.c_str()); }
    const std::string& name() const { return name_; }

private:
    std::string name_;
};

}  // namespace pavane
