#include "platform/web_handler.h"
#include "posix/FreeProgram.h"

namespace pavane
{

int StartProgram(const std::vector<CString>& arguments, CString& error)
{
    return FreeProgram().start(arguments, error);
}

struct WebOpener::Data {
    FreeProgram program;
};

WebOpener::WebOpener() : data_(std::make_unique<Data>()) {}
WebOpener::~WebOpener() = default;

int WebOpener::Start(const CString& address)
{
    CString error;
    return data_->program.start({"xdg-open", address}, error);
}

int WebOpener::HasEnded() { return data_->program.hasEnded(); }
int WebOpener::HasSucceeded() { return HasEnded() && data_->program.status() == 0; }

}  // namespace pavane
