#include "apps/view/profiles/LineEdits.h"

#include <algorithm>
#include <utility>

namespace pavane
{

void LineEdits::begin(const ProfileLine& line)
{
    line_ = line;
    undo_.clear();
    redo_.clear();
    focus_ = moved_ = -1;
}

void LineEdits::set(const ProfileLine& line, const std::string& step)
{
    undo_.push_back({std::exchange(line_, line), step, focus_});
    if (undo_.size() > mostSteps)
        undo_.erase(undo_.begin());
    redo_.clear();
    moved_ = -1;
    setFocus(focus_);
}

void LineEdits::endDrag(const ProfileLine& before, int keep)
{
    const ProfileLine now = std::exchange(line_, before);
    if (keep)
        set(now, isAllFocused() ? "moving the line" : "moving a corner");
}

void LineEdits::setFocus(int focus) { focus_ = focus < 0 ? -1 : std::min(focus, corners()); }

void LineEdits::nextFocus(int step)
{
    const int places = corners() + 1;
    focus_ = corners() < 2 ? -1 : focus_ < 0 ? 0 : (focus_ + step + places) % places;
}

int LineEdits::move(double columns, double rows, int joins)
{
    if (focus_ < 0)
        return 0;
    ProfileLine next = line_;
    for (int i = 0; i < corners(); ++i)
        if (isAllFocused() || i == focus_) {
            next.corners[static_cast<std::size_t>(i)].x += columns;
            next.corners[static_cast<std::size_t>(i)].y += rows;
        }
    if (joins && moved_ == focus_ && !undo_.empty()) {
        line_ = next;
        redo_.clear();
        return 1;
    }
    set(next, isAllFocused() ? "moving the line" : "moving a corner");
    moved_ = focus_;
    return 1;
}

int LineEdits::insertCorner()
{
    if (focus_ < 0 || isAllFocused() || corners() < 2)
        return 0;
    const int from = std::min(focus_, corners() - 2);
    ProfileLine next = line_;
    const MapPlace a = next.corners[static_cast<std::size_t>(from)];
    const MapPlace b = next.corners[static_cast<std::size_t>(from) + 1];
    next.corners.insert(next.corners.begin() + from + 1, {(a.x + b.x) / 2, (a.y + b.y) / 2});
    set(next, "a new corner");
    focus_ = from + 1;
    return 1;
}

int LineEdits::removeCorner()
{
    if (focus_ < 0 || isAllFocused() || corners() < 3)
        return 0;
    ProfileLine next = line_;
    next.corners.erase(next.corners.begin() + focus_);
    const int focus = std::min(focus_, corners() - 2);
    set(next, "deleting a corner");
    focus_ = focus;
    return 1;
}

int LineEdits::walk(std::vector<Step>& from, std::vector<Step>& to)
{
    if (from.empty())
        return 0;
    Step step = std::move(from.back());
    from.pop_back();
    std::swap(step.line, line_);
    std::swap(step.focus, focus_);
    setFocus(focus_);
    to.push_back(std::move(step));
    moved_ = -1;
    return 1;
}

}  // namespace pavane
