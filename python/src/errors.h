#pragma once

#include "platform/types.h"

#include <pybind11/pybind11.h>

namespace pavane::python
{

/// Throws pavane.FormatError: what the file, or the text, holds cannot be used.
[[noreturn]] void throwFormat(const CString& text);
/// Throws OSError with the name of the file: a missing file, a folder, no right to read or write;
/// `why` when the system names no reason.
[[noreturn]] void throwOs(const CString& file, const CString& why, int number);
/// The file could not be read: OSError where the system says why, else FormatError.
[[noreturn]] void throwUnread(const CString& file, const CString& why);
/// The file could not be written: OSError.
[[noreturn]] void throwUnwritten(const CString& file, const CString& why);
/// A Python warning of class pavane.PavaneWarning. Throws when warnings are errors.
void warn(const CString& text);

}  // namespace pavane::python
