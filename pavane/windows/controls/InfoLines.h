#pragma once

#include "platform/types.h"

#include <deque>

namespace pavane
{

/// A place in lines of text: before byte `at` of a line.
struct TextPlace {
    int line = 0;
    int at = 0;
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend constexpr auto operator<=>(const TextPlace&, const TextPlace&) = default;
};

/// Lines that grow at the end, with a selection between two places. The oldest go when there are
/// too many.
class PAVANE_API InfoLines
{
public:
    /// Adds text; '\n' begins a new line, and so does the next Append.
    void append(const CString& text);
    void clear();
    int count() const { return static_cast<int>(lines_.size()); }
    /// Empty for a line that is not there.
    const CString& line(int index) const;
    CString text() const;
    void setMost(int lines);

    /// The end of the selection that moves, and the one that stays.
    TextPlace caret() const { return caret_; }
    TextPlace anchor() const { return anchor_; }
    /// Places outside are moved to the nearest; `keeps` leaves the anchor where it is.
    void setCaret(TextPlace place, int keeps);
    void selectAll();
    int hasSelection() const { return caret_ != anchor_; }
    CString selectedText() const;
    /// The bytes of a line that are selected; 0 when none is. `to` may be one more than the line
    /// has: its end is selected as well.
    int selectedPart(int line, int& from, int& to) const;
    /// The place that many characters, or lines, on (below 0: back).
    TextPlace byCharacters(TextPlace from, int steps) const;
    TextPlace byLines(TextPlace from, int steps) const;
    /// Selects the next piece that reads so behind the selection (`step` 1; also the one that is
    /// selected with 0) or before it (-1), round the ends; capitals or not. 0 when there is none.
    int find(const CString& piece, int step);

private:
    TextPlace within(TextPlace place) const;
    void dropOldest();

    std::deque<CString> lines_;
    int most_ = 100000;
    TextPlace caret_, anchor_;
};

}  // namespace pavane
