#pragma once

#include "platform/printer_info.h"

#include <string>
#include <string_view>

namespace pavane
{

// What a scheduler is asked of a queue in the Internet Printing Protocol, and its answer, which may
// hold anything.

/// The bytes of an HTTP request for the attributes of a queue.
std::string queueRequest(const CString& queue);
/// Whether an answer is there as a whole, as far as it tells its length.
int isAnswerWhole(std::string_view answer);
/// Takes papers, margins, resolution, model, two-sided and colour. Non-zero when the answer is one
/// of a queue; what it does not tell stays as it is.
int readAnswer(std::string_view answer, PrinterInfo& queue);

}  // namespace pavane
