#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <fstream>

namespace pavane
{

/// A text file that the user asked for. A new file is written under its own name, so that what a
/// failure leaves is found there; one that exists is replaced only by a whole one.
class PAVANE_API TextFile
{
public:
    /// 0 when the file cannot be created.
    int open(const CString& name);
    std::ostream& stream() { return stream_; }
    /// Ends the file; `written` says whether everything was. 0 when it is not whole.
    int close(int written);
    /// Where what was written lies: the name of the file, or one beside it when the old file stays.
    const CString& place() const { return place_; }
    int replaces() const { return place_ != name_; }

private:
    CString name_;
    CString place_;
    std::ofstream stream_;
};

}  // namespace pavane
