#include "platform/service_talk.h"

#include "platform/core/bus_message.h"
#include "platform/core/desktop_folders.h"
#include "platform/core/utf8.h"
#include "posix/LocalStream.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr BusTarget busItself(std::string_view member)
{
    return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", member};
}

// Serials of the calls, in their order.
enum Call : std::uint32_t { hello = 1, hasOwner = 2, listNames = 3, openAddress = 4 };

int digitOf(char c)
{
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

/// A value of an address, with its %20 and the like undone.
CString plainValue(std::string_view value)
{
    CString plain;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const int high = value[i] == '%' && i + 2 < value.size() ? digitOf(value[i + 1]) : -1;
        const int low = high >= 0 ? digitOf(value[i + 2]) : -1;
        plain += low >= 0 ? static_cast<char>(high * 16 + low) : value[i];
        i += low >= 0 ? 2 : 0;
    }
    return plain;
}

/// Names of the sockets at which the session's bus may listen, as LocalStream takes them.
std::vector<CString> busSockets()
{
    std::vector<CString> sockets;
    const CString addresses = environmentText("DBUS_SESSION_BUS_ADDRESS");
    const CString runtime = environmentText("XDG_RUNTIME_DIR");
    if (addresses.empty() && !runtime.empty())
        sockets.push_back(runtime + "/bus");
    for (std::string_view rest = addresses; !rest.empty();) {
        const std::string_view one = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
        constexpr std::string_view kind = "unix:";
        if (!one.starts_with(kind))
            continue;
        for (std::string_view keys = one.substr(kind.size()); !keys.empty();) {
            const std::string_view key = keys.substr(0, keys.find(','));
            keys.remove_prefix(std::min(key.size() + 1, keys.size()));
            if (key.starts_with("path="))
                sockets.push_back(plainValue(key.substr(5)));
            else if (key.starts_with("abstract="))
                sockets.emplace_back(1, '\0').append(plainValue(key.substr(9)));
        }
    }
    return sockets;
}

/// How a program says who it is: its user's number, which the bus compares with the socket's.
CString introduction()
{
    constexpr const char* digits = "0123456789abcdef";
    CString line(1, '\0');
    line += "AUTH EXTERNAL ";
    for (const char c : std::to_string(getuid()))
        line += {digits[c >> 4 & 15], digits[c & 15]};
    return line + "\r\n";
}

}  // namespace

struct ServiceTalk::Data {
    LocalStream stream;
    State state = State::idle;
    CString service;
    CString object;
    Clock::time_point limit;
    bool isIntroduced = false;

    void call(Call serial, const BusTarget& target, std::string_view signature,
              std::string_view body)
    {
        stream.send(busCall(serial, target, signature, body));
    }
    /// Takes the bus's line; 0 when it refuses.
    int takeWelcome()
    {
        const std::size_t end = stream.received.find("\r\n");
        constexpr std::size_t longest = 1024;
        if (end == CString::npos)
            return stream.received.size() < longest;
        if (!stream.received.starts_with("OK"))
            return 0;
        stream.received.erase(0, end + 2);
        isIntroduced = true;
        stream.send("BEGIN\r\n");
        call(hello, busItself("Hello"), "", "");
        return 1;
    }
    /// What the reply to one of the calls means; 0 when the conversation is at its end.
    int takeReply(const BusMessage& reply)
    {
        const bool isWell = reply.kind == BusMessage::reply;
        if (reply.answers == openAddress && state == State::calling) {
            state = isWell ? State::done : State::failed;
            return 1;
        }
        if (state != State::asking)
            return 1;
        if (reply.answers == hello) {
            call(hasOwner, busItself("NameHasOwner"), "s", textArgument(service));
            return isWell;
        }
        if (reply.answers == hasOwner && reply.truth()) {
            state = State::present;
        } else if (reply.answers == hasOwner) {
            call(listNames, busItself("ListActivatableNames"), "", "");
        } else if (reply.answers == listNames) {
            const std::vector<CString> names = reply.texts();
            const bool isKnown = std::find(names.begin(), names.end(), service) != names.end();
            state = isKnown ? State::present : State::absent;
        }
        return 1;
    }
    /// 0 when the bus is gone or says what none says.
    int goOn()
    {
        const int isOpen = stream.exchange();
        if (!isIntroduced && !takeWelcome())
            return 0;
        BusMessage message;
        int taken = 0;
        while (isIntroduced && (taken = takeBusMessage(stream.received, message)) > 0)
            if (message.kind != BusMessage::other && !takeReply(message))
                return 0;
        return isOpen && taken >= 0;
    }
};

ServiceTalk::ServiceTalk() : data_(std::make_unique<Data>()) {}
ServiceTalk::~ServiceTalk() = default;

void ServiceTalk::Close() { data_ = std::make_unique<Data>(); }

void ServiceTalk::Initiate(const CString& service, const CString& object, int milliseconds)
{
    Close();
    Data& d = *data_;
    d.service = validUtf8(service);
    d.object = validUtf8(object);
    d.limit = Clock::now() + std::chrono::milliseconds(milliseconds);
    d.state = State::absent;
    if (service.empty())
        return;
    for (const CString& socket : busSockets()) {
        if (!d.stream.open(socket))
            continue;
        d.state = State::asking;
        d.stream.send(introduction());
        return;
    }
}

void ServiceTalk::Open(const CString& address, int milliseconds)
{
    Data& d = *data_;
    if (d.state != State::present)
        return;
    d.state = State::calling;
    d.limit = Clock::now() + std::chrono::milliseconds(milliseconds);
    d.call(openAddress, {d.service, d.object, "org.freedesktop.Application", "Open"}, "asa{sv}",
           openArguments(validUtf8(address)));
    (void)d.stream.exchange();  // Poll tells of a failure
}

ServiceTalk::State ServiceTalk::Poll()
{
    Data& d = *data_;
    if (d.state != State::asking && d.state != State::calling)
        return d.state;
    const int goesOn = d.goOn();
    const bool isDue = d.state == State::asking || d.state == State::calling;
    if (isDue && (!goesOn || Clock::now() >= d.limit))
        d.state = d.state == State::asking ? State::absent : State::failed;
    if (d.state != State::asking && d.state != State::calling && d.state != State::present)
        d.stream.close();
    return d.state;
}

}  // namespace pavane
