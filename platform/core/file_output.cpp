#include "platform/core/file_output.h"

#include "posix/FileReplacement.h"
#include "posix/plain_file.h"

#include <cerrno>

namespace pavane
{

int writeWhole(const CString& file, std::string_view bytes, CString& error)
{
    error.clear();
    FileReplacement out;
    const int isOpen = out.begin(file);
    if (isOpen && !writeAll(out.descriptor(), bytes))
        error = systemFault("cannot be written", errno);
    else if (!isOpen || !out.finish())
        error = out.fault();
    return error.empty();
}

}  // namespace pavane
