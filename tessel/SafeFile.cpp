#include "tessel/SafeFile.h"

#include "posix/FileReplacement.h"
#include "posix/plain_file.h"

#include <cerrno>

namespace pavane
{

SafeFile::SafeFile() : replacement_(std::make_unique<FileReplacement>()) {}

SafeFile::~SafeFile() = default;

int SafeFile::open(const std::string& name)
{
    discard();
    fault_.clear();
    errno = 0;
    if (!replacement_->begin(name))
        fault_ = replacement_->fault();
    else if (!file_.open(replacement_->openName(), AFile::readWrite))
        fault_ = systemFault("cannot be created", errno);
    return fault_.empty();
}

int SafeFile::commit()
{
    errno = 0;
    if (!file_.isOpen())
        fault_ = systemFault("cannot be written", EBADF);
    else if (!file_.close())
        fault_ = systemFault("cannot be written", errno);
    else if (!replacement_->finish())
        fault_ = replacement_->fault();
    else
        return 1;
    discard();
    return 0;
}

void SafeFile::discard()
{
    (void)file_.close();  // what it held is dropped in any case
    replacement_->discard();
}

std::string SafeFile::fault() const
{
    return fault_.empty() ? systemFault("cannot be written", errno) : fault_;
}

}  // namespace pavane
