#pragma once

#include "platform/api.h"

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// What a reader or writer of region files could not take as it was, line by line, for the user.
struct PAVANE_API RegionNotes {
    enum class Kind {
        leftOut,  ///< a shape that cannot be held; it is missing in the result
        damaged,  ///< a line that is not understood; what it meant is missing
        changed   ///< taken, but as something else or without a part
    };
    /// "line 12: annulus is not a shape of areas; left out", in file order. Writers count areas
    /// from 1 instead: "area 3: ...". At most `mostLines`; `more` says how many there were beyond.
    std::vector<std::string> lines;
    int leftOut = 0;
    int damaged = 0;
    int changed = 0;
    int more = 0;
    static constexpr int mostLines = 1000;
    /// The first line about something that is missing in the result; empty when nothing is.
    std::string firstLoss;

    /// Adds "<what> <number>: <text>"; without a number (below 1) only the text.
    void add(Kind kind, const char* what, long long number, const std::string& text);
    /// Adds the text unless one like it was added by this function.
    void addOnce(Kind kind, const std::string& text);

private:
    std::vector<std::string> once_;
};

/// The start of a foreign text for a note: printable ASCII, '?' for the rest, cut to 40 characters.
std::string excerpt(std::string_view text);
/// The excerpt in quotation marks.
std::string quoted(std::string_view text);

}  // namespace pavane
