#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "python/src/cells.h"

#include <memory>
#include <mutex>
#include <pybind11/pybind11.h>

namespace pavane::python
{

/// A map that was read, or the cells of an array with the header that belongs to them.
class Map
{
public:
    /// Of a file; `plane` -1: the only one.
    Map(const CString& file, int plane);
    Map(std::unique_ptr<CellsOf> cells, const MapHeader& header);
    Map(const Map&) = delete;
    Map& operator=(const Map&) = delete;

    const MapContent& content() const { return content_; }
    const AMatrixAccess& cells() const;
    /// Finds range and noise of the cells as they are now. With the interpreter's lock.
    MapContent described() const;
    /// Takes them, when nobody draws the map.
    void take(const MapContent& found);
    /// Throws ValueError when an array is not where it was. With the interpreter's lock.
    void check() const
    {
        if (array_)
            array_->checkPlace();
    }
    /// The cells as an array: the one that was given, or a view of those that were read, which
    /// keeps `self`, the map.
    static pybind11::object array(const std::shared_ptr<Map>& self);
    /// All of it as a tuple for pickling, and back.
    static pybind11::tuple state(const std::shared_ptr<Map>& self);
    static std::shared_ptr<Map> ofState(const pybind11::tuple& state);
    const CellsOf* given() const { return array_.get(); }

private:
    MapContent content_;
    std::unique_ptr<CellsOf> array_;
    std::unique_ptr<AFloatMatrixAccess> read_;
};

}  // namespace pavane::python
