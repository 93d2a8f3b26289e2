#pragma once

#include "platform/types.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace pavane
{

/// What a message on the bus is for.
struct BusTarget {
    std::string_view service;
    std::string_view object;
    std::string_view interface;
    std::string_view member;
};

/// Values of a message, little-endian, each at a multiple of its size from the start.
class BusWriter
{
public:
    void align(std::size_t size) { bytes_.resize((bytes_.size() + size - 1) / size * size); }
    void byte(int value) { bytes_ += static_cast<char>(value); }
    void number(std::uint32_t value);
    void text(std::string_view value);
    void signature(std::string_view value);
    /// Writes `value` over the number at `at`.
    void overwrite(std::size_t at, std::uint32_t value);
    const CString& bytes() const { return bytes_; }
    std::size_t size() const { return bytes_.size(); }

private:
    CString bytes_;
};

/// A call that wants a reply. `body` holds the arguments, whose types `signature` tells.
CString busCall(std::uint32_t serial, const BusTarget& target, std::string_view signature,
                std::string_view body);
/// Arguments "s" and "asa{sv}": one text; one text in a list, and no platform data.
CString textArgument(std::string_view text);
CString openArguments(std::string_view address);

/// A message that has come.
struct BusMessage {
    enum Kind { other = 0, reply = 2, error = 3 };
    Kind kind = other;
    std::uint32_t answers = 0;  ///< serial of the call
    CString signature;
    CString body;
    bool isBigEndian = false;

    /// The first argument as a truth value; 0 when it is none.
    int truth() const;
    /// The first argument as a list of texts; those before a fault.
    std::vector<CString> texts() const;
};

/// Takes the first message off `bytes`: 1 taken, 0 not all of it is there, -1 it is no message.
int takeBusMessage(CString& bytes, BusMessage& message);

}  // namespace pavane
