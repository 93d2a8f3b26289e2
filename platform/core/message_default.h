#pragma once

#include "platform/message.h"

namespace pavane
{

/// What SetMessageFunction(nullptr) goes back to, and what is in force while nobody set another;
/// null is the function that prints.
void setDefaultMessageFunction(MessageFunction function);
/// Called before every message, whoever shows it; null for nothing.
void setBeforeMessage(void (*function)());
/// A line to standard error; IDOK.
int printMessage(const CString& text);

}  // namespace pavane
