#pragma once

#include <pybind11/pybind11.h>

namespace pavane::python
{

namespace py = pybind11;

// Each file adds what it has to the compiled module `pavane._core`.
void bindErrors(py::module_& m);
void bindPlatform(py::module_& m);
void bindMap(py::module_& m);
void bindDrawing(py::module_& m);
void bindFigure(py::module_& m);
void bindPlot(py::module_& m);
void bindAreas(py::module_& m);
void bindComponents(py::module_& m);
void bindStatistics(py::module_& m);

}  // namespace pavane::python
