#pragma once

#include "pavane/containers/Pile.h"
#include "pavane/history/EditHistory.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pavane
{

/// One step of a history in one block of memory: the length of its label (a byte) and the label,
/// the selection before, the changes, the selection after. Numbers are of variable length, seven
/// bits a byte.
///
/// A change: kind (a byte), index, class, lengths of the record before and after, how many bytes
/// both have in common at the start and at the end; these common bytes, with those of before and of
/// after between them; and the length of all this, so that changes can be read backwards.
struct EditStep {
    std::size_t size;     ///< bytes that follow this head
    std::size_t changes;  ///< offset of the first change
    std::size_t after;    ///< offset of the selection after

    std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(this + 1); }
    const std::uint8_t* bytes() const { return reinterpret_cast<const std::uint8_t*>(this + 1); }
    std::size_t memory() const { return sizeof(EditStep) + size; }
    std::string_view label() const
    {
        return {reinterpret_cast<const char*>(bytes() + 1), bytes()[0]};
    }
    std::size_t before() const { return std::size_t{1} + bytes()[0]; }
};

using StepBytes = Pile<std::uint8_t>;

// Append to a step. Without memory they return 0 and leave what was there.
int writeLabel(StepBytes& to, std::string_view label);
int writeSelection(StepBytes& to, const EditSelection& selection);
int writeChange(StepBytes& to, const EditChange& change);

/// The open bytes as a step of their own, made by std::malloc; null without memory.
EditStep* makeStep(const StepBytes& bytes, std::size_t changes, std::size_t after);

/// The change at offset `at` of a step, or, backwards, the reverse of the one that ends there; `at`
/// moves past it. `room` holds its records before and after.
EditChange readChange(const EditStep& step, std::size_t& at, bool forward, std::uint8_t* room);
/// The selection at an offset; `room` holds its active items.
EditSelection readSelection(const EditStep& step, std::size_t at, int* room);

}  // namespace pavane
