#pragma once

#include "platform/service_talk.h"
#include "platform/web_handler.h"

namespace pavane
{

/// What is sent to the program that shows web addresses: `commandTemplate` with its first "%1"
/// replaced by the address; the address alone when there is none.
PAVANE_API CString linkCommand(const CString& commandTemplate, const CString& address);

/// The steps that open one address, one after the other until one succeeds: the desktop's opener,
/// one call of the registered program's service, its command. Nothing waits: `poll` goes on with
/// what can be done.
class PAVANE_API LinkOpening
{
public:
    enum class Step {
        idle,      ///< nothing goes on
        opener,    ///< the desktop's opener runs
        asking,    ///< whether the service is there
        answered,  ///< it is: `execute` comes next, or `decline`
        calling    ///< the service has the call
    };

    explicit LinkOpening(WebHandler handler) : handler_(std::move(handler)) {}
    /// Begins anew, with the opener or behind it. A mail address knows the opener only. `address`
    /// has been checked.
    void begin(const CString& address, int withOpener);
    /// Sends `text` to the service; does nothing unless it has answered.
    void execute(const CString& text);
    /// Goes on without the service that has answered.
    void decline();
    Step poll();
    Step step() const { return step_; }
    const CString& address() const { return address_; }
    /// Non-zero when the address was handed to a program.
    int hasSucceeded() const { return succeeded_; }
    /// Non-zero when the service had its call.
    int hasExecuted() const { return executed_; }

private:
    void initiate();
    void startCommand();
    void end(int succeeded);

    WebHandler handler_;
    CString address_;
    WebOpener opener_;
    ServiceTalk talk_;
    Step step_ = Step::idle;
    int succeeded_ = 0;
    int executed_ = 0;
};

}  // namespace pavane
