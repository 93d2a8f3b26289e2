#pragma once

#include "apps/view/area_files.h"
#include "apps/view/inputs.h"
#include "apps/view/status_text.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/SkyCoordinates.h"

#include <memory>
#include <string>

namespace pavane
{

class A2DAxis;
class AAxisColorOP;
class ALevelsColorGraph;

/// A map that is open in the window: its cells, where they lie, and what draws them. Neither copied
/// nor moved: graphs and bars point into it.
class MapDocument
{
public:
    MapDocument();
    MapDocument(const MapDocument&) = delete;
    MapDocument& operator=(const MapDocument&) = delete;
    ~MapDocument();

    /// Reads the map. Non-zero on success; else 0 and `error` is one line with the file's name,
    /// empty when `progress` gave up.
    int open(const std::string& file, int plane, const ViewOptions& options, std::string& error,
             const ProgressFunction& progress);

    const std::string& file() const { return file_; }
    const ViewInputs& inputs() const { return inputs_; }
    const SkyCoordinates& sky() const { return sky_; }
    const StatusFormat& format() const { return format_; }
    AreaPlace place() const;
    A2DAxis& axis() { return *axis_; }
    ALevelsColorGraph& graph() { return *graph_; }
    AAxisColorOP& bar() { return *bar_; }

    /// Gives the graph the scale and the levels of the options.
    void show(const ViewOptions& options);

private:
    std::string file_;
    ViewInputs inputs_;
    AFloatMatrixAccess cells_;
    SkyCoordinates sky_;
    StatusFormat format_;
    std::unique_ptr<A2DAxis> axis_;
    ALevelsColorGraph* graph_ = nullptr;  // the axis's
    std::unique_ptr<AAxisColorOP> bar_;
};

}  // namespace pavane
