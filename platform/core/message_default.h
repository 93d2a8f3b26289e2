#pragma once

#include "platform/message.h"

namespace pavane
{

/// What SetMessageFunction(nullptr) goes back to, and what is in force while nobody set another;
/// null is the function that prints.
void setDefaultMessageFunction(MessageFunction function);

}  // namespace pavane
