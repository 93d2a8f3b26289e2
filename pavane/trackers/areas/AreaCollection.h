#pragma once

#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/trackers/areas/area_classes.h"
#include "pavane/trackers/areas/AreaEdits.h"
#include "pavane/trackers/areas/AreaItems.h"
#include "pavane/trackers/masks/LoadReport.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace pavane
{

class ABitMatrix;
class AFile;

/// One area as it is stored.
struct AreaRecord {
    /// Of a class that nobody knows all that its field of 32 bytes holds.
    std::string className;
    std::string bytes;
    friend bool operator==(const AreaRecord&, const AreaRecord&) = default;
};

/// Areas in data values as a program without a window has them: each is a class name and a record.
/// It loads and stores what ARPTrackerArray stores, to the byte, fills the same masks, and every
/// edit can be undone.
///
/// What has no known shape in data values is kept to the byte and gives no cells, and Load and
/// FillMatrix tell of it: classes of hosts (RegisterAreaClass tells how long their records are),
/// classes that nobody knows, shapes in pixels.
class PAVANE_API AreaCollection : private AreaItems
{
public:
    AreaCollection() : edits_(*this) {}
    AreaCollection(const AreaCollection&) = delete;
    AreaCollection& operator=(const AreaCollection&) = delete;

    int count() const override { return static_cast<int>(items_.size()); }
    /// Both have no bytes, and no shape, outside the collection.
    AreaRecord record(int i) const;
    int shape(int i, ShapeValues& shape) const;
    /// The current area, -1 for none; makeCurrent makes it active and the old one inactive.
    int current() const { return edits_.current(); }
    void makeCurrent(int i) { edits_.makeCurrent(i); }

    // Edits, each one step of undo unless it stands in a step of the caller (AreaEdits::Step).
    /// Appends a closed area, not active and not current; its index, -1 for numbers that no record
    /// holds.
    int add(const ShapeValues& shape);
    /// The same of a shape in cells of a map, with its label.
    int add(const AreaShape& shape, const AMnMxMCTransform& map);
    /// 0 for a class without a known shape, another kind of shape or numbers that no record holds.
    int setShape(int i, const ShapeValues& shape);
    /// Whether masks leave out the cells of area i; 0 for a class without a known shape.
    int isNeverClean(int i) const;
    /// 0 for a class without a known shape.
    int setNeverClean(int i, int on);
    /// What area i is called and its colour; empty outside the collection.
    AreaLabel label(int i) const { return has(i) ? at(i).label : AreaLabel(); }
    int setLabel(int i, const AreaLabel& label);
    int erase(int i);
    void clear();
    int undo() { return edits_.undo(); }
    int redo() { return edits_.redo(); }
    /// Steps, selection, trials.
    AreaEdits& edits() { return edits_; }
    const AreaEdits& edits() const { return edits_; }
    int isModified() const { return edits_.history().isModified(); }
    void setSaved() { edits_.history().markSaved(); }

    // Files
    /// The current index, the number of areas, each one's class name in 32 bytes and record.
    int Store(AFile& file) const;
    /// Reads that in place of what there is. A failed read, or a record that is refused, gives 0
    /// with the areas read so far. The record of a class that nobody knows goes on to the next name
    /// of a class that is known, or to the end of the file: others of the kind that follow it, and
    /// what a host may have stored behind the areas, are part of it.
    int Load(AFile& file, LoadReport& report);
    int Load(AFile& file);

    // Masks, as TrackerCollection fills them
    /// The mask of all areas over a map of nx columns and ny rows that spans `mapRange`; with no
    /// area, or with never-clean ones alone, every bit is set before those are cleared. 0 when
    /// there are areas whose class gives no cells: `report`, if any, has a line for each.
    int FillMatrix(ABitMatrix& m, int nx, int ny, const TMinMax& mapRange,
                   LoadReport* report = nullptr) const;
    /// The outline of area i in those cells (x = column, y = row); 0 and no points where it sets
    /// nothing.
    int GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny, const TMinMax& mapRange) const;

private:
    /// A class as steps note it.
    struct Kind {
        std::string name;                  ///< or all of the field, of a class that nobody knows
        const AreaClass* known = nullptr;  ///< null for one that nobody knows
        std::size_t vertexBytes = 0;       ///< of polygons, whose steps leave out their number
        int entries = 1;                   ///< areas of the file that its record stands for
        int hasShape() const
        {
            return known && known->hasShape && known->plane == AreaPlane::values;
        }
    };
    struct Item {
        int kind;
        std::string bytes;
        AreaLabel label = {};
    };

    int kindOf(int i) override { return at(i).kind; }
    int isOfKind(int i, int kind) const override { return has(i) && at(i).kind == kind; }
    std::string recordOf(int i) const override;
    int isActive(int i) const override;
    void setActive(int i, int on) override;
    int insert(int i, int kind, std::string_view record) override;
    void remove(int i) override { items_.erase(items_.begin() + i); }
    int replace(int i, int kind, std::string_view record) override;
    int setOpen(int, std::string_view) override { return 0; }   // there is none here
    int setState(int, std::string_view) override { return 0; }  // nor other values

    int has(int i) const { return i >= 0 && i < count(); }
    const Item& at(int i) const { return items_[static_cast<std::size_t>(i)]; }
    Item& at(int i) { return items_[static_cast<std::size_t>(i)]; }
    const Kind& kindAt(int i) const { return kinds_[static_cast<std::size_t>(at(i).kind)]; }
    int kindNumber(const std::string& name, int entries);
    void append(Item item);
    void eraseAll();
    int readItems(AFile& file, LoadReport& report, std::vector<Item>& items);

    std::vector<Item> items_;
    std::vector<Kind> kinds_;
    std::unordered_map<std::string, int> kindNumbers_;
    AreaEdits edits_;
};

}  // namespace pavane
