#pragma once

#include "platform/CWnd.h"

#include <string>
#include <vector>

namespace pavane
{

/// Runs a program that takes a moment while a dialog waits for what it says. The user sees a
/// progress box when it takes longer and may give up. `name` is what it does ("Reading gains").
/// Non-zero when it ended with 0, and `lines` are those that it wrote; else `error` is a clause.
int runChild(const std::vector<std::string>& words, const CString& name, CWnd* owner,
             std::vector<std::string>& lines, std::string& error);

}  // namespace pavane
