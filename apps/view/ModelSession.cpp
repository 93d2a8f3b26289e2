#include "apps/view/ModelSession.h"

#include "pavane/tables/components/component_file.h"
#include "pavane/tables/components/map_components.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"

#include <cstring>

namespace pavane
{

namespace
{

int isFits(const std::string& name)
{
    constexpr char start[] = "SIMPLE  =";
    char bytes[sizeof start - 1];
    AFile file(name, AFile::readOnly);
    return file.isOpen() && file.read(bytes, sizeof bytes) &&
           std::memcmp(bytes, start, sizeof bytes) == 0;
}

}  // namespace

int ModelSession::open(const std::string& file, std::vector<std::string>& notes, std::string& error)
{
    AComponents read;
    int hasTable = 1;
    const int fits = isFits(file);
    const int done = fits ? readMapComponents(file, read, hasTable, notes, error)
                          : readComponentFile(file, read, error);
    if (done && !hasTable)
        error = "has no table of components";
    else if (done && !components_.reset(read))
        error = "needs more memory than there is";
    if (!error.empty()) {
        error = file + ": " + error;
        return 0;
    }
    file_ = fits ? std::string() : file;
    source_ = file;
    agreedLosses_.clear();
    isOpen_ = 1;
    return 1;
}

int ModelSession::openCopy(const std::string& copy, const std::string& file, std::string& error)
{
    std::vector<std::string> notes;
    if (!open(copy, notes, error))
        return 0;
    source_ = file;
    file_ = isFits(file) ? std::string() : file;
    components_.history().markUnsaved();
    return 1;
}

void ModelSession::begin()
{
    end();
    isOpen_ = 1;
}

void ModelSession::end()
{
    (void)components_.reset(AComponents());
    file_.clear();
    source_.clear();
    agreedLosses_.clear();
    isOpen_ = 0;
}

std::string ModelSession::name() const
{
    return source_.empty() ? "a new list" : baseNameOf(source_);
}

std::vector<std::string> ModelSession::newLosses() const
{
    std::vector<std::string> lines = lossesOfComponentText(components_.list());
    return lines == agreedLosses_ ? std::vector<std::string>() : lines;
}

int ModelSession::save(const std::string& file, std::string& error)
{
    if (!writeComponentFile(file, components_.list(), error)) {
        error = file + ": " + error;
        return 0;
    }
    agreedLosses_ = lossesOfComponentText(components_.list());
    components_.history().markSaved();
    file_ = source_ = file;
    return 1;
}

}  // namespace pavane
