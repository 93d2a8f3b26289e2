#pragma once

#include "pavane/trackers/areas/AreaEdits.h"
#include "pavane/trackers/collections/AreaDrag.h"

#include <memory>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

namespace pavane
{

/// The trackers of a collection as items whose edits are steps of undo: classes as numbers, records
/// of them and back, and what has to follow when an item comes or goes.
class TrackerItems final : public AreaItems
{
public:
    /// Numbers of the values beside the areas that steps keep.
    enum StateNumber { toolState = 0, mappingState = 1 };

    TrackerItems(AreaTrackers trackers, const AreaEdits& edits, AreaEye& eye, AreaFocus& focus,
                 AreaDrag& drag)
        : trackers_(trackers), edits_(edits), eye_(eye), focus_(focus), drag_(drag)
    {
    }

    /// The mode of tools.
    int tool() const { return tool_; }
    void setTool(int tool) { tool_ = tool; }

    /// A class and the mapping that its pixels belong to share one number.
    int kindOfTracker(const ATracker& tracker);
    /// The record of item i, or of the open polygon (-1), as steps keep it: without the vertex
    /// count, so that one vertex more differs in its own bytes only.
    std::string recordOf(const ATracker& tracker, int i) const;
    /// The item is there, or gone, for all but edits.
    int put(int i, ATracker* tracker);
    void drop(int i);

    // AreaItems
    int count() const override { return trackers_.count(); }
    int kindOf(int i) override { return kindOfTracker(*trackers_.at(i)); }
    int isOfKind(int i, int kind) const override;
    std::string recordOf(int i) const override { return recordOf(*trackers_.at(i), i); }
    int isActive(int i) const override { return trackers_.at(i)->IsActive(); }
    void setActive(int i, int on) override { trackers_.at(i)->SetActive(on); }
    int insert(int i, int kind, std::string_view record) override;
    void remove(int i) override { drop(i); }
    int replace(int i, int kind, std::string_view record) override;
    int setOpen(int kind, std::string_view record) override;
    int setState(int which, std::string_view bytes) override;

private:
    /// What a record needs to become a tracker again.
    struct Kind {
        std::type_index type;
        std::string name;
        int mapping;
        std::shared_ptr<const ATracker> model;  ///< of classes that their name alone does not make
    };

    const Kind* kindAt(int kind) const;
    int setRecord(ATracker& tracker, const Kind& kind, std::string_view record) const;
    std::unique_ptr<ATracker> makeFromRecord(int kind, std::string_view record) const;

    AreaTrackers trackers_;
    const AreaEdits& edits_;
    AreaEye& eye_;
    AreaFocus& focus_;
    AreaDrag& drag_;
    std::vector<Kind> kinds_;
    int tool_ = toolArrow;
};

}  // namespace pavane
