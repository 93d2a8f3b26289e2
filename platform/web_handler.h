#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <memory>
#include <vector>

namespace pavane
{

/// The program that the desktop has for web addresses, as its desktop entry tells. Texts may have
/// any length.
struct WebHandler {
    CString
        command;  ///< the line that starts it, "" when it has none; quotes and field codes in it
    CString service;  ///< its name on the session's bus, "" when it is not started by the bus
    CString object;   ///< path of its object there
    CString name;     ///< what the user calls it
    CString icon;     ///< "" for none
    CString file;     ///< the desktop entry itself
    friend bool operator==(const WebHandler&, const WebHandler&) = default;
};

/// The handler that the desktop has registered for a scheme ("http"): the first that can be used of
/// the user's and the system's defaults, of the programs added to the scheme and not removed from
/// it, and of those that say they know it. Empty when there is none.
PAVANE_API WebHandler FindWebHandler(const CString& scheme);

/// The arguments that start `handler.command` with `address`: quotes taken away, field codes filled
/// in. The address stands once, as or in one argument, where the first of %u, %U, %f, %F or %1 is,
/// else behind the others. Empty for a line that is empty or has no end of a quote.
PAVANE_API std::vector<CString> CommandArguments(const WebHandler& handler, const CString& address);

/// `address` as it may be opened, "" when it must not be: only http, https, ftp and mailto
/// addresses of at most 8192 bytes, without control characters. Blanks, quotes and bytes that are
/// no UTF-8 are encoded.
PAVANE_API CString CheckedWebAddress(const CString& address);
/// Non-zero for a mailto address, which only the desktop's opener takes.
PAVANE_API int IsMailAddress(const CString& address);

/// Starts a program that goes on by itself, without a shell; the first argument is looked for along
/// PATH. Non-zero on success, else 0 and `error` says why in one line.
PAVANE_API int StartProgram(const std::vector<CString>& arguments, CString& error);

/// The desktop's own opener (xdg-open), which knows what each address is for. It is watched without
/// waiting, and left to itself when this object goes.
class PAVANE_API WebOpener
{
public:
    WebOpener();
    ~WebOpener();
    WebOpener(const WebOpener&) = delete;
    WebOpener& operator=(const WebOpener&) = delete;

    /// Non-zero when it was found and started.
    int Start(const CString& address);
    /// Non-zero when it has ended.
    int HasEnded();
    /// Non-zero when it ended and said that all went well.
    int HasSucceeded();

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

}  // namespace pavane
