#pragma once

#include "apps/view/area_outlines.h"
#include "apps/view/options.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapFigure.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class A2_3D2ZAxis;
class AAxisColorOP;
class ALevelsColorGraph;
class ASurfaceGraph;

/// A map as a surface with contours on it and on the floor, its colour bar, and perhaps a second
/// map on the second Z above it. Neither copied nor moved: graphs point into it.
class SurfacePicture
{
public:
    SurfacePicture();
    SurfacePicture(const SurfacePicture&) = delete;
    SurfacePicture& operator=(const SurfacePicture&) = delete;
    ~SurfacePicture();

    /// Shows a map, which has to outlive the picture.
    void show(const MapContent& content);
    /// Reads the second map. Non-zero on success; else 0 and `error` is one line with its name.
    int addSecond(const std::string& file, std::string& error);
    /// Colours, range, scale and levels of the options, and the view of --surface.
    void applyOptions(const ViewOptions& options);
    /// Those of the graph of the same map, as it is shown.
    void follow(const ALevelsColorGraph& map);
    /// Lays the outlines of areas over the surface.
    void setAreas(const std::vector<AreaOutline>& areas);

    A2_3D2ZAxis& axis() { return *axis_; }
    ASurfaceGraph& graph() { return *graph_; }
    AAxisColorOP& bar() { return *bar_; }
    void draw(CDC& dc, const CRect& rect);
    /// What is to be said of what was drawn.
    std::vector<std::string> notes() const;

private:
    const MapContent* content_ = nullptr;
    std::unique_ptr<MapContent> second_;
    std::unique_ptr<AMatrixAccess> cells_, secondCells_;
    std::unique_ptr<A2_3D2ZAxis> axis_;
    ASurfaceGraph* graph_ = nullptr;  // the axis's
    ASurfaceGraph* secondGraph_ = nullptr;
    std::unique_ptr<AAxisColorOP> bar_;
    MapFigure figure_;
};

}  // namespace pavane
