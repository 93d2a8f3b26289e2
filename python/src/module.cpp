// The compiled part of the Python module `pavane`. What users see is the Python layer over it.
#include "python/src/bind.h"

PYBIND11_MODULE(_core, m)
{
    using namespace pavane::python;
    m.doc() = "The compiled part of pavane.";
    pybind11::options options;
    options.disable_function_signatures();  // the stubs have them
    bindErrors(m);
    bindPlatform(m);
    bindMap(m);
    bindDrawing(m);
    bindFigure(m);
    bindPlot(m);
    bindAreas(m);
    bindComponents(m);
    bindStatistics(m);
}
