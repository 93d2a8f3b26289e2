#pragma once

#include "pavane/trackers/areas/AreaEdits.h"
#include "platform/api.h"

#include <string_view>
#include <vector>

namespace pavane
{

/// The current area, the selection and the steps of undo of a collection, to be asked and set by
/// themselves: whatever has to be told is the collection's.
class PAVANE_API EditedAreas
{
public:
    /// -1 for none.
    int GetCurItemNo() const { return areas_->current(); }
    void SetCurItemNo(int i) { areas_->setCurrent(i); }
    void SetItemActive(int i, int on) { areas_->setActive(i, on); }
    /// By rising index: the selection, or the current area where that is empty and it is active.
    std::vector<int> SelectedItems() const { return areas_->selected(); }
    int IsSelected(int i) const { return areas_->isSelected(i); }

    /// Steps, labels and their memory.
    const EditHistory& history() const { return areas_->history(); }
    EditHistory& history() { return areas_->history(); }
    /// Non-zero unless the areas are those of the last SetSaved (at first: the empty collection).
    int IsModified() const { return history().isModified(); }
    void SetSaved() { history().markSaved(); }
    /// All edits until EndEdits are one step. Calls nest; the outermost label counts.
    void BeginEdits(std::string_view label) { areas_->begin(label); }
    /// Edits that the user may still cancel begin; Undo goes no further back until EndTrial.
    void BeginTrial() { history().beginTrial(); }
    void EndTrial() { history().endTrial(); }

protected:
    EditedAreas() = default;

    AreaEdits* areas_ = nullptr;  ///< the collection's, which sets it before anything else
};

}  // namespace pavane
