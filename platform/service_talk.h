#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <memory>

namespace pavane
{

/// A conversation with one service on the session's bus: whether it is there, then one call of
/// `Open` of the interface org.freedesktop.Application. Nothing waits: Poll goes on with what can
/// be done now, and is to be called until the state is the one that was waited for.
class PAVANE_API ServiceTalk
{
public:
    enum class State {
        idle,
        asking,   ///< Initiate goes on
        present,  ///< the service runs or can be started by the bus; Open may be called, once
        absent,   ///< no bus, no such service, or no answer in time
        calling,  ///< Open goes on
        done,     ///< the service has answered
        failed    ///< it refused, or did not answer in time
    };

    ServiceTalk();
    ~ServiceTalk();
    ServiceTalk(const ServiceTalk&) = delete;
    ServiceTalk& operator=(const ServiceTalk&) = delete;

    /// Asks for `service`; what went on before is forgotten.
    void Initiate(const CString& service, const CString& object, int milliseconds = 1000);
    /// Calls Open with one address; only when the service is present.
    void Open(const CString& address, int milliseconds = 5000);
    /// Forgets the service.
    void Close();
    State Poll();

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

}  // namespace pavane
