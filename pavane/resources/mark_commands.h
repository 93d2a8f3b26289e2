#pragma once

#include "pavane/resources/table_commands.h"

#include <array>
#include <cstddef>

namespace pavane
{

/// The commands of tables with marks. Space alone marks what is selected; Shift and Ctrl with it
/// select, as in every table.
inline constexpr TableCommand markCommands[] = {
    {ID_MARK_SELECTED, TableWhen::hasSelection, "&Mark selected\tSpace", VK_SPACE},
    {ID_MARK_ALL, TableWhen::hasCells, "Mark a&ll\tCtrl+M", 'M', tableControl},
    {ID_MARK_NONE, TableWhen::hasCells, "Mark n&one\tCtrl+Shift+M", 'M', tableControl | tableShift},
    {ID_MARK_INVERT, TableWhen::hasCells, "In&vert marks\tCtrl+I", 'I', tableControl},
};

inline constexpr MenuItem markItems[] = {
    {markCommands[0].text, markCommands[0].id},
    {markCommands[1].text, markCommands[1].id},
    {markCommands[2].text, markCommands[2].id},
    {markCommands[3].text, markCommands[3].id},
    {},
};

/// The lines of two menus in one.
template <std::size_t A, std::size_t B>
constexpr std::array<MenuItem, A + B> menuOfBoth(const MenuItem (&first)[A],
                                                 const MenuItem (&second)[B])
{
    std::array<MenuItem, A + B> both{};
    for (std::size_t i = 0; i < A; ++i)
        both[i] = first[i];
    for (std::size_t i = 0; i < B; ++i)
        both[A + i] = second[i];
    return both;
}

}  // namespace pavane
