#pragma once

#include "platform/api.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace pavane
{

/// What the menu says behind "Undo": "Move of Area 3", "Deletion of 5 areas".
class PAVANE_API StepLabel
{
public:
    /// One area by its index, or the open polygon (-1).
    StepLabel(std::string_view what, int item);
    StepLabel(std::string_view what, const std::vector<int>& items);
    const char* text() const { return text_; }

private:
    void add(std::string_view part);
    void addNumber(std::size_t number);
    char text_[64] = {};
    std::size_t length_ = 0;
};

}  // namespace pavane
