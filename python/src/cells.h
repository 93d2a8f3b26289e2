#pragma once

#include "pavane/axes/maps/cells/cell_memory.h"

#include <memory>
#include <pybind11/pybind11.h>

namespace pavane::python
{

/// The cells of an array of two axes (any object with the buffer protocol), read where they lie:
/// floats, doubles and whole numbers of any width, either byte order, any steps. Keeps the array,
/// and its mask, alive. Everything but `access` is called with the interpreter's lock.
class CellsOf
{
public:
    /// Throws TypeError or ValueError for what is no map. `mask` is None or an array of the same
    /// shape of bool or bytes, non-zero where a cell is blank.
    CellsOf(pybind11::object array, pybind11::object mask, double blank);
    CellsOf(const CellsOf&) = delete;
    CellsOf& operator=(const CellsOf&) = delete;

    const AMatrixAccess& access() const { return *access_; }
    const pybind11::object& array() const { return array_; }
    const pybind11::object& mask() const { return mask_; }
    double blank() const { return blank_; }
    /// Throws ValueError when the array lies elsewhere, or has another shape, than it had.
    void checkPlace() const;

private:
    pybind11::object array_, mask_;
    std::unique_ptr<pybind11::buffer_info> cells_, bytes_;
    std::unique_ptr<AMatrixAccess> access_;
    double blank_;
};

}  // namespace pavane::python
