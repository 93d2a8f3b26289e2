#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// Where the items of a collection of areas are: what AreaEdits records edits of and brings back.
/// An item is a class, noted as a number that the collection gives it, and its record. No call
/// edits anything by itself: who calls has told AreaEdits, or is it.
class AreaItems
{
public:
    virtual ~AreaItems() = default;
    virtual int count() const = 0;
    /// The number of the class of item i.
    virtual int kindOf(int i) = 0;
    /// Whether there is an item i of the class: what a host changed by itself, or an older step
    /// left out, may have put others in its place.
    virtual int isOfKind(int i, int kind) const = 0;
    /// The record of item i as steps keep it: with the active flag that the item came with, because
    /// the history notes the other flags beside it.
    virtual std::string recordOf(int i) const = 0;
    virtual int isActive(int i) const = 0;
    virtual void setActive(int i, int on) = 0;

    // What undo and redo do; 0 where it cannot be done, and nothing has changed then.
    virtual int insert(int i, int kind, std::string_view record) = 0;
    virtual void remove(int i) = 0;
    /// The active flag stays.
    virtual int replace(int i, int kind, std::string_view record) = 0;
    /// The shape under construction; an empty record: none.
    virtual int setOpen(int kind, std::string_view record) = 0;
    /// Other values, as the collection numbers them.
    virtual int setState(int which, std::string_view bytes) = 0;
};

}  // namespace pavane
