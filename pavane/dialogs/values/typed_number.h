#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// A number that a user types: how the page calls it, and what it may be.
struct TypedNumber {
    const char* name;
    double least, most;
    enum class Kind {
        any,
        above,  ///< above the least, which it may not be itself
        whole,
        even  ///< whole, and divisible by two
    } kind = Kind::any;
};

/// Reads a text that is wholly such a number. Non-zero on success; else `value` is left alone and
/// `error` says what the number has to be.
PAVANE_API int readTyped(const CString& text, const TypedNumber& number, double& value,
                         CString& error);
/// Non-zero when a number of a record is one that may be typed.
PAVANE_API int isTyped(double value, const TypedNumber& number);

}  // namespace pavane
