#pragma once

#include "apps/view/area_outlines.h"
#include "apps/view/options.h"
#include "apps/view/SideMap.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/box/BoxView.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapFigure.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class A2_3D2ZAxis;
class AAxisColorOP;

inline constexpr int usualSurface = surfaceColors | surfaceLight | surfaceContours;

/// How maps are shown as surfaces, beside what a map shows of colours and contours.
struct SurfaceDisplay {
    int style = usualSurface;   ///< SurfaceStyle bits
    int floor = floorContours;  ///< SurfaceFloor bits
    int sameRange = 0;          ///< the second map has the range of the first, and not its own
    friend bool operator==(const SurfaceDisplay&, const SurfaceDisplay&) = default;
};

/// A map as a surface, with room above the floor so that what lies there is seen, its colour bar,
/// and perhaps a second map on the second Z above it. Neither copied nor moved: graphs point into
/// it.
class SurfacePicture
{
public:
    SurfacePicture();
    SurfacePicture(const SurfacePicture&) = delete;
    SurfacePicture& operator=(const SurfacePicture&) = delete;
    ~SurfacePicture();

    /// Shows a map, which has to outlive the picture.
    void show(const MapContent& content);
    /// The map has other cells, as another plane has; axis and graphs stay. The other maps show
    /// the same plane, those that have it.
    void contentChanged();
    /// Reads the second map. Non-zero on success; else 0 and `error` is one line with its name.
    int addSecond(const std::string& file, std::string& error);
    /// Shows a second map in place of the one that there was, which it gives back; null takes it
    /// away.
    std::unique_ptr<SideMap> setSecond(std::unique_ptr<SideMap> second);
    int hasSecond() const { return secondGraph_ != nullptr; }
    /// Takes the colours from another map of the same size in place of the one that there was,
    /// which it gives back; null: from the map itself. One of another size comes back.
    std::unique_ptr<SideMap> setColorMap(std::unique_ptr<SideMap> colors);
    int hasColorMap() const { return colorMap_ != nullptr; }
    /// Whether the map of another picture has as many columns and rows.
    int isAsLargeAs(const SurfacePicture& other) const;
    /// The height over the floor stays when the floor gets something to show.
    void setDisplay(const SurfaceDisplay& display);
    const SurfaceDisplay& display() const { return display_; }
    /// The view that a window begins with.
    BoxView firstView() const;
    /// Colours, range, scale and levels of the options, and the view of --surface. A range in
    /// values is that of the first map alone.
    void applyOptions(const ViewOptions& options);
    /// Those of the graph of the same map, as it is shown, whose levels were chosen as `levels`
    /// says. Non-zero when heights change as well.
    int follow(const ALevelsColorGraph& map, const LevelChoice& levels);
    /// Lays the outlines of areas over the surface.
    void setAreas(const std::vector<AreaOutline>& areas);

    A2_3D2ZAxis& axis() { return *axis_; }
    ASurfaceGraph& graph() { return *graph_; }
    AAxisColorOP& bar() { return *bar_; }
    /// The bar of what gives colours beside the map: its colour map, or else the second map; null
    /// for none.
    AAxisColorOP* otherBar() { return otherBar_.get(); }
    void draw(CDC& dc, const CRect& rect);
    /// What is to be said of what was drawn.
    std::vector<std::string> notes() const;

private:
    void makeOtherBar();
    void followSecond();
    void planeChanged();

    const MapContent* content_ = nullptr;
    std::unique_ptr<SideMap> second_, colorMap_;
    std::unique_ptr<AMatrixAccess> cells_, secondCells_, colorCells_;
    std::unique_ptr<A2_3D2ZAxis> axis_;
    ASurfaceGraph* graph_ = nullptr;  // the axis's
    ASurfaceGraph* secondGraph_ = nullptr;
    std::unique_ptr<AAxisColorOP> bar_, otherBar_;
    SurfaceDisplay display_;
    LevelChoice levels_;
    MapFigure figure_;
};

}  // namespace pavane
