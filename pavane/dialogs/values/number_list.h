#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// Numbers that count from 0 as a user writes them, from 1, with ranges: {0, 1, 2, 5} is "1-3,6".
PAVANE_API CString numberListText(const std::vector<int>& numbers);
/// Reads that: each number once, all below `count`, in rising order afterwards. "" and "*" are an
/// empty list. Non-zero on success; else `numbers` is left alone.
PAVANE_API int readNumberList(const CString& text, int count, std::vector<int>& numbers);

/// Lists with ';' between them: "1-4;5-8".
PAVANE_API CString numberListsText(const std::vector<std::vector<int>>& lists);
/// A number may be in two of them.
PAVANE_API int readNumberLists(const CString& text, int count,
                               std::vector<std::vector<int>>& lists);

}  // namespace pavane
