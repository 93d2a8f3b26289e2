#pragma once

#include "pavane/measures/profiles/MapProfile.h"

#include <string>
#include <vector>

namespace pavane
{

/// The line of a profile while it is worked on: what of it has the focus, and the steps that can be
/// undone. A plain value; corners count from 0, places are cells.
class LineEdits
{
public:
    static constexpr std::size_t mostSteps = 200;

    const ProfileLine& line() const { return line_; }
    /// Another line, without steps and focus.
    void begin(const ProfileLine& line);
    /// Another line as a step, whose name follows "Undo".
    void set(const ProfileLine& line, const std::string& step);
    /// The line while it is dragged; `endDrag` makes the step, or takes it back.
    void dragTo(const ProfileLine& line) { line_ = line; }
    void endDrag(const ProfileLine& before, int keep);

    /// The corner that keys act on; as many as there are corners: all of them; -1: none.
    int focus() const { return focus_; }
    void setFocus(int focus);
    int isAllFocused() const { return focus_ == corners() && focus_ > 0; }
    /// To the next corner, behind the last to the whole line, and round.
    void nextFocus(int step);
    /// Moves what has the focus. `joins`: the move belongs to that before, when that was one of the
    /// same corner. 0 without a focus.
    int move(double columns, double rows, int joins);
    /// A corner in the middle behind the one with the focus (before it for the last), which gets
    /// the focus. 0 without one.
    int insertCorner();
    /// 0 without a corner with the focus, and when only two are left.
    int removeCorner();

    /// "" when there is nothing to undo, or redo.
    std::string undoLabel() const { return undo_.empty() ? "" : undo_.back().label; }
    std::string redoLabel() const { return redo_.empty() ? "" : redo_.back().label; }
    int undo() { return walk(undo_, redo_); }
    int redo() { return walk(redo_, undo_); }

private:
    struct Step {
        ProfileLine line;  ///< on the other side of it
        std::string label;
        int focus = -1;
    };
    int corners() const { return static_cast<int>(line_.corners.size()); }
    int walk(std::vector<Step>& from, std::vector<Step>& to);

    ProfileLine line_;
    std::vector<Step> undo_, redo_;
    int focus_ = -1;
    int moved_ = -1;  ///< what the last step moved
};

}  // namespace pavane
