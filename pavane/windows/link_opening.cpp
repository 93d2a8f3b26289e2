#include "pavane/windows/link_opening.h"

namespace pavane
{

CString linkCommand(const CString& commandTemplate, const CString& address)
{
    constexpr const char* place = "%1";
    const std::size_t at = commandTemplate.find(place);
    return at == CString::npos ? address : CString(commandTemplate).replace(at, 2, address);
}

void LinkOpening::begin(const CString& address, int withOpener)
{
    address_ = address;
    succeeded_ = executed_ = 0;
    talk_.Close();
    const int isMail = IsMailAddress(address);
    if ((withOpener || isMail) && opener_.Start(address))
        step_ = Step::opener;
    else if (isMail)
        end(0);
    else
        initiate();
}

void LinkOpening::initiate()
{
    step_ = Step::asking;
    talk_.Initiate(handler_.service, handler_.object);
}

void LinkOpening::execute(const CString& text)
{
    if (step_ != Step::answered)
        return;
    step_ = Step::calling;
    executed_ = 1;
    talk_.Open(text);
}

void LinkOpening::decline()
{
    if (step_ == Step::answered)
        startCommand();
}

/// The command takes the address with it, so that the service, which may be there once the program
/// runs, is not asked again: the address would open twice.
void LinkOpening::startCommand()
{
    CString error;
    end(StartProgram(CommandArguments(handler_, address_), error));
}

void LinkOpening::end(int succeeded)
{
    succeeded_ = succeeded;
    step_ = Step::idle;
    talk_.Close();
}

LinkOpening::Step LinkOpening::poll()
{
    using State = ServiceTalk::State;
    if (step_ == Step::opener && opener_.HasEnded()) {
        if (opener_.HasSucceeded() || IsMailAddress(address_))
            end(opener_.HasSucceeded());
        else
            initiate();
    }
    if (step_ == Step::asking) {
        const State state = talk_.Poll();
        if (state == State::present)
            step_ = Step::answered;
        else if (state != State::asking)
            startCommand();
    } else if (step_ == Step::calling) {
        const State state = talk_.Poll();
        if (state == State::done)
            end(1);
        else if (state != State::calling)
            startCommand();
    }
    return step_;
}

}  // namespace pavane
